#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/program.h"
#include "tools/temporary_folder.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::string archive = SAMPLES_FOLDER "/cross_references.dbe";
const std::string one = contents_of_file(archive);

Outcome run(const std::vector<std::string>& arguments) {
  return Program(arguments).run();
}

// The same entry under another identifier of as many letters.
std::string named(const std::string& identifier) {
  std::string other = one;
  return other.replace(other.find("ABCDEF01"), 8, identifier);
}

// The same identifier, another formula.
std::string changed() {
  std::string other = one;
  return other.replace(other.find("C6 H12"), 6, "C6 H14");
}

TEST(Extract, CopiesTheBytesOfTheEntriesThatWereNamedInTheirOrder) {
  const TemporaryFolder folder;
  const std::string all = folder.with("all.dbe", one + named("ABCDEF02") + named("ABCDEF03"));
  const Outcome result = run({"extract", all, "ABCDEF03", "ABCDEF01", "-o", folder.file("x.dbe")});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "2 entries; 1490 bytes in " + folder.file("x.dbe") + "\n");
  EXPECT_EQ(contents_of_file(folder.file("x.dbe")), one + named("ABCDEF03"));
}

TEST(Extract, WritesNothingWhenAnEntryIsMissing) {
  const TemporaryFolder folder;
  const Outcome result = run({"extract", archive, "ABCDEF01", "ABCDEF10", "-o", folder.file("x.dbe")});
  EXPECT_EQ(result.code, 3);
  EXPECT_EQ(folder.file_count(), 0U);
}

TEST(Extract, WantsToKnowWhatAndWhere) {
  EXPECT_EQ(run({"extract", archive, "ABCDEF01"}).messages,
            "dbentry: extract: -o FILE or --into STORE says where the entries go\n");
  EXPECT_EQ(run({"extract", archive, "-o", "x"}).messages,
            "dbentry: extract: which entries? Name at least one identifier\n");
}

TEST(Merge, RefusesTwoEntriesOfOneNameThatDiffer) {
  const TemporaryFolder folder;
  const std::string other = folder.with("b.dbe", changed());
  const Outcome result = run({"merge", archive, other, "-o", folder.file("x.dbe")});
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.messages, StartsWith(other + ": error: another entry ABCDEF01 was there before; "));
  EXPECT_EQ(result.out, "1 entry refused; " + folder.file("x.dbe") + " is left as it was\n");
  EXPECT_EQ(folder.file_count(), 1U);
}

struct MergeCase {
  const char* rule;
  std::string bytes;
  const char* out;
};

class Merge : public testing::TestWithParam<MergeCase> {};

TEST_P(Merge, KeepsOrReplacesInPlace) {
  const TemporaryFolder folder;
  const std::string first = folder.with("a.dbe", one + named("ABCDEF02"));
  const std::string second = folder.with("b.dbe", changed() + named("ABCDEF02") + named("ABCDEF03"));
  const std::string output = folder.file("x.dbe");
  const Outcome result = run({"merge", first, second, "-o", output, "--on-duplicate", GetParam().rule});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, GetParam().out + output + "\n");
  EXPECT_EQ(contents_of_file(output), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, Merge,
    testing::Values(MergeCase{"keep", one + named("ABCDEF02") + named("ABCDEF03"),
                              "3 entries added, 1 the same again, 0 replaced, 1 not taken; 2235 bytes in "},
                    MergeCase{"replace", changed() + named("ABCDEF02") + named("ABCDEF03"),
                              "3 entries added, 1 the same again, 1 replaced, 0 not taken; 2235 bytes in "}));

