#include <database_entry/records/journal_list_format.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "support/bytes.h"

namespace {

using journal_list_format::BadJournalList;

std::string placeholder(int number) {
  char line[64];
  std::snprintf(line, sizeof line, "%04d %06d     0   0   0   0  -1\n", number, number);
  return line;
}

// A list of placeholders in which line 2 is `second`, with its line end.
std::string list_with(const std::string& second) {
  std::string list = placeholder(1) + second;
  for (int number = 3; number <= 1418; ++number) list += placeholder(number);
  return list;
}

std::string refusal_of(const std::string& contents) {
  return message_of<BadJournalList>(
      [&] { static_cast<void>(journal_list_format::lines_of(contents, "list.txt")); });
}

TEST(JournalListFormat, TakesEveryLineOfALayoutThatIsRight) {
  const char* const lines[] = {
      "0002 ABCDE9  1967   1   0   0  -1Acta Crystallogr.\n",
      "0002 ABCDE9  1997   11290   0  -1Gazz.Chim.Ital.\n",
      "0002 ABCDE9     0  24   0-195   1J.Organomet.Chem.\n",
      "0002 000002     0   1   0   0   1Cancer Biotherapy and Radiopharmaceuticals\n",
      "0002 abcd99     0-999-999-999   1x\n",
      "0002 000002     0   0   0   0  -1\n",
      "0002 000002     0   0   0   0   1\xC3\x85ngstr\xC3\xB6m \"quoted\" \\ ?\?/ 100%\n"};
  for (const std::string line : lines) {
    const std::string list = list_with(line);
    const auto taken = journal_list_format::lines_of(list, "list.txt");
    ASSERT_EQ(taken.size(), 1418U);
    EXPECT_EQ(std::string(taken[1]) + "\n", line);
  }
}

struct Damage {
  const char* second_line;
  const char* refusal;
};

TEST(JournalListFormat, NamesThePlaceOfALineThatIsWrong) {
  const Damage damages[] = {
      {"\n", "2:1: error: the line ends here; it needs at least 33 characters, up to its status flag"},
      {"0002 000002     0   0   0   0  -\n",
       "2:33: error: the line ends here; it needs at least 33 characters, up to its status flag"},
      {"0003 000002     0   0   0   0  -1\n",
       "2:1: error: expected 0002, the position of the line in the list"},
      {"   2 000002     0   0   0   0  -1\n",
       "2:1: error: expected 0002, the position of the line in the list"},
      {"0002-000002     0   0   0   0  -1\n", "2:5: error: expected a blank"},
      {"0002 ABC EF     0   0   0   0  -1\n", "2:9: error: a CODEN is six letters and digits"},
      {"0002 ABCD\xC3\x85     0   0   0   0  -1\n", "2:10: error: a CODEN is six letters and digits"},
      {"0002 000003     0   0   0   0  -1\n",
       "2:6: error: expected 000002, the number of the line, where there is no CODEN"},
      {"0002 000002    0    0   0   0  -1\n",
       "2:17: error: the year has to end in column 17, with nothing but blanks before it"},
      {"0002 000002       0   0   0   0-1\n",
       "2:17: error: the year has to end in column 17, with nothing but blanks before it"},
      {"0002 000002 -1967   0   0   0  -1\n",
       "2:13: error: the year has to end in column 17, with nothing but blanks before it"},
      {"0002 000002 1 967   0   0   0  -1\n",
       "2:14: error: the year has to end in column 17, with nothing but blanks before it"},
      {"0002 000002     0  0    0   0  -1\n",
       "2:21: error: the number has to end in column 21, with nothing but blanks before it"},
      {"0002 000002     0   0   -   0  -1\n",
       "2:25: error: the number has to end in column 25, with nothing but blanks before it"},
      {"0002 000002     0       0   0  -1\n",
       "2:21: error: the number has to end in column 21, with nothing but blanks before it"},
      {"0002 000002     0   0   0 0x1  -1\n",
       "2:28: error: the number has to end in column 29, with nothing but blanks before it"},
      {"0002 000002     0   0   0   0   0\n",
       "2:30: error: the status flag is 1 or -1, and ends in column 33"},
      {"0002 000002     0   0   0   0 -1 Title\n",
       "2:30: error: the status flag is 1 or -1, and ends in column 33"},
      {"0002 000002     0   0   0   0  -1Title \n", "2:39: error: the line ends with a blank"},
      {"0002 000002     0   0   0   0  -1 \n", "2:34: error: the line ends with a blank"},
      {"0002 000002     0   0   0   0  -1A\tB\n", "2:35: error: a tab; columns are filled with blanks"},
      {"0002 000002     0   0   0   0  -1A\x1B\n", "2:35: error: a control character"},
      {"0002 000002     0   0   0   0  -1A\x7F\n", "2:35: error: a control character"},
      {"0002 000002     0   0   0   0  -1\r\n",
       "2:34: error: a carriage return; lines end with a line feed alone (try: dos2unix FILE)"}};
  for (const Damage& damage : damages) {
    EXPECT_EQ(refusal_of(list_with(damage.second_line)), std::string("list.txt:") + damage.refusal)
        << damage.second_line;
  }
}

TEST(JournalListFormat, NeedsAllLines) {
  EXPECT_EQ(refusal_of(""), "list.txt:1:1: error: the list ends here; a journal list has 1418 lines");
  EXPECT_EQ(refusal_of(placeholder(1)),
            "list.txt:2:1: error: the list ends here; a journal list has 1418 lines");
}

TEST(JournalListFormat, NeedsTheLineFeedOfTheLastLine) {
  std::string list = list_with(placeholder(2));
  list.pop_back();
  EXPECT_EQ(refusal_of(list), "list.txt:1418:34: error: the last line has no line feed");
}

TEST(JournalListFormat, TakesNoLineTooMany) {
  for (const std::string& more : {std::string("\n"), placeholder(1419), std::string("x")}) {
    EXPECT_EQ(refusal_of(list_with(placeholder(2)) + more),
              "list.txt:1419:1: error: one line too many; a journal list has 1418 lines");
  }
}

TEST(JournalListFormat, SeesALineThatIsMissing) {
  EXPECT_EQ(refusal_of(list_with("")),
            "list.txt:2:1: error: expected 0002, the position of the line in the list");
}

TEST(JournalListFormat, TakesAListCutAnywhereForWrong) {
  const std::string list = list_with(placeholder(2));
  for (std::size_t length = list.size() - 100; length < list.size(); ++length) {
    EXPECT_NE(refusal_of(list.substr(0, length)), "nothing was thrown") << length;
  }
}

TEST(JournalListFormat, WritesTextsThatNoCompilerCanMistake) {
  const std::string source = journal_list_format::table_source({"Ab9. -", "\"\\?1", "\xC3\xA9\x7F"});
  EXPECT_NE(source.find("std::string_view(\"Ab9. -\", 6),\n"), std::string::npos);
  EXPECT_NE(source.find("std::string_view(\"\\042\\134\\0771\", 4),\n"), std::string::npos);
  EXPECT_NE(source.find("std::string_view(\"\\303\\251\\177\", 3),\n"), std::string::npos);
}

}  // namespace
