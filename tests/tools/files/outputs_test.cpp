// What a command may write over, as its users meet it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/files/file_kind.h"
#include "tools/program.h"
#include "tools/temporary_folder.h"

namespace {

using testing::HasSubstr;

const std::string archive = SAMPLES_FOLDER "/cross_references.dbe";
const std::string cif = contents_of_file(SAMPLES_FOLDER "/invented.cif");

// In a folder with a.cif, b.cif (the same text), x.dbe (an archive), text, and links to a.cif: soft, hard.
// FOLDER/ before a name is that folder.
struct OutputCase {
  std::vector<std::string> arguments;
  std::string message;  // empty: it is done
};

class OutputRule : public testing::TestWithParam<OutputCase> {};

TEST_P(OutputRule, HoldsAndNothingIsLost) {
  const TemporaryFolder folder;
  for (const char* name : {"a.cif", "b.cif"}) folder.with(name, cif);
  folder.with("x.dbe", contents_of_file(archive));
  folder.with("text", "Dear reader,\n");
  folder.with("empty", "");
  std::filesystem::create_symlink(folder.file("a.cif"), folder.file("soft"));
  std::filesystem::create_hard_link(folder.file("a.cif"), folder.file("hard"));
  std::filesystem::create_symlink(folder.file("new.dbe"), folder.file("dangling"));
  const auto in_place = [&](std::string text) {
    for (std::size_t at; (at = text.find("FOLDER")) != std::string::npos;)
      text.replace(at, 7, folder.file(""));
    return text;
  };
  std::vector<std::string> arguments;
  for (const std::string& argument : GetParam().arguments) arguments.push_back(in_place(argument));
  const Outcome result = Program(arguments).run();
  EXPECT_EQ(result.code, GetParam().message.empty() ? 0 : 2) << result.messages;
  if (!GetParam().message.empty()) {
    EXPECT_EQ(result.messages, "dbentry: " + in_place(GetParam().message) + "\n");
    EXPECT_EQ(contents_of_file(folder.file("text")), "Dear reader,\n");
    EXPECT_EQ(contents_of_file(folder.file("x.dbe")), contents_of_file(archive));
  }
  EXPECT_EQ(contents_of_file(folder.file("a.cif")), cif);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, OutputRule,
    testing::Values(
        OutputCase{
            {"import", "FOLDER/a.cif", "-o", "FOLDER/a.cif"},
            "-o FOLDER/a.cif: is also an input; what is read is never overwritten: choose another name"},
        OutputCase{
            {"import", "FOLDER/a.cif", "-o", "FOLDER/a.cif", "--force"},
            "-o FOLDER/a.cif: is also an input; what is read is never overwritten: choose another name"},
        OutputCase{{"import", "FOLDER/a.cif", "-o", "FOLDER/soft"},
                   "-o FOLDER/soft: is the same file as the input FOLDER/a.cif; what is read is never "
                   "overwritten: choose another name"},
        OutputCase{{"import", "FOLDER/a.cif", "-o", "FOLDER/hard", "--force"},
                   "-o FOLDER/hard: is the same file as the input FOLDER/a.cif; what is read is never "
                   "overwritten: choose another name"},
        OutputCase{{"import", "FOLDER/b.cif", "-o", "FOLDER/a.cif"},
                   "-o FOLDER/a.cif: holds a CIF, which a stored archive would replace: choose another name, "
                   "or say --force"},
        OutputCase{
            {"import", "FOLDER/a.cif", "-o", "FOLDER/text"},
            "-o FOLDER/text: holds something else, which a stored archive would replace: choose another "
            "name, or say --force"},
        OutputCase{{"import", "FOLDER/a.cif", "-o", "FOLDER/text", "--force"}, ""},
        OutputCase{{"import", "FOLDER/a.cif", "-o", "FOLDER/empty"}, ""},
        OutputCase{{"import", "FOLDER/a.cif", "-o", "FOLDER/x.dbe"}, ""},
        OutputCase{{"import", "FOLDER/a.cif", "-o", "FOLDER/dangling"}, ""},
        OutputCase{{"import", "FOLDER/a.cif", "-o", "/dev/null", "--report", "/dev/null"}, ""},
        OutputCase{{"import", "FOLDER/a.cif", "-o", "FOLDER/new", "--report", "FOLDER/x.dbe"},
                   "--report FOLDER/x.dbe: holds a stored archive, which JSON would replace: choose another "
                   "name, or say --force"},
        OutputCase{{"import", "FOLDER/a.cif", "-o", "FOLDER/new.dbe", "--report", "FOLDER/dangling"},
                   "--report FOLDER/dangling and -o FOLDER/new.dbe are the same file: choose two names"},
        OutputCase{{"import", "FOLDER/a.cif", "-o", "-", "--report", "-"},
                   "--report - and -o - are the same file: choose two names"},
        OutputCase{
            {"verify", "FOLDER/x.dbe", "-o", "FOLDER/x.dbe"},
            "-o FOLDER/x.dbe: is also an input; what is read is never overwritten: choose another name"},
        OutputCase{
            {"verify", "FOLDER/x.dbe", "-o", "FOLDER/text"},
            "-o FOLDER/text: holds something else, which a stored archive would replace: choose another "
            "name, or say --force"},
        OutputCase{{"verify", "FOLDER/x.dbe", "--digest", "FOLDER/text"},
                   "--digest FOLDER/text: holds something else, which a digest would replace: choose another "
                   "name, or say --force"},
        OutputCase{
            {"extract", "FOLDER/x.dbe", "ABCDEF01", "-o", "FOLDER/x.dbe"},
            "-o FOLDER/x.dbe: is also an input; what is read is never overwritten: choose another name"},
        OutputCase{{"merge", "FOLDER/x.dbe", "-o", "FOLDER/b.cif"},
                   "-o FOLDER/b.cif: holds a CIF, which a stored archive would replace: choose another name, "
                   "or say --force"}));

TEST(Outputs, MayNotBeTheFileThatStandardInputComesFrom) {
  const TemporaryFolder folder;
  const std::string path = folder.with("x.dbe", contents_of_file(archive));
  const Outcome result = Program({"verify", "-", "-o", path}).input_from(path).run();
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.messages, HasSubstr("is the same file as the input -"));
  EXPECT_EQ(contents_of_file(path), contents_of_file(archive));
}

