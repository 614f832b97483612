#include <gtest/gtest.h>
#include <utilities/date.h>

#include <limits>

#include "support/bytes.h"

namespace {

constexpr int least = std::numeric_limits<int>::min();
constexpr int greatest = std::numeric_limits<int>::max();

TEST(Date, IsNoDateByDefault) {
  EXPECT_EQ(printed(Date()), "0000-00-00");
  EXPECT_EQ(Date().year(), 0);
}

TEST(Date, HoldsYearMonthAndDay) {
  const Date date(2003, 5, 17);
  EXPECT_EQ(date.year(), 2003);
  EXPECT_EQ(date.month(), 5);
  EXPECT_EQ(date.day(), 17);
}

TEST(Date, PrintsYearMonthAndDay) {
  EXPECT_EQ(printed(Date(2003, 5, 17)), "2003-05-17");
  EXPECT_EQ(printed(Date(-44, 3, 15)), "-0044-03-15");
}

TEST(Date, PrintsTheSameWhateverTheFormatOfTheStream) {
  std::ostringstream os;
  os << std::hex << std::showbase;
  Date(2026, 11, 21).print(os);
  EXPECT_EQ(os.str(), "2026-11-21");
}

struct NoDay {
  int year, month, day;
  const char* reason;
};

TEST(Date, RefusesWhatIsNoDayOfTheCalendar) {
  const NoDay cases[] = {
      {2005, 28, 12, "month and day swapped"},
      {2023, 2, 29, "not a leap year"},
      {1900, 2, 29, "a century is no leap year"},
      {2003, 4, 31, "April has thirty days"},
      {0, 0, 0, "no date has its own constructor"},
      {2003, 0, 1, "no month"},
      {2003, 1, 0, "no day"},
      {2003, -1, 1, "negative month"},
      {2003, 1, 32, "no month is that long"},
      {least, 1, 1, "smallest int as year"},
      {greatest, 1, 1, "largest int as year"},
      {2003, least, greatest, "extremes"},
  };
  for (const NoDay& c : cases) {
    EXPECT_THROW(Date(c.year, c.month, c.day), std::invalid_argument) << c.reason;
  }
  EXPECT_EQ(message_of<std::invalid_argument>([] { Date(2005, 28, 12); }),
            "Invalid Date: year 2005, month 28, day 12 is no day of the calendar");
}

TEST(Date, AcceptsLeapDaysOfTheProlepticCalendar) {
  for (const int year : {2000, 2024, 0, -4, 1600}) EXPECT_EQ(Date(year, 2, 29).day(), 29) << year;
}

TEST(Date, IsArchivedAsThreeInts) {
  EXPECT_EQ(written([](Archive& archive) { Date(2003, 5, 17).write(archive); }),
            bytes(int32(2003), int32(5), int32(17)));
  EXPECT_EQ(written([](Archive& archive) { Date().write(archive); }), bytes(int32(0), int32(0), int32(0)));
}

TEST(Date, ReadsBackDaysAndNoDate) {
  for (const Date& date : {Date(), Date(1999, 12, 31)}) {
    Date back(1, 1, 1);
    read_from(written([&](Archive& archive) { date.write(archive); }),
              [&](Archive& archive) { back.read(archive); });
    EXPECT_EQ(back, date);
  }
}

struct ThreeNumbers {
  int year, month, day;
  const char* text;
  const char* reason;
};

TEST(Date, TakesAnyThreeNumbersFromAnArchiveAndPrintsThem) {
  const ThreeNumbers cases[] = {
      {2003, 5, 0, "2003-05-00", "known to the month"},
      {2003, 0, 0, "2003-00-00", "known to the year"},
      {2003, 13, 1, "2003-13-01", "no month of the calendar"},
      {0, 0, 1, "0000-00-01", "a day alone"},
      {2003, -5, -17, "2003--5--17", "negative month and day"},
      {least, least, least, "-2147483648--2147483648--2147483648", "no int is less"},
      {greatest, greatest, greatest, "2147483647-2147483647-2147483647", "no int is greater"},
  };
  for (const ThreeNumbers& c : cases) {
    Date date;
    const std::string stored = bytes(int32(c.year), int32(c.month), int32(c.day));
    read_from(stored, [&](Archive& archive) { date.read(archive); });
    EXPECT_EQ(date.year(), c.year) << c.reason;
    EXPECT_EQ(date.month(), c.month) << c.reason;
    EXPECT_EQ(date.day(), c.day) << c.reason;
    EXPECT_EQ(printed(date), c.text) << c.reason;
    EXPECT_EQ(written([&](Archive& archive) { date.write(archive); }), stored) << c.reason;
  }
}

TEST(Date, KeepsItsValueWhenTheStreamEndsInIt) {
  Date date(2003, 5, 17);
  EXPECT_THROW(read_from(bytes(int32(1), int32(2)), [&](Archive& archive) { date.read(archive); }),
               ArchiveError);
  EXPECT_EQ(date, Date(2003, 5, 17));
}

TEST(Date, IsOrderedByYearThenMonthThenDay) {
  EXPECT_LT(Date(2002, 12, 31), Date(2003, 1, 1));
  EXPECT_LT(Date(2003, 1, 31), Date(2003, 2, 1));
  EXPECT_LT(Date(2003, 2, 1), Date(2003, 2, 2));
  EXPECT_LT(Date(), Date(1, 1, 1));
}

}  // namespace
