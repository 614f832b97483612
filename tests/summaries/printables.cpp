#include "printables.h"

#include <database_entry/database_entry.h>
#include <database_entry/entries/components.h>
#include <utilities/test_suite_helpers.h>

#include "support/bytes.h"

namespace {

template <class T>
THandle<T> handle_to(const T& value) {
  return THandle<T>(new T(value));
}

Pieces operator+(Pieces left, const Pieces& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

const std::string name = "C1";
const THandle<Atom> atom = handle_to(Atom{name, "C", {0.1, 0.2, 0.3}, 0.5});

// A record with something in every field: numbers from 1000 on, and fractions, so that every format shows.
template <class Record>
Record filled();

template <>
Cell filled<Cell>() {
  return {1234.5,
          11.25,
          12.0,
          90.0,
          91.5,
          1092.0,
          handle_to(std::vector<CrystalSymmetryOperator>(12, CrystalSymmetryOperator()))};
}

const Pieces cell_pieces = {"a: ",
                            1234.5,
                            ", b: ",
                            11.25,
                            ", c: ",
                            12.0,
                            ", alpha: ",
                            90.0,
                            ", beta: ",
                            91.5,
                            ", gamma: ",
                            1092.0,
                            ", symmetry operators: ",
                            std::size_t{12}};

template <>
CrystalMaker filled<CrystalMaker>() {
  return CrystalMaker(handle_to(filled<Cell>()), std::vector<THandle<Atom>>(1001, atom));
}

const Pieces crystal_maker_pieces =
    Pieces{"cell: "} + cell_pieces + Pieces{", atoms: ", std::size_t{1001}, FlushedLineEnd()};

template <>
ChemicalDiagram filled<ChemicalDiagram>() {
  ChemicalDiagram diagram;
  diagram.atoms.resize(1010);
  diagram.bonds.resize(17);
  return diagram;
}

const Pieces chemical_diagram_pieces = {"diagram atoms: ", std::size_t{1010},
                                        ", diagram bonds: ", std::size_t{17}, FlushedLineEnd()};

template <>
ConnectivityInfo filled<ConnectivityInfo>() {
  Connectivity connectivity;
  connectivity.atoms.resize(1011);
  connectivity.bonds.resize(18);
  return ConnectivityInfo(handle_to(connectivity));
}

const Pieces connectivity_info_pieces = {"atoms: ", std::size_t{1011}, ", bonds: ", std::size_t{18},
                                         FlushedLineEnd()};

template <>
ChemicalInfo filled<ChemicalInfo>() {
  return ChemicalInfo(
      "C27 H46 O", "cholesterol", "lipid", "chair", "gallstones", "Gly-Ala", "3-beta",
      std::vector<ChemicalClassification>(2, ChemicalClassification(ChemicalClassification::steroid)),
      std::vector<std::string>(11, "s"));
}

Pieces chemical_info_pieces() {
  Pieces pieces = {"formula: ",
                   "C27 H46 O",
                   ", name: cholesterol",
                   ", bioactivity: lipid, conformer: chair, source: gallstones",
                   ", peptide_sequence: Gly-Ala, isomer: 3-beta, classifiers: ",
                   0,
                   ": Steroid\t",
                   1,
                   ": Steroid\t",
                   ", synonyms: "};
  for (int index = 0; index < 11; ++index) pieces = pieces + Pieces{index, ": s\t"};
  return pieces + Pieces{FlushedLineEnd()};
}

template <>
CrystalInfo filled<CrystalInfo>() {
  return CrystalInfo(1234.5, 0.125, "red", "needle", "ABCDEF", "371 K", "twinned", "at 90 K", "form II",
                     "light", "water", "C7", "reduced cell");
}

const Pieces crystal_info_pieces = {
    "Z: ",
    1234.5,
    ", Z': ",
    0.125,
    ", color: red, habit: needle, analogues: ABCDEF, melting_point: 371 K, notes: twinned",
    ", phase_transitions: at 90 K, polymorph: form II, sensitivity: light",
    ", recrystallisation_solvent: water, disorder_details: C7, other_cell_details: reduced cell",
    FlushedLineEnd()};

Range<double, DoubleComparator> sigma() {
  return {0.001, RangeLimit::exclusive, 1500.5, RangeLimit::unbounded, DoubleComparator()};
}

const Pieces sigma_pieces = {1, 2, 0.001, 1500.5};

template <>
ExperimentalInfo filled<ExperimentalInfo>() {
  return ExperimentalInfo(1295.5, "hot", "1 GPa", 1.25, 1.5, 0.045, sigma(), ExperimentalInfo::neutron,
                          "reactor", true, "weak", ExperimentalInfo::powder_study, "riding H",
                          ExperimentalInfo::diffractometer);
}

const Pieces experimental_info_pieces =
    Pieces{"temperature (K): ",
           1295.5,
           ", temperature text: hot, pressure: 1 GPa, experimental density: ",
           1.25,
           ", calculated density: ",
           1.5,
           ", R-factor: ",
           0.045,
           ", mean_cc_bond_sigma: "} +
    sigma_pieces +
    Pieces{", probe: ",
           2,
           ", radiation source: reactor, absolute configuration: ",
           true,
           ", diffraction details: weak, powder: ",
           2,
           ", refinement details: riding H, intensity method: ",
           3};

template <>
EditorsInfo filled<EditorsInfo>() {
  return EditorsInfo(Date(2003, 5, 17), Date(2011, 12, 31), EditorsInfo::full_structure, 1000.4, "OLDREF",
                     EditorsInfo::inapplicable, "as published", 12345, "memo", "remarks",
                     EditorsInfo::received_correction, EditorsInfo::valency_errors_ignored);
}

// A date has one form, whatever the stream does with numbers.
const Pieces editors_info_pieces = {"accession date: ",
                                    "2003-05-17",
                                    ", modification date: 2011-12-31, category: ",
                                    3,
                                    ", bonding_tolerance: ",
                                    1000.4,
                                    ", previous refcode: OLDREF, aser_match_flag: ",
                                    -1,
                                    ", connectivity_comment: as published, batch: ",
                                    12345,
                                    ", memo: memo, remarks: remarks, author correspondence: ",
                                    2,
                                    ", ignored errors: ",
                                    1};

template <>
Publication filled<Publication>() {
  return Publication({"A.B.Smith", "C.Jones"}, Journal(4), "101", 1979, "2345");
}

const Pieces publication_pieces = {"A.B.Smith", ", C.Jones, J.Am.Chem.Soc., 101, 2345, ", 1979,
                                   FlushedLineEnd()};

DatabaseCrossReference isomer(const std::string& text) {
  return DatabaseCrossReference(DatabaseCrossReference::isomer, text);
}

template <>
CrossReferenceInfo filled<CrossReferenceInfo>() {
  CrossReferenceInfo info;
  info.insert(isomer("[GHIJKL]"));
  info.insert(isomer("[ABCDEF]"));
  return info;
}

const Pieces cross_reference_info_pieces = {"Cross References: ", "type: ", 3, "text: [ABCDEF] ", "type: ", 3,
                                            "text: [GHIJKL] "};

template <>
DepositionInfo filled<DepositionInfo>() {
  DepositionInfo info;
  for (int count = 0; count < 11; ++count) info.set_text(DepositionInfo::mrv_refcode, "x");
  return info;
}

Pieces deposition_info_pieces() {
  Pieces pieces;
  for (int index = 0; index < 11; ++index) pieces = pieces + Pieces{index, ": ", 11, ": x\t"};
  return pieces;
}

CrystalStructureImmediateDatabaseEntry entry() {
  ComponentHandles handles;
  for_each_component([&](auto component) {
    using Type = typename decltype(component)::Type;
    if constexpr (component.printed) handles[component] = handle_to(filled<Type>());
  });
  return CrystalStructureImmediateDatabaseEntry::from(DatabaseEntryIdentifier("ABCDEF"), handles);
}

Pieces entry_pieces() {
  return Pieces{"identifier: ", "ABCDEF\n"} + Pieces{"crystal maker:\n"} + crystal_maker_pieces +
         Pieces{"publication:\n"} + publication_pieces + Pieces{"experimental info:\n"} +
         experimental_info_pieces + Pieces{"editors info:\n"} + editors_info_pieces +
         Pieces{"chemical info:\n"} + chemical_info_pieces() + Pieces{"crystal info:\n"} +
         crystal_info_pieces + Pieces{"chemical diagram:\n"} + chemical_diagram_pieces +
         Pieces{"connectivity info:\n"} + connectivity_info_pieces + Pieces{"cross reference info:\n"} +
         cross_reference_info_pieces + Pieces{"deposition info:\n"} + deposition_info_pieces();
}

// Everything but the crystal maker is missing.
CrystalStructureImmediateDatabaseEntry bare_entry() {
  return CrystalStructureImmediateDatabaseEntry(DatabaseEntryIdentifier("ABCDEF"),
                                                handle_to(filled<CrystalMaker>()));
}

const Pieces missing_pieces = {
    "publication: <zero handle>\nexperimental info: <zero handle>\neditors info: <zero handle>\n"
    "chemical info: <zero handle>\ncrystal info: <zero handle>\nchemical diagram: <zero handle>\n"
    "connectivity info: <zero handle>\ncross reference info: <zero handle>\ndeposition info: <zero "
    "handle>\n"};

template <class Value>
Printable printable(const char* label, const Value& value, const Pieces& pieces) {
  return {label, [value](std::ostream& os) { value.print(os); }, pieces};
}

// For those that a stream writes itself.
template <class Value>
Printable streamed(const char* label, const Value& value, const Pieces& pieces) {
  return {label, [value](std::ostream& os) { os << value; }, pieces};
}

}  // namespace

const std::vector<Printable>& printables() {
  static const std::vector<Printable> all = {
      printable("identifier", DatabaseEntryIdentifier("ABCDEF01"), {"ABCDEF01"}),
      {"checked number", [](std::ostream& os) { TestSuiteHelpers::output_value(os, 1255); }, {1255}},
      {"checked length", [](std::ostream& os) { TestSuiteHelpers::output_value(os, 1255.5); }, {1255.5}},
      printable("date", Date(2003, 5, 17), {"2003-05-17"}),
      printable("cell", filled<Cell>(), cell_pieces),
      printable("crystal maker", filled<CrystalMaker>(), crystal_maker_pieces),
      printable("chemical diagram", filled<ChemicalDiagram>(), chemical_diagram_pieces),
      printable("connectivity info", filled<ConnectivityInfo>(), connectivity_info_pieces),
      printable("chemical classification", ChemicalClassification(ChemicalClassification::terpene),
                {"Terpene"}),
      printable("chemical info", filled<ChemicalInfo>(), chemical_info_pieces()),
      printable("crystal info", filled<CrystalInfo>(), crystal_info_pieces),
      streamed("limit condition", RangeLimit::unbounded, {2}),
      streamed("range", sigma(), sigma_pieces),
      printable("experimental info", filled<ExperimentalInfo>(), experimental_info_pieces),
      printable("editors info", filled<EditorsInfo>(), editors_info_pieces),
      printable("journal", Journal(4), {"J.Am.Chem.Soc."}),
      printable("publication", filled<Publication>(), publication_pieces),
      printable("publication without authors", Publication({}, Journal(4), "101", 1979, "2345"),
                {"J.Am.Chem.Soc.", ", 101, 2345, ", 1979, FlushedLineEnd()}),
      printable("cross-reference", isomer("x"), {"type: ", 3, "text: x"}),
      printable("cross-references", filled<CrossReferenceInfo>(), cross_reference_info_pieces),
      streamed("deposition", DepositionInfo::Deposition(DepositionInfo::mrv_refcode, "x"), {11, ": x"}),
      printable("depositions", filled<DepositionInfo>(), deposition_info_pieces()),
      printable("entry", entry(), entry_pieces()),
      printable("entry of a crystal maker alone", bare_entry(),
                Pieces{"identifier: ", "ABCDEF\ncrystal maker:\n"} + crystal_maker_pieces + missing_pieces),
      streamed("null component", THandle<ChemicalInfo>(), {"<zero handle>"}),
      streamed("component", handle_to(filled<Publication>()), publication_pieces),
  };
  return all;
}

void write_pieces(std::ostream& os, const Pieces& pieces) {
  for (const Piece& piece : pieces) {
    std::visit(
        [&os](const auto& value) {
          if constexpr (std::is_same_v<std::decay_t<decltype(value)>, FlushedLineEnd>) {
            os << std::endl;
          } else {
            os << value;
          }
        },
        piece);
  }
}
