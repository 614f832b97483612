// A thousand questions to a thousand entries: the languages agree with one another, and SQLite with the scan.
#include "stores/support/random_queries.h"

#include <gtest/gtest.h>
#include <stores/entry_query.h>

#include <set>
#include <string>
#include <vector>

#include "stores/support/query_database.h"

namespace {

const std::vector<EntryColumns>& entries() {
  static const std::vector<EntryColumns> columns = random_columns(300, 1);
  return columns;
}

QueryDatabase& database() {
  static QueryDatabase filled;
  static const bool once = [] {
    filled.run("BEGIN", {});
    for (std::size_t index = 0; index < entries().size(); ++index)
      filled.insert(static_cast<std::int64_t>(index), entries()[index]);
    filled.run("COMMIT", {});
    return true;
  }();
  static_cast<void>(once);
  return filled;
}

}  // namespace

TEST(RandomQueries, FindSomethingAndNotEverythingAsARule) {
  std::size_t telling = 0;
  for (const EntryQuery& query : random_queries(entries(), 1000, 2)) {
    const std::size_t found = found_by_scan(entries(), query).size();
    if (found > 0 && found < entries().size()) ++telling;
  }
  EXPECT_GT(telling, 700U);
}

TEST(RandomQueries, FindInSqliteWhatTheScanFinds) {
  std::size_t exact = 0;
  for (const EntryQuery& query : random_queries(entries(), 1000, 3)) {
    const SqlCondition sql = query.sql(SqlDialect::sqlite);
    const auto rows =
        database().run("SELECT e.number FROM entry e WHERE " + sql.where + " ORDER BY 1", sql.parameters);
    const std::set<std::int64_t> found(rows.begin(), rows.end());
    for (std::size_t index = 0; index < entries().size(); ++index) {
      const bool expected = query.matches(entries()[index]);
      const bool is_found = found.contains(static_cast<std::int64_t>(index));
      ASSERT_TRUE(expected ? is_found : sql.recheck || !is_found) << query.filter().value_or("?") << '\n'
                                                                  << sql.where << "\nentry " << index;
    }
    if (!sql.recheck) ++exact;
  }
  EXPECT_GT(exact, 700U);
}

TEST(RandomQueries, AreReadBackFromTheirFilter) {
  for (const EntryQuery& query : random_queries(entries(), 3000, 4)) {
    const auto filter = query.filter();
    if (!filter) continue;
    EXPECT_TRUE(EntryQuery::from_filter(*filter) == query) << *filter;
  }
}

TEST(RandomQueries, OfTheShortFormAreReadBackFromBothLanguages) {
  for (const std::string& text : random_texts(entries(), 3000, 5)) {
    const EntryQuery query = EntryQuery::from_text(text);
    ASSERT_TRUE(query.text()) << text;
    EXPECT_TRUE(EntryQuery::from_text(*query.text()) == query) << text << '\n' << *query.text();
    ASSERT_TRUE(query.filter()) << text;
    EXPECT_TRUE(EntryQuery::from_filter(*query.filter()) == query) << text << '\n' << *query.filter();
  }
}

TEST(RandomQueries, AreContradictedByTheirNegationNowhere) {
  for (const EntryQuery& query : random_queries(entries(), 500, 6)) {
    const EntryQuery negation = !query;
    for (const EntryColumns& entry : entries()) EXPECT_FALSE(query.matches(entry) && negation.matches(entry));
  }
}
