#include <database_entry/records/double_comparator.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

struct Comparison {
  double a;
  double b;
  double tolerance;
  bool less;
  const char* reason;
};

TEST(LessThan, IsTheFirstBelowTheSecondMinusTheTolerance) {
  const Comparison comparisons[] = {
      {1.0, 2.0, 0.5, true, "well below"},
      {2.0, 1.0, 0.5, false, "above"},
      {1.0, 1.5, 0.5, false, "exactly by the tolerance"},
      {1.0, 2.0, 0.0, true, "no tolerance"},
      {1.0, 1.0, 0.0, false, "no tolerance, equal"},
      {1.0, 1.0, -1.0, true, "a negative tolerance makes equals less"},
      {-infinity, 0.0, 1e-7, true, "from the far end"},
      {infinity, infinity, 1e-7, false, "the same infinity"},
      {nan, 1.0, 1e-7, false, "a NaN is not less"},
      {1.0, nan, 1e-7, false, "nothing is less than a NaN"},
      {1.0, 2.0, nan, false, "a tolerance that is a NaN"},
      {1e16, 1e16 + 2, 1.0, false, "2 - 1 rounds away at this size; adding 1 to the first would not"},
  };
  for (const Comparison& each : comparisons) {
    EXPECT_EQ(less_than(each.a, each.b, each.tolerance), each.less) << each.reason;
  }
}

// Where rounding of b - tolerance and of b - a decide differently, the former counts.
TEST(LessThan, SubtractsTheToleranceAndNotTheOtherNumber) {
  int different = 0;
  for (int step = 1; step <= 10000; ++step) {
    const double b = 0.1 * step;
    const double a = b - 1e-7;
    EXPECT_FALSE(less_than(a, b, 1e-7)) << b;
    if (b - a > 1e-7) ++different;
  }
  EXPECT_GT(different, 100);
}

TEST(DoubleComparator, IsLessThanWithATenMillionthByDefault) {
  EXPECT_EQ(DoubleComparator().tolerance, 1e-7);
  EXPECT_EQ(DoubleComparator().function, &less_than);
}

TEST(DoubleComparator, CallsItsFunctionWithItsTolerance) {
  const DoubleComparator odd{3.0, [](double a, double b, double tolerance) { return a + b == tolerance; }};
  EXPECT_TRUE(odd(1.0, 2.0));
  EXPECT_FALSE(odd(1.0, 1.0));
}

TEST(DoubleComparator, CallsTwoNumbersEqualWhenNeitherIsLess) {
  const DoubleComparator comparator;
  EXPECT_TRUE(comparator.equal(300.0, 300.00000005));
  EXPECT_FALSE(comparator.equal(300.0, 300.0000002));
  EXPECT_FALSE(comparator.equal(300.0000002, 300.0));
}

TEST(DoubleComparator, CallsANaNEqualToEverything) {
  for (const double number : {0.0, -1e300, infinity, nan}) {
    EXPECT_TRUE(DoubleComparator().equal(nan, number));
    EXPECT_TRUE(DoubleComparator().equal(number, nan));
  }
}

}  // namespace
