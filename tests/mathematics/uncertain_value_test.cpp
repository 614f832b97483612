#include <gtest/gtest.h>
#include <mathematics/uncertain_value.h>

#include <limits>

namespace {

TEST(UncertainValue, HoldsBothNumbers) {
  const UncertainValue length(1.397, 0.004);
  EXPECT_EQ(length.value(), 1.397);
  EXPECT_EQ(length.standard_uncertainty(), 0.004);
}

TEST(UncertainValue, HasNoKnownUncertaintyUnlessGiven) {
  EXPECT_EQ(UncertainValue(1.5).standard_uncertainty(), 0.0);
}

TEST(UncertainValue, ComparesBothNumbersToTheLastBit) {
  const double next = std::numeric_limits<double>::epsilon();
  EXPECT_EQ(UncertainValue(1.0, 0.5), UncertainValue(1.0, 0.5));
  EXPECT_NE(UncertainValue(1.0, 0.5), UncertainValue(1.0 + next, 0.5));
  EXPECT_NE(UncertainValue(1.0, 0.5), UncertainValue(1.0, 0.5 + next));
}

}  // namespace
