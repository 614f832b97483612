#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lattice/space_group.h>

#include <algorithm>
#include <limits>

#include "operators.h"

namespace {

using testing::HasSubstr;

TEST(SpaceGroup, IsFoundFromItsOperators) {
  const SpaceGroup group(rutile_operators);
  EXPECT_EQ(group.number(), 136);
  EXPECT_EQ(group.hermann_mauguin(), "P 42/m n m");
  EXPECT_EQ(group.hall(), "-P 4n 2n");
  EXPECT_EQ(group.centring(), 'P');
  EXPECT_EQ(group.crystal_system(), "tetragonal");
  EXPECT_TRUE(group.is_tabulated());
  EXPECT_EQ(group.reason(), "");
}

TEST(SpaceGroup, DoesNotDependOnOrderRepetitionOrWholeTranslations) {
  auto list = rutile_operators;
  std::reverse(list.begin(), list.end());
  list.push_back(list.front());
  list.emplace_back("-x+3,-y-2,z+1");
  EXPECT_EQ(SpaceGroup(list).number(), 136);
}

struct Setting {
  const char* what;
  std::vector<std::string> triplets;
  int number;
  const char* symbol;
  bool tabulated;
};

class KnownSetting : public testing::TestWithParam<Setting> {};

TEST_P(KnownSetting, HasItsNumberAndSymbol) {
  const auto& [what, triplets, number, symbol, tabulated] = GetParam();
  const SpaceGroup group(operators(triplets));
  EXPECT_EQ(group.number(), number) << what << ": " << group.reason();
  EXPECT_EQ(group.hermann_mauguin(), symbol) << what;
  EXPECT_EQ(group.is_tabulated(), tabulated) << what;
}

INSTANTIATE_TEST_SUITE_P(
    SpaceGroup, KnownSetting,
    testing::Values(
        Setting{"no symmetry", {"x,y,z"}, 1, "P 1", true},
        Setting{"unique axis b",
                {"x,y,z", "-x,-y,-z", "-x,1/2+y,1/2-z", "x,1/2-y,1/2+z"},
                14,
                "P 1 21/c 1",
                true},
        Setting{"cell choice 2",
                {"x,y,z", "-x,-y,-z", "1/2-x,1/2+y,1/2-z", "1/2+x,1/2-y,1/2+z"},
                14,
                "P 1 21/n 1",
                true},
        Setting{"unique axis c",
                {"x,y,z", "-x,-y,-z", "1/2-x,-y,1/2+z", "1/2+x,y,1/2-z"},
                14,
                "P 1 1 21/a",
                true},
        Setting{"the inversion centre at 1/8, 0, 1/4", {"x,y,z", "1/4-x,-y,1/2-z"}, 2, "P -1", false},
        Setting{
            "the screw axis of P 21 moved by 1/4 along z", {"x,y,z", "-x,1/2+y,1/2-z"}, 4, "P 1 21 1", false},
        Setting{"nothing but a doubled axis", {"x,y,z", "1/2+x,y,z"}, 1, "A 1", false},
        Setting{
            "decimals of few digits", {"x,y,z", "-y,x-y,z+0.3333", "-x+y,-x,z+0.6667"}, 144, "P 31", true}));

TEST(SpaceGroup, OfAListThatIsNoGroupIsNotKnownAndSaysWhatIsMissing) {
  const SpaceGroup group(operators({"x,y,z", "-y,x,z", "-x,-y,z"}));
  EXPECT_FALSE(group.is_known());
  EXPECT_EQ(group.number(), 0);
  EXPECT_THAT(group.reason(), HasSubstr("the operators are no group"));
  EXPECT_THAT(group.reason(), HasSubstr("which is missing"));
}

struct Unknown {
  std::vector<std::string> triplets;
  const char* reason;
};

class UnknownGroup : public testing::TestWithParam<Unknown> {};

TEST_P(UnknownGroup, SaysWhy) {
  const SpaceGroup group(operators(GetParam().triplets));
  EXPECT_FALSE(group.is_known());
  EXPECT_THAT(group.reason(), HasSubstr(GetParam().reason));
}

INSTANTIATE_TEST_SUITE_P(SpaceGroup, UnknownGroup,
                         testing::Values(Unknown{{}, "there are no operators"},
                                         Unknown{{"-x,-y,-z"}, "the identity is missing"},
                                         Unknown{{"x,y,z", "0.123-x,y,z"}, "multiples of 1/24"},
                                         Unknown{{"x,y,z", "2x,y,z"}, "does not keep the volume"},
                                         Unknown{{"x,y,z", "x+y,y,z"}, "the operators are no group"}));

TEST(SpaceGroup, OfMoreOperatorsThanAnyGroupHasIsNotKnown) {
  std::vector<CrystalSymmetryOperator> list;
  for (int i = 0; i < 24; ++i)
    for (int j = 0; j < 9; ++j)
      list.emplace_back("x+" + std::to_string(i) + "/24,y+" + std::to_string(j) + "/24,z");
  EXPECT_THAT(SpaceGroup(list).reason(), HasSubstr("216 different operators"));
}

}  // namespace
