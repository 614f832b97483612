// The script of the build that takes or refuses a journal list.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <sstream>
#include <vector>

#include "tools/temporary_folder.h"

namespace {

struct Outcome {
  int code;
  std::string messages;
};

Outcome run(const std::string& arguments) {
  const TemporaryFolder folder;
  const std::string messages = folder.file("messages");
  const int status = std::system((CMAKE_PROGRAM " " + arguments + " 2>" + messages).c_str());
  return {WEXITSTATUS(status), contents_of_file(messages)};
}

Outcome make_table(const std::string& list, const std::string& source) {
  return run("-DLIST=" + list + " -DSOURCE=" + source + " -P " JOURNAL_LIST_SCRIPT);
}

// What is wrong with each list; nothing for one that is right.
std::vector<std::string> refusals_of(const std::vector<std::string>& lists) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.file("lists"));
  for (std::size_t index = 0; index < lists.size(); ++index) {
    char name[32];
    std::snprintf(name, sizeof name, "lists/%06zu", index);
    folder.with(name, lists[index]);
  }
  const std::string answers =
      run("-DSCRIPT=" JOURNAL_LIST_SCRIPT " -DFOLDER=" + folder.file("lists") + " -P " FOLDER_CHECK_SCRIPT)
          .messages;
  std::vector<std::string> refusals;
  std::istringstream lines(answers);
  for (std::string line; std::getline(lines, line);) refusals.push_back(line);
  return refusals;
}

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

const char* const good_lines[] = {
    "0002 ABCDE9  1967   1   0   0  -1Acta Crystallogr.\n",
    "0002 ABCDE9  1997   11290   0  -1Gazz.Chim.Ital.\n",
    "0002 ABCDE9     0  24   0-195   1J.Organomet.Chem.\n",
    "0002 000002     0   1   0   0   1Cancer Biotherapy and Radiopharmaceuticals\n",
    "0002 abcd99     0-999-999-999   1x\n",
    "0002 azAZ09     0   0   0   0   1x\n",
    "0002 000002     0   0   0   0  -1\n",
    "0002 000002     0   0   0   0   1\xC3\x85ngstr\xC3\xB6m \"quoted\" \\ ?\?/ 100% ; [a] ${b} #\n"};

TEST(JournalList, IsTakenWithEveryLineOfALayoutThatIsRight) {
  std::vector<std::string> lists;
  for (const char* const line : good_lines) lists.push_back(list_with(line));
  EXPECT_EQ(refusals_of(lists), std::vector<std::string>(lists.size()));
}

struct Damage {
  const char* second_line;
  const char* refusal;
};

TEST(JournalList, IsRefusedWithThePlaceOfALineThatIsWrong) {
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
  std::vector<std::string> lists;
  std::vector<std::string> expected;
  for (const Damage& damage : damages) {
    lists.push_back(list_with(damage.second_line));
    expected.emplace_back(damage.refusal);
  }
  EXPECT_EQ(refusals_of(lists), expected);
}

TEST(JournalList, HasNoControlCharacterInItsTitles) {
  std::vector<std::string> lists;
  for (int byte = 0; byte < 256; ++byte) {
    if (byte == '\n') continue;
    lists.push_back(placeholder(1) + "0002 000002     0   0   0   0  -1A" + static_cast<char>(byte) + "Z");
  }
  const std::vector<std::string> refusals = refusals_of(lists);
  ASSERT_EQ(refusals.size(), 255U);
  for (std::size_t index = 0; index < refusals.size(); ++index) {
    const std::size_t byte = index < '\n' ? index : index + 1;
    const bool control = byte < 0x20 || byte == 0x7F;
    EXPECT_TRUE(refusals[index].starts_with(control ? "2:35: error: " : "2:37: error: the last line has"))
        << byte << ": " << refusals[index];
  }
}

TEST(JournalList, HasAllItsLinesAndNoMore) {
  const std::string whole = list_with(placeholder(2));
  const char* const too_few = "error: the list ends here; a journal list has 1418 lines";
  const char* const too_many = "1419:1: error: one line too many; a journal list has 1418 lines";
  EXPECT_THAT(
      refusals_of({"", placeholder(1), whole + "\n", whole + placeholder(1419), whole + "x",
                   whole.substr(0, whole.size() - 1), list_with(""), whole.substr(0, whole.size() - 34)}),
      testing::ElementsAre(std::string("1:1: ") + too_few, std::string("2:1: ") + too_few, too_many, too_many,
                           too_many, "1418:34: error: the last line has no line feed",
                           "2:1: error: expected 0002, the position of the line in the list",
                           std::string("1418:1: ") + too_few));
}

TEST(JournalList, IsRefusedWhenItIsCutAnywhere) {
  std::string last = placeholder(1418);
  std::string before;
  for (int number = 1; number < 1418; ++number) before += placeholder(number);
  std::vector<std::string> lists;
  for (const std::size_t length : {0U, 1U, 4U, 10U, 32U, 33U})
    lists.push_back(before + last.substr(0, length));
  EXPECT_THAT(refusals_of(lists), testing::Each(testing::Not("")));
}

TEST(JournalList, BecomesTextsThatNoCompilerCanMistake) {
  const TemporaryFolder folder;
  const std::string source = folder.file("table.cpp");
  const Outcome result = make_table(folder.with("own.txt", list_with(good_lines[7])), source);
  EXPECT_EQ(result.code, 0) << result.messages;
  EXPECT_NE(contents_of_file(source).find(
                R"(1\xc3""\x85""ngstr\xc3""\xb6""m \x22""quoted\x22"" \x5c"" \x3f""\x3f""\x2f"" 100\x25"")"),
            std::string::npos);
  EXPECT_NE(
      contents_of_file(source).find("    std::string_view(\"0001 000001     0   0   0   0  -1\", 33),\n"),
      std::string::npos);
}

TEST(JournalList, ThatIsDamagedIsRefusedWithItsPlaceAndNothingIsWritten) {
  const TemporaryFolder folder;
  const std::string list = folder.with("own.txt", list_with("0002 OWN-RN  1990   0   0   0   1Own J.\n"));
  const Outcome result = make_table(list, folder.file("table.cpp"));
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(result.messages.starts_with(list + ":2:9: error: a CODEN is six letters and digits\n"))
      << result.messages;
  EXPECT_FALSE(std::filesystem::exists(folder.file("table.cpp")));
}

TEST(JournalList, ThatCannotBeReadOrWhoseTableCannotBeWrittenIsNamed) {
  EXPECT_NE(make_table("/nowhere/list", "/nowhere/table").code, 0);
  EXPECT_NE(make_table("/nowhere/list", "/nowhere/table").messages.find("/nowhere/list"), std::string::npos);
  EXPECT_TRUE(make_table("/dev/null", "/dev/null/table").messages.starts_with("/dev/null:1:1: error: "));
  EXPECT_NE(make_table(JOURNAL_LIST, "/dev/null/table").code, 0);
  EXPECT_NE(make_table(JOURNAL_LIST, "/dev/null/table").messages.find("/dev/null/table"), std::string::npos);
}

}  // namespace
