// Lists of texts are compared text by text: two that join to the same text are not equal for that.
#include <database_entry/records/chemical_info.h>
#include <database_entry/records/publication.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace std::string_literals;
using Texts = std::vector<std::string>;

// No two are equal.
const std::vector<Texts> lists = {
    {},           {""},     {"", ""},    {"a, b"},   {"a", "b"},     {"b", "a"},      {"a", ", b"},
    {"a, ", "b"}, {"ab"},   {"ab", ""},  {"", "ab"}, {"a", "b", ""}, {"a\0b"s},       {"a\0c"s},
    {"a\t1: b"},  {"a\nb"}, {"a", "b "}, {"A", "b"}, {"a\0"s, "b"},  {"a", "b", "b"},
};

template <class MakeRecord>
void expect_equal_only_to_itself(const MakeRecord& record_with) {
  for (std::size_t left = 0; left < lists.size(); ++left) {
    for (std::size_t right = 0; right < lists.size(); ++right) {
      EXPECT_EQ(record_with(lists[left]) == record_with(lists[right]), left == right)
          << left << ", " << right;
    }
  }
}

TEST(ComparedLists, OfAuthorsAreEqualTextByText) {
  expect_equal_only_to_itself(
      [](const Texts& authors) { return Publication(authors, Journal(4), "1", 2000, "1"); });
}

TEST(ComparedLists, OfSynonymsAreEqualTextByText) {
  expect_equal_only_to_itself(
      [](const Texts& synonyms) { return ChemicalInfo("", "", "", "", "", "", "", {}, synonyms); });
}

}  // namespace
