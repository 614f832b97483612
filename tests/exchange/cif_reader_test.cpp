#include <exchange/cif_reader.h>
#include <gmock/gmock.h>

#include <sstream>

#include "support/bytes.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Entry = CrystalStructureImmediateDatabaseEntry;

std::string identifier_of(const Entry& entry) {
  const DatabaseEntryIdentifier identifier = entry.identifier();
  return identifier.text();
}

THandle<Entry> empty_entry() {
  return THandle<Entry>(
      new Entry(DatabaseEntryIdentifier(), {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}));
}

// The results that have an entry.
std::vector<ImportResult> imported_all(const std::string& cif) {
  std::vector<ImportResult> results = read_cif(cif);
  std::erase_if(results, [](const ImportResult& result) { return result.status != ImportResult::imported; });
  return results;
}

// The one entry of a text of one structure.
ImportResult imported(const std::string& cif) {
  std::vector<ImportResult> entries = imported_all(cif);
  if (entries.size() != 1) throw std::runtime_error("one entry was expected");
  return entries.front();
}

// The one entry of a block that holds `values`, and an edge of a cell where these say nothing of a crystal.
ImportResult of_values(const std::string& values) {
  const bool is_structure =
      values.find("_cell_length") != std::string::npos || values.find("_atom_site") != std::string::npos;
  return imported("data_x\n" + values + (is_structure ? "" : "_cell_length_b 4\n"));
}

std::vector<std::string> warnings(const ImportResult& entry) {
  std::vector<std::string> texts;
  for (const ImportWarning& warning : entry.warnings) {
    texts.push_back(std::to_string(warning.line) + ": " + warning.text);
  }
  return texts;
}

std::string labels_and_elements(const ImportResult& entry) {
  std::string text;
  for (const auto& atom : entry.entry->crystal_maker()->atoms())
    text += atom->label + "=" + atom->element + " ";
  return text;
}

std::vector<std::string> operators(const ImportResult& entry) {
  std::vector<std::string> texts;
  for (const auto& symmetry_operator : *entry.entry->cell()->symmetry_operators()) {
    texts.push_back(symmetry_operator.xyz());
  }
  return texts;
}

std::string atom_loop(const std::string& columns, const std::string& rows) {
  return "loop_\n_atom_site_label\n" + columns +
         "_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n" + rows;
}

// ---- Identifiers

struct IdentifierCase {
  const char* cif;
  const char* identifier;
  const char* reason;
};

class ImportedIdentifier : public testing::TestWithParam<IdentifierCase> {};

TEST_P(ImportedIdentifier, IsTheCodeOrTheName) {
  EXPECT_EQ(identifier_of(*imported(std::string(GetParam().cif) + "_cell_length_b 4\n").entry),
            GetParam().identifier)
      << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ImportedIdentifier,
    testing::Values(IdentifierCase{"data_x\n_cod_database_code 1010588\n_database_code_amcsd 0012989\n",
                                   "C1010588", "COD first"},
                    IdentifierCase{"data_x\n_amcsd_database_code AMCSD#0010866\n", "A0010866",
                                   "the name of the database goes"},
                    IdentifierCase{"data_global\n_database_code_amcsd 0012989\n", "A0012989",
                                   "the other tag"},
                    IdentifierCase{"data_ABW\n_cell_length_a 5\n", "ABW", "no code: the block's name"},
                    IdentifierCase{"data_ABW\n_cod_database_code 123\n", "ABW", "a code is seven digits"},
                    IdentifierCase{"data_ABW\n_cod_database_code ?\n", "ABW", "an unknown code"},
                    IdentifierCase{"data_\n_cell_length_a 5\n", "unnamed", "a block without a name"}));

// ---- Text and numbers of the records

TEST(ImportedEntry, KeepsTheDefaultsOfWhatIsNotSaid) {
  const ImportResult entry =
      of_values("_chemical_name_common ?\n_journal_year .\n" + atom_loop("", "Si 0 0 0\n"));
  EXPECT_TRUE(*entry.entry->chemical_info() == ChemicalInfo());
  EXPECT_TRUE(*entry.entry->crystal_info() == CrystalInfo());
  EXPECT_TRUE(*entry.entry->experimental_info() == ExperimentalInfo());
  EXPECT_TRUE(*entry.entry->editors_info() == EditorsInfo());
  EXPECT_TRUE(*entry.entry->deposition_info() == DepositionInfo());
  EXPECT_TRUE(*entry.entry->cell() == Cell());
  EXPECT_TRUE(entry.entry->published_geometry().is_null());
}

TEST(ImportedEntry, NamesEveryFieldThatIsAbsent) {
  EXPECT_THAT(of_values("_cell_length_b 4\n").absent,
              ElementsAre("authors", "journal", "volume", "year", "page", "formula", "name", "bioactivity",
                          "source", "z", "color", "habit", "melting_point", "recrystallisation_solvent",
                          "temperature", "pressure", "experimental_density", "calculated_density", "r_factor",
                          "probe", "radiation_source", "absolute_configuration", "diffraction_details",
                          "powder", "refinement_details", "intensity_method", "accession_date", "memo",
                          "contributor_code", "coeditor_code", "archive_code", "fiz_code", "nbs_id", "a", "c",
                          "alpha", "beta", "gamma", "symmetry_operators", "atoms", "published_geometry"));
}

TEST(ImportedEntry, HasTheUnknownJournalWhereNoneIsNamed) {
  const Journal journal = of_values("_journal_year 1930\n").entry->publication()->journal;
  EXPECT_EQ(journal.coden(), 1419);
  EXPECT_EQ(journal.name(), "Unknown");
}

TEST(ImportedEntry, HasAllOfThePublication) {
  const auto publication = of_values(
                               "loop_\n_publ_author_name\n'M\\\"uller, A.'\n\"O'Hara, B.\"\n"
                               "_journal_coden_ASTM JACSAT\n_journal_volume 101\n_journal_year 1979\n"
                               "_journal_page_first L345\n_journal_page_last 350\n")
                               .entry->publication();
  EXPECT_TRUE(*publication == Publication({"Müller, A.", "O'Hara, B."}, Journal(4), "101", 1979, "L345"));
}

TEST(ImportedEntry, TakesTheFirstNameAndKeepsTheOthersAsSynonyms) {
  const auto info = of_values(
                        "_chemical_name_mineral Halite\n_chemical_name_common salt\n"
                        "_chemical_name_systematic ' sodium chloride'\n")
                        .entry->chemical_info();
  EXPECT_EQ(info->name, "sodium chloride");
  EXPECT_THAT(info->synonyms, ElementsAre("salt", "Halite"));
}

