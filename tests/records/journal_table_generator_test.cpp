// The program of the build that takes or refuses a journal list.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "tools/temporary_folder.h"

namespace {

struct Outcome {
  int code;
  std::string messages;
};

Outcome run(const TemporaryFolder& folder, const std::string& arguments) {
  const std::string messages = folder.file("messages");
  const int status = std::system((JOURNAL_TABLE_GENERATOR " " + arguments + " 2>" + messages).c_str());
  return {WEXITSTATUS(status), contents_of_file(messages)};
}

std::string list_with_line_7(const std::string& line_7) {
  std::ifstream built_in(JOURNAL_LIST);
  std::string list;
  int number = 1;
  for (std::string line; std::getline(built_in, line); ++number) list += (number == 7 ? line_7 : line) + "\n";
  return list;
}

TEST(JournalTableGenerator, WritesTheTableOfAListOfOnesOwn) {
  const TemporaryFolder folder;
  const std::string list =
      folder.with("own.txt", list_with_line_7("0007 OWNJRN  1990   0   0   0   1Own J."));
  const std::string source = folder.file("table.cpp");
  EXPECT_EQ(run(folder, list + " " + source).code, 0);
  EXPECT_NE(contents_of_file(source).find("\"0007 OWNJRN  1990   0   0   0   1Own J.\", 39),\n"),
            std::string::npos);
}

TEST(JournalTableGenerator, RefusesADamagedListWithItsPlaceAndWritesNothing) {
  const TemporaryFolder folder;
  const std::string list =
      folder.with("own.txt", list_with_line_7("0007 OWN-RN  1990   0   0   0   1Own J."));
  const Outcome result = run(folder, list + " " + folder.file("table.cpp"));
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.messages, list + ":7:9: error: a CODEN is six letters and digits\n");
  EXPECT_FALSE(std::filesystem::exists(folder.file("table.cpp")));
}

struct Misuse {
  const char* arguments;
  int code;
  const char* messages;
  const char* reason;
};

TEST(JournalTableGenerator, EndsWithTheFileAndTheReason) {
  const Misuse cases[] = {
      {"", 2, "usage: journal_table_generator LIST SOURCE\n", "no file"},
      {JOURNAL_LIST, 2, "usage: journal_table_generator LIST SOURCE\n", "one file"},
      {"/nowhere a", 1, "/nowhere: error: cannot be read, or is empty\n", "a list that is not there"},
      {"/dev/null a", 1, "/dev/null: error: cannot be read, or is empty\n", "an empty list"},
      {JOURNAL_LIST " /dev/full", 1, "/dev/full: error: cannot be written\n", "a full disk"},
      {JOURNAL_LIST " /nowhere/a", 1, "/nowhere/a: error: cannot be written\n", "no such folder"}};
  const TemporaryFolder folder;
  for (const Misuse& each : cases) {
    const Outcome result = run(folder, each.arguments);
    EXPECT_EQ(result.code, each.code) << each.reason;
    EXPECT_EQ(result.messages, each.messages) << each.reason;
  }
}

}  // namespace
