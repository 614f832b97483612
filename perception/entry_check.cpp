#include <lattice/lattice_error.h>
#include <lattice/space_group.h>
#include <perception/bonds.h>
#include <perception/components.h>
#include <perception/elements.h>
#include <perception/entry_bonds.h>
#include <perception/entry_check.h>
#include <perception/molecules.h>
#include <perception/perception_error.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <optional>
#include <set>
#include <utility>

namespace {

using Counts = std::map<std::string, double>;

// Three digits are enough to see what is meant.
std::string short_text(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.4g", value);
  return text;
}

// "C2", or "atom 2" where it has no label.
std::string name_of(const CrystalMaker& maker, std::size_t site) {
  const std::string& label = maker.atoms()[site]->label;
  return label.empty() ? "atom " + std::to_string(site + 1) : label;
}

Counts without_isotopes(const std::vector<std::pair<std::string, double>>& counts) {
  Counts sums;
  for (const auto& [element, count] : counts) sums[element == "D" ? "H" : element] += count;
  return sums;
}

double atoms_in(const Counts& counts) {
  double total = 0.0;
  for (const auto& [element, count] : counts) total += count;
  return total;
}

class Check {
 public:
  Check(const CrystalStructureDatabaseEntry& entry, const CheckOptions& options)
      : options_(options),
        maker_(entry.crystal_maker()),
        chemical_(entry.chemical_info()),
        crystal_(entry.crystal_info()),
        experimental_(entry.experimental_info()),
        editors_(entry.editors_info()),
        publication_(entry.publication()),
        references_(entry.cross_reference_info()),
        bond_options_(bond_options_of(entry)),
        geometry_(entry.published_geometry()) {}

  std::vector<Finding> run() && {
    check_cell();
    check_atoms();
    pack();
    check_formula();
    check_contents();
    check_bonds();
    check_texts();
    std::stable_sort(findings_.begin(), findings_.end(),
                     [](const Finding& left, const Finding& right) { return left.number < right.number; });
    return std::move(findings_);
  }

 private:
  void find(int number, const std::string& where, const std::string& sentence) {
    findings_.push_back({number, where, sentence});
  }

  [[nodiscard]] bool has_atoms() const { return !maker_.is_null() && !maker_->atoms().empty(); }

  void check_cell() {
    if (!has_atoms()) return;
    const Cell& cell = *maker_->cell();
    try {
      cell_.emplace(cell);
    } catch (const LatticeError& error) {
      find(11, "cell", error.what());
    }
    const auto operators = cell.symmetry_operators();
    if (operators.is_null() || operators->empty()) {
      find(12, "operators", "the atoms have no symmetry operators, so that the cell cannot be filled");
      return;
    }
    const SpaceGroup group(*operators);
    if (group.reason().find("no group") != std::string::npos ||
        group.reason().find("no operator of a crystal") != std::string::npos ||
        group.reason().find("does not keep the volume") != std::string::npos ||
        group.reason().find("different operators") != std::string::npos)
      find(13, "operators", group.reason());
    if (cell_) check_metric(*operators);
  }

  // A rotation keeps all lengths: where it takes the axes, they have the same lengths and angles. The largest
  // misfit is told.
  void check_metric(const std::vector<CrystalSymmetryOperator>& operators) {
    constexpr FractionalCoordinates vectors[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1},
                                                 {1, 1, 0}, {0, 1, 1}, {1, 0, 1}};
    double worst = 0.0;
    std::string by;
    for (const CrystalSymmetryOperator& op : operators) {
      const FractionalCoordinates origin = op.apply({});
      for (const FractionalCoordinates& vector : vectors) {
        const FractionalCoordinates image = op.apply(vector);
        const double before = cell_->length(vector);
        const double after = cell_->length({image.x - origin.x, image.y - origin.y, image.z - origin.z});
        const double misfit = std::abs(after - before) / before;
        if (std::isfinite(misfit) && misfit <= worst) continue;
        worst = std::isfinite(misfit) ? misfit : 1e9;
        by = op.xyz();
      }
    }
    if (worst > 0.01)
      find(14, "operators",
           by + " changes a length of the cell by " + short_text(100.0 * worst) + " percent");
  }