TEST(ImportedEntry, HasNoSynonymThatIsTheName) {
  const auto info = of_values("_chemical_name_common 'Lead Oxide'\n_chemical_name_systematic ' Lead Oxide'\n")
                        .entry->chemical_info();
  EXPECT_EQ(info->name, "Lead Oxide");
  EXPECT_THAT(info->synonyms, IsEmpty());
}

TEST(ImportedEntry, HasTheExperiment) {
  const auto info = of_values(
                        "_diffrn_ambient_temperature 293(2)\n_diffrn_ambient_pressure 100\n"
                        "_exptl_crystal_density_meas 5.26(4)\n_exptl_crystal_density_diffrn 5.3\n"
                        "_refine_ls_R_factor_all 0.05\n_refine_ls_R_factor_obs 0.04\n"
                        "_diffrn_radiation_type Mo_K\\a\n")
                        .entry->experimental_info();
  EXPECT_EQ(info->temperature, 293.0);
  EXPECT_EQ(info->temperature_text, "293(2) K");
  EXPECT_EQ(info->pressure, "100 kPa");
  EXPECT_EQ(info->experimental_density, 5.26);
  EXPECT_EQ(info->calculated_density, 5.3);
  EXPECT_EQ(info->r_factor, 0.04);
  EXPECT_EQ(info->probe, ExperimentalInfo::x_ray);
  EXPECT_EQ(info->radiation_source, "Mo_Kα");
}

TEST(ImportedEntry, KeepsTheTemperatureOfTheIntensitiesWhenTwoDisagree) {
  const ImportResult entry =
      of_values("_cell_measurement_temperature 650\n_diffrn_ambient_temperature 298\n");
  EXPECT_EQ(entry.entry->experimental_info()->temperature, 298.0);
  EXPECT_THAT(warnings(entry),
              Contains("2: two temperatures: the cell was measured at '650', the intensities at "
                       "'298', which is kept"));
}

TEST(ImportedEntry, KeepsATemperatureInWordsAsText) {
  const ImportResult entry = of_values("_diffrn_ambient_temperature 'room temperature'\n");
  EXPECT_EQ(entry.entry->experimental_info()->temperature, 0.0);
  EXPECT_EQ(entry.entry->experimental_info()->temperature_text, "room temperature");
  EXPECT_THAT(warnings(entry), Not(Contains(HasSubstr("temperature"))));
}

struct ProbeCase {
  const char* type;
  ExperimentalInfo::RadiationProbe probe;
  const char* source;
  const char* reason;
};

class ImportedProbe : public testing::TestWithParam<ProbeCase> {};

TEST_P(ImportedProbe, IsKnownByItsWords) {
  const auto info =
      of_values(std::string("_diffrn_radiation_type '") + GetParam().type + "'\n").entry->experimental_info();
  EXPECT_EQ(info->probe, GetParam().probe) << GetParam().reason;
  EXPECT_EQ(info->radiation_source, GetParam().source) << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ImportedProbe,
    testing::Values(ProbeCase{"X-ray", ExperimentalInfo::x_ray, "", "the probe and no more"},
                    ProbeCase{"neutron", ExperimentalInfo::neutron, "", "neutrons"},
                    ProbeCase{"Cu K\\a1", ExperimentalInfo::x_ray, "Cu Kα1", "a copper tube"},
                    ProbeCase{"MoK\\a", ExperimentalInfo::x_ray, "MoKα", "without a blank"},
                    ProbeCase{"synchrotron", ExperimentalInfo::x_ray, "synchrotron", "a storage ring"},
                    ProbeCase{"electron", ExperimentalInfo::electron, "", "electrons"},
                    ProbeCase{"\\g", ExperimentalInfo::gamma, "γ", "gamma rays"},
                    ProbeCase{"light", ExperimentalInfo::unknown_probe, "light", "not a guess"}));

TEST(ImportedEntry, TakesADayOfTheCalendarOnly) {
  const ImportResult entry = of_values("_audit_creation_date 2005-28-12\n");
  EXPECT_EQ(entry.entry->editors_info()->accession_date, Date());
  EXPECT_THAT(warnings(entry), Contains("2: accession_date is not a day of the calendar: '2005-28-12'"));
  EXPECT_EQ(of_values("_audit_creation_date 2006-02-07\n").entry->editors_info()->accession_date,
            Date(2006, 2, 7));
}

TEST(ImportedEntry, HasTheCodesAsDepositions) {
  const auto info = of_values(
                        "_cod_database_code 9008535\n_amcsd_database_code AMCSD#0010866\n"
                        "_journal_coeditor_code KD5005\n")
                        .entry->deposition_info();
  EXPECT_EQ(info->text(DepositionInfo::contributor), "COD 9008535, AMCSD 0010866");
  EXPECT_EQ(info->text(DepositionInfo::iucr_coeditor_code), "IUCr KD5005");
  std::vector<std::string> numbers;
  info->deposition_numbers(DepositionInfo::iucr_coeditor_code, numbers);
  EXPECT_THAT(numbers, ElementsAre("KD5005"));
}

// ---- Cell and symmetry

std::string cell_values(const char* lengths, const char* angles) {
  std::string cif;
  for (const char* axis : {"a", "b", "c"}) cif += std::string("_cell_length_") + axis + " " + lengths + "\n";
  for (const char* angle : {"alpha", "beta", "gamma"})
    cif += std::string("_cell_angle_") + angle + " " + angles + "\n";
  return cif;
}

TEST(ImportedEntry, TakesSwappedLengthsAndAnglesAsTheyStandAndWarns) {
  const ImportResult entry = of_values(cell_values("90", "4.583"));
  EXPECT_EQ(entry.entry->cell()->a(), 90.0);
  EXPECT_EQ(entry.entry->cell()->gamma(), 4.583);
  EXPECT_THAT(warnings(entry),
              Contains("2: the lengths of the cell look like angles, and its angles like lengths"));
}

TEST(ImportedEntry, TakesTheOperatorsOfTheFile) {
  const ImportResult entry = of_values(
      "loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n'-x, y+1/2, 1/2-z'\n"
      "_symmetry_space_group_name_H-M 'I m -3 m'\n");
  EXPECT_THAT(operators(entry), ElementsAre("x,y,z", "-x,1/2+y,1/2-z"));
  EXPECT_EQ(entry.operators_from, "operators");
}

