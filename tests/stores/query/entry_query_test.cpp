#include <gtest/gtest.h>
#include <stores/entry_query.h>

#include <chrono>
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

TEST(EntryQuery, IsReadInTimeThatIsLinearInItsLength) {
  const auto seconds = [](const std::string& filter) {
    const auto begin = std::chrono::steady_clock::now();
    for (int times = 0; times < 3; ++times) static_cast<void>(EntryQuery::from_filter(filter));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  };
  // A long text, long white space, and many conditions: ten times the length, well under a hundred times the
  // time.
  const auto with_text = [](std::size_t length) {
    return "id=\"" + std::string(length, '(') + "\"" + std::string(length, ' ');
  };
  const auto with_conditions = [](int count) {
    std::string filter = "id=\"x\"";
    for (int more = 1; more < count; ++more) filter += " OR NOT (id=\"x\")";
    return filter;
  };
  EXPECT_LT(seconds(with_text(500'000)), 40 * seconds(with_text(50'000)) + 0.01);
  EXPECT_LT(seconds(with_conditions(1900)), 40 * seconds(with_conditions(190)) + 0.01);
}
