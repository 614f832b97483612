#include <gtest/gtest.h>
#include <stores/entry_query.h>

#include <string>
#include <vector>

namespace {

using Operator = EntryQuery::Operator;

EntryColumns tetragonal() {
  EntryColumns columns;
  columns.identifier = "X";
  columns.reduced_a = 2.959;
  columns.reduced_b = columns.reduced_c = 4.594;
  columns.reduced_alpha = columns.reduced_beta = columns.reduced_gamma = 90.0;
  columns.reduced_volume = 2.959 * 4.594 * 4.594;
  return columns;
}

}  // namespace

TEST(EntryQuery, IsTheSameFromObjectsAsFromEitherLanguage) {
  const EntryQuery objects = EntryQuery::element("Ti", Operator::at_least, 1) && EntryQuery::element("O") &&
                             !EntryQuery::element("Si") && EntryQuery::between("year", 1960, 1990) &&
                             EntryQuery::compare("author", Operator::equal, "Wyckoff") &&
                             EntryQuery::compare("name", Operator::contains, "rutile") &&
                             EntryQuery::known("a");
  EXPECT_TRUE(objects == EntryQuery::from_text("Ti>=1,O,!Si,year=1960..1990,author=wyckoff,name~rutile,a"));
  EXPECT_TRUE(objects == EntryQuery::from_filter(
                             "_dbentry_count_ti>=1 AND elements HAS \"O\" AND NOT elements HAS \"Si\" AND "
                             "_dbentry_year>=1960 AND "
                             "_dbentry_year<=1990 AND _dbentry_author_folded HAS \"wyckoff\" AND "
                             "_dbentry_name_folded HAS CONTAINS \"rutile\" AND _dbentry_a IS KNOWN"));
}

TEST(EntryQuery, OfNothingIsEveryEntry) {
  EXPECT_TRUE(EntryQuery().matches(EntryColumns()));
  EXPECT_EQ(EntryQuery().text(), "");
  EXPECT_EQ(EntryQuery().filter(), "1=1");
  EXPECT_TRUE((EntryQuery() && EntryQuery::element("Ti")) == EntryQuery::element("Ti"));
  EXPECT_TRUE(EntryQuery::from_text("  ") == EntryQuery());
}

TEST(EntryQuery, TakesExactTextsByTheNamesOfFilters) {
  EntryColumns columns;
  columns.formula = "C O";
  EXPECT_TRUE(EntryQuery::compare("formula", Operator::equal, "c o").matches(columns));
  EXPECT_FALSE(EntryQuery::compare("_dbentry_formula", Operator::equal, "c o").matches(columns));
  EXPECT_TRUE(EntryQuery::compare("_dbentry_formula", Operator::equal, "C O").matches(columns));
}

TEST(EntryQuery, TwiceNegatedIsItself) {
  const EntryQuery query = EntryQuery::from_text("Ti,year=1960");
  EXPECT_TRUE((!!query) == query);
  EXPECT_FALSE((!query) == query);
}

TEST(EntryQuery, FindsACellInAnotherSetting) {
  EXPECT_TRUE(EntryQuery::cell({4.594, 4.594, 2.959, 90, 90, 90}, 0.5).matches(tetragonal()));
  EXPECT_TRUE(EntryQuery::cell({4.61, 2.95, 4.58, 90, 90.3, 90}, 0.5).matches(tetragonal()));
  EXPECT_FALSE(EntryQuery::cell({4.7, 2.95, 4.594, 90, 90, 90}, 0.5).matches(tetragonal()));
  EXPECT_FALSE(EntryQuery::cell({4.594, 4.594, 2.959, 90, 90, 90}, 0.5).matches(EntryColumns()));
  // The doubled cell with its base centred has the same lattice points.
  EXPECT_TRUE(EntryQuery::cell({6.4969, 6.4969, 2.959, 90, 90, 90}, 0.5, 'C').matches(tetragonal()));
}

TEST(EntryQuery, AsksADatabaseForNoLessThanACellFinds) {
  const SqlCondition sql = EntryQuery::cell({4.594, 4.594, 2.959, 90, 90, 90}, 0.5).sql(SqlDialect::sqlite);
  EXPECT_TRUE(sql.recheck);
  EXPECT_EQ(sql.parameters.size(), 8U);
}

// In a time that grew with the square of the length these would take hours.
TEST(EntryQuery, OfTwoMillionBytesIsRead) {
  constexpr std::size_t length = 2'000'000;
  const std::string text(length, '(');
  EXPECT_EQ(EntryQuery::from_filter("id=\"" + text + "\"" + std::string(length, ' ')),
            EntryQuery::from_filter("id=\"" + text + "\""));
}