TEST(Merge, GoesToStandardOutputAsWell) {
  const TemporaryFolder folder;
  const std::string other = folder.with("b.dbe", changed());
  const Outcome result = run({"merge", archive, other, "-o", "-", "--on-duplicate", "replace"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, changed());
}

TEST(Remove, TakesEntriesOutAndLeavesTheBytesOfTheOthers) {
  const TemporaryFolder folder;
  const std::string all = folder.with("all.dbe", one + named("ABCDEF02") + named("ABCDEF03"));
  const Outcome result = run({"remove", all, "ABCDEF02"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "1 entry removed from " + all + "\n");
  EXPECT_EQ(contents_of_file(all), one + named("ABCDEF03"));
}

TEST(Remove, ChangesNothingWhenAnEntryIsMissing) {
  const TemporaryFolder folder;
  const std::string all = folder.with("all.dbe", one + named("ABCDEF02"));
  const Outcome result = run({"remove", all, "ABCDEF02", "NOBODY"});
  EXPECT_EQ(result.code, 3);
  EXPECT_EQ(contents_of_file(all), one + named("ABCDEF02"));
  EXPECT_EQ(folder.file_count(), 1U);
}

// ---- Export

TEST(Export, WritesWhatOtherCommandsPrintOfTheSameEntries) {
  EXPECT_EQ(run({"export", archive, "--to", "archive", "-o", "-"}).out, one);
  EXPECT_EQ(run({"export", archive, "--to", "json", "-o", "-"}).out,
            run({"show", archive, "-f", "json"}).out);
  EXPECT_EQ(run({"export", archive, "--to", "jsonl", "-o", "-"}).out,
            run({"show", archive, "-f", "jsonl"}).out);
  EXPECT_EQ(run({"export", archive, "--to", "csv", "-o", "-"}).out, run({"list", archive, "-f", "csv"}).out);
}

TEST(Export, TakesWhatAQueryFindsAndReplacesItsOwnKind) {
  const TemporaryFolder folder;
  const std::string output = folder.file("x.csv");
  for (const char* query : {"year=1979", "year=1980"}) {
    EXPECT_EQ(
        run({"export", archive, "--where", query, "--to", "csv", "-c", "identifier", "-o", output}).code, 0);
  }
  EXPECT_EQ(contents_of_file(output), "identifier\n");
  EXPECT_EQ(run({"export", archive, "--to", "json", "-o", output}).code, 2);
  EXPECT_EQ(run({"export", archive, "--to", "jsno", "-o", output}).messages,
            "dbentry: export: unknown format 'jsno'; did you mean 'json'?\n");
}

struct OptionOfAnotherFormat {
  std::vector<std::string> option;
  const char* format;
  const char* message;
};

class ExportRefuses : public testing::TestWithParam<OptionOfAnotherFormat> {};

TEST_P(ExportRefuses, AnOptionOfAnotherFormatAndWritesNothing) {
  const TemporaryFolder folder;
  std::vector<std::string> arguments = {"export", archive, "--to", GetParam().format, "-o", folder.file("x")};
  arguments.insert(arguments.end(), GetParam().option.begin(), GetParam().option.end());
  const Outcome result = run(arguments);
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.messages, std::string("dbentry: ") + GetParam().message + "\n");
  EXPECT_EQ(folder.file_count(), 0U);
}

const char* const packed_is_for_xyz = "export: --packed is for --to xyz only";
const char* const columns_are_for_csv = "export: -c COLUMNS is for --to csv only";
INSTANTIATE_TEST_SUITE_P(Cases, ExportRefuses,
                         testing::Values(OptionOfAnotherFormat{{"--packed"}, "cif", packed_is_for_xyz},
                                         OptionOfAnotherFormat{{"--packed"}, "json", packed_is_for_xyz},
                                         OptionOfAnotherFormat{{"--packed"}, "jsonl", packed_is_for_xyz},
                                         OptionOfAnotherFormat{{"--packed"}, "csv", packed_is_for_xyz},
                                         OptionOfAnotherFormat{{"--packed"}, "archive", packed_is_for_xyz},
                                         OptionOfAnotherFormat{{"-c", "year"}, "cif", columns_are_for_csv},
                                         OptionOfAnotherFormat{{"-c", "year"}, "xyz", columns_are_for_csv}));

TEST(Export, GivesCifAndJsonThatAreImportedByteForByte) {
  const TemporaryFolder folder;
  for (const char* format : {"cif", "json", "jsonl"}) {
    const std::string file = folder.file(std::string("x.") + format);
    const std::string back = folder.file(std::string("back-") + format);
    EXPECT_EQ(run({"export", archive, "--to", format, "-o", file}).code, 0);
    EXPECT_EQ(run({"import", file, "-o", back}).code, 0);
    EXPECT_EQ(run({"diff", archive, back}).out, "") << format;
  }
}

// ---- Set

struct SetCase {
  std::vector<std::string> assignments;
  const char* out;
};

class Set : public testing::TestWithParam<SetCase> {};

TEST_P(Set, PrintsTheOldValueAndChangesTheEntry) {
  const TemporaryFolder folder;
  const std::string all = folder.with("all.dbe", named("ABCDEF00") + one);
  std::vector<std::string> arguments = {"set", all, "ABCDEF01"};
  arguments.insert(arguments.end(), GetParam().assignments.begin(), GetParam().assignments.end());
  const Outcome result = run(arguments);
  EXPECT_EQ(result.code, 0) << result.messages;
  EXPECT_EQ(result.out, GetParam().out);
  EXPECT_THAT(contents_of_file(all), StartsWith(named("ABCDEF00")));
  const std::string differences = run({"diff", archive, all}).out;
  const std::string field = result.out.substr(0, result.out.find('\t'));
  EXPECT_THAT(differences, HasSubstr("ABCDEF01\tdiffers\t" + field + "\t"));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Set,
    testing::Values(
        SetCase{{"year=1980"}, "publication.year\t1979\t1980\n"},
        SetCase{{"publication.authors=Smith, A.; Jones, B."},
                "publication.authors\tA.Author, B.Author\tSmith, A., Jones, B.\n"},
        SetCase{{"temperature=123.5", "experimental_info.probe=neutron"},
                "experimental_info.probe\tunknown\tneutron\n"
                "experimental_info.temperature\t0.0\t123.5\n"},
        SetCase{{"absolute_configuration=yes"}, "experimental_info.absolute_configuration\tfalse\ttrue\n"},
        SetCase{{"accession_date=2003-05-17"}, "editors_info.accession_date\t0000-00-00\t2003-05-17\n"},
        SetCase{{"formula="}, "chemical_info.formula\tC6 H12 O6\t\n"}));

struct SetFault {
  const char* assignment;
  const char* message;
};

class UnsettableField : public testing::TestWithParam<SetFault> {};

TEST_P(UnsettableField, IsNamedAndNothingIsChanged) {
  const TemporaryFolder folder;
  const std::string all = folder.with("all.dbe", one);
  const Outcome result = run({"set", all, "ABCDEF01", "color=red", GetParam().assignment});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.messages, std::string("dbentry: set: ") + GetParam().message + "\n");
  EXPECT_EQ(contents_of_file(all), one);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UnsettableField,
    testing::Values(SetFault{"yaer=1980", "unknown field 'yaer'; did you mean 'year'?"},
                    SetFault{"year", "'year' is not FIELD=VALUE"},
                    SetFault{"year=soon", "publication.year=soon: an integer is wanted"},
                    SetFault{"z=nan", "crystal_info.z=nan: a finite number is wanted"},
                    SetFault{"accession_date=2003-02-30",
                             "editors_info.accession_date=2003-02-30: a day of the calendar is wanted"},
                    SetFault{"probe=neutrn",
                             "experimental_info.probe: unknown value 'neutrn'; did you mean 'neutron'?"}));

