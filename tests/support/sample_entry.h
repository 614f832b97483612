// A full entry, its archive bytes and its summary; the latter two are put together by hand.
#pragma once

#include <database_entry/entries/crystal_structure_immediate_database_entry.h>

#include <string>
#include <vector>

#include "support/stored_samples.h"

template <class T>
THandle<T> handle_to(const T& value) {
  return THandle<T>(new T(value));
}

// Every component is there.
inline CrystalStructureImmediateDatabaseEntry sample_entry() {
  const auto operators = handle_to(
      std::vector<CrystalSymmetryOperator>{CrystalSymmetryOperator(), CrystalSymmetryOperator("-x,-y,-z")});
  const auto cell = handle_to(Cell(10.0, 11.0, 12.0, 90.0, 91.0, 92.0, operators));
  const auto atom = handle_to(Atom{"C1", "C", {0.1, 0.2, 0.3}, 0.5});

  const auto carbon = handle_to(ConnectivityAtom{"C", "C1", -1, 3});
  const auto nitrogen = handle_to(ConnectivityAtom{"N", "N1", 1, 0});
  Connectivity connectivity;
  connectivity.atoms = {carbon, nitrogen};
  connectivity.bonds = {handle_to(ConnectivityBond{carbon, nitrogen, BondType::double_bond})};

  ChemicalInfo chemical;
  chemical.formula = "C1 N1";
  chemical.classifiers = {ChemicalClassification(ChemicalClassification::steroid)};
  chemical.synonyms = {"one", "two"};

  CrystalInfo crystal;
  crystal.z = 4.0;
  crystal.color = "red";

  ExperimentalInfo experimental;
  experimental.temperature = 295.0;
  experimental.probe = ExperimentalInfo::neutron;

  EditorsInfo editors;
  editors.accession_date = Date(2003, 5, 17);
  editors.batch = 9;

  CrossReferenceInfo references;
  references.insert(DatabaseCrossReference(DatabaseCrossReference::racemate, "[GHIJKL]"));

  DepositionInfo depositions;
  depositions.set_text(DepositionInfo::vorn, "VORN 7");

  return CrystalStructureImmediateDatabaseEntry(
      DatabaseEntryIdentifier("ABCDEF"), handle_to(CrystalMaker(cell, {atom})), handle_to(Cell(*cell)),
      handle_to(Publication({"A.Author"}, Journal(4), "12", 1999, "34")), handle_to(experimental),
      handle_to(editors), handle_to(chemical), handle_to(crystal), handle_to(ChemicalDiagram()),
      handle_to(ConnectivityInfo(handle_to(connectivity))), handle_to(CrystalDiagramMatch()),
      handle_to(ConnectivityDiagramMatch()), handle_to(CrystalConnectivityMatch()), handle_to(references),
      handle_to(depositions), handle_to(DisorderSelectors()), handle_to(PublishedGeometry()));
}

// An entry without any component.
inline CrystalStructureImmediateDatabaseEntry empty_entry() {
  return CrystalStructureImmediateDatabaseEntry(DatabaseEntryIdentifier(), {}, {}, {}, {}, {}, {}, {}, {}, {},
                                                {}, {}, {}, {}, {}, {}, {});
}