TEST(Outputs, MayBeStandardOutputWithNothingButTheArchive) {
  const Outcome result = Program({"extract", "-", "ABCDEF01", "-o", "-"}).input_from(archive).run();
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, contents_of_file(archive));
  EXPECT_EQ(result.messages, "1 entry; 745 bytes in standard output\n");
}

struct KindCase {
  std::string contents;
  FileKind kind;
};

class KindOfFile : public testing::TestWithParam<KindCase> {};

TEST_P(KindOfFile, IsToldByItsContent) {
  const TemporaryFolder folder;
  EXPECT_EQ(kind_of_file(folder.with("x", GetParam().contents)), GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, KindOfFile,
    testing::Values(
        KindCase{"", FileKind::empty}, KindCase{contents_of_file(archive), FileKind::archive},
        KindCase{contents_of_file(archive).substr(0, 300), FileKind::unknown}, KindCase{cif, FileKind::cif},
        KindCase{"# notes\r\n\r\nDATA_x\r\n", FileKind::cif},
        KindCase{"#\\#CIF_2.0\n# nothing else\n", FileKind::cif},
        KindCase{"# notes\nx = 1\n", FileKind::unknown},
        KindCase{std::string("SQLite format 3\0", 16) + "...", FileKind::store},
        KindCase{"{\"status\":\"imported\"}\n", FileKind::json}, KindCase{"[\n]\n", FileKind::json},
        KindCase{"{x}", FileKind::unknown}, KindCase{"identifier,formula\nA,\"B\"\n", FileKind::csv},
        KindCase{"Dear reader,\n", FileKind::unknown},
        KindCase{"2\nwater\nO 0 0 0\nH 0 0 1\n", FileKind::xyz}, KindCase{"0\nnothing\n", FileKind::xyz},
        // Lists and notes of people, which no command may replace.
        KindCase{"hello\n", FileKind::unknown}, KindCase{"identifier,price\nA,2\n", FileKind::unknown},
        KindCase{"42\nis the answer\n", FileKind::unknown},
        KindCase{"1979\nto do\nbuy four things\n", FileKind::unknown},
        KindCase{"<?xml version=\"1.0\"?>\n<svg/>\n", FileKind::svg},
        KindCase{"<?xml version=\"1.0\"?>\n<html/>\n", FileKind::unknown},
        KindCase{std::string(64, 'a') + "  x.dbe\n", FileKind::digest},
        KindCase{"\x1F\x8B\x08", FileKind::compressed}, KindCase{"%PDF-1.5", FileKind::pdf}));

}  // namespace
