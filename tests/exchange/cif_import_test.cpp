#include <exchange/cif_import.h>
#include <gmock/gmock.h>

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

std::vector<ImportedEntry> imported_all(const std::string& cif) {
  static const JournalFinder journals;
  return import_cif(cif, "unnamed", journals);
}

// The one entry of a text of one block.
ImportedEntry imported(const std::string& cif) {
  std::vector<ImportedEntry> entries = imported_all(cif);
  if (entries.size() != 1) throw std::runtime_error("one entry was expected");
  return entries.front();
}

// The one entry of a block that holds `values`.
ImportedEntry of_values(const std::string& values) {
  return imported("data_x\n" + values);
}

std::vector<std::string> warnings(const ImportedEntry& entry) {
  std::vector<std::string> texts;
  for (const ImportWarning& warning : entry.warnings) {
    texts.push_back(std::to_string(warning.line) + ": " + warning.text);
  }
  return texts;
}

std::string labels_and_elements(const ImportedEntry& entry) {
  std::string text;
  for (const auto& atom : entry.entry->crystal_maker()->atoms())
    text += atom->label + "=" + atom->element + " ";
  return text;
}

std::vector<std::string> operators(const ImportedEntry& entry) {
  std::vector<std::string> texts;
  for (const auto& symmetry_operator : *entry.entry->cell()->symmetry_operators()) {
    texts.push_back(symmetry_operator.xyz());
  }
  return texts;
}

// ---- Identifiers

struct IdentifierCase {
  const char* cif;
  const char* identifier;
  const char* reason;
};

class ImportedIdentifier : public testing::TestWithParam<IdentifierCase> {};

TEST_P(ImportedIdentifier, IsTheCodeOrTheName) {
  EXPECT_EQ(identifier_of(*imported(GetParam().cif).entry), GetParam().identifier) << GetParam().reason;
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
  const ImportedEntry entry = of_values("_cell_length_a ?\n_journal_year .\n");
  EXPECT_TRUE(*entry.entry->chemical_info() == ChemicalInfo());
  EXPECT_TRUE(*entry.entry->crystal_info() == CrystalInfo());
  EXPECT_TRUE(*entry.entry->experimental_info() == ExperimentalInfo());
  EXPECT_TRUE(*entry.entry->editors_info() == EditorsInfo());
  EXPECT_TRUE(*entry.entry->deposition_info() == DepositionInfo());
  EXPECT_TRUE(*entry.entry->cell() == Cell());
  EXPECT_TRUE(entry.entry->published_geometry().is_null());
}

TEST(ImportedEntry, NamesEveryFieldThatIsAbsent) {
  EXPECT_THAT(of_values("_cell_length_a ?\n").absent,
              ElementsAre("authors", "journal", "volume", "year", "page", "formula", "name", "source", "z",
                          "color", "habit", "temperature", "pressure", "experimental_density",
                          "calculated_density", "r_factor", "probe", "radiation_source", "accession_date",
                          "contributor_code", "coeditor_code", "a", "b", "c", "alpha", "beta", "gamma",
                          "symmetry_operators", "atoms", "published_geometry"));
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
  const ImportedEntry entry =
      of_values("_cell_measurement_temperature 650\n_diffrn_ambient_temperature 298\n");
  EXPECT_EQ(entry.entry->experimental_info()->temperature, 298.0);
  EXPECT_THAT(warnings(entry),
              Contains("2: two temperatures: the cell was measured at '650', the intensities at "
                       "'298', which is kept"));
}

TEST(ImportedEntry, KeepsATemperatureInWordsAsText) {
  const ImportedEntry entry = of_values("_diffrn_ambient_temperature 'room temperature'\n");
  EXPECT_EQ(entry.entry->experimental_info()->temperature, 0.0);
  EXPECT_EQ(entry.entry->experimental_info()->temperature_text, "room temperature");
  EXPECT_THAT(warnings(entry), Contains("2: temperature is not a number: 'room temperature'"));
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
  const ImportedEntry entry = of_values("_audit_creation_date 2005-28-12\n");
  EXPECT_EQ(entry.entry->editors_info()->accession_date, Date());
  EXPECT_THAT(warnings(entry),
              Contains("2: accession_date is not a day written year-month-day: '2005-28-12'"));
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
  const ImportedEntry entry = of_values(cell_values("90", "4.583"));
  EXPECT_EQ(entry.entry->cell()->a(), 90.0);
  EXPECT_EQ(entry.entry->cell()->gamma(), 4.583);
  EXPECT_THAT(warnings(entry),
              Contains("2: the lengths of the cell look like angles, and its angles like lengths"));
}