struct GroupCase {
  const char* values;
  const char* angles;
  std::size_t operators;
  const char* from;
  const char* reason;
};

class ImportedGroup : public testing::TestWithParam<GroupCase> {};

TEST_P(ImportedGroup, IsNeverGuessed) {
  const ImportResult entry = of_values(cell_values("4", GetParam().angles) + GetParam().values);
  EXPECT_EQ(operators(entry).size(), GetParam().operators) << GetParam().reason;
  EXPECT_EQ(entry.operators_from, GetParam().from) << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ImportedGroup,
    testing::Values(
        GroupCase{"", "90", 0, "", "nothing is said: not P 1"},
        GroupCase{"_symmetry_space_group_name_Hall '-P 2yn'\n", "90", 4, "Hall name", "P 21/n"},
        GroupCase{"_symmetry_space_group_name_Hall '-P 2yn'\n_symmetry_space_group_name_H-M 'I m -3 m'\n",
                  "90", 4, "Hall name", "the Hall name says the setting too"},
        GroupCase{"_symmetry_space_group_name_H-M 'F m -3 m'\n", "90", 192, "Hermann-Mauguin name",
                  "with centring"},
        GroupCase{"_symmetry_space_group_name_H-M 'R -3'\n", "60", 6, "Hermann-Mauguin name",
                  "equal angles: rhombohedral axes"},
        GroupCase{"_symmetry_space_group_name_H-M 'R -3'\n_cell_angle_gamma_x 120\n", "60", 6,
                  "Hermann-Mauguin name", "other tags do not count"},
        GroupCase{"_symmetry_space_group_name_H-M 'R 3 c {rhombohedral axes}'\n", "60", 6,
                  "Hermann-Mauguin name", "the axes in words"},
        GroupCase{"_symmetry_space_group_name_Hall 'nonsense'\n_symmetry_space_group_name_H-M 'P -1'\n", "90",
                  2, "Hermann-Mauguin name", "a bad Hall name is passed over"},
        GroupCase{"_symmetry_space_group_name_Hall '-P_2yn'\n", "90", 4, "Hall name", "_ is a blank"},
        GroupCase{"_symmetry_space_group_name_Hall 'P 3 21'\n_symmetry_space_group_name_H-M 'P -1'\n", "90",
                  2, "Hermann-Mauguin name", "a screw without an axis"},
        GroupCase{"_symmetry_space_group_name_Hall 'P 1 (x/24,y/24,z/24)'\n_symmetry_space_group_name_H-M "
                  "'P -1'\n",
                  "90", 2, "Hermann-Mauguin name", "a basis of which 13824 cells make one"},
        GroupCase{"_symmetry_space_group_name_H-M 'nonsense'\n", "90", 0, "", "a bad name is none"},
        GroupCase{"loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n9223372036854775807x,y,z\n"
                  "_symmetry_space_group_name_H-M 'P -1'\n",
                  "90", 2, "Hermann-Mauguin name", "a factor beyond every integer"},
        GroupCase{"loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\nx,y\n_symmetry_space_group_name_H-M 'P -1'\n",
                  "90", 2, "Hermann-Mauguin name", "half a group is no group"}));

TEST(ImportedEntry, TakesHexagonalAxesFromTheAngles) {
  const ImportResult entry = of_values(
      "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 120\n_symmetry_space_group_name_H-M 'R "
      "-3'\n");
  EXPECT_EQ(operators(entry).size(), 18U);
}

TEST(ImportedEntry, WarnsWhenThereIsNoSymmetry) {
  EXPECT_THAT(warnings(of_values("_cell_length_a 4\n")),
              Contains("0: no symmetry operators, and no known name of a space group to take them from"));
}

// ---- Atoms and bonds

TEST(ImportedEntry, LeavesOutAnAtomOfQuestionMarks) {
  const ImportResult entry = of_values(atom_loop("", "? ? ? ?\nSi1 0 0 ?\n"));
  EXPECT_THAT(entry.entry->crystal_maker()->atoms(), IsEmpty());
  EXPECT_THAT(entry.absent, Contains("atoms"));
  EXPECT_THAT(warnings(entry), Contains("2: atoms without a place are left out: Si1"));
}

TEST(ImportedEntry, HasAtomsAsTheyStand) {
  const ImportResult entry = of_values(
      atom_loop("_atom_site_type_symbol\n_atom_site_occupancy\n", "Fe1 Fe3+ 0.75(1) 0.1 -.2 0.3(1)\n"));
  ASSERT_EQ(entry.entry->crystal_maker()->atoms().size(), 1U);
  const Atom& atom = *entry.entry->crystal_maker()->atoms().front();
  EXPECT_EQ(atom.label, "Fe1");
  EXPECT_EQ(atom.element, "Fe");
  EXPECT_EQ(atom.position, (FractionalCoordinates{0.1, -0.2, 0.3}));
  EXPECT_EQ(atom.occupancy, 0.75);
}

struct ElementCase {
  const char* atom;  // label and type symbol
  const char* formula;
  const char* element;
  const char* reason;
};

class ImportedElement : public testing::TestWithParam<ElementCase> {};