// The eleven items of the sample entry as an archive has them.
inline std::vector<std::string> sample_items() {
  const std::string identity = bytes(int32(1), int32(0), int32(0), int32(0), int32(1), int32(0), int32(0),
                                     int32(0), int32(1), float64(0), float64(0), float64(0));
  const std::string inversion = bytes(int32(-1), int32(0), int32(0), int32(0), int32(-1), int32(0), int32(0),
                                      int32(0), int32(-1), float64(0), float64(0), float64(0));
  const std::string cell = bytes(float64(10), float64(11), float64(12), float64(90), float64(91), float64(92),
                                 int32(2), identity, inversion);
  const std::string atom =
      bytes(text("C1"), text("C"), float64(0.1), float64(0.2), float64(0.3), float64(0.5));
  return {
      text("ABCDEF"),
      // crystal maker, cell
      bytes(cell, int32(1), atom),
      cell,
      // publication: the journal's name, number and CODEN; authors, volume, year, page
      bytes(journal_layout().bytes(), int32(1), text("A.Author"), text("12"), int32(1999), text("34")),
      // experimental: temperature, its text, pressure, densities, R-factor; the range; probe, source,
      // absolute configuration, diffraction, powder, refinement, intensities
      bytes(float64(295), text(""), text(""), float64(0), float64(0), float64(0), int32(0), int32(0),
            float64(0), float64(0), int32(2), text(""), boolean(false), text(""), int32(0), text(""),
            int32(0)),
      // editors: two dates, category, tolerance, refcode, match flag, comment, batch, memo, remarks,
      // correspondence, ignored errors
      bytes(int32(2003), int32(5), int32(17), int32(0), int32(0), int32(0), int32(0), float64(0), text(""),
            int32(-1), text(""), int32(9), text(""), text(""), int32(0), int32(0)),
      // chemical: formula, name, bioactivity, conformer, source, peptide, isomer, classifiers, synonyms
      bytes(text("C1 N1"), text(""), text(""), text(""), text(""), text(""), text(""), int32(1), int32(6),
            int32(2), text("one"), text("two")),
      // crystal: Z, Z', color and ten more texts
      bytes(float64(4), float64(0), text("red"), text(""), text(""), text(""), text(""), text(""), text(""),
            text(""), text(""), text(""), text("")),
      // connectivity: atoms, bonds by position
      bytes(int32(2), text("C"), text("C1"), int32(-1), int32(3), text("N"), text("N1"), int32(1), int32(0),
            int32(1), int32(0), int32(1), int32(2)),
      // cross-references, depositions
      bytes(int32(1), int32(1), text("[GHIJKL]")),
      bytes(int32(1), int32(0), text("VORN 7")),
  };
}

inline std::string joined(const std::vector<std::string>& items, std::size_t count) {
  std::string all;
  for (std::size_t index = 0; index < count; ++index) all += items[index];
  return all;
}

inline std::string sample_bytes() {
  return joined(sample_items(), 11);
}

inline std::string archived(const CrystalStructureImmediateDatabaseEntry& entry) {
  return written([&](Archive& archive) { entry.write(archive); });
}

inline const std::string sample_text =
    "identifier: ABCDEF\n"
    "crystal maker:\n"
    "cell: a: 10, b: 11, c: 12, alpha: 90, beta: 91, gamma: 92, symmetry operators: 2, atoms: 1\n"
    "publication:\n"
    "A.Author, J.Am.Chem.Soc., 12, 34, 1999\n"
    "experimental info:\n"
    "temperature (K): 295, temperature text: , pressure: , experimental density: 0, calculated density: 0, "
    "R-factor: 0, mean_cc_bond_sigma: 0000, probe: 2, radiation source: , absolute configuration: 0, "
    "diffraction details: , powder: 0, refinement details: , intensity method: 0"
    "editors info:\n"
    "accession date: 2003-05-17, modification date: 0000-00-00, category: 0, bonding_tolerance: 0, previous "
    "refcode: , aser_match_flag: -1, connectivity_comment: , batch: 9, memo: , remarks: , author "
    "correspondence: 0, ignored errors: 0"
    "chemical info:\n"
    "formula: C1 N1, name: , bioactivity: , conformer: , source: , peptide_sequence: , isomer: , "
    "classifiers: "
    "0: Steroid\t, synonyms: 0: one\t1: two\t\n"
    "crystal info:\n"
    "Z: 4, Z': 0, color: red, habit: , analogues: , melting_point: , notes: , phase_transitions: , "
    "polymorph: , "
    "sensitivity: , recrystallisation_solvent: , disorder_details: , other_cell_details: \n"
    "chemical diagram:\n"
    "diagram atoms: 0, diagram bonds: 0\n"
    "connectivity info:\n"
    "atoms: 2, bonds: 1\n"
    "cross reference info:\n"
    "Cross References: type: 1text: [GHIJKL] deposition info:\n"
    "0: 0: VORN 7\t";

inline const std::string empty_text =
    "identifier: \n"
    "crystal maker: <zero handle>\n"
    "publication: <zero handle>\n"
    "experimental info: <zero handle>\n"
    "editors info: <zero handle>\n"
    "chemical info: <zero handle>\n"
    "crystal info: <zero handle>\n"
    "chemical diagram: <zero handle>\n"
    "connectivity info: <zero handle>\n"
    "cross reference info: <zero handle>\n"
    "deposition info: <zero handle>\n";

// Calls `visit` with the row of each component that has a setter.
template <class Visit>
void for_each_setter(const Visit& visit) {
  for_each_component([&](auto component) {
    if constexpr (component.has_setter) visit(component);
  });
}
