#include <database_entry/references/regex_grep.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

// Keeps where each match begins. A copy shares nothing with the collector it was made from.
struct Offsets {
  std::vector<unsigned int> begins;
  void operator()(const RegexResults& results) { begins.push_back(results.match(0).begin_offset()); }
};

std::vector<unsigned int> offsets(const std::string& pattern, const std::string& text) {
  return regex_grep(Regex(pattern), text, Offsets(), 0).begins;
}

TEST(RegexGrep, TakesEachMatchFromLeftToRight) {
  EXPECT_EQ(offsets("a+", "aab ca"), (std::vector<unsigned int>{0, 5}));
}

TEST(RegexGrep, GoesOnWhereTheMatchEnded) {
  EXPECT_EQ(offsets("aa", "aaaaa"), (std::vector<unsigned int>{0, 2}));
}

TEST(RegexGrep, StepsFromThePreviousPositionAfterAnEmptyMatch) {
  // The end of the text is found from 0, from 1 and from 2; a step from the match would find it once.
  EXPECT_EQ(offsets("$", "xyz"), (std::vector<unsigned int>{3, 3, 3}));
}

TEST(RegexGrep, NeverSearchesAnEmptyText) {
  EXPECT_TRUE(offsets("a*", "").empty());
}

TEST(RegexGrep, TakesTheCaretAsTheStartOfTheTextOnly) {
  EXPECT_EQ(offsets("^a", "aaa"), (std::vector<unsigned int>{0}));
}

TEST(RegexGrep, GivesBackTheCollectorThatSawTheMatchesAndLeavesTheCallersAlone) {
  const Offsets mine;
  EXPECT_EQ(regex_grep(Regex("a"), "a", mine, 0).begins.size(), 1U);
  EXPECT_TRUE(mine.begins.empty());
}

TEST(RegexGrep, FindsMatchesAnywhereWithTheFlagsOfDepositionNumbers) {
  EXPECT_EQ(regex_grep(Regex("\\d+"), "x 1 y 2", Offsets(), 4096).begins, (std::vector<unsigned int>{2, 6}));
}

TEST(RegexGrep, TakesBytesAbove127AsTheyAre) {
  EXPECT_EQ(offsets("[^a]", "a\xff\x80"), (std::vector<unsigned int>{1, 2}));
}

TEST(RegexGrep, PassesOnWhatTheCollectorThrows) {
  const auto refuse = [](const RegexResults&) { throw std::runtime_error("no more"); };
  EXPECT_THROW(regex_grep(Regex("a"), "a", refuse, 0), std::runtime_error);
}

}  // namespace