TEST(Set, ChangesAStoreAsWell) {
  const TemporaryFolder folder;
  const std::string store = folder.file("known.db");
  ASSERT_EQ(run({"init", store}).code, 0);
  ASSERT_EQ(run({"merge", archive, "--into", store}).code, 0);
  EXPECT_EQ(run({"set", store, "ABCDEF01", "year=1980", "--dry-run"}).out, "publication.year\t1979\t1980\n");
  EXPECT_EQ(run({"set", store, "ABCDEF01", "year=1980"}).out, "publication.year\t1979\t1980\n");
  EXPECT_EQ(run({"find", store, "year=1980", "-c", "identifier"}).out, "ABCDEF01\n");
}

// ---- References

// A refers to ABCDEF, GHIJKL02 and X1234567; so that references can be followed, one of them is there.
TEST(Related, FollowsReferencesInBothDirections) {
  const TemporaryFolder folder;
  const std::string all = folder.with("all.dbe", one + named("X1234567"));
  EXPECT_EQ(run({"related", all, "ABCDEF01", "--depth", "2"}).out,
            "ABCDEF\t1\tABCDEF01\nGHIJKL02\t1\tABCDEF01\nX1234567\t1\tABCDEF01\n");
  EXPECT_EQ(run({"related", all, "X1234567", "--reverse"}).out, "ABCDEF01\n");
  EXPECT_EQ(run({"related", all, "ABCDEF", "--reverse", "--depth", "2"}).out,
            "ABCDEF01\t1\tABCDEF\nX1234567\t1\tABCDEF\n");
  EXPECT_EQ(run({"related", all, "NOBODY", "--reverse"}).code, 3);
}