  void check_atoms() {
    if (!has_atoms()) return;
    std::set<std::string> unknown;
    for (std::size_t site = 0; site < maker_->atoms().size(); ++site) {
      const Atom& atom = *maker_->atoms()[site];
      const auto& [x, y, z] = atom.position;
      if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z))
        find(21, "atoms: " + name_of(*maker_, site), "the position is not finite");
      if (atomic_number(atom.element) == 0)
        unknown.insert(name_of(*maker_, site) + " (" + atom.element + ")");
      if (!(atom.occupancy >= 0.0 && atom.occupancy <= 1.0 + 1e-3))
        find(23, "atoms: " + name_of(*maker_, site), "the occupancy is " + short_text(atom.occupancy));
    }
    if (unknown.empty()) return;
    std::string names;
    for (const std::string& name : unknown) names += (names.empty() ? "" : ", ") + name;
    find(22, "atoms: " + names, "the element is not known");
  }

  void pack() {
    if (!has_atoms() || !cell_) return;
    try {
      bonds_.emplace(perceive_bonds(*maker_, bond_options_));
      for (const PackedAtom& atom : bonds_->packed.atoms()) {
        const Atom& site = *maker_->atoms()[atom.site];
        if (atomic_number(site.element) == 0) {
          all_elements_known_ = false;
        } else if (std::isfinite(site.occupancy)) {
          contents_[site.element == "D" || site.element == "T" ? "H" : site.element] += site.occupancy;
        }
      }
      check_distances();
    } catch (const LatticeError&) {
      bonds_.reset();  // told by another number
    } catch (const PerceptionError& crowd) {
      bonds_.reset();
      find(24, "atoms", crowd.what());
    }
  }

  // Half of the sum of the radii is nearer than any bond. Sites that together are taken at most always may
  // share a place, and what is on a place twice is one atom of two elements or listed twice.
  void check_distances() {
    std::vector<double> reaches;
    for (const PackedAtom& atom : bonds_->packed.atoms()) {
      const std::string& element = maker_->atoms()[atom.site]->element;
      // Positions of hydrogen atoms from X-rays are 0.1 to 0.2 Å short.
      reaches.push_back(atomic_number(element) == 1 ? 0.25 : 0.55 * bonding_radius(element));
    }
    std::set<std::pair<std::size_t, std::size_t>> told;
    for (const CrystalBond& pair : neighbours(bonds_->packed, reaches)) {
      const PackedAtom& first = bonds_->packed.atoms()[pair.first];
      const PackedAtom& second = bonds_->packed.atoms()[pair.second];
      const double together =
          maker_->atoms()[first.site]->occupancy + maker_->atoms()[second.site]->occupancy;
      if (together <= 1.02 || are_alternatives(first.site, second.site)) continue;
      if (!told.insert(std::minmax(first.site, second.site)).second) continue;
      find(24, "atoms: " + name_of(*maker_, first.site) + ", " + name_of(*maker_, second.site),
           "they are " + short_text(pair.length) + " Å apart");
    }
  }

  [[nodiscard]] bool are_alternatives(std::size_t first, std::size_t second) const {
    const auto place = [&](std::size_t site) {
      for (const THandle<DisorderSelector>& selector : bond_options_.alternatives)
        if (!selector.is_null())
          for (const THandle<Atom>& atom : selector->atoms)
            if (atom == maker_->atoms()[site]) return std::pair(selector->assembly, selector->group);
      return std::pair<std::string, std::string>();
    };
    const auto one = place(first);
    const auto other = place(second);
    return one != std::pair<std::string, std::string>() && one.first == other.first &&
           (one.second != other.second || one.second.starts_with('-'));
  }

  void check_formula() {
    if (chemical_.is_null() || chemical_->formula.empty()) return;
    formula_ = without_isotopes(formula_counts(chemical_->formula));
    if (formula_.empty()) {
      find(31, "formula: " + chemical_->formula, "it cannot be read");
      return;
    }
    if (contents_.empty() || !all_elements_known_) return;
    std::string difference;
    for (const auto& [element, count] : formula_)
      // Hydrogen atoms are often not found.
      if (count > 0.0 && element != "H" && !contents_.contains(element))
        difference += " no " + element + " among the atoms;";
    for (const auto& [element, count] : contents_)
      if (count > 0.0 && !formula_.contains(element)) difference += " no " + element + " in the formula;";
    if (!difference.empty()) {
      difference.pop_back();
      find(32, "formula: " + chemical_->formula, "there is" + difference);
      return;
    }
    check_ratios();
  }

  void check_ratios() {
    // Without hydrogen, whose atoms are often missing: the ratio to the cell's atoms is that of the others.
    double of_formula = 0.0;
    double of_atoms = 0.0;
    for (const auto& [element, count] : formula_)
      if (element != "H") of_formula += count;
    for (const auto& [element, count] : contents_)
      if (element != "H") of_atoms += count;
    if (of_formula <= 0.0 || of_atoms <= 0.0) return;
    const double units = of_atoms / of_formula;
    std::string difference;
    for (const auto& [element, count] : formula_) {
      if (element == "H") continue;
      const double found = contents_.at(element) / units;
      if (std::abs(found - count) > 0.02 * count + 0.02)
        difference += (difference.empty() ? "" : ", ") + element + " " + short_text(found) + " for " +
                      short_text(count);
    }
    if (!difference.empty()) find(33, "formula: " + chemical_->formula, "the atoms give " + difference);
  }

  [[nodiscard]] bool has_ratio_finding() const {
    return std::any_of(findings_.begin(), findings_.end(),
                       [](const Finding& finding) { return finding.number == 32 || finding.number == 33; });
  }

  void check_contents() {
    if (!cell_ || formula_.empty() || crystal_.is_null()) return;
    const double z = crystal_->z;
    if (z > 0.0 && !contents_.empty() && all_elements_known_ && !has_ratio_finding()) {
      Counts heavy = formula_;
      Counts found = contents_;
      heavy.erase("H");
      found.erase("H");
      const double wanted = z * atoms_in(heavy);
      if (wanted > 0.0 && std::abs(atoms_in(found) - wanted) > 0.02 * wanted + 0.02)
        find(42, "Z",
             "Z = " + short_text(z) + " and the formula give " + short_text(wanted) +
                 " atoms without hydrogen, the cell holds " + short_text(atoms_in(found)));
    }
    check_density(z);
    check_molecules(z);
  }

  void check_density(double z) {
    if (experimental_.is_null() || z <= 0.0) return;
    double mass = 0.0;
    for (const auto& [element, count] : formula_) mass += count * atomic_weight(atomic_number(element));
    const double density = z * mass * 1.66053906660 / cell_->volume();
    const auto compare = [&](const char* which, double said, double tolerance) {
      if (said > 0.0 && std::abs(said - density) > tolerance * density)
        find(41, which,
             "it is " + short_text(said) + " g/cm³; formula, Z and cell give " + short_text(density));
    };
    compare("calculated density", experimental_->calculated_density, 0.02);
    compare("experimental density", experimental_->experimental_density, 0.12);
  }

  void check_molecules(double z) {
    if (!bonds_ || z <= 0.0) return;
    const std::vector<Molecule> list = molecules(*maker_, *bonds_);
    std::map<std::string, std::size_t> counts;
    for (const Molecule& molecule : list) {
      // Atoms alone are ions or metals, whose number says nothing.
      if (molecule.dimension > 0 || molecule.atoms.size() < 2) return;
      ++counts[molecule.formula];
    }
    if (counts.size() != 1) return;
    // One kind of molecule: its formula is that of the compound, so that Z is their number.
    const Counts one = without_isotopes(formula_counts(counts.begin()->first));
    if (one != formula_) return;
    const auto found = static_cast<double>(counts.begin()->second);
    if (std::abs(found - z) > 0.01)
      find(43, "Z",
           "Z = " + short_text(z) + ", the cell holds " + short_text(found) + " molecules " +
               counts.begin()->first);
  }

  void check_bonds() {
    if (!bonds_ || geometry_.is_null() || geometry_->bonds.is_null()) return;
    std::map<const Atom*, std::size_t> sites;
    for (std::size_t site = 0; site < maker_->atoms().size(); ++site)
      sites[maker_->atoms()[site].get()] = site;
    // All distances between two sites up to 4 Å that occur, sorted as they come.
    std::map<std::pair<std::size_t, std::size_t>, std::vector<double>> near, bonded;
    const auto key = [&](const CrystalBond& pair) {
      return std::minmax(bonds_->packed.atoms()[pair.first].site, bonds_->packed.atoms()[pair.second].site);
    };
    try {
      for (const CrystalBond& pair :
           neighbours(bonds_->packed, std::vector<double>(bonds_->packed.atoms().size(), 2.0)))
        near[key(pair)].push_back(pair.length);
    } catch (const PerceptionError&) {
      return;  // crowded: told already
    }
    for (const CrystalBond& bond : bonds_->bonds) bonded[key(bond)].push_back(bond.length);
    const auto nearest = [](const std::vector<double>& lengths, double wanted) {
      double best = 1e9;
      for (const double length : lengths)
        if (std::abs(length - wanted) < std::abs(best - wanted)) best = length;
      return best;
    };
    for (const THandle<PublishedBond>& bond : *geometry_->bonds) {
      if (bond.is_null() || bond->first_atom.is_null() || bond->second_atom.is_null()) continue;
      const auto first = sites.find(bond->first_atom.get());
      const auto second = sites.find(bond->second_atom.get());
      const double length = bond->length.value();
      if (first == sites.end() || second == sites.end() || !(length > 0.0 && length < 3.9)) continue;
      const std::pair<std::size_t, std::size_t> ends = std::minmax(first->second, second->second);
      const std::string where =
          "bonds: " + name_of(*maker_, ends.first) + "-" + name_of(*maker_, ends.second);
      const double tolerance = 0.02 + 4.0 * std::min(std::abs(bond->length.standard_uncertainty()), 0.1);
      const double found = near.contains(ends) ? nearest(near.at(ends), length) : 1e9;
      if (std::abs(found - length) > tolerance) {
        find(51, where,
             "the published length is " + short_text(length) + " Å, " +
                 (found < 1e8 ? "the nearest of the positions " + short_text(found) + " Å"
                              : "the positions are farther apart"));
      } else if (!bonded.contains(ends) && is_a_bond(*bond->first_atom, *bond->second_atom)) {
        find(52, where, "a bond of " + short_text(length) + " Å is published and none is perceived");
      }
    }
  }

  // Lists of bonds hold hydrogen bonds and contacts of hydrogen atoms too.
  static bool is_a_bond(const Atom& first, const Atom& second) {
    return atomic_number(first.element) > 1 && atomic_number(second.element) > 1;
  }

  void check_texts() {
    if (!editors_.is_null() && editors_->modification_date != Date() && editors_->accession_date != Date() &&
        editors_->modification_date < editors_->accession_date)
      find(61, "dates", "it was modified before it was accessed");
    if (!publication_.is_null()) {
      const int year = publication_->year;
      if (year != 0 && (year < 1912 || (options_.year > 0 && year > options_.year + 1)))
        find(62, "publication", "the year is " + std::to_string(year));
      check_journal(publication_->journal);
    }
    if (!references_.is_null() && options_.is_there) check_references();
  }

  // The list knows the number's title and international CODEN; 1 stands for a journal that is not in the
  // list.
  void check_journal(const Journal& journal) {
    if (journal.coden() < 1 || journal.coden() >= Journal::max_vorn_coden()) return;
    const Journal listed(journal.coden());
    if (journal.name() != listed.name() && !journal.name().empty())
      find(63, "journal",
           "number " + std::to_string(journal.coden()) + " is " + listed.name() + ", not " + journal.name());
    else if (journal.international_coden() != listed.international_coden() &&
             !journal.international_coden().empty())
      find(63, "journal",
           "the CODEN of " + listed.name() + " is " + listed.international_coden() + ", not " +
               journal.international_coden());
  }

  void check_references() {
    std::vector<DatabaseEntryIdentifier> related;
    references_->cross_related_identifiers(related);
    std::set<std::string> missing;
    for (const DatabaseEntryIdentifier& identifier : related)
      if (!options_.is_there(identifier)) missing.insert(identifier.text());
    for (const std::string& identifier : missing)
      find(71, "references: " + identifier, "there is no entry of that identifier");
  }

  CheckOptions options_;
  THandle<CrystalMaker> maker_;
  THandle<ChemicalInfo> chemical_;
  THandle<CrystalInfo> crystal_;
  THandle<ExperimentalInfo> experimental_;
  THandle<EditorsInfo> editors_;
  THandle<Publication> publication_;
  THandle<CrossReferenceInfo> references_;
  BondOptions bond_options_;
  THandle<PublishedGeometry> geometry_;
  std::optional<CellGeometry> cell_;
  std::optional<CrystalBonds> bonds_;
  Counts contents_;  // of the cell, with occupancies
  bool all_elements_known_ = true;
  Counts formula_;
  std::vector<Finding> findings_;
};

