// What import takes, what it calls it, and what it says of the rest.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tools/program.h"
#include "tools/temporary_folder.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using Json = nlohmann::json;

Outcome run(const std::vector<std::string>& arguments) {
  return Program(arguments).run();
}

std::string structure(const std::string& block, const std::string& atom = "Na") {
  return "data_" + block +
         "\n_cell_length_a 4\n_cell_length_b 4\n_cell_length_c 4\n_cell_angle_alpha 90\n_cell_angle_beta 90\n"
         "_cell_angle_gamma 90\nloop_\n_space_group_symop_operation_xyz\nx,y,z\n"
         "loop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n" +
         atom + "1 0 0 0\n";
}

std::vector<Json> lines_of(const std::string& path) {
  std::vector<Json> records;
  std::istringstream lines(contents_of_file(path));
  for (std::string line; std::getline(lines, line);) records.push_back(Json::parse(line));
  return records;
}

std::string identifiers(const std::string& collection) {
  return run({"list", collection, "-c", "identifier"}).out;
}

struct NameCase {
  std::string id_from;
  std::string identifiers;
};

class Names : public testing::TestWithParam<NameCase> {};

TEST_P(Names, AreKeptApartInTheOrderOfPaths) {
  const TemporaryFolder folder;
  folder.with("cif/a.cif", structure("I") + structure("II"));
  folder.with("cif/b.cif", structure("I", "K"));
  folder.with("cif/c.cif", structure("I", "Rb") + structure("I-2", "Cs"));
  const Outcome result =
      run({"import", folder.file("cif"), "-o", folder.file("x.dbe"), "--id-from", GetParam().id_from});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.messages, "");
  EXPECT_EQ(identifiers(folder.file("x.dbe")), GetParam().identifiers);
}

INSTANTIATE_TEST_SUITE_P(Cases, Names,
                         testing::Values(NameCase{"code", "I\nII\nI-2\nI-3\nI-2-2\n"},
                                         NameCase{"name", "I\nII\nI-2\nI-3\nI-2-2\n"},
                                         NameCase{"file", "a\na-2\nb\nc\nc-2\n"}));

TEST(Import, FindsCompressedAndMagneticFilesInFolders) {
  const TemporaryFolder folder;
  folder.with("cif/a.mcif", structure("a"));
  folder.with("cif/b.cif", structure("b"));
  ASSERT_EQ(std::system(("gzip " + folder.file("cif/b.cif")).c_str()), 0);
  EXPECT_EQ(run({"import", folder.file("cif"), "-o", folder.file("x.dbe")}).code, 0);
  EXPECT_EQ(identifiers(folder.file("x.dbe")), "a\nb\n");
}

TEST(Import, NamesACompressedFileThatIsCutShort) {
  const TemporaryFolder folder;
  const std::string path = folder.with("b.cif", structure("b"));
  ASSERT_EQ(std::system(("gzip " + path).c_str()), 0);
  const std::string whole = contents_of_file(path + ".gz");
  folder.with("b.cif.gz", whole.substr(0, whole.size() / 2));
  const Outcome result = run({"import", path + ".gz", "--dry-run"});
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.messages,
              StartsWith(path + ".gz: the compressed data are damaged or cut short at byte "));
}

TEST(Import, ReadsStandardInputAndWritesStandardOutput) {
  const TemporaryFolder folder;
  const Outcome result =
      Program({"import", "-", "-o", "-"}).input_from(folder.with("a.cif", structure("a"))).run();
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.messages, HasSubstr("1 entry from 1 file"));
  EXPECT_EQ(identifiers(folder.with("x.dbe", result.out)), "a\n");
}

TEST(Import, ReportsEveryBlockWithTheSameKeys) {
  const TemporaryFolder folder;
  const std::string cif = folder.with("a.cif", structure("a") + "data_b\n_publ_author_name 'Nobody'\n" +
                                                   "data_c\n_refln_index_h 1\n_cell_length_a 4\n");
  const std::string report = folder.file("r.jsonl");
  (void)run({"import", cif, folder.with("empty.cif", ""), "--dry-run", "--report", report});
  for (const Json& record : lines_of(report)) {
    for (const char* key :
         {"status", "file", "block", "line", "identifier", "absent", "not_kept", "warnings"}) {
      EXPECT_TRUE(record.contains(key)) << key << " in " << record;
    }
    EXPECT_EQ(record["status"] != "imported", record.contains("reason")) << record;
  }
}

