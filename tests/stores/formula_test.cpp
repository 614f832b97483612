#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stores/formula.h>

#include <string>
#include <vector>

namespace {

struct Reading {
  const char* text;
  const char* hill;  // empty: no formula
  const char* why;
};

class FormulaReading : public testing::TestWithParam<Reading> {};

TEST_P(FormulaReading, GivesItsElementsInHillOrder) {
  const auto elements = parse_formula(GetParam().text);
  EXPECT_EQ(elements ? hill_text(*elements, " ") : "", GetParam().hill) << GetParam().why;
}

INSTANTIATE_TEST_SUITE_P(
    Formula, FormulaReading,
    testing::Values(
        Reading{"C10 H8", "C10 H8", "symbols with counts"},
        Reading{"O2 Ti", "O2 Ti", "a count of 1 is left out"},
        Reading{"TiO2", "O2 Ti", "blanks do not matter"},
        Reading{"Co", "Co", "cobalt, not carbon and oxygen"}, Reading{"CO", "C O", "carbon and oxygen"},
        Reading{"H2 C", "C H2", "carbon first"}, Reading{"Br H2 N", "Br H2 N", "without carbon by symbol"},
        Reading{"C12 H10 O2, 2(H2 O)", "C12 H14 O4", "a part with a factor"},
        Reading{"Cu S O4 . 5H2O", "Cu H10 O9 S", "a dot with blanks separates"},
        Reading{"CaSO4\xC2\xB7"
                "0.5H2O",
                "Ca H O4.5 S", "a middle dot, and a decimal factor"},
        Reading{"(Mg0.9 Fe0.1)2 Si O4", "Fe0.2 Mg1.8 O4 Si", "brackets with a count, decimals"},
        Reading{"[Fe(CN)6]3-, 3(K 1+)", "C6 Fe K3 N6", "nested brackets, charges left out"},
        Reading{"Na0.1 Na0.2", "Na0.3", "a sum of decimals stays short"},
        Reading{"D2 O", "D2 O", "deuterium"}, Reading{"C0 H2", "H2", "a count of 0 is no element"},
        Reading{"", "", "nothing"}, Reading{"Xx2", "", "no element"},
        Reading{"(C2 H4)n", "", "an unknown count"}, Reading{"C (H2", "", "an open bracket"},
        Reading{"C) H2", "", "a bracket that was not opened"},
        Reading{"c2 h4", "", "small letters are no symbols"}, Reading{"C1e9", "", "no exponents"}));

TEST(Formula, OfAThousandOpenBracketsIsNone) {
  EXPECT_FALSE(parse_formula(std::string(1000, '(')).has_value());
}

std::string reduced_text(const std::vector<ElementCount>& elements) {
  const auto reduced = reduced_elements(elements);
  return reduced ? hill_text(*reduced, "") : "none";
}

TEST(Formula, IsReducedToIntegersWithoutACommonDivisor) {
  EXPECT_EQ(reduced_text({{"H", 4}, {"O", 2}}), "H2O");
  EXPECT_EQ(reduced_text({{"Fe", 0.2}, {"Mg", 1.8}}), "FeMg9");
  EXPECT_EQ(reduced_text({{"Nd", 1.0 / 3}, {"O", 1}}), "NdO3");
  EXPECT_EQ(reduced_text({{"Cr", 0.001}, {"O", 1}}), "none");
}

TEST(Formula, IsAnonymousFromTheLargestCountDown) {
  EXPECT_EQ(anonymous_text({{"O", 2}, {"Ti", 1}}), "A2B");
  EXPECT_EQ(anonymous_text({{"Al", 2}, {"Ca", 1}, {"O", 12}, {"Si", 3}}), "A12B3C2D");
  EXPECT_TRUE(anonymous_text(std::vector<ElementCount>(28, {"H", 1})).ends_with("ZAaBa"));
}

}  // namespace
