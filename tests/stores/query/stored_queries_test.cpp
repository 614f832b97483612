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

TYPED_TEST(StoredQueries, ForElementsAloneFindWhatTheScanFindsAlsoAfterChanges) {
  const auto store = this->place_.holding(random_entries(60, 5));
  if (!store->is_read_only()) {
    // Other elements under the same identifiers, some less, and one more.
    const auto others = random_entries(60, 6);
    for (std::size_t index = 0; index < 60; index += 3) {
      auto entry = others[index];
      if (!store->contains(entry.identifier())) continue;
      static_cast<void>(store->put(entry, {}, OnDuplicate::replace));
    }
    store->remove(store->select({}).front());
  }
  const std::vector<EntryColumns> columns = store->select_columns({});
  for (const char* const text : {"O", "Ti,O", "C,H,O", "Si,O", "Cl", "O,O", "Ti,C", "D,O", "Fe", "Xe"}) {
    const EntryQuery query = EntryQuery::from_text(text);
    const std::vector<std::string> expected = found_by_scan(columns, query);
    EXPECT_EQ(texts(store->select(query)), expected) << text;
    EXPECT_EQ(store->count(query), expected.size()) << text;
    EXPECT_EQ(store->select_columns(query).size(), expected.size()) << text;
    for (const std::size_t limit : {0U, 1U, 3U, 100U}) {
      const SelectOptions options = {.after = columns[columns.size() / 3].identifier, .limit = limit};
      std::vector<std::string> page;
      for (const std::string& identifier : expected)
        if (identifier > *options.after && page.size() < limit) page.push_back(identifier);
      EXPECT_EQ(texts(store->select(query, options)), page) << text;
    }
  }
}

TYPED_TEST(StoredQueries, AreTalliedAsTheScanCountsThem) {
  const auto store = this->place_.holding(random_entries(50, 7));
  const auto scan = MemoryPlace().holding(random_entries(50, 7));
  for (const char* const column : {"element", "year", "journal", "author", "sg", "name", "a", "temperature",
                                   "formula", "id", "coden", "natoms"}) {
    for (const char* const text :
         {"", "O", "year=1959..1961", "!author=wyckoff", "name~rutile", "cell=4.02 5.02 6 90 90 90~2%"}) {
      const EntryQuery query = *text == '\0' ? EntryQuery() : EntryQuery::from_text(text);
      EXPECT_EQ(store->tally(column, query), scan->tally(column, query)) << column << " of " << text;
    }
  }
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