TEST_P(ImportedElement, IsOfTheTypeSymbolElseOfTheLabel) {
  const ImportResult entry =
      of_values(std::string("_chemical_formula_sum '") + GetParam().formula + "'\n" +
                atom_loop("_atom_site_type_symbol\n", std::string(GetParam().atom) + " 0 0 0\n"));
  EXPECT_EQ(entry.entry->crystal_maker()->atoms().front()->element, GetParam().element) << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(Cases, ImportedElement,
                         testing::Values(ElementCase{"X1 Fe3+", "Fe", "Fe", "the charge goes"},
                                         ElementCase{"X1 O-2", "O", "O", "the charge written the other way"},
                                         ElementCase{"X1 As0", "As", "As", "no charge at all"},
                                         ElementCase{"X1 pb", "Pb", "Pb", "a symbol begins with a capital"},
                                         ElementCase{"T1 Si", "Si O2", "Si", "the label says nothing"},
                                         ElementCase{"MgM1 ?", "Mg2", "Mg", "an element and a site"},
                                         ElementCase{"AlT2 .", "Al", "Al", "an element and a site"},
                                         ElementCase{"O-h1 ?", "O H", "O", "one letter"},
                                         ElementCase{"OW1 ?", "O", "O", "no element has these two letters"},
                                         ElementCase{"Wat1 ?", "Ca O", "O", "water is its oxygen"},
                                         ElementCase{"W1 ?", "W O3", "W", "tungsten is not water"},
                                         ElementCase{"Os1 ?", "Si O2", "O", "the formula has no osmium"},
                                         ElementCase{"Os1 ?", "Os O4", "Os", "the formula has osmium"},
                                         ElementCase{"CA1 ?", "Ca O", "Ca", "the formula has no carbon"},
                                         ElementCase{"CA1 ?", "C2 Ca", "C", "two capitals are two words"},
                                         ElementCase{"D1 ?", "D2 O", "D", "deuterium"},
                                         ElementCase{"C(11) ?", "C H4", "C", "a number in brackets"},
                                         ElementCase{"Qq1 ?", "Fe", "", "no element"}));

TEST(ImportedEntry, KeepsRepeatedLabelsAndWarns) {
  const ImportResult entry = of_values(atom_loop("", "Si 0 0 0\nAl 0 0 0\nSi 0.5 0 0\nSi 0 0.5 0\n"));
  EXPECT_EQ(labels_and_elements(entry), "Si=Si Al=Al Si=Si Si=Si ");
  EXPECT_THAT(warnings(entry), Contains("2: repeated atom labels: Si"));
}

TEST(ImportedEntry, HasPublishedBondsBetweenItsOwnAtoms) {
  const ImportResult entry =
      of_values(atom_loop("", "C1 0 0 0\nO1 0.5 0 0\n") +
                "loop_\n_geom_bond_atom_site_label_1\n_geom_bond_atom_site_label_2\n_geom_bond_distance\n"
                "C1 O1 1.234(5)\nC1 X9 1.5\nC1 O1 ?\nC1 O1 long\n");
  const auto& atoms = entry.entry->crystal_maker()->atoms();
  const auto& bonds = *entry.entry->published_geometry()->bonds;
  ASSERT_EQ(bonds.size(), 1U);
  EXPECT_TRUE(*bonds[0] == PublishedBond(atoms[0], atoms[1], UncertainValue(1.234, 0.005), false, false));
  EXPECT_THAT(warnings(entry), Contains("9: bonds to unknown atoms are left out: X9"));
  EXPECT_THAT(warnings(entry), Contains("9: the length of a bond is not a number: 'long'"));
}

// ---- Blocks, line ends, and what is stored

TEST(ImportedFile, InheritsTheValuesOfAGlobalSection) {
  const auto entries = imported_all(
      "global_\n_journal_year 2021\n_journal_volume 7\n"
      "data_a\n_cell_length_a 4\ndata_b\n_cell_length_a 4\n_journal_volume 8\n");
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].entry->publication()->year, 2021);
  EXPECT_EQ(entries[0].entry->publication()->volume, "7");
  EXPECT_EQ(entries[1].entry->publication()->year, 2021);
  EXPECT_EQ(entries[1].entry->publication()->volume, "8");
}

TEST(ImportedFile, InheritsTheValuesOfABlockNamedGlobalWithoutACell) {
  const auto entries = imported_all("data_global\n_journal_year 2021\ndata_a\n_cell_length_a 4\n");
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(identifier_of(*entries[0].entry), "a");
  EXPECT_EQ(entries[0].entry->publication()->year, 2021);
}

TEST(ImportedFile, HasAnEntryOfABlockNamedGlobalWithACell) {
  EXPECT_EQ(identifier_of(*imported("data_global\n_cell_length_a 4\n").entry), "global");
}

TEST(ImportedFile, MayEndItsLinesInAnyWay) {
  const std::string lines = "data_x\n_journal_name_full\n;\n Invented\n Structures\n;\n_journal_year 2021\n";
  for (const char* line_end : {"\n", "\r\n", "\r"}) {
    std::string cif = "\xEF\xBB\xBF";
    for (const char c : lines) cif += c == '\n' ? std::string(line_end) : std::string(1, c);
    const auto publication = imported(cif + "_cell_length_a 4").entry->publication();
    EXPECT_EQ(publication->journal.name(), "Invented Structures");
    EXPECT_EQ(publication->year, 2021);
  }
}

TEST(ImportedFile, StoresAndReadsBackTheSameBytes) {
  const ImportResult entry =
      of_values(cell_values("4", "90") + "_chemical_name_common 'a\001b'\n" +
                "_symmetry_space_group_name_H-M 'F m -3 m'\n" + atom_loop("", "Si 0 0 0\n"));
  const std::string bytes = written([&](Archive& archive) { entry.entry->write(archive); });
  const auto again = empty_entry();
  read_from(bytes, [&](Archive& archive) { again->read(archive); });
  EXPECT_EQ(written([&](Archive& archive) { again->write(archive); }), bytes);
}

// ---- What is not CIF

struct FaultCase {
  const char* cif;
  const char* message;
  const char* hint;
};

class RejectedFile : public testing::TestWithParam<FaultCase> {};

TEST_P(RejectedFile, IsNamedByLineColumnBlockAndReason) {
  const std::vector<ImportResult> results = read_cif(GetParam().cif);
  ASSERT_EQ(results.size(), 1U);
  const ImportResult& fault = results.front();
  EXPECT_EQ(fault.status, ImportResult::error);
  EXPECT_EQ(std::to_string(fault.line) + ":" + std::to_string(fault.column) + ":" + fault.block + ": " +
                fault.reason,
            GetParam().message);
  EXPECT_EQ(fault.hint, GetParam().hint);
}

const char* const outside_quotes = "outside quotes and text fields only printable ASCII is CIF";

INSTANTIATE_TEST_SUITE_P(
    Cases, RejectedFile,
    testing::Values(
        FaultCase{"", "1:1:: the file is empty", ""}, FaultCase{" \r\n\t", "1:1:: the file is empty", ""},
        FaultCase{"# one\n# two", "1:1:: the file holds only comments", ""},
        FaultCase{"data_x\n_b 1\nloop_\n_a\n_c\n1 2\n3\n", "3:1:x: wrong number of values in the loop",
                  "3 values do not fill rows of 2 columns: a row is broken or lost"},
        FaultCase{"data_x\n_b 1 2\n", "2:6:x: a tag, loop_ or data_ is expected, not '2'",
                  "a value without a tag: a line before it is broken or lost"},
        FaultCase{"data_x\n_b 'no end\n", "2:11:x: unterminated 'string'", ""},
        FaultCase{"data_x\n_b\n;no end\n", "4:1:x: unterminated text field", ""},
        FaultCase{"data_x\n_b\n_c 1\n", "2:1:x: _b has no value", "write '?' for an unknown value"},
        FaultCase{"data_x\n_b 1\n_B 2\n", "3:1:x: _B occurs twice in the block", ""},
        FaultCase{"_b 1\n", "1:1:: expected block header (data_)", ""},
        FaultCase{"data_x\n_b 1\n\x1a", "3:1:x: stray byte 0x1A (Ctrl-Z) at offset 12", outside_quotes},
        FaultCase{"data_x\n_b M\xd0ller\n", "2:5:x: stray byte 0xD0 at offset 11", outside_quotes},
        FaultCase{"\xEF\xBB\xBF"
                  "data_x\r\n_b 1\r\n_c \x01 \r\n",
                  "3:4:x: stray byte 0x01 at offset 20", outside_quotes},
        FaultCase{"\xFF\xFE", "1:1:: the text is UTF-16, and CIF is ASCII or UTF-8", "convert it to UTF-8"}));