TEST(Import, EndsWithOneWhereAFileGivesNoEntry) {
  const TemporaryFolder folder;
  const std::string good = folder.with("a.cif", structure("a"));
  const std::string comments = folder.with("b.cif", "# nothing\n");
  const Outcome result = run({"import", good, comments, "-o", folder.file("x.dbe")});
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out, StartsWith("1 entry from 1 file, 1 file not imported"));
  EXPECT_EQ(identifiers(folder.file("x.dbe")), "a\n");
}

// ---- Into stores

class ImportIntoStore : public testing::Test {
 protected:
  ImportIntoStore() { EXPECT_EQ(run({"init", store}).code, 0); }

  Outcome import(const std::vector<std::string>& further = {}) {
    std::vector<std::string> arguments = {"import", cif, "--into", store};
    arguments.insert(arguments.end(), further.begin(), further.end());
    return run(arguments);
  }

  TemporaryFolder folder;
  std::string cif = folder.with("a.cif", structure("a") + structure("b"));
  std::string store = folder.file("known.db");
};

TEST_F(ImportIntoStore, TakesTheSameFileOnce) {
  EXPECT_EQ(import().code, 0);
  const Outcome again = import();
  EXPECT_EQ(again.code, 0);
  EXPECT_THAT(again.out, HasSubstr("0 entries from 1 file, 0 files not imported"));
  EXPECT_THAT(again.out, HasSubstr("1 file as before; 2 entries in "));
}

TEST_F(ImportIntoStore, RefusesAnotherEntryOfAnIdentifierUnlessItIsToBeReplaced) {
  EXPECT_EQ(import().code, 0);
  folder.with("a.cif", structure("a", "K") + structure("b"));
  const Outcome refused = import();
  EXPECT_EQ(refused.code, 1);
  EXPECT_THAT(refused.messages, HasSubstr("error: another entry a is there already; --on-duplicate keep or"));
  EXPECT_EQ(run({"show", store, "a", "-f", "json"}).out.find("K1"), std::string::npos);
  EXPECT_EQ(import({"--on-duplicate", "replace"}).code, 0);
  EXPECT_NE(run({"show", store, "a", "-f", "json"}).out.find("K1"), std::string::npos);
}

TEST_F(ImportIntoStore, TakesOnlyCleanFilesWhenStrict) {
  folder.with("a.cif", structure("a") + "data_b\n_cell_length_a 4\n");
  EXPECT_EQ(import({"--strict"}).code, 1);
  EXPECT_EQ(identifiers(store), "");
}

TEST_F(ImportIntoStore, CopiesAWholeCollection) {
  ASSERT_EQ(run({"import", cif, "-o", folder.file("x.dbe")}).code, 0);
  EXPECT_EQ(run({"import", folder.file("x.dbe"), "--into", store}).code, 0);
  EXPECT_EQ(identifiers(store), "a\nb\n");
  EXPECT_EQ(run({"import", store, "-o", folder.file("y.dbe")}).code, 0);
  EXPECT_EQ(contents_of_file(folder.file("y.dbe")), contents_of_file(folder.file("x.dbe")));
}

TEST_F(ImportIntoStore, KeepsWholeEntriesWhenItIsStopped) {
  for (int i = 0; i < 300; ++i)
    folder.with("many/" + std::to_string(i) + ".cif", structure("s" + std::to_string(i)));
  cif = folder.file("many");
  for (const int signal : {SIGINT, SIGKILL}) {
    (void)Program({"import", cif, "--into", store}).signalled(signal, std::chrono::milliseconds(60)).run();
    EXPECT_EQ(run({"verify", store}).code, 0);
  }
  EXPECT_EQ(import().code, 0);
  EXPECT_THAT(run({"verify", store}).out, HasSubstr(": 300 entries, "));
}

}  // namespace
