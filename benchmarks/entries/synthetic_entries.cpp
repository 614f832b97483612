#include "entries/synthetic_entries.h"

#include "entries/plain_archive.h"
#include "support/random_text.h"

namespace {

class Generator {
 public:
  explicit Generator(EntryForm form) : form_(form) {}

  plain::Entry entry() {
    plain::Entry entry;
    entry.identifier = joined(random_.letters(6), random_.one_in(2) ? random_.digits(2) : "");
    entry.cell = cell();
    entry.crystal_maker.cell = entry.cell;
    if (form_ == EntryForm::with_atoms) entry.crystal_maker.atoms = atoms();
    entry.publication = publication();
    entry.experimental_info = experimental_info();
    entry.editors_info = editors_info();
    entry.chemical_info = chemical_info();
    entry.crystal_info = crystal_info();
    if (form_ == EntryForm::with_atoms) entry.connectivity = connectivity();
    entry.cross_references = cross_references();
    entry.depositions = depositions();
    return entry;
  }

 private:
  // Most notes of most entries are empty.
  std::string note() { return random_.one_in(4) ? random_.words(1 + random_.below(4)) : ""; }

  plain::Cell cell() {
    plain::Cell cell = {
        random_.real(3, 30), random_.real(3, 30), random_.real(3, 30), 90, random_.real(90, 120), 90, {}};
    std::size_t count = 4 * random_.below(6) + 3;
    if (form_ == EntryForm::small) count = 5;
    for (; count > 0; --count) {
      cell.operators.push_back({{1, 0, 0, 0, -1, 0, 0, 0, 1}, {0.0, 0.5, random_.real(0, 1)}});
    }
    return cell;
  }

  // In the order of the set that the library reads them into.
  std::vector<plain::TypedText> cross_references() {
    std::vector<plain::TypedText> references;
    for (std::int32_t type = 1; type <= 6; ++type) {
      const std::string text = joined(random_.words(1), " [", random_.letters(6), "]");
      if (!random_.one_in(8)) references.push_back({type, text});
    }
    return references;
  }

  std::vector<plain::TypedText> depositions() {
    std::vector<plain::TypedText> depositions = {{0, joined("VORN ", random_.digits(6))}};
    for (std::int32_t type = 1; type <= 11; ++type) {
      if (!random_.one_in(8)) depositions.push_back({type, joined(random_.letters(2), random_.digits(5))});
    }
    return depositions;
  }

  std::vector<plain::Atom> atoms() {
    std::vector<plain::Atom> atoms;
    const int count = random_.between(10, 60);
    for (int index = 0; index < count; ++index) {
      const std::string element = random_.one_in(2) ? "C" : "H";
      atoms.push_back({joined(element, std::to_string(index)), element, random_.real(0, 1),
                       random_.real(0, 1), random_.real(0, 1), 1.0});
    }
    return atoms;
  }

  plain::Publication publication() {
    plain::Publication publication;
    publication.journal = {"J.Am.Chem.Soc.", 4, "JACSAT"};
    const int authors = random_.between(2, 12);
    for (int author = 0; author < authors; ++author)
      publication.authors.push_back(joined(random_.letters(1), ".", random_.words(1)));
    publication.volume = random_.digits(2);
    publication.year = random_.between(1950, 2006);
    publication.page = random_.digits(4);
    return publication;
  }

  plain::ExperimentalInfo experimental_info() {
    plain::ExperimentalInfo info;
    info.temperature = random_.real(100, 300);
    info.temperature_text = random_.one_in(4) ? joined("at ", random_.digits(3), " K") : "";
    info.pressure = note();
    info.experimental_density = random_.real(1, 3);
    info.calculated_density = random_.real(1, 3);
    info.r_factor = random_.real(0.02, 0.1);
    info.mean_cc_bond_sigma = {0, 1, 0.001, 0.005};
    info.probe = 1;
    info.radiation_source = "Mo K-alpha";
    info.absolute_configuration = random_.one_in(8);
    info.diffraction_details = note();
    info.powder = 1;
    info.refinement_details = note();
    info.intensity_method = 3;
    return info;
  }

  plain::Date date() { return {random_.between(1970, 2006), random_.between(1, 12), random_.between(1, 28)}; }

  plain::EditorsInfo editors_info() {
    plain::EditorsInfo info;
    info.accession_date = date();
    info.modification_date = date();
    info.category = 3;
    info.bonding_tolerance = 0.4;
    info.previous_refcode = random_.one_in(8) ? random_.letters(6) : "";
    info.aser_match_flag = 3;
    info.connectivity_comment = note();
    info.batch = random_.between(1, 900);
    info.memo = note();
    info.remarks = note();
    return info;
  }

  plain::ChemicalInfo chemical_info() {
    plain::ChemicalInfo info;
    info.formula = joined("C", random_.digits(2), " H", random_.digits(2), " N", random_.digits(1), " O",
                          random_.digits(1));
    info.name = random_.words(3);
    info.bioactivity = note();
    info.conformer = note();
    info.source = note();
    info.peptide_sequence = note();
    info.isomer = note();
    if (random_.one_in(4)) info.classifiers = {random_.between(1, 11)};
    for (std::size_t count = random_.below(21); count > 0; --count) info.synonyms.push_back(random_.words(2));
    return info;
  }

  plain::CrystalInfo crystal_info() {
    plain::CrystalInfo info;
    info.z = 4;
    info.z_prime = 1;
    info.color = "colourless";
    info.habit = "needle";
    for (std::string* text : {&info.analogues, &info.melting_point, &info.notes, &info.phase_transitions,
                              &info.polymorph, &info.sensitivity, &info.recrystallisation_solvent,
                              &info.disorder_details, &info.other_cell_details}) {
      *text = note();
    }
    return info;
  }

  plain::Connectivity connectivity() {
    plain::Connectivity connectivity;
    const int count = random_.between(10, 34);
    for (int atom = 0; atom < count; ++atom) {
      const std::string element = random_.one_in(2) ? "C" : "H";
      connectivity.atoms.push_back({element, joined(element, std::to_string(atom)), 0, 0});
      if (atom > 0) connectivity.bonds.push_back({random_.between(0, atom - 1), atom, 1});
    }
    return connectivity;
  }

  RandomText random_{1965};
  EntryForm form_;
};

}  // namespace

StoredEntries synthetic_entries(std::size_t count, EntryForm form) {
  Generator generator(form);
  StoredEntries entries;
  for (std::size_t index = 0; index < count; ++index) {
    plain::write_entry(generator.entry(), entries.bytes);
    entries.ends.push_back(entries.bytes.size());
  }
  return entries;
}