TEST(RejectedFile, NamesANulByItsOffset) {
  const auto results = read_cif(std::string("data_x\n_b 1\n") + '\0' + "\n_c 2\n");
  EXPECT_EQ(results.back().reason, "stray byte 0x00 (NUL) at offset 12");
}

TEST(RejectedText, IsCutShortInTheMessage) {
  const auto results = read_cif("data_x\n_b 1 " + std::string(10000, 'a'));
  EXPECT_EQ(results.front().reason, "a tag, loop_ or data_ is expected, not '" + std::string(30, 'a') + "'");
}

TEST(RejectedBlock, EndsTheReadingAfterTheEntriesBeforeIt) {
  const auto results =
      read_cif("data_a\n_cell_length_a 4\ndata_b\n_cell_length_a 'x\ndata_c\n_cell_length_a 4\n");
  ASSERT_EQ(results.size(), 2U);
  EXPECT_EQ(results[0].identifier, "a");
  EXPECT_EQ(results[1].status, ImportResult::error);
  EXPECT_EQ(results[1].block, "b");
}

// ---- Blocks that are shared, and blocks that are no structure

std::string structure(const std::string& name, const std::string& values = "") {
  return "data_" + name + "\n_cell_length_a 4\n" + atom_loop("", "Si 0 0 0\n") + values;
}

// The status, block and reason of each result.
std::vector<std::string> outcomes(const std::string& cif) {
  std::vector<std::string> texts;
  for (const ImportResult& result : read_cif(cif)) {
    const bool is_entry = result.status == ImportResult::imported;
    texts.push_back(is_entry ? "entry " + result.identifier : result.block + ": " + result.reason);
  }
  return texts;
}

TEST(SharedBlock, GivesWhatItsStructuresDoNotSayWhereverItIs) {
  const std::string shared =
      "data_chalcon\n_journal_year 1999\n_journal_volume 55\n_cod_database_code 1000001\n";
  for (const std::string& cif : {shared + structure("I"), structure("I") + shared}) {
    const auto results = read_cif(cif);
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(results[0].identifier, "C1000001");
    EXPECT_EQ(results[0].entry->publication()->year, 1999);
    EXPECT_EQ(results[0].entry->deposition_info()->text(DepositionInfo::contributor), "COD 1000001");
  }
}

TEST(SharedBlock, MayHavePlaceholdersForACellAndAtoms) {
  const auto results = read_cif("data_global\n_cell_length_a ?\n_journal_year 1999\n" +
                                atom_loop("", "? ? ? ?\n") + structure("I"));
  ASSERT_EQ(results.size(), 1U);
  EXPECT_EQ(results[0].entry->publication()->year, 1999);
}

TEST(SharedBlock, NamesNoStructureByItsCodeWhereThereAreSeveral) {
  EXPECT_THAT(outcomes("data_g\n_cod_database_code 1000001\n" + structure("I") + structure("II")),
              ElementsAre("entry I", "entry II"));
}

TEST(SharedBlock, GivesWhatTheNearestBeforeTheStructureSaysAndReportsAnotherOne) {
  const auto results = read_cif("data_g\n_journal_year 1998\ndata_h\n_journal_year 1999\n" + structure("I"));
  ASSERT_EQ(results.size(), 1U);
  EXPECT_EQ(results[0].entry->publication()->year, 1999);
  EXPECT_THAT(warnings(results[0]),
              Contains("2: _journal_year: data_h says '1999', data_g says '1998'; the first is kept"));
}

TEST(SharedBlock, IsNamedWhenNoStructureTookAnything) {
  EXPECT_THAT(outcomes("data_g\n_journal_year 1998\n" + structure("I", "_journal_year 1999\n")),
              ElementsAre("entry I", "g: neither a cell nor atoms"));
}

struct KindCase {
  const char* cif;
  const char* reason;
};

class BlockWithoutStructure : public testing::TestWithParam<KindCase> {};

TEST_P(BlockWithoutStructure, GivesNoEntryAndAReason) {
  EXPECT_THAT(outcomes(std::string("data_x\n") + GetParam().cif),
              ElementsAre(std::string("x: ") + GetParam().reason));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BlockWithoutStructure,
    testing::Values(
        KindCase{"", "neither a cell nor atoms"},
        KindCase{"_journal_year 1998\n", "neither a cell nor atoms"},
        KindCase{"_name '_cell_length_a'\n_category cell\n_type numb\n", "a dictionary, which defines tags"},
        KindCase{"_dictionary_name core.dic\n", "a dictionary, which defines tags"},
        KindCase{"_dictionary.title CORE\nsave_a\n_definition.id '_a'\nsave_\n",
                 "a dictionary, which defines tags"},
        KindCase{"save_a\n_item.name '_a'\nsave_\n", "a dictionary, which defines tags"},
        KindCase{"loop_\n_chem_comp.id\n_chem_comp.name\nALA alanine\n",
                 "a monomer library, which describes residues"},
        KindCase{"_entry.id 1ABC\n_cell.length_a 50\nloop_\n_atom_site.label_atom_id\n_atom_site.Cartn_x\nCA "
                 "1.5\n",
                 "mmCIF, a macromolecule without atoms in fractions of the cell"},
        KindCase{"_cell_length_a 5\nloop_\n_refln_index_h\n_refln_F_squared_meas\n1 2.5\n",
                 "structure factors: reflections and no atoms"},
        KindCase{"_entry.id r1abcsf\n_cell.length_a 5\nloop_\n_refln.index_h\n_refln.F_meas\n1 2.5\n",
                 "structure factors: reflections and no atoms"}));