// Elements except hydrogen, whose atoms are often missing, with how many a primitive cell holds.
std::map<std::string, double> primitive_contents(const CrystalMaker& maker, const ReducedCell& reduced) {
  const PackedCrystal packed(maker);
  std::map<std::string, double> counts;
  const double share = reduced.volume() / packed.geometry().volume();
  for (const PackedAtom& atom : packed.atoms()) {
    const Atom& site = *maker.atoms()[atom.site];
    if (atomic_number(site.element) != 1 && std::isfinite(site.occupancy))
      counts[site.element] += site.occupancy * share;
  }
  return counts;
}

}  // namespace

std::vector<Finding> check_entry(const CrystalStructureDatabaseEntry& entry, const CheckOptions& options) {
  return Check(entry, options).run();
}

std::vector<Finding> DuplicateSearch::add(const CrystalStructureDatabaseEntry& entry) {
  constexpr double percent = 1.0;
  std::vector<Finding> findings;
  const THandle<CrystalMaker> maker = entry.crystal_maker();
  if (maker.is_null() || maker->atoms().empty()) return findings;
  try {
    const ReducedCell cell(*maker->cell());
    const std::map<std::string, double> contents = primitive_contents(*maker, cell);
    std::string elements;
    std::vector<double> counts;
    for (const auto& [element, count] : contents) {
      elements += element + ' ';
      counts.push_back(count);
    }
    const auto operators = maker->cell()->symmetry_operators();
    const int group = operators.is_null() ? 0 : SpaceGroup(*operators).number();
    const LatticeSearch search(cell.geometry(), percent);
    std::vector<Known>& others = by_composition_[elements];
    for (const Known& known : others) {
      const bool same =
          std::equal(counts.begin(), counts.end(), known.counts.begin(),
                     [](double left, double right) { return std::abs(left - right) <= 0.02 * left + 0.01; });
      const bool other_group = group != 0 && known.space_group != 0 && group != known.space_group;
      if (same && !other_group && search.finds(known.cell))
        findings.push_back(
            {81, "entry " + known.identifier, "it has the same lattice, composition and space group"});
    }
    others.push_back({entry.identifier().text(), cell, group, std::move(counts)});
  } catch (const LatticeError&) {
    findings.clear();  // told by check_entry
  }
  return findings;
}
