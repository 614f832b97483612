// The manual page and the completions, as the shells and man read them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "tools/commands/command_line.h"
#include "tools/program.h"
#include "tools/temporary_folder.h"

namespace {

using testing::HasSubstr;

// What a shell script writes.
std::string output_of(const std::string& script) {
  const TemporaryFolder folder;
  const std::string path = folder.with("script", script);
  EXPECT_EQ(std::system(("bash " + path + " > " + folder.file("out") + " 2>&1").c_str()), 0);
  return contents_of_file(folder.file("out"));
}

// What bash offers for the last of the words.
std::string offered(const std::string& words, int last) {
  return output_of("source " PAGES_FOLDER "/dbentry.bash\nCOMP_WORDS=(" + words +
                   ")\nCOMP_CWORD=" + std::to_string(last) + "\n_dbentry\necho \"${COMPREPLY[*]}\"\n");
}

TEST(ManualPage, IsTheOneThatTheBuildMade) {
  EXPECT_TRUE(contents_of_file(PAGES_FOLDER "/dbentry.1") == manual_page());
}

TEST(ManualPage, NamesEveryCommandAndOptionOfTheHelp) {
  const std::string page = manual_page();
  EXPECT_THAT(page, HasSubstr("\\fBimport\\fR [\\fIoptions\\fR] [\\fIPATH\\fR]"));
  EXPECT_THAT(page, HasSubstr("\\fB\\-o\\fR \\fIFILE\\fR, \\fB\\-\\-output\\fR \\fIFILE\\fR"));
  EXPECT_THAT(page, HasSubstr("5 stored data damaged"));
}

TEST(ManualPage, IsReadWithoutAWarning) {
  if (std::system("command -v groff > /dev/null") != 0) GTEST_SKIP() << "there is no groff here";
  EXPECT_EQ(output_of("groff -man -Tutf8 -ww -z " PAGES_FOLDER "/dbentry.1"), "");
}

TEST(Completion, OffersCommandsThenOptions) {
  EXPECT_EQ(offered("dbentry rei", 1), "reindex\n");
  EXPECT_EQ(offered("dbentry list --col", 2), "--columns\n");
  EXPECT_EQ(offered("dbentry help dep", 2), "depositions\n");
}

TEST(Completion, OffersFilesWithBlanksWhole) {
  const TemporaryFolder folder;
  const std::string path = folder.with("two words.dbe", "");
  EXPECT_EQ(offered("dbentry list '" + path.substr(0, path.size() - 5) + "'", 2), path + "\n");
}

TEST(Completion, IsKnownForThreeShells) {
  EXPECT_THAT(completion("zsh"), HasSubstr("'list:Print one line an entry'"));
  EXPECT_THAT(completion("fish"),
              HasSubstr("complete -c dbentry -n '__fish_seen_subcommand_from list' -s c -l columns -r"));
  EXPECT_THROW((void)completion("cmd"), std::invalid_argument);
}

}  // namespace