TEST(BlockWithACellAlone, IsAnEntryOfThatCategoryWithAWarning) {
  const ImportResult entry = of_values("_cell_length_a 4\n");
  EXPECT_EQ(entry.entry->editors_info()->category, EditorsInfo::unit_cell_only);
  EXPECT_THAT(warnings(entry), Contains("2: a cell without atoms"));
}

TEST(BlockWithDotsInItsTags, IsReadAsOneWithUnderscores) {
  const ImportResult entry = imported(
      "data_x\n_cell.length_a 4\nloop_\n_atom_site.label\n_atom_site.fract_x\n_atom_site.fract_y\n"
      "_atom_site.fract_z\nSi 0 0 0\n");
  EXPECT_EQ(entry.entry->cell()->a(), 4.0);
  EXPECT_EQ(labels_and_elements(entry), "Si=Si ");
}

// ---- Operators that act on more than a place

TEST(MagneticOperators, AreNamedAndKeptAsFarAsTheyActOnThePlace) {
  const ImportResult entry = of_values(
      "_cell_length_a 4\nloop_\n_space_group_symop_magn_operation.xyz\nx,y,z,+1\n-x,-y,-z,-1\n"
      "loop_\n_space_group_symop_magn_centering.xyz\nx,y,z,+1\nx+1/2,y,z,-1\n");
  EXPECT_THAT(operators(entry), ElementsAre("x,y,z", "-x,-y,-z", "1/2+x,y,z", "1/2-x,-y,-z"));
  EXPECT_EQ(entry.operators_from, "magnetic operators");
  EXPECT_THAT(warnings(entry),
              Contains("3: magnetic operators: what they do in space is kept, as symmetry of the "
                       "nuclear structure"));
}

TEST(MagneticOperators, OfAGreyGroupAreNotKeptTwice) {
  const ImportResult entry =
      of_values("_cell_length_a 4\nloop_\n_symmetry_equiv_pos_as_xyz\nx,y,z,+1\nx,y,z,-1\n");
  EXPECT_THAT(operators(entry), ElementsAre("x,y,z"));
}

TEST(MagneticOperators, GiveWayToThoseOfTheNuclearStructure) {
  const ImportResult entry = of_values(
      "_cell_length_a 4\nloop_\n_space_group_symop_magn_operation.xyz\nx,y,z,+1\n-x,-y,-z,-1\n"
      "loop_\n_space_group_symop_operation_xyz\nx,y,z\n");
  EXPECT_THAT(operators(entry), ElementsAre("x,y,z"));
  EXPECT_EQ(entry.operators_from, "operators");
}

TEST(SuperspaceOperators, AreNamedAndKeptAsFarAsTheyActOnThePlace) {
  const ImportResult entry = of_values(
      "_cell_length_a "
      "4\nloop_\n_space_group_symop_ssg_operation_algebraic\nx1,x2,x3,x4\n-x1,x2+1/2,-x3,-x4+1/2\n");
  EXPECT_THAT(operators(entry), ElementsAre("x,y,z", "-x,1/2+y,-z"));
  EXPECT_EQ(entry.operators_from, "superspace operators");
}

TEST(SuperspaceOperators, ThatMixInAFurtherDimensionAreNotKept) {
  const ImportResult entry = of_values(
      "_cell_length_a 4\nloop_\n_space_group_symop_ssg_operation_algebraic\nx1,x2,x3,x4\nx4,x2,x3,x1\n");
  EXPECT_THAT(operators(entry), IsEmpty());
  EXPECT_THAT(warnings(entry), Contains("3: superspace operators are not kept: 'x4,x2,x3,x1'"));
}

// ---- Space groups as people write them

struct NameCase {
  const char* name;
  const char* angles;  // alpha, beta, gamma
  std::size_t operators;
  const char* second;  // of the operators that are not the identity, the first
  const char* reason;
};

class WrittenSpaceGroup : public testing::TestWithParam<NameCase> {};

TEST_P(WrittenSpaceGroup, HasTheOperatorsOfTheSettingThatFitsTheCell) {
  std::string cif = "_cell_length_a 4\n_cell_length_b 4\n_cell_length_c 4\n";
  std::istringstream angles(GetParam().angles);
  for (const char* tag : {"alpha", "beta", "gamma"}) {
    std::string angle;
    angles >> angle;
    cif += std::string("_cell_angle_") + tag + " " + angle + "\n";
  }
  const ImportResult entry = of_values(cif + "_symmetry_space_group_name_H-M '" + GetParam().name + "'\n");
  ASSERT_EQ(operators(entry).size(), GetParam().operators) << GetParam().reason;
  EXPECT_EQ(operators(entry)[1], GetParam().second) << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WrittenSpaceGroup,
    testing::Values(NameCase{"P2(1)/c", "90 100 90", 4, "-x,1/2+y,1/2-z", "brackets"},
                    NameCase{"P2~1~/c", "90 100 90", 4, "-x,1/2+y,1/2-z", "CIF's lowered text"},
                    NameCase{"P 2_1/c", "90 100 90", 4, "-x,1/2+y,1/2-z", "an underscore"},
                    NameCase{"P 2<sub>1</sub>/c", "90 100 90", 4, "-x,1/2+y,1/2-z", "HTML's lowered text"},
                    NameCase{"p 21/C", "90 100 90", 4, "-x,1/2+y,1/2-z", "letters of the other case"},
                    NameCase{"P 1 21/c 1", "90 100 90", 4, "-x,1/2+y,1/2-z", "the full symbol"},
                    NameCase{"P 21/n", "90 100 90", 4, "1/2-x,1/2+y,1/2-z", "another setting"},
                    NameCase{"P 2", "90 90 100", 2, "-x,-y,z", "the third axis is unique"},
                    NameCase{"P 2", "100 90 90", 2, "x,-y,-z", "the first axis is unique"},
                    NameCase{"Fd3m", "90 90 90", 192, "1/4-y,1/4+x,1/4+z", "without the minus"},
                    NameCase{"F d -3 m :2", "90 90 90", 192, "-y,1/4+x,1/4+z", "the second origin"},
                    NameCase{"Fd-3mZ", "90 90 90", 192, "-y,1/4+x,1/4+z", "the second origin as a letter"},
                    NameCase{"R -3 m H", "90 90 120", 36, "-y,x-y,z", "hexagonal axes as a letter"},
                    NameCase{"H 3", "90 90 120", 9, "-y,x-y,z", "hexagonal axes as the centring"},
                    NameCase{"R -3", "60 60 60", 6, "z,x,y", "equal angles"},
                    NameCase{"C m c e", "90 90 90", 16, "1/2-x,-y,1/2+z", "a name of newer tables"},
                    NameCase{"14", "90 100 90", 4, "-x,1/2+y,1/2-z", "the number"},
                    NameCase{"14", "90 90 100", 4, "1/2-x,-y,1/2+z",
                             "the number, the third axis is unique"}));