TEST(ImportedEntry, TakesTheOperatorsOfTheFile) {
  const ImportedEntry entry = of_values(
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
  const ImportedEntry entry = of_values(cell_values("4", GetParam().angles) + GetParam().values);
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
  const ImportedEntry entry = of_values(
      "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 120\n_symmetry_space_group_name_H-M 'R "
      "-3'\n");
  EXPECT_EQ(operators(entry).size(), 18U);
}

TEST(ImportedEntry, WarnsWhenThereIsNoSymmetry) {
  EXPECT_THAT(warnings(of_values("_cell_length_a 4\n")),
              Contains("0: no symmetry operators, and no known name of a space group to take them from"));
}

// ---- Atoms and bonds

std::string atom_loop(const std::string& columns, const std::string& rows) {
  return "loop_\n_atom_site_label\n" + columns +
         "_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n" + rows;
}

TEST(ImportedEntry, LeavesOutAnAtomOfQuestionMarks) {
  const ImportedEntry entry = of_values(atom_loop("", "? ? ? ?\n"));
  EXPECT_THAT(entry.entry->crystal_maker()->atoms(), IsEmpty());
  EXPECT_THAT(entry.absent, Contains("atoms"));
  EXPECT_THAT(warnings(entry), Contains("2: atoms without a place are left out: ?"));
}

TEST(ImportedEntry, HasAtomsAsTheyStand) {
  const ImportedEntry entry = of_values(
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
  const ImportedEntry entry =
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
  const ImportedEntry entry = of_values(atom_loop("", "Si 0 0 0\nAl 0 0 0\nSi 0.5 0 0\nSi 0 0.5 0\n"));
  EXPECT_EQ(labels_and_elements(entry), "Si=Si Al=Al Si=Si Si=Si ");
  EXPECT_THAT(warnings(entry), Contains("2: repeated atom labels: Si"));
}

TEST(ImportedEntry, HasPublishedBondsBetweenItsOwnAtoms) {
  const ImportedEntry entry =
      of_values(atom_loop("", "C1 0 0 0\nO1 0.5 0 0\n") +
                "loop_\n_geom_bond_atom_site_label_1\n_geom_bond_atom_site_label_2\n_geom_bond_distance\n"
                "C1 O1 1.234(5)\nC1 X9 1.5\nC1 O1 ?\n");
  const auto& atoms = entry.entry->crystal_maker()->atoms();
  const auto& bonds = *entry.entry->published_geometry()->bonds;
  ASSERT_EQ(bonds.size(), 1U);
  EXPECT_TRUE(*bonds[0] == PublishedBond(atoms[0], atoms[1], UncertainValue(1.234, 0.005), false, false));
  EXPECT_THAT(warnings(entry), Contains("9: bonds to unknown atoms are left out: X9"));
  EXPECT_THAT(warnings(entry), Contains("9: the length of a bond is not a number: '?'"));
}

// ---- Blocks, line ends, and what is stored

TEST(ImportedFile, InheritsTheValuesOfAGlobalSection) {
  const auto entries = imported_all(
      "global_\n_journal_year 2021\n_journal_volume 7\n"
      "data_a\n_journal_page_first 1\ndata_b\n_journal_volume 8\n");
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

TEST(ImportedFile, HasAnEntryOfABlockNamedGlobalThatIsAlone) {
  EXPECT_EQ(identifier_of(*imported("data_global\n_journal_year 2021\n").entry), "global");
}

TEST(ImportedFile, MayEndItsLinesInAnyWay) {
  const std::string lines = "data_x\n_journal_name_full\n;\n Invented\n Structures\n;\n_journal_year 2021\n";
  for (const char* line_end : {"\n", "\r\n", "\r"}) {
    std::string cif = "\xEF\xBB\xBF";
    for (const char c : lines) cif += c == '\n' ? std::string(line_end) : std::string(1, c);
    const auto publication = imported(cif).entry->publication();
    EXPECT_EQ(publication->journal.name(), "Invented Structures");
    EXPECT_EQ(publication->year, 2021);
  }
}

TEST(ImportedFile, StoresAndReadsBackTheSameBytes) {
  const ImportedEntry entry =
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
  try {
    static_cast<void>(imported_all(GetParam().cif));
    FAIL() << "taken: " << GetParam().cif;
  } catch (const CifError& error) {
    const CifFault& fault = error.fault;
    EXPECT_EQ(std::to_string(fault.line) + ":" + std::to_string(fault.column) + ":" + fault.block + ": " +
                  fault.reason,
              GetParam().message);
    EXPECT_EQ(fault.hint, GetParam().hint);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RejectedFile,
    testing::Values(
        FaultCase{"", "1:1:: the file is empty", ""}, FaultCase{" \r\n\t", "1:1:: the file is empty", ""},
        FaultCase{"global_\n_a 1\n", "1:1:: no data block", "values of global_ alone make no entry"},
        FaultCase{"data_x\n_b 1\nloop_\n_a\n_c\n1 2\n3\n", "3:1:x: wrong number of values in the loop",
                  "3 values do not fill rows of 2 columns: a row is broken or lost"},
        FaultCase{"data_x\n_b 1 2\n", "2:6:x: a tag, loop_ or data_ is expected, not '2'",
                  "a value without a tag: a line before it is broken or lost"},
        FaultCase{"data_x\n_b 'no end\n", "2:11:x: unterminated 'string'", ""},
        FaultCase{"data_x\n_b\n;no end\n", "4:1:x: unterminated text field", ""},
        FaultCase{"data_x\n_b\n_c 1\n", "2:1:x: _b has no value", "write '?' for an unknown value"},
        FaultCase{"data_x\n_b 1\n_B 2\n", "3:1:x: _B stands twice in the block", ""},
        FaultCase{"_b 1\n", "1:1:: expected block header (data_)", ""}));

TEST(RejectedText, IsCutShortInTheMessage) {
  try {
    static_cast<void>(imported_all("data_x\n_b 1 " + std::string(10000, 'a')));
    FAIL() << "taken";
  } catch (const CifError& error) {
    EXPECT_EQ(error.fault.reason, "a tag, loop_ or data_ is expected, not '" + std::string(30, 'a') + "'");
  }
}

}  // namespace
