#include <gtest/gtest.h>
#include <mathematics/range_limit.h>

#include "support/bytes.h"

namespace {

struct Row {
  RangeLimit::LimitCondition condition;
  std::int32_t stored;
  const char* printed;
  const char* why;
};

constexpr Row rows[] = {
    {RangeLimit::inclusive, 0, "0", "the condition of a default range"},
    {RangeLimit::exclusive, 1, "1", "its own number"},
    {RangeLimit::unbounded, 2, "2", "its own number"},
    {static_cast<RangeLimit::LimitCondition>(-7), -7, "-7", "no condition, but kept as it came"},
    {static_cast<RangeLimit::LimitCondition>(INT32_MIN), INT32_MIN, "-2147483648", "the lowest int"},
    {static_cast<RangeLimit::LimitCondition>(INT32_MAX), INT32_MAX, "2147483647", "the highest int"},
};

TEST(LimitCondition, IsWrittenAsAnInt) {
  for (const Row& row : rows) {
    EXPECT_EQ(written([&](Archive& archive) { archive << row.condition; }), int32(row.stored)) << row.why;
  }
}

TEST(LimitCondition, TakesAnyArchivedInt) {
  for (const Row& row : rows) {
    RangeLimit::LimitCondition back = RangeLimit::exclusive;
    EXPECT_EQ(read_from(int32(row.stored), [&](Archive& archive) { archive >> back; }), 4) << row.why;
    EXPECT_EQ(back, row.condition) << row.why;
  }
}

TEST(LimitCondition, PrintsItsNumber) {
  for (const Row& row : rows) {
    std::ostringstream os;
    os << row.condition;
    EXPECT_EQ(os.str(), row.printed) << row.why;
  }
}

TEST(LimitCondition, KeepsItsValueWhereTheStreamEnds) {
  RangeLimit::LimitCondition condition = RangeLimit::unbounded;
  EXPECT_THROW(read_from("\1\0", [&](Archive& archive) { archive >> condition; }), ArchiveError);
  EXPECT_EQ(condition, RangeLimit::unbounded);
}

}  // namespace