TEST(WrittenSpaceGroup, MayBeANumberAlone) {
  const ImportResult entry = of_values(cell_values("4", "90") + "_space_group_IT_number 225\n");
  EXPECT_EQ(operators(entry).size(), 192U);
  EXPECT_EQ(entry.operators_from, "number of the space group");
}

TEST(WrittenSpaceGroup, IsTakenWithAWarningWhereItDoesNotFitTheCell) {
  const ImportResult entry =
      of_values(cell_values("4", "80") + "_symmetry_space_group_name_H-M 'F m -3 m'\n");
  EXPECT_THAT(warnings(entry),
              Contains("8: the cell does not have the shape that the space group F m -3 m asks for"));
}

TEST(WrittenSpaceGroup, IsTakenWithAWarningWhereItsOriginIsNotTold) {
  const ImportResult entry = of_values(cell_values("4", "90") + "_symmetry_space_group_name_H-M 'F d 3 m'\n");
  EXPECT_THAT(warnings(entry),
              Contains("8: the space group has two origins, and nothing tells which: F d -3 m:1 is taken"));
}

// ---- Texts

TEST(ImportedText, IsNoPlaceholderInATextField) {
  for (const char* text : {"\n;?\n;\n", "\n;\n ?\n;\n", " '?'\n", "\n;.\n;\n"}) {
    const ImportResult entry = of_values(std::string("_chemical_name_common") + text);
    EXPECT_EQ(entry.entry->chemical_info()->name, "") << text;
  }
}

TEST(ImportedText, IsUnfolded) {
  const ImportResult entry = of_values("_chemical_name_common\n;\\\npoly\\\n(ethene) \\ \nblue\n;\n");
  EXPECT_EQ(entry.entry->chemical_info()->name, "poly(ethene) blue");
}

struct FieldCase {
  const char* field;
  const char* text;
  const char* reason;
};

class TextFieldWithProtocol : public testing::TestWithParam<FieldCase> {};

TEST_P(TextFieldWithProtocol, IsReadAsItWasMeant) {
  const ImportResult entry = of_values("_chemical_name_common\n;" + std::string(GetParam().field) + "\n;\n");
  EXPECT_EQ(entry.entry->chemical_info()->name, GetParam().text) << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TextFieldWithProtocol,
    testing::Values(
        FieldCase{"CIF>\\\nCIF>first\nCIF>;second", "first ;second", "each line loses the prefix"},
        FieldCase{"> \\ \t\n> first\n> second", "first second", "blanks after the backslash"},
        FieldCase{"CIF>\\\\\nCIF>poly\\\nCIF>(ethene)", "poly(ethene)", "the lines are folded too"},
        FieldCase{"CIF>\\\nCIF>poly\\\nCIF>(ethene)", "poly\\ (ethene)",
                  "they are not, without a second backslash"},
        FieldCase{"CIF>\\\nCIF>first\nsecond", "CIF>\\ CIF>first second",
                  "a line without the prefix: no protocol"},
        FieldCase{"from C:\\\nread", "from C:\\ read", "a text whose first line ends with a backslash"},
        FieldCase{"first\\", "first\\", "one line alone"},
        FieldCase{"1\\2\\\n1\\23", "1\\2\\ 1\\23", "a prefix has no backslash"}));

TEST(ImportedText, ThatIsNotUtf8IsReadAsLatin1WithAWarning) {
  const ImportResult entry = of_values("_chemical_name_common 'M\xfcller'\n");
  EXPECT_EQ(entry.entry->chemical_info()->name, "Müller");
  EXPECT_THAT(warnings(entry), Contains("2: a text is not UTF-8 and is read as ISO 8859-1: 'Müller'"));
}

// ---- Facts

TEST(ImportedCitation, GivesWhatTheJournalsTagsDoNotSay) {
  const auto publication =
      of_values(
          "loop_\n_citation_id\n_citation_journal_id_ASTM\n_citation_journal_volume\n"
          "_citation_year\n_citation_page_first\n1 XXXXXX 1 1901 1\nprimary JACSAT 101 1979 2345\n"
          "loop_\n_citation_author_citation_id\n_citation_author_name\n1 'Nobody, N.'\n"
          "primary 'Smith, A.'\nprimary 'Jones, B.'\n")
          .entry->publication();
  EXPECT_TRUE(*publication == Publication({"Smith, A.", "Jones, B."}, Journal(4), "101", 1979, "2345"));
}

TEST(ImportedCitation, MayBeOneWithoutALoop) {
  const auto publication =
      of_values(
          "_citation.id 1\n_citation.journal_abbrev 'J.Am.Chem.Soc.'\n_citation.year 1979\n"
          "_citation_author.name 'Smith, A.'\n")
          .entry->publication();
  EXPECT_TRUE(*publication == Publication({"Smith, A."}, Journal(4), "", 1979, ""));
}

struct FactCase {
  const char* values;
  const char* text;
  const char* reason;
};

class ImportedMeltingPoint : public testing::TestWithParam<FactCase> {};

TEST_P(ImportedMeltingPoint, IsATextWithItsUnit) {
  EXPECT_EQ(of_values(GetParam().values).entry->crystal_info()->melting_point, GetParam().text)
      << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ImportedMeltingPoint,
    testing::Values(FactCase{"_chemical_melting_point 415(2)\n", "415(2) K", "a number"},
                    FactCase{"_chemical_melting_point 'decomposes'\n", "decomposes", "words"},
                    FactCase{"_chemical_melting_point_gt 400\n", "> 400 K", "a lower limit"},
                    FactCase{"_chemical_melting_point_lt 420\n", "< 420 K", "an upper limit"},
                    FactCase{"_chemical_melting_point_gt 400\n_chemical_melting_point_lt 420\n",
                             "> 400 K, < 420 K", "both"}));

