// The same answers from every store as from the scan of its columns.
#include <gtest/gtest.h>
#include <stores/entry_store.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "stores/places.h"
#include "stores/support/random_entries.h"
#include "stores/support/random_queries.h"

namespace {

template <class Place>
class StoredQueries : public testing::Test {
 protected:
  void SetUp() override {
    if (!place_.is_there()) GTEST_SKIP() << "the server is not installed";
  }
  Place place_;
};
using Places = testing::Types<MemoryPlace, SqlitePlace, ArchivePlace, PostgresqlPlace>;
TYPED_TEST_SUITE(StoredQueries, Places);

std::vector<std::string> texts(const std::vector<DatabaseEntryIdentifier>& identifiers) {
  std::vector<std::string> result;
  for (const auto& identifier : identifiers) result.push_back(identifier.text());
  return result;
}

}  // namespace

TYPED_TEST(StoredQueries, FindAndCountWhatTheScanFinds) {
  const auto store = this->place_.holding(random_entries(50, 1));
  const std::vector<EntryColumns> columns = store->select_columns({});
  ASSERT_EQ(columns.size(), 50U);
  std::size_t telling = 0;
  for (const EntryQuery& query : random_queries(columns, 1000, 2)) {
    const std::vector<std::string> expected = found_by_scan(columns, query);
    ASSERT_EQ(texts(store->select(query)), expected) << query.filter().value_or("?");
    ASSERT_EQ(store->count(query), expected.size()) << query.filter().value_or("?");
    if (!expected.empty() && expected.size() < columns.size()) ++telling;
  }
  EXPECT_GT(telling, 500U);
}

TYPED_TEST(StoredQueries, ArePagedByTheLastOneSeen) {
  const auto store = this->place_.holding(random_entries(40, 3));
  const std::vector<EntryColumns> columns = store->select_columns({});
  for (const EntryQuery& query : random_queries(columns, 100, 4)) {
    std::vector<std::string> found;
    SelectOptions options{.after = std::nullopt, .limit = 7};
    for (auto page = texts(store->select(query, options)); !page.empty();
         page = texts(store->select(query, options))) {
      ASSERT_LE(page.size(), 7U);
      found.insert(found.end(), page.begin(), page.end());
      options.after = page.back();
    }
    ASSERT_EQ(found, found_by_scan(columns, query)) << query.filter().value_or("?");
  }
}
