#include <database_entry/records/journal.h>
#include <database_entry/records/journal_table.h>
#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>

#include "support/all_bytes.h"
#include "support/bytes.h"

namespace {

// The lines of the list that this program was built with, read anew.
std::vector<std::string> lines_of_the_list() {
  std::ifstream file(JOURNAL_LIST, std::ios::binary);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

TEST(JournalTable, HoldsTheListLineByLine) {
  const std::vector<std::string> list = lines_of_the_list();
  ASSERT_EQ(list.size(), journal_table::lines.size());
  for (std::size_t index = 0; index < list.size(); ++index)
    EXPECT_EQ(journal_table::lines[index], list[index]);
}

TEST(JournalTable, FindsALineByItsNumber) {
  for (int coden = 1; coden <= journal_table::line_count; ++coden) {
    EXPECT_EQ(std::stoi(std::string(journal_table::line(coden).substr(0, 4))), coden);
  }
}

// The lines as they stand hold no blanks beside a text, so plain substrings say what a journal has to be.
TEST(JournalTable, GivesEveryJournalTheTextsOfItsLine) {
  const std::vector<std::string> list = lines_of_the_list();
  for (std::size_t index = 0; index < list.size(); ++index) {
    const std::string& line = list[index];
    const Journal journal(static_cast<int>(index) + 1);
    const bool titled = line.size() > 33;
    EXPECT_EQ(journal.name(), titled ? line.substr(33) : "Unknown");
    EXPECT_EQ(journal.international_coden(), titled ? line.substr(5, 6) : "Unknown");
    EXPECT_EQ(journal.state(), !titled ? 2 : line.substr(29, 4) == "  -1" ? 1 : 0);
  }
}

TEST(JournalTable, CutsByColumn) {
  const std::string_view line = "0011 GCITA9  1997   11290   0  -1Gazz.Chim.Ital.";
  EXPECT_EQ(journal_table::international_coden(line), "GCITA9");
  EXPECT_EQ(journal_table::title(line), "Gazz.Chim.Ital.");
  EXPECT_EQ(journal_table::status_flag(line), -1);
}

TEST(JournalTable, TrimsBlanksAndTabsAndNothingElse) {
  const std::string_view line = "0001 \tAB 9 19671290-195-195\t   7 \t J. \n \t";
  EXPECT_EQ(journal_table::international_coden(line), "AB 9");
  EXPECT_EQ(journal_table::title(line), "J. \n");
}

TEST(JournalTable, TrimsNoOtherByte) {
  const auto is_trimmed = [](char byte) {
    const std::string each(1, byte);
    const std::string line =
        "0001 " + each + each + "AB" + each + each + std::string(22, '0') + each + "J" + each;
    const bool title = journal_table::title(line) == "J";
    EXPECT_EQ(journal_table::international_coden(line) == "AB", title) << int{byte};
    return title;
  };
  EXPECT_EQ(accepted(is_trimmed), by_value(" \t"));
}

struct Flag {
  const char* columns;
  int flag;
  const char* reason;
};

TEST(JournalTable, ConvertsTheFlagAfterItsBlanks) {
  const Flag flags[] = {{"   1", 1, "current"},          {"  -1", -1, "discontinued"},
                        {"1   ", 1, "left-aligned"},     {"-999", -999, "fills its column"},
                        {"9999", 9999, "the largest"},   {"    ", 0, "no number at all"},
                        {"  1x", 1, "up to the digits"}, {"   x", 0, "no digits"}};
  for (const Flag& each : flags) {
    const std::string line = std::string(29, '0') + each.columns + "1999 Titles";
    EXPECT_EQ(journal_table::status_flag(line), each.flag) << each.reason;
  }
}

TEST(JournalTable, HasNothingInColumnsAfterTheEndOfALine) {
  const std::string line(33, 'x');
  EXPECT_EQ(journal_table::title(line), "");
  for (const std::size_t length : {0U, 4U, 28U, 32U}) {
    const std::string_view cut = std::string_view(line).substr(0, length);
    EXPECT_EQ(
        message_of<std::out_of_range>([&] { static_cast<void>(journal_table::title(cut)); }),
        "basic_string::substr: a journal line of " + std::to_string(length) + " characters has no column 33");
  }
}

TEST(JournalTable, NeedsALineUpToTheColumnThatIsAskedFor) {
  EXPECT_THROW(static_cast<void>(journal_table::international_coden("0001")), std::out_of_range);
  EXPECT_EQ(journal_table::international_coden("0001 "), "");
  EXPECT_THROW(static_cast<void>(journal_table::status_flag(std::string(28, ' '))), std::out_of_range);
  EXPECT_EQ(journal_table::status_flag(std::string(29, ' ')), 0);
}

}  // namespace
