#include <gtest/gtest.h>
#include <regex/parser.h>
#include <regex/slot_plan.h>

#include <string>

using regex_detail::SlotPlan;

namespace {

SlotPlan plan_of(const std::string& pattern) {
  const regex_detail::SyntaxTree tree = regex_detail::parse(pattern, false);
  return {tree, regex_detail::extents(tree)};
}

// The start of the match is the note that is always there. Each further one makes every search dearer.
TEST(SlotPlan, NotesOnlyWhatDoesNotFollowFromOtherNotes) {
  const struct {
    const char* pattern;
    std::uint32_t notes;
    const char* reason;
  } cases[] = {
      {"(ab)c", 1, "a group behind a start of fixed length"},
      {"a*(bc)d", 1, "a group before an end of fixed length"},
      {"VORN\\s(\\d+)", 1, "a group from a fixed place to the end"},
      {"(a|b)(cd|ef)g", 1, "alternatives of one length"},
      {"(a{3})(b{2}c){2}", 2, "the last of several iterations is noted where it ends"},
      {"x*(ab)?y", 2, "a group of fixed length that may take no part"},
      {"(a+)b", 1, "one byte before the end"},
      {"(a|b)()(^)()c*", 1, "groups of nothing"},
      {"(a|bc)*d", 3, "both ends of a group that varies and is repeated"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(plan_of(each.pattern).notes, each.notes) << each.pattern << ": " << each.reason;
  }
}

TEST(SlotPlan, FindsAPlaceByItsDistanceFromANote) {
  const SlotPlan plan = plan_of("VORN\\s(\\d+)");
  EXPECT_EQ(plan.places[2].note, SlotPlan::match_start);
  EXPECT_EQ(plan.places[2].distance, 5U);
  EXPECT_EQ(plan.places[3].note, plan.match_end());
  EXPECT_EQ(plan.places[3].distance, 0U);
}

}  // namespace