TEST(Depositions, AreFoundByTheirNumberInAllEntries) {
  EXPECT_EQ(run({"depositions", archive, "--number", "654321"}).out,
            "ABCDEF01\tVORN\tVORN 123456 and VORN 654321\t123456, 654321\n");
  const Outcome result = run({"depositions", archive, "--number", "654322"});
  EXPECT_EQ(result.code, 3);
  EXPECT_THAT(result.messages, HasSubstr("unknown deposition number '654322'; did you mean '654321'?"));
}

// ---- Digests

TEST(Verify, KeepsADigestThatOthersReadAndComparesIt) {
  const TemporaryFolder folder;
  const std::string path = folder.with("x.dbe", one);
  const std::string digest = folder.file("x.sha256");
  EXPECT_EQ(run({"verify", path, "--digest", digest}).code, 0);
  EXPECT_EQ(std::system(("sha256sum --check --status " + digest).c_str()), 0);
  EXPECT_THAT(run({"verify", path, "--digest", digest}).out, HasSubstr("\nthe same as in " + digest + "\n"));
  folder.with("x.dbe", changed());
  const Outcome result = run({"verify", path, "--digest", digest});
  EXPECT_EQ(result.code, 5);
  EXPECT_THAT(result.messages, HasSubstr("not the bytes of the digest in " + digest));
  EXPECT_EQ(run({"verify", path, "--digest", digest, "--force"}).code, 0);
  EXPECT_EQ(run({"verify", path, "--digest", digest}).code, 0);
}

// ---- The collection that is left out

TEST(Collection, MayBeLeftOutWhereTheEnvironmentNamesOne) {
  const auto with_environment = [](const std::vector<std::string>& arguments) {
    return Program(arguments).with_variable("DBENTRY_COLLECTION", archive).run();
  };
  const std::string related = "ABCDEF\nGHIJKL02\nX1234567\n";
  EXPECT_EQ(with_environment({"related", "ABCDEF01"}).out, related);
  EXPECT_EQ(with_environment({"related", archive, "ABCDEF01"}).out, related);
  EXPECT_EQ(with_environment({"list", "-c", "identifier"}).out, "ABCDEF01\n");
  EXPECT_EQ(with_environment({"show", "ABCDEF01"}).code, 0);
  EXPECT_EQ(with_environment({"list", "nowhere.dbe"}).code, 4);
  EXPECT_THAT(run({"list"}).messages, HasSubstr("list: which collection?"));
}

// ---- Help

TEST(Help, IsACommandToo) {
  EXPECT_EQ(run({"help", "list"}).out, run({"list", "--help"}).out);
  EXPECT_EQ(run({"help"}).out, run({"--help"}).out);
  EXPECT_EQ(run({"help", "lsit"}).messages, "dbentry: unknown command 'lsit'; did you mean 'list'?\n");
  EXPECT_EQ(run({"-V"}).out, run({"--version"}).out);
}

}  // namespace
