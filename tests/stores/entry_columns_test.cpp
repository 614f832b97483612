#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stores/entry_columns.h>

#include <cmath>
#include <limits>
#include <set>
#include <string>

#include "support/sample_entry.h"

namespace {

using testing::ElementsAre;

EntryColumns columns_of(const CrystalStructureDatabaseEntry& entry) {
  return entry_columns(entry, {});
}

TEST(EntryColumns, OfAnEmptyEntryAreNotKnown) {
  EXPECT_EQ(columns_of(empty_entry()), EntryColumns());
}

TEST(EntryColumns, TakeCellFormulaAndPublication) {
  const EntryColumns columns = columns_of(sample_entry());
  EXPECT_EQ(columns.identifier, "ABCDEF");
  EXPECT_EQ(columns.formula, "C N");
  EXPECT_EQ(columns.element_count, 2);
  EXPECT_EQ(columns.a, 10.0);
  EXPECT_EQ(columns.gamma, 92.0);
  EXPECT_EQ(columns.year, 1999);
  EXPECT_THAT(columns.authors, ElementsAre("A.Author"));
  EXPECT_THAT(columns.surnames, ElementsAre("Author"));
  EXPECT_THAT(columns.journals, ElementsAre("J.Am.Chem.Soc.", "JACSAT"));
  EXPECT_THAT(columns.names, ElementsAre("one", "two"));
  EXPECT_THAT(columns.depositions, ElementsAre("VORN 7", "7"));
  EXPECT_THAT(columns.related, ElementsAre("GHIJKL"));
}

TEST(EntryColumns, TakeTheReducedCellAndTheSpaceGroup) {
  const auto operators = handle_to(std::vector<CrystalSymmetryOperator>{
      CrystalSymmetryOperator(), CrystalSymmetryOperator("-x,-y,-z"),
      CrystalSymmetryOperator("1/2+x,1/2+y,1/2+z"), CrystalSymmetryOperator("1/2-x,1/2-y,1/2-z")});
  const CrystalStructureImmediateDatabaseEntry entry(
      DatabaseEntryIdentifier("X"), handle_to(CrystalMaker(handle_to(Cell(4, 4, 4, 90, 90, 90, operators)))));
  const EntryColumns columns = columns_of(entry);
  EXPECT_EQ(columns.space_group, 2);
  ASSERT_TRUE(columns.reduced_a && columns.reduced_gamma && columns.reduced_volume);
  EXPECT_NEAR(*columns.reduced_a, std::sqrt(12.0), 1e-9);
  EXPECT_NEAR(*columns.reduced_gamma, 109.47122, 1e-5);
  EXPECT_NEAR(*columns.reduced_volume, 32.0, 1e-9);
}

TEST(EntryColumns, OfACellThatIsNoneHaveNoReducedCell) {
  const CrystalStructureImmediateDatabaseEntry entry(DatabaseEntryIdentifier("X"), handle_to(CrystalMaker()));
  const EntryColumns columns = columns_of(entry);
  EXPECT_FALSE(columns.reduced_a || columns.volume || columns.space_group);
}

TEST(EntryColumns, HoldNoNumberThatIsZeroOrNotFinite) {
  auto entry = sample_entry();
  ExperimentalInfo experiment;
  experiment.r_factor = std::numeric_limits<double>::quiet_NaN();
  experiment.calculated_density = std::numeric_limits<double>::infinity();
  entry.set_experimental_info(handle_to(experiment));
  const EntryColumns columns = columns_of(entry);
  EXPECT_FALSE(columns.r_factor || columns.density || columns.temperature);
}

TEST(EntryColumns, TakeTheMeasuredDensityBeforeTheCalculatedOne) {
  auto entry = sample_entry();
  ExperimentalInfo experiment;
  experiment.calculated_density = 2.0;
  entry.set_experimental_info(handle_to(experiment));
  EXPECT_EQ(columns_of(entry).density, 2.0);
  experiment.experimental_density = 1.5;
  entry.set_experimental_info(handle_to(experiment));
  EXPECT_EQ(columns_of(entry).density, 1.5);
}

TEST(EntryColumns, CountTheAtomsOfTheCellWhereThereIsNoFormula) {
  auto entry = sample_entry();
  entry.set_chemical_info({});
  CrystalInfo crystal;
  crystal.z = 2.0;
  entry.set_crystal_info(handle_to(crystal));
  // One half-occupied atom in a general position of a cell with two operators.
  EXPECT_EQ(columns_of(entry).elements, (std::vector<ElementCount>{{"C", 0.5}}));
  EXPECT_EQ(columns_of(entry).atom_count, 1);
}

TEST(EntryColumns, SayWhereTheEntryCameFrom) {
  const EntryColumns columns = entry_columns(sample_entry(), {"a.cif", "x", "00", 1175781620});
  EXPECT_EQ(columns.source, "a.cif");
  EXPECT_EQ(columns.block, "x");
  EXPECT_EQ(columns.sha256, "00");
  EXPECT_EQ(columns.stored_at, "2007-04-05T14:00:20Z");
}

struct Surname {
  const char* author;
  const char* surname;
};

class EntryColumnsSurname : public testing::TestWithParam<Surname> {};

TEST_P(EntryColumnsSurname, IsFoundInTheAuthorsName) {
  auto entry = sample_entry();
  entry.set_publication(handle_to(Publication({GetParam().author}, Journal(4), "", 0, "")));
  EXPECT_THAT(columns_of(entry).surnames, ElementsAre(GetParam().surname)) << GetParam().author;
}

INSTANTIATE_TEST_SUITE_P(Authors, EntryColumnsSurname,
                         testing::Values(Surname{"R.W.G.Wyckoff", "Wyckoff"},
                                         Surname{"Wyckoff, R. W. G.", "Wyckoff"},
                                         Surname{"Ralph Wyckoff", "Wyckoff"}, Surname{"Wyckoff", "Wyckoff"},
                                         Surname{"J.D.van der Waals", "van der Waals"},
                                         Surname{"van der Waals, J. D.", "van der Waals"},
                                         Surname{"Johannes van der Waals", "van der Waals"},
                                         Surname{"van Smaalen", "van Smaalen"},
                                         Surname{"A.B.Smith Jr.", "Smith"}, Surname{"J.-P.Serre", "Serre"},
                                         Surname{"M. O'Keeffe", "O'Keeffe"}));

TEST(EntryColumns, HaveDifferentNamesEverywhere) {
  std::set<std::string> filter_names, sql_names;
  int count = 0;
  for_each_entry_column([&](const auto& column) {
    EXPECT_EQ(column.number, ++count);
    filter_names.insert(column.filter_name);
    sql_names.insert(column.sql_name);
  });
  EXPECT_EQ(filter_names.size(), static_cast<std::size_t>(count));
  EXPECT_EQ(sql_names.size(), static_cast<std::size_t>(count));
}

struct Folding {
  const char* text;
  const char* folded;
};

class FoldedText : public testing::TestWithParam<Folding> {};

TEST_P(FoldedText, HasSmallLetters) {
  EXPECT_EQ(folded(GetParam().text), GetParam().folded);
}

INSTANTIATE_TEST_SUITE_P(Letters, FoldedText,
                         testing::Values(Folding{"Rutile 2B", "rutile 2b"},
                                         Folding{"GÖTTLICHER", "göttlicher"}, Folding{"ÞÐ×ß", "þð×ß"},
                                         Folding{"ŠČŁŻŸ", "ščłżÿ"}, Folding{"ΑΒΩΆΏ", "αβωάώ"},
                                         Folding{"ЁЖЯ", "ёжя"}, Folding{"\xC3", "\xC3"},
                                         Folding{"\xC3Z", "\xC3z"}, Folding{"日本", "日本"}));

}  // namespace
