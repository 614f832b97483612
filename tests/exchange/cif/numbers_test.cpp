#include "exchange/cif/numbers.h"

#include <gtest/gtest.h>

namespace {

struct NumberCase {
  const char* cif;
  double value;
  double standard_uncertainty;
  const char* reason;
};

class CifNumber : public testing::TestWithParam<NumberCase> {};

TEST_P(CifNumber, HasItsUncertaintyInTheLastDigits) {
  const auto number = cif_number(GetParam().cif);
  ASSERT_TRUE(number.has_value()) << GetParam().reason;
  EXPECT_EQ(number->value(), GetParam().value) << GetParam().reason;
  EXPECT_DOUBLE_EQ(number->standard_uncertainty(), GetParam().standard_uncertainty) << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(Cases, CifNumber,
                         testing::Values(NumberCase{"4", 4.0, 0.0, "whole"},
                                         NumberCase{"5.26(4)", 5.26, 0.04, "two decimals"},
                                         NumberCase{"68.8383(7)", 68.8383, 0.0007, "four decimals"},
                                         NumberCase{"293(2)", 293.0, 2.0, "no decimals"},
                                         NumberCase{"9.8730(0)", 9.873, 0.0, "an uncertainty of nothing"},
                                         NumberCase{"1.23(45)", 1.23, 0.45, "two digits"},
                                         NumberCase{".87", 0.87, 0.0, "no digit before the point"},
                                         NumberCase{"-0.5", -0.5, 0.0, "negative"},
                                         NumberCase{"+0.5", 0.5, 0.0, "a plus sign"},
                                         NumberCase{"1.5e3(2)", 1500.0, 200.0, "the power counts"},
                                         NumberCase{"1.5E-1", 0.15, 0.0, "a negative power"}));

class NoCifNumber : public testing::TestWithParam<const char*> {};

TEST_P(NoCifNumber, GivesNothing) {
  EXPECT_FALSE(cif_number(GetParam()).has_value()) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(Cases, NoCifNumber,
                         testing::Values("", "?", ".", "abc", "12 K", "12)", "12(", "12()", "12(a)", "(4)",
                                         "nan", "inf", "1e999", "0x10", "--1", "+-1", "1.2.3",
                                         "12(99999999999)"));

TEST(CifInteger, TakesWholeNumbersOfAnIntOnly) {
  EXPECT_EQ(cif_integer("1979"), 1979);
  EXPECT_EQ(cif_integer("-5"), -5);
  EXPECT_EQ(cif_integer("1979a"), std::nullopt);
  EXPECT_EQ(cif_integer("19.5"), std::nullopt);
  EXPECT_EQ(cif_integer(""), std::nullopt);
  EXPECT_EQ(cif_integer("99999999999"), std::nullopt);
}

}  // namespace
