#include <perception/bond_types.h>
#include <perception/bonds.h>
#include <perception/components.h>
#include <perception/diagram.h>
#include <perception/disorder.h>
#include <perception/elements.h>
#include <perception/entry_bonds.h>
#include <perception/molecules.h>
#include <perception/perception_error.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

namespace {

bool is_perceived(const EditorsInfo& info) {
  return info.connectivity_comment.find(perceived_comment) != std::string::npos;
}

// Groups 1 and 2 from sodium and magnesium on: ions among molecules, whatever the distances.
bool makes_ions(int number) {
  for (const int ion : {3, 11, 12, 19, 20, 37, 38, 55, 56, 87, 88})
    if (number == ion) return true;
  return false;
}

bool all_finite(const std::vector<Molecule>& list) {
  return std::all_of(list.begin(), list.end(),
                     [](const Molecule& molecule) { return molecule.dimension == 0; });
}

// A salt of molecules: without the bonds of its alkali and alkaline earth atoms it is finite, and some of
// what is left is organic.
std::vector<Molecule> perceived_molecules(const CrystalMaker& maker, CrystalBonds& crystal,
                                          const std::vector<bool>& hidden) {
  std::vector<Molecule> list = molecules(maker, crystal, hidden);
  if (all_finite(list)) return list;
  CrystalBonds without{crystal.packed, crystal.bonds};
  const auto is_ion = [&](std::size_t atom) {
    return makes_ions(atomic_number(maker.atoms()[crystal.packed.atoms()[atom].site]->element));
  };
  std::erase_if(without.bonds,
                [&](const CrystalBond& bond) { return is_ion(bond.first) || is_ion(bond.second); });
  if (without.bonds.size() == crystal.bonds.size()) return list;
  std::vector<Molecule> finite = molecules(maker, without, hidden);
  const bool organic = std::any_of(finite.begin(), finite.end(), [](const Molecule& molecule) {
    return molecule.formula.starts_with("C") && molecule.formula.find(" H") != std::string::npos &&
           molecule.atoms.size() > 3;
  });
  if (!organic || !all_finite(finite)) return list;
  crystal = std::move(without);
  return finite;
}

class Perceiving {
 public:
  Perceiving(const CrystalStructureDatabaseEntry& entry, const PerceptionOptions& options)
      : options_(options), bond_options_(bond_options_of(entry)) {
    for_each_component([&](auto component) { handles_[component] = component.get(entry); });
    identifier_ = entry.identifier();
  }

  PerceivedEntry run() && {
    perceive();
    name_category();
    return {CrystalStructureImmediateDatabaseEntry::from(identifier_, handles_), std::move(report_)};
  }

 private:
  template <ComponentKind kind>
  auto& handle() {
    return handles_[component_row<kind>];
  }

  void perceive() {
    const THandle<CrystalMaker> maker = handle<ComponentKind::crystal_maker>();
    if (maker.is_null() || maker->atoms().empty()) {
      report_.notes.emplace_back("there are no atoms");
      return;
    }
    for (const THandle<Atom>& atom : maker->atoms()) {
      if (atom.is_null()) {
        report_.notes.emplace_back("an atom is missing");
        return;
      }
    }
    try {
      CrystalBonds crystal = perceive_bonds(*maker, bond_options_);
      const std::vector<Molecule> list = perceived_molecules(
          *maker, crystal, sites_not_shown(*maker, crystal.packed, bond_options_.alternatives));
      report_.bonds = crystal.bonds.size();
      count_moieties(*maker, list);
      connect(*maker, crystal, list);
    } catch (const std::invalid_argument& refusal) {
      report_.notes.emplace_back(refusal.what());
    }
  }

  void count_moieties(const CrystalMaker& maker, const std::vector<Molecule>& list) {
    std::map<std::pair<int, std::string>, std::size_t> counts;
    for (const Molecule& molecule : list) ++counts[{molecule.dimension, molecule.formula}];
    std::size_t units = 0;
    for (const auto& [kind, count] : counts) {
      report_.moieties.push_back({kind.second, kind.first, count});
      units = std::gcd(units, count);
    }
    if (!all_finite(list)) return;
    const auto operators = maker.cell()->symmetry_operators();
    report_.z = static_cast<double>(units);
    if (!operators.is_null() && !operators->empty())
      report_.z_prime = report_.z / static_cast<double>(operators->size());
  }

  // Whether a connectivity, perceived anew, may take the place of what there is.
  [[nodiscard]] bool may_connect() {
    const THandle<ConnectivityInfo> known = handle<ComponentKind::connectivity_info>();
    if (known.is_null() || known->connectivity()->atoms.empty()) return true;
    const THandle<EditorsInfo> editors = handle<ComponentKind::editors_info>();
    if (!editors.is_null() && is_perceived(*editors)) return true;
    report_.notes.emplace_back("the entry has a connectivity, which is kept");
    return false;
  }