TEST(ImportedEntry, HasTheFactsThatRecordsHaveRoomFor) {
  const ImportResult entry = of_values(
      "_refine_special_details 'refined as a twin'\n_diffrn_special_details 'cooled slowly'\n"
      "_chemical_absolute_configuration ad\n_diffrn_measurement_device_type 'Nonius KappaCCD "
      "diffractometer'\n"
      "_exptl_crystal_recrystallization_method 'from ethanol'\n_audit_creation_date 2004-01-02\n"
      "_audit_update_record '2005-06-07 corrected'\n_database_code_depnum_ccdc_archive 'AB 123456'\n");
  EXPECT_EQ(entry.entry->experimental_info()->refinement_details, "refined as a twin");
  EXPECT_EQ(entry.entry->experimental_info()->diffraction_details, "cooled slowly");
  EXPECT_TRUE(entry.entry->experimental_info()->absolute_configuration);
  EXPECT_EQ(entry.entry->experimental_info()->intensity_method, ExperimentalInfo::diffractometer);
  EXPECT_EQ(entry.entry->crystal_info()->recrystallisation_solvent, "from ethanol");
  EXPECT_EQ(entry.entry->editors_info()->modification_date, Date(2005, 6, 7));
  EXPECT_EQ(entry.entry->editors_info()->memo, "2005-06-07 corrected");
  EXPECT_EQ(entry.entry->deposition_info()->text(DepositionInfo::archive), "AB 123456");
}

TEST(ImportedEntry, IsAPowderStudyWhereAnyTagOfPowdersHasAValue) {
  EXPECT_EQ(of_values("_pd_meas_scan_method step\n").entry->experimental_info()->powder,
            ExperimentalInfo::powder_study);
  EXPECT_EQ(of_values("_pd_meas_scan_method ?\n").entry->experimental_info()->powder,
            ExperimentalInfo::unknown_study);
}

TEST(ImportedEntry, NamesTheTagsThatNoRecordHasRoomFor) {
  const auto results =
      read_cif("data_g\n_journal_year 1999\n_publ_section_title 'A title'\n_journal_issue ?\n" +
               structure("I", "_journal_paper_doi 10.1/x\n_journal_page_last 350\n"));
  EXPECT_THAT(results.front().not_kept,
              ElementsAre("_journal_paper_doi", "_journal_page_last", "_publ_section_title"));
}

// ---- No warning where nothing is wrong

class HarmlessValues : public testing::TestWithParam<const char*> {};

TEST_P(HarmlessValues, AreNotWarnedOf) {
  const ImportResult entry = imported("data_x\n" + cell_values("4", "90") + atom_loop("", "Si 0 0 0\n") +
                                      "_symmetry_space_group_name_H-M 'P -1'\n" + GetParam());
  EXPECT_THAT(warnings(entry), IsEmpty()) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(
    Cases, HarmlessValues,
    testing::Values("_diffrn_ambient_temperature 298(2)\n_cell_measurement_temperature 298.03\n",
                    "_diffrn_ambient_temperature 293\n_cell_measurement_temperature 293(2)\n",
                    "_diffrn_ambient_temperature 293.2\n_cell_measurement_temperature 293\n",
                    "_exptl_crystal_density_meas 'not measured'\n", "_exptl_crystal_density_meas none\n",
                    "_diffrn_ambient_temperature 'room temperature'\n", "_diffrn_radiation_type 'Mo k\\a'\n",
                    "_audit_creation_date 11-May-2005\n",
                    "loop_\n_geom_bond_atom_site_label_1\n_geom_bond_atom_site_label_2\n_geom_bond_distance\n"
                    "? ? ?\n"));

TEST(IdentifierFromTheNameOrTheFile, IsThatOfTheBlockOrTheStem) {
  ReaderOptions options;
  options.file_stem = "halite";
  const std::string cif = structure("I", "_cod_database_code 1000001\n");
  EXPECT_EQ(read_cif(cif, options).front().identifier, "C1000001");
  options.identifier_from = ReaderOptions::name;
  EXPECT_EQ(read_cif(cif, options).front().identifier, "I");
  options.identifier_from = ReaderOptions::file;
  EXPECT_EQ(read_cif(cif, options).front().identifier, "halite");
}

// ---- CIF 2.0

struct VersionTwoCase {
  const char* value;
  const char* kind;
  int line;
};

class ValueOfCif2 : public testing::TestWithParam<VersionTwoCase> {};

TEST_P(ValueOfCif2, MakesTheFileOneError) {
  const auto results = read_cif("#\\#CIF_2.0\ndata_x\n_cell_length_a 4\n_a " + std::string(GetParam().value));
  ASSERT_EQ(results.size(), 1U);
  EXPECT_EQ(results[0].status, ImportResult::error);
  EXPECT_EQ(results[0].line, GetParam().line);
  EXPECT_EQ(results[0].reason, "the file is CIF 2.0 with " + std::string(GetParam().kind) + " at line " +
                                   std::to_string(GetParam().line) + ", and such values are not read");
  EXPECT_EQ(results[0].hint, "save it as CIF 1.1, without lists, tables and triple quotes");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ValueOfCif2,
    testing::Values(VersionTwoCase{"[1 2 3]\n", "a list", 4}, VersionTwoCase{"\n{'a':1}\n", "a table", 5},
                    VersionTwoCase{"'''it's'''\n", "a text in triple quotes", 4},
                    VersionTwoCase{"\n\"\"\"two\nlines\"\"\"\n", "a text in triple quotes", 5},
                    VersionTwoCase{"\n;\n[\n;\n_b [] # {", "a list", 8}));

TEST(FileOfCif2, IsReadWhereEveryValueIsOneOfCif1) {
  const std::string values =
      "_cell_length_a 4 # [1]\r\n_a '[1 {'\r\n_b \"{\"\r\n_d ''\r\n_e\r\n;\r\n[1]\r\n'''\r\n;\r\n";
  const ImportResult entry = imported("\xEF\xBB\xBF#\\#CIF_2.0\r\ndata_x\r\n" + values);
  EXPECT_EQ(entry.identifier, "x");
  EXPECT_EQ(entry.entry->cell()->a(), 4.0);
}

TEST(FileWithoutTheCodeOfCif2, IsReadAsCif1) {
  for (const char* const code : {"", "#\\#CIF_1.1\n", "#\\#CIF_2.05\n", "\n#\\#CIF_2.0\n"}) {
    const auto results = read_cif(code + std::string("data_x\n_cell_length_a 4\n_a '''b'''\n"));
    ASSERT_EQ(results.size(), 1U) << code;
    EXPECT_EQ(results[0].status, ImportResult::imported) << code;
  }
}

}  // namespace
