#include <gtest/gtest.h>
#include <regex/parser.h>
#include <regex/tag_plan.h>

#include <string>

using regex_detail::TagPlan;

namespace {

TagPlan plan_of(const std::string& pattern) {
  const regex_detail::SyntaxTree tree = regex_detail::parse(pattern, false);
  return {tree, regex_detail::extents(tree)};
}

// The start of the match has a tag always. Each further one makes every search dearer.
TEST(TagPlan, HasNoTagForWhatFollowsFromOthers) {
  const struct {
    const char* pattern;
    std::uint32_t tags;
    const char* reason;
  } cases[] = {
      {"(ab)c", 1, "a group after a start of fixed length"},
      {"a*(bc)d", 1, "a group before an end of fixed length"},
      {"VORN\\s(\\d+)", 1, "a group from a fixed place to the end"},
      {"(a|b)(cd|ef)g", 1, "alternatives of one length"},
      {"(a{3})(b{2}c){2}", 2, "the last of several iterations has a tag where it ends"},
      {"x*(ab)?y", 2, "a group of fixed length that may take no part"},
      {"(a+)b", 1, "one byte before the end"},
      {"(a|b)()(^)()c*", 1, "groups of nothing"},
      {"(a|bc)*d", 3, "both ends of a group that varies and is repeated"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(plan_of(each.pattern).tags, each.tags) << each.pattern << ": " << each.reason;
  }
}

TEST(TagPlan, FindsAPlaceByItsDistanceFromATag) {
  const TagPlan plan = plan_of("VORN\\s(\\d+)");
  EXPECT_EQ(plan.places[2].tag, TagPlan::match_start);
  EXPECT_EQ(plan.places[2].distance, 5U);
  EXPECT_EQ(plan.places[3].tag, plan.match_end());
  EXPECT_EQ(plan.places[3].distance, 0U);
}

}  // namespace
