#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "regex/searches.h"

namespace {

TEST(RegexResults, AreEmptyBeforeTheFirstSearch) {
  const RegexResults results;
  EXPECT_EQ(results.size(), 0U);
  EXPECT_FALSE(results.empty_match());
  EXPECT_FALSE(results.match(0).matched());
}

TEST(RegexResults, CountTheWholeMatchAndEveryGroup) {
  RegexResults results;
  ASSERT_TRUE(Regex("(a)|(b)|(?:c)").search("xb", results, 0));
  EXPECT_EQ(results.size(), 3U);
  EXPECT_EQ(shown(results), "1-2 x 1-2");
}

TEST(RegexResults, GiveTextAndOffsetsOfAGroup) {
  RegexResults results;
  ASSERT_TRUE(Regex("VORN\\s(\\d+)").search("see VORN 123.", results, 0));
  const RegexResults::Match number = results.match(1);
  const std::string converted = number;
  EXPECT_EQ(converted, "123");
  EXPECT_EQ(number.str(), "123");
  EXPECT_EQ(number.begin_offset(), 9U);
  EXPECT_EQ(number.end_offset(), 12U);
}

TEST(RegexResults, HaveNoTextForAGroupThatTookNoPart) {
  RegexResults results;
  ASSERT_TRUE(Regex("x(a)?").search("x", results, 0));
  EXPECT_FALSE(results.match(1).matched());
  EXPECT_EQ(results.match(1).str(), "");
  EXPECT_EQ(results.match(1).begin_offset(), 0U);
  EXPECT_EQ(results.match(1).end_offset(), 0U);
}

TEST(RegexResults, TellAnEmptyGroupFromOneThatTookNoPart) {
  RegexResults results;
  ASSERT_TRUE(Regex("x(a?)").search("x", results, 0));
  EXPECT_TRUE(results.match(1).matched());
  EXPECT_EQ(shown(results), "0-1 1-1");
}

TEST(RegexResults, HaveNoMatchBeyondTheirSize) {
  RegexResults results;
  ASSERT_TRUE(Regex("a").search("a", results, 0));
  EXPECT_FALSE(results.match(1).matched());
  EXPECT_FALSE(results.match(~0U).matched());
  EXPECT_EQ(results.match(~0U).str(), "");
}

TEST(RegexResults, OutliveTheTextAndTheExpression) {
  RegexResults results;
  {
    auto text = std::make_unique<std::string>("a long text that is not kept within the string itself: R77");
    ASSERT_TRUE(Regex("text (.*): (R\\d+)").search(*text, results, 0));
  }
  EXPECT_EQ(results.match(1).str(), "that is not kept within the string itself");
  EXPECT_EQ(results.match(2).str(), "R77");
}

TEST(RegexResults, AreEmptyAfterASearchThatFindsNothing) {
  RegexResults results;
  ASSERT_TRUE(Regex("(a)").search("a", results, 0));
  EXPECT_FALSE(Regex("b").search("a", results, 0));
  EXPECT_EQ(results.size(), 0U);
  EXPECT_FALSE(results.match(0).matched());
}

TEST(RegexResults, KeepNothingOfTheLastMatchWhateverSearchFails) {
  const struct {
    const char* reason;
    bool (*search)(RegexResults&);
  } searches[] = {
      {"no match", [](RegexResults& results) { return Regex("x").search("ab", results, 0); }},
      {"in no text", [](RegexResults& results) { return Regex("x").search("", results, 0); }},
      {"from a position", [](RegexResults& r) { return Regex("a").search_from_position("ab", 1, r, 0); }},
      {"after the text", [](RegexResults& r) { return Regex("").search_from_position("ab", 3, r, 0); }},
      {"by a pattern", [](RegexResults& results) { return Regex::search("x", "ab", results, 0); }},
      {"nearly", [](RegexResults& results) { return Regex("(a)(b)(c)").search("ab", results, 0); }},
  };
  for (const char* const earlier : {"(a)(b)", "()", "(z)?$"}) {
    for (const auto& each : searches) {
      RegexResults results;
      ASSERT_TRUE(Regex(earlier).search("ab", results, 0));
      EXPECT_FALSE(each.search(results)) << each.reason;
      EXPECT_EQ(results.size(), 0U) << each.reason;
      EXPECT_FALSE(results.empty_match()) << each.reason;
      for (const unsigned int index : {0U, 1U, 2U}) {
        EXPECT_FALSE(results.match(index).matched()) << each.reason;
        EXPECT_EQ(results.match(index).str(), "") << each.reason;
        EXPECT_EQ(results.match(index).end_offset(), 0U) << each.reason;
      }
    }
  }
}

TEST(RegexResults, KnowAnEmptyMatch) {
  RegexResults results;
  ASSERT_TRUE(Regex("z?").search("abc", results, 0));
  EXPECT_TRUE(results.empty_match());
  ASSERT_TRUE(Regex("a").search("abc", results, 0));
  EXPECT_FALSE(results.empty_match());
}

TEST(RegexResults, MayBeCopied) {
  RegexResults results;
  ASSERT_TRUE(Regex("b(c)").search("abc", results, 0));
  const RegexResults copy = results;
  results = RegexResults();
  EXPECT_EQ(copy.match(1).str(), "c");
}

TEST(RegexResults, OfManyGroupsAreLikeThoseOfFew) {
  std::string pattern;
  for (int group = 0; group < 250; ++group) pattern += "(\\d)";
  RegexResults results;
  ASSERT_TRUE(Regex(pattern).search("x" + std::string(249, '1') + "7", results, 0));
  EXPECT_EQ(results.size(), 251U);
  EXPECT_EQ(results.match(250).str(), "7");
  EXPECT_EQ(results.match(250).begin_offset(), 250U);
  ASSERT_TRUE(Regex("(x)").search("x", results, 0));
  EXPECT_EQ(shown(results), "0-1 0-1");
}

TEST(RegexResults, AreEmptyWhenTheyWereMovedFrom) {
  for (const char* pattern : {"b(c)", "b(c)()()()()()()()()()()()()()()()()()"}) {
    RegexResults results;
    ASSERT_TRUE(Regex(pattern).search("abc", results, 0));
    RegexResults taken = std::move(results);
    EXPECT_EQ(taken.match(1).str(), "c");
    EXPECT_EQ(results.size(), 0U);  // NOLINT(bugprone-use-after-move)
    results = std::move(taken);
    EXPECT_EQ(results.match(1).begin_offset(), 2U);
    EXPECT_EQ(taken.size(), 0U);  // NOLINT(bugprone-use-after-move)
  }
}

}  // namespace
