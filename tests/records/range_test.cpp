#include <database_entry/records/range.h>
#include <gtest/gtest.h>

#include <limits>

#include "support/sample_records.h"

namespace {

SigmaRange range(double lower, double upper, double tolerance) {
  return SigmaRange(lower, RangeLimit::inclusive, upper, RangeLimit::inclusive,
                    DoubleComparator{tolerance, less_than});
}

TEST(Range, ByDefaultIsZeroToZeroWithTheDefaultComparator) {
  const SigmaRange none;
  EXPECT_EQ(none.lower(), 0.0);
  EXPECT_EQ(none.upper(), 0.0);
  EXPECT_EQ(none.lower_condition(), 0);
  EXPECT_EQ(none.upper_condition(), 0);
  EXPECT_EQ(none.comparator().tolerance, 1e-7);
  EXPECT_EQ(none.comparator().function, &less_than);
}

TEST(Range, TakesTheConstructorsArgumentsInFieldOrder) {
  const SigmaRange sigma(1.0, RangeLimit::exclusive, 2.0, RangeLimit::unbounded,
                         DoubleComparator{0.5, less_than});
  EXPECT_EQ(sigma.lower(), 1.0);
  EXPECT_EQ(sigma.lower_condition(), RangeLimit::exclusive);
  EXPECT_EQ(sigma.upper(), 2.0);
  EXPECT_EQ(sigma.upper_condition(), RangeLimit::unbounded);
  EXPECT_EQ(sigma.comparator().tolerance, 0.5);
}

TEST(Range, PrintsConditionsThenValuesRunTogether) {
  EXPECT_EQ(printed(Sample<SigmaRange>::filled()), "120.0010.005");
  EXPECT_EQ(printed(SigmaRange()), "0000");
}

TEST(Range, HasStreamAndArchiveOperatorsThatChain) {
  const SigmaRange sigma = Sample<SigmaRange>::filled();
  std::ostringstream os;
  os << sigma << '|' << sigma;
  EXPECT_EQ(os.str(), "120.0010.005|120.0010.005");
  const std::string stored = written([&](Archive& archive) { archive << sigma << 7; });
  EXPECT_EQ(stored, bytes(int32(1), int32(2), float64(0.001), float64(0.005), int32(7)));
  SigmaRange back;
  int next = 0;
  read_from(stored, [&](Archive& archive) { archive >> back >> next; });
  EXPECT_TRUE(back == sigma);
  EXPECT_EQ(next, 7);
}

TEST(Range, KeepsItsComparatorWhenItIsRead) {
  SigmaRange sigma = range(0, 0, 42.0);
  read_from(Sample<SigmaRange>::stored().bytes(), [&](Archive& archive) { sigma.read(archive); });
  EXPECT_EQ(sigma.comparator().tolerance, 42.0);
  EXPECT_EQ(sigma.lower(), 0.001);
}

TEST(Range, TakesAnyStoredCondition) {
  SigmaRange sigma;
  read_from(bytes(int32(INT_MIN), int32(99), float64(0), float64(0)),
            [&](Archive& archive) { sigma.read(archive); });
  EXPECT_EQ(sigma.lower_condition(), INT_MIN);
  EXPECT_EQ(sigma.upper_condition(), 99);
}

TEST(Range, KeepsWhatCameBeforeTheEndOfTheStream) {
  SigmaRange sigma = Sample<SigmaRange>::filled();
  failed_read<ArchiveError>(sigma, bytes(int32(0), int32(1), float64(9.0)));
  EXPECT_EQ(sigma.lower_condition(), RangeLimit::inclusive);
  EXPECT_EQ(sigma.upper_condition(), RangeLimit::exclusive);
  EXPECT_EQ(sigma.lower(), 9.0);
  EXPECT_EQ(sigma.upper(), 0.005);
}

TEST(Range, IsEqualWithinTheToleranceOfEachLimit) {
  EXPECT_TRUE(range(1.0, 2.0, 1e-7) == range(1.00000005, 1.99999995, 1e-7));
  EXPECT_FALSE(range(1.0, 2.0, 1e-7) == range(1.0000002, 2.0, 1e-7));
  EXPECT_FALSE(range(1.0, 2.0, 1e-7) == range(1.0, 2.0000002, 1e-7));
}

TEST(Range, DiffersInEachCondition) {
  const DoubleComparator comparator;
  const SigmaRange closed(1.0, RangeLimit::inclusive, 2.0, RangeLimit::inclusive, comparator);
  EXPECT_FALSE(closed == SigmaRange(1.0, RangeLimit::exclusive, 2.0, RangeLimit::inclusive, comparator));
  EXPECT_FALSE(closed == SigmaRange(1.0, RangeLimit::inclusive, 2.0, RangeLimit::exclusive, comparator));
}

TEST(Range, TestsBothConditionsBeforeAnyValue) {
  static int calls;
  calls = 0;
  const DoubleComparator counting{0.0, [](double, double, double) { return ++calls < 0; }};
  const SigmaRange left(1.0, RangeLimit::inclusive, 2.0, RangeLimit::inclusive, counting);
  EXPECT_FALSE(left == SigmaRange(1.0, RangeLimit::inclusive, 2.0, RangeLimit::unbounded, counting));
  EXPECT_EQ(calls, 0);
  EXPECT_TRUE(left == left);
  EXPECT_EQ(calls, 4);
}

TEST(Range, IsJudgedByTheComparatorOnTheLeftAlone) {
  const SigmaRange wide = range(1.0, 2.0, 10.0);
  const SigmaRange narrow = range(1.5, 2.5, 1e-7);
  EXPECT_TRUE(wide == narrow);
  EXPECT_FALSE(narrow == wide);
}

TEST(Range, WithANaNIsEqualToEveryValue) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(range(nan, 2.0, 1e-7) == range(1.0, nan, 1e-7));
}

}  // namespace
