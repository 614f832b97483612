// The list of full size has the proportions of a real one.
#include <database_entry/records/journal.h>
#include <database_entry/records/journal_table.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

template <class Condition>
int count_lines(const Condition& condition) {
  int count = 0;
  for (int coden = 1; coden <= Journal::max_vorn_coden(); ++coden) {
    if (condition(coden, journal_table::line(coden))) ++count;
  }
  return count;
}

int count_state(int state) {
  return count_lines([state](int coden, std::string_view) { return Journal::state(coden) == state; });
}

bool has_number_for_coden(std::string_view line) {
  return line.substr(5, 6) == "00" + std::string(line.substr(0, 4));
}

TEST(FullJournalList, HasJournalsInEveryState) {
  EXPECT_EQ(count_state(Journal::current), 1089);
  EXPECT_EQ(count_state(Journal::discontinued), 138);
  EXPECT_EQ(count_state(Journal::unknown), 191);
}

TEST(FullJournalList, HasNumbersInPlaceOfCodens) {
  EXPECT_EQ(count_lines([](int, std::string_view line) { return has_number_for_coden(line); }), 378);
  EXPECT_EQ(count_lines([](int, std::string_view line) {
              return has_number_for_coden(line) && !journal_table::title(line).empty();
            }),
            187);
}

TEST(FullJournalList, HasPlaceholdersOfExactly33Characters) {
  EXPECT_EQ(count_lines([](int, std::string_view line) { return line.size() == 33; }), 191);
}

TEST(FullJournalList, HasTitlesOfUpTo103Characters) {
  std::size_t longest = 0;
  for (const std::string_view line : journal_table::lines) {
    longest = std::max(longest, journal_table::title(line).size());
  }
  EXPECT_EQ(longest, 103U);
}

TEST(FullJournalList, HasLinesWhoseColumnsRunTogether) {
  const auto without_a_blank = [](int, std::string_view line) {
    return line.substr(11, 18).find(' ') == std::string_view::npos;
  };
  EXPECT_GT(count_lines(without_a_blank), 100);
}

}  // namespace
