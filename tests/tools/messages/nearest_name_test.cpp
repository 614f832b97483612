#include "tools/messages/nearest_name.h"

#include <gtest/gtest.h>

namespace {

struct DistanceCase {
  const char* a;
  const char* b;
  int distance;
  const char* reason;
};

class TypingDistance : public testing::TestWithParam<DistanceCase> {};

TEST_P(TypingDistance, CountsTheErrors) {
  EXPECT_EQ(typing_distance(GetParam().a, GetParam().b), GetParam().distance) << GetParam().reason;
  EXPECT_EQ(typing_distance(GetParam().b, GetParam().a), GetParam().distance) << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(Cases, TypingDistance,
                         testing::Values(DistanceCase{"", "", 0, "nothing to type"},
                                         DistanceCase{"", "abc", 3, "three letters left out"},
                                         DistanceCase{"show", "show", 0, "the same"},
                                         DistanceCase{"SHOW", "show", 0, "case does not count"},
                                         DistanceCase{"shwo", "show", 1, "two neighbours swapped"},
                                         DistanceCase{"sow", "show", 1, "one letter left out"},
                                         DistanceCase{"shov", "show", 1, "one letter wrong"},
                                         DistanceCase{"kitten", "sitting", 3, "two wrong, one left out"}));

TEST(NearestName, IsTheEarliestOfTheNearest) {
  EXPECT_EQ(nearest_name("lizt", {"show", "list", "lift"}), "list");
}

TEST(NearestName, IsNoneWhereMostLettersAreWrong) {
  EXPECT_EQ(nearest_name("formula", {"show", "list"}), std::nullopt);
}

TEST(NearestName, DoesNotCompareWholeFiles) {
  EXPECT_EQ(nearest_name(std::string(100000, 'a'), {std::string(100000, 'a')}), std::nullopt);
}

TEST(UnknownName, AsksForTheNearest) {
  EXPECT_EQ(unknown_name("column", "athors", {"formula", "authors"}),
            "unknown column 'athors'; did you mean 'authors'?");
}

TEST(UnknownName, ListsAFewWhereNoneIsNear) {
  EXPECT_EQ(unknown_name("format", "xml", {"json", "csv"}), "unknown format 'xml'; known are: json, csv");
}

TEST(UnknownName, ListsNoCrowd) {
  EXPECT_EQ(unknown_name("identifier", "xyz", std::vector<std::string>(1000, "ABCDEF01")),
            "unknown identifier 'xyz'");
}

}  // namespace