  void connect(const CrystalMaker& maker, const CrystalBonds& crystal, const std::vector<Molecule>& list) {
    if (!may_connect()) return;
    const bool finite = all_finite(list);
    if (!finite && !options_.frameworks) {
      report_.notes.emplace_back(
          "there are chains, layers or frameworks: no connectivity, unless it is asked for");
      return;
    }
    const bool bonded = std::any_of(list.begin(), list.end(),
                                    [](const Molecule& molecule) { return !molecule.bonds.empty(); });
    if (!bonded && !options_.frameworks) {
      report_.notes.emplace_back("no atom is bonded to another one: no connectivity, unless it is asked for");
      return;
    }
    const THandle<Connectivity> connectivity(new Connectivity);
    const THandle<ChemicalDiagram> diagram(new ChemicalDiagram);
    const THandle<CrystalDiagramMatch> crystal_diagram(new CrystalDiagramMatch);
    const THandle<ConnectivityDiagramMatch> connectivity_diagram(new ConnectivityDiagramMatch);
    const THandle<CrystalConnectivityMatch> crystal_connectivity(new CrystalConnectivityMatch);
    bool drawn = options_.draw && finite;
    if (options_.draw && !finite) report_.notes.emplace_back("what is no molecule is not drawn");
    double right = 0.0;
    for (const MoleculeCount& independent : independent_molecules(list)) {
      const Molecule& molecule = list[independent.molecule];
      MoleculeShape shape;
      std::vector<THandle<Atom>> sites;
      for (const MoleculeAtom& atom : molecule.atoms) {
        sites.push_back(maker.atoms()[crystal.packed.atoms()[atom.atom].site]);
        shape.elements.push_back(sites.back()->element.empty() ? "X" : sites.back()->element);
        shape.places.push_back(atom.place);
      }
      for (const MoleculeBond& bond : molecule.bonds) shape.bonds.push_back({bond.first, bond.second});
      MoleculeTypes types = perceive_bond_types(shape);
      if (molecule.dimension > 0) {
        // The places beyond the repeat are not those of the list, so that neither lengths nor angles speak.
        types.bonds.assign(shape.bonds.size(), BondType::unknown);
        types.orders.assign(shape.bonds.size(), 0);
        types.charges.assign(shape.elements.size(), 0);
        types.hydrogen_counts.assign(shape.elements.size(), 0);
      }
      const std::size_t first = connectivity->atoms.size();
      for (std::size_t i = 0; i < sites.size(); ++i) {
        const THandle<ConnectivityAtom> made(new ConnectivityAtom);
        made->element = shape.elements[i];
        made->label = sites[i]->label;
        made->charge = types.charges[i];
        made->hydrogen_count = types.hydrogen_counts[i];
        connectivity->atoms.push_back(made);
        crystal_connectivity->atoms.emplace_back(sites[i], made);
      }
      std::vector<THandle<Bond>> bonds;
      const std::size_t first_bond = connectivity->bonds.size();
      for (std::size_t i = 0; i < shape.bonds.size(); ++i) {
        const auto& [one, other] = shape.bonds[i];
        bonds.emplace_back(new Bond{sites[one], sites[other], types.bonds[i]});
        connectivity->bonds.emplace_back(new ConnectivityBond{
            connectivity->atoms[first + one], connectivity->atoms[first + other], types.bonds[i]});
        crystal_connectivity->bonds.emplace_back(bonds.back(), connectivity->bonds.back());
      }
      if (!drawn) continue;
      if (shape.elements.size() > options_.most_drawn_atoms) {
        report_.notes.push_back("a molecule of " + std::to_string(shape.elements.size()) +
                                " atoms is not drawn: more than " +
                                std::to_string(options_.most_drawn_atoms));
        drawn = false;
        continue;
      }
      try {
        const DrawnMolecule drawing = draw_diagram(shape, types);
        double most = right;
        for (std::size_t i = 0; i < drawing.atoms.size(); ++i) {
          const THandle<DiagramAtom>& atom = drawing.diagram.atoms[i];
          atom->x += right;
          most = std::max(most, atom->x);
          diagram->atoms.push_back(atom);
          crystal_diagram->atoms.emplace_back(sites[drawing.atoms[i]], atom);
          connectivity_diagram->atoms.emplace_back(connectivity->atoms[first + drawing.atoms[i]], atom);
        }
        for (std::size_t i = 0; i < drawing.bonds.size(); ++i) {
          const THandle<DiagramBond>& bond = drawing.diagram.bonds[i];
          diagram->bonds.push_back(bond);
          crystal_diagram->bonds.emplace_back(bonds[drawing.bonds[i]], bond);
          connectivity_diagram->bonds.emplace_back(connectivity->bonds[first_bond + drawing.bonds[i]], bond);
        }
        right = most + 2.0;
      } catch (const PerceptionError& failure) {
        report_.notes.emplace_back(failure.what());
        drawn = false;
      }
    }
    fill<ComponentKind::connectivity_info>(THandle<ConnectivityInfo>(new ConnectivityInfo(connectivity)));
    fill<ComponentKind::crystal_connectivity_match>(crystal_connectivity);
    comment();
    if (!drawn) return;
    fill<ComponentKind::chemical_diagram>(diagram);
    fill<ComponentKind::crystal_diagram_match>(crystal_diagram);
    fill<ComponentKind::connectivity_diagram_match>(connectivity_diagram);
  }

