#include "exchange/cif/dates.h"

#include <gtest/gtest.h>

namespace {

struct DayCase {
  const char* text;
  Date day;
  const char* reason;
};

class WrittenDay : public testing::TestWithParam<DayCase> {};

TEST_P(WrittenDay, IsReadInTheUsualNotations) {
  const auto day = day_of(GetParam().text);
  ASSERT_TRUE(day.has_value()) << GetParam().reason;
  EXPECT_EQ(*day, GetParam().day) << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WrittenDay,
    testing::Values(DayCase{"2005-05-11", Date(2005, 5, 11), "as CIF has it"},
                    DayCase{"2005-5-1", Date(2005, 5, 1), "without zeros"},
                    DayCase{"2005/05/11", Date(2005, 5, 11), "strokes"},
                    DayCase{"2005.05.11", Date(2005, 5, 11), "full stops"},
                    DayCase{"20050511", Date(2005, 5, 11), "eight digits"},
                    DayCase{"2005-05-11T13:12:09+01:00", Date(2005, 5, 11), "a time after it"},
                    DayCase{"2005-05-11 13:12:09", Date(2005, 5, 11), "a time after a blank"},
                    DayCase{"11-May-2005", Date(2005, 5, 11), "a month in letters"},
                    DayCase{"11 may 05", Date(2005, 5, 11), "a year of two digits"},
                    DayCase{"2005-MAY-11", Date(2005, 5, 11), "capitals"},
                    DayCase{"May 11, 2005", Date(2005, 5, 11), "as Americans write it"},
                    DayCase{"September 3 1999", Date(1999, 9, 3), "a whole name"},
                    DayCase{"Wed May 11 13:12:09 2005", Date(2005, 5, 11), "as a clock prints it"},
                    DayCase{"Wed May 11 13:12:09 CEST 2005", Date(2005, 5, 11), "with a time zone"},
                    DayCase{"Wed, 11 May 2005 13:12:09", Date(2005, 5, 11), "as a letter has it"},
                    DayCase{"11.05.2005", Date(2005, 5, 11), "day, month, year with full stops"},
                    DayCase{"28/05/2005", Date(2005, 5, 28), "no month is the 28th"},
                    DayCase{"05/28/2005", Date(2005, 5, 28), "no month is the 28th"},
                    DayCase{"05/05/2005", Date(2005, 5, 5), "the same in any order"},
                    DayCase{"91-02-14", Date(1991, 2, 14), "of the first CIFs"}));

class NoDay : public testing::TestWithParam<const char*> {};

TEST_P(NoDay, IsGuessed) {
  EXPECT_FALSE(day_of(GetParam()).has_value()) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(Cases, NoDay,
                         testing::Values("", "today", "2005", "2005-05", "2005-28-12", "2005-02-30",
                                         "05/11/2005", "99999999999-01-01", "May 2005", "13:12:09",
                                         "0000-00-00", "x2005-05-11"));

TEST(LatestDay, IsTheLastOfARecordOfUpdates) {
  EXPECT_EQ(latest_day_of("2004-01-02 first draft 2006-03-04 corrected; ref. 2005-01-01").value_or(Date()),
            Date(2006, 3, 4));
  EXPECT_FALSE(latest_day_of("corrected twice, see 12345").has_value());
}

}  // namespace