  template <ComponentKind kind, class Component>
  void fill(const THandle<Component>& component) {
    handle<kind>() = component;
    report_.filled.emplace_back(component_row<kind>.name);
  }

  // A record of its own: others may share the old one.
  EditorsInfo& own_editors_info() {
    THandle<EditorsInfo>& info = handle<ComponentKind::editors_info>();
    info = THandle<EditorsInfo>(info.is_null() ? new EditorsInfo : new EditorsInfo(*info));
    return *info;
  }

  void comment() {
    const THandle<EditorsInfo>& editors = handle<ComponentKind::editors_info>();
    if (!editors.is_null() && is_perceived(*editors)) return;
    std::string& text = own_editors_info().connectivity_comment;
    text += (text.empty() ? "" : "; ") + std::string(perceived_comment);
  }

  void name_category() {
    const THandle<EditorsInfo> editors = handle<ComponentKind::editors_info>();
    if (!editors.is_null() && editors->category != EditorsInfo::unknown) return;
    const THandle<CrystalMaker> maker = handle<ComponentKind::crystal_maker>();
    const bool has_cell = !maker.is_null() && maker->cell()->volume() > 0.0;
    if (!has_cell) return;
    own_editors_info().category =
        maker->atoms().empty() ? EditorsInfo::unit_cell_only : EditorsInfo::full_structure;
    report_.filled.emplace_back("editors_info.category");
  }

  PerceptionOptions options_;
  BondOptions bond_options_;
  DatabaseEntryIdentifier identifier_;
  ComponentHandles handles_;
  PerceptionReport report_;
};

// The bonds of both sides lead from counterpart to counterpart, and elements are equal.
template <class Match>
std::vector<std::string> objections(const Match& match) {
  std::vector<std::string> texts;
  using First = decltype(match.atoms.front().first.get());
  using Second = decltype(match.atoms.front().second.get());
  // An atom of the crystal may have several counterparts: its images in one molecule.
  std::multimap<First, Second> counterparts;
  for (const auto& [first, second] : match.atoms) {
    if (first.is_null() || second.is_null()) {
      texts.emplace_back("an atom is missing");
      continue;
    }
    const std::string element = first->element.empty() ? "X" : first->element;
    const std::string other = second->element.empty() ? "X" : second->element;
    if (element != other) texts.push_back(first->label + ": " + element + " is matched with " + other);
    counterparts.emplace(first.get(), second.get());
  }
  const auto match_each_other = [&](First first, Second second) {
    const auto [begin, end] = counterparts.equal_range(first);
    return std::any_of(begin, end, [&](const auto& pair) { return pair.second == second; });
  };
  for (const auto& [first, second] : match.bonds) {
    if (first.is_null() || second.is_null()) {
      texts.emplace_back("a bond is missing");
      continue;
    }
    const bool same = match_each_other(first->first.get(), second->first.get()) &&
                      match_each_other(first->second.get(), second->second.get());
    const bool turned = match_each_other(first->first.get(), second->second.get()) &&
                        match_each_other(first->second.get(), second->first.get());
    if (!same && !turned)
      texts.push_back("the bond " + first->first->label + "-" + first->second->label +
                      " is matched with one between other atoms");
  }
  return texts;
}

}  // namespace

PerceivedEntry perceive_components(const CrystalStructureDatabaseEntry& entry,
                                   const PerceptionOptions& options) {
  return Perceiving(entry, options).run();
}

std::vector<std::string> objections_to(const CrystalConnectivityMatch& match) {
  return objections(match);
}
std::vector<std::string> objections_to(const ConnectivityDiagramMatch& match) {
  return objections(match);
}
std::vector<std::string> objections_to(const CrystalDiagramMatch& match) {
  return objections(match);
}
