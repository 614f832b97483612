// The program as its users meet it: exit codes, messages, and files that are whole or not there.
#include "tools/program.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <csignal>
#include <stdexcept>

#include "tools/temporary_folder.h"

namespace {

using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

const std::string archive = SAMPLES_FOLDER "/cross_references.dbe";
const std::string invented = SAMPLES_FOLDER "/invented.cif";
const std::string old = contents_of_file(archive);  // what an output replaces
const std::string broken = SAMPLES_FOLDER "/broken.cif";

Outcome run(const std::vector<std::string>& arguments) {
  return Program(arguments).run();
}

// Stands in for the terminal that a person watches.
class WatchedTerminal {
 public:
  WatchedTerminal() : descriptor_(::posix_openpt(O_RDWR | O_NOCTTY)) {
    if (::grantpt(descriptor_) != 0 || ::unlockpt(descriptor_) != 0)
      throw std::runtime_error("no terminal could be made");
  }
  ~WatchedTerminal() { ::close(descriptor_); }
  WatchedTerminal(const WatchedTerminal&) = delete;
  WatchedTerminal& operator=(const WatchedTerminal&) = delete;

  [[nodiscard]] std::string name() const { return ::ptsname(descriptor_); }

  // All that was written by programs that have ended.
  [[nodiscard]] std::string shown() const {
    std::string text;
    char byte = 0;
    while (::read(descriptor_, &byte, 1) == 1) text += byte;
    return text;
  }

 private:
  int descriptor_;
};

// ---- Usage

struct UsageCase {
  std::vector<std::string> arguments;
  int code;
  const char* messages;
};

class Usage : public testing::TestWithParam<UsageCase> {};

TEST_P(Usage, IsAnsweredWithTheWayOut) {
  const Outcome result = run(GetParam().arguments);
  EXPECT_EQ(result.code, GetParam().code);
  EXPECT_EQ(result.messages, GetParam().messages);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Usage,
    testing::Values(
        UsageCase{{"shwo", archive}, 2, "dbentry: unknown command 'shwo'; did you mean 'show'?\n"},
        UsageCase{{"--vershion"}, 2, "dbentry: unknown option '--vershion'; did you mean '--version'?\n"},
        UsageCase{{"--frobnicate"},
                  2,
                  "dbentry: unknown option '--frobnicate'; known are: --version, -V, --help, -h\n"},
        UsageCase{{"list", archive, "-c", "athors"},
                  2,
                  "dbentry: unknown column 'athors'; did you mean 'authors'?\n"},
        UsageCase{
            {"list", archive, "-f", "jsno"}, 2, "dbentry: unknown format 'jsno'; did you mean 'json'?\n"},
        UsageCase{
            {"list", archive, "--colums", "a"},
            2,
            "dbentry: The following arguments were not expected: a --colums; did you mean '--columns'?\n"},
        UsageCase{{"show", archive, "-f", "xml"},
                  2,
                  "dbentry: show: unknown format 'xml'; known are: pretty, text, json, jsonl\n"},
        UsageCase{{"stats", archive, "--by", "yaer"},
                  2,
                  "dbentry: unknown question 'yaer'; did you mean 'year'?\n"},
        UsageCase{{"depositions", archive, "ABCDEF01", "--kind", "russain"},
                  2,
                  "dbentry: unknown kind of deposition 'russain'; did you mean 'RUSSIAN'?\n"},
        UsageCase{{"import", invented},
                  2,
                  "dbentry: import: -o FILE or --into STORE says where the entries go (or --dry-run that "
                  "nowhere)\n"},
        UsageCase{{"show", archive, "ABCDEF10"},
                  3,
                  "dbentry: " SAMPLES_FOLDER
                  "/cross_references.dbe: unknown identifier 'ABCDEF10'; did you mean 'ABCDEF01'?\n"},
        UsageCase{{"journals", "JACSTA"}, 3, "dbentry: unknown journal 'JACSTA'; did you mean 'JACSAT'?\n"},
        UsageCase{
            {"verify", "/nowhere.dbe"}, 4, "dbentry: /nowhere.dbe: cannot open: No such file or directory\n"},
        UsageCase{{"import", "/nowhere", "--dry-run"},
                  4,
                  "dbentry: /nowhere: cannot open: No such file or directory\n"}));

TEST(Usage, IsAskedForWithoutArguments) {
  const Outcome result = run({});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.messages, "dbentry: A subcommand is required; see: dbentry --help\n");
}

TEST(Help, NamesEveryCommandAndEveryExitCode) {
  const Outcome result = run({"--help"});
  EXPECT_EQ(result.code, 0);
  for (const char* word : {"import", "show", "list", "related", "depositions", "verify", "journals", "diff",
                           "5 stored data damaged"}) {
    EXPECT_THAT(result.out, HasSubstr(word));
  }
}

TEST(Version, IsPrinted) {
  const Outcome result = run({"--version"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "dbentry 1.0.0\n");
}

// ---- Reading

TEST(Show, PrintsTheSummaryAsTheLibraryWritesIt) {
  const Outcome result = run({"show", archive, "ABCDEF01"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(
      result.out,
      "identifier: ABCDEF01\n"
      "crystal maker:\n"
      "cell: a: 5.64, b: 5.64, c: 5.64, alpha: 90, beta: 90, gamma: 90, symmetry operators: 1, atoms: 0\n"
      "publication:\n"
      "A.Author, B.Author, J.Am.Chem.Soc., 101, 2345, 1979\n"
      "experimental info:\n"
      "temperature (K): 0, temperature text: , pressure: , experimental density: 0, calculated density: 0, "
      "R-factor: 0, mean_cc_bond_sigma: 0000, probe: 0, radiation source: , absolute configuration: 0, "
      "diffraction details: , powder: 0, refinement details: , intensity method: 0"
      "editors info:\n"
      "accession date: 0000-00-00, modification date: 0000-00-00, category: 0, bonding_tolerance: 0, "
      "previous refcode: , aser_match_flag: -1, connectivity_comment: , batch: 0, memo: , remarks: , "
      "author correspondence: 0, ignored errors: 0"
      "chemical info:\n"
      "formula: C6 H12 O6, name: an invented sugar, bioactivity: , conformer: , source: , "
      "peptide_sequence: , isomer: , classifiers: 0: Carbohydrate\t, synonyms: \n"
      "crystal info:\n"
      "Z: 0, Z': 0, color: , habit: , analogues: , melting_point: , notes: , phase_transitions: , "
      "polymorph: , sensitivity: , recrystallisation_solvent: , disorder_details: , other_cell_details: \n"
      "chemical diagram: <zero handle>\n"
      "connectivity info:\n"
      "atoms: 0, bonds: 0\n"
      "cross reference info:\n"
      "Cross References: type: 1text: Racemate of [ABCDEF], [GHIJKL02] type: 6text: Coordinates in "
      "[X1234567] "
      "deposition info:\n"
      "0: 0: VORN 123456 and VORN 654321\t1: 4: IUCr AB1234\t\n");
}

struct OutputCase {
  std::vector<std::string> arguments;
  const char* out;
};

// The entry of the sample as people read it.
constexpr const char* pretty_sample =
    "ABCDEF01\n"
    "cell\n"
    "  a                   5.64 Å\n"
    "  b                   5.64 Å\n"
    "  c                   5.64 Å\n"
    "  alpha               90 °\n"
    "  beta                90 °\n"
    "  gamma               90 °\n"
    "  volume              179.406 Å³\n"
    "  symmetry operators  x,y,z\n"
    "publication\n"
    "  journal name                 J.Am.Chem.Soc.\n"
    "  journal coden                4\n"
    "  journal international coden  JACSAT\n"
    "  authors                      A.Author; B.Author\n"
    "  volume                       101\n"
    "  year                         1979\n"
    "  page                         2345\n"
    "chemical info\n"
    "  formula      C6 H12 O6\n"
    "  name         an invented sugar\n"
    "  classifiers  Carbohydrate\n"
    "cross reference info\n"
    "    type             text                              identifiers\n"
    "    RACEMATE         Racemate of [ABCDEF], [GHIJKL02]  ABCDEF; GHIJKL02\n"
    "    COORDINATES_SEE  Coordinates in [X1234567]         X1234567\n"
    "deposition info\n"
    "    kind                text                         numbers\n"
    "    VORN                VORN 123456 and VORN 654321  123456; 654321\n"
    "    IUCR Coeditor Code  IUCr AB1234                  AB1234\n";

class Output : public testing::TestWithParam<OutputCase> {};

TEST_P(Output, IsExact) {
  const Outcome result = run(GetParam().arguments);
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.messages, "");
  EXPECT_EQ(result.out, GetParam().out);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Output,
    testing::Values(
        OutputCase{{"related", archive, "ABCDEF01"}, "ABCDEF\nGHIJKL02\nX1234567\n"},
        OutputCase{{"depositions", archive, "ABCDEF01"},
                   "IUCR Coeditor Code\tIUCr AB1234\tAB1234\n"
                   "VORN\tVORN 123456 and VORN 654321\t123456, 654321\n"},
        OutputCase{{"depositions", archive, "ABCDEF01", "--kind", "vorn", "-f", "jsonl"},
                   "{\"kind\":\"VORN\",\"text\":\"VORN 123456 and VORN "
                   "654321\",\"numbers\":[\"123456\",\"654321\"]}\n"},
        OutputCase{{"depositions", archive, "ABCDEF01", "--kind", "JDS"}, ""},
        OutputCase{{"list", archive}, "ABCDEF01\tC6 H12 O6\tan invented sugar\tJ.Am.Chem.Soc.\t1979\t0\n"},
        OutputCase{{"list", archive, "-c", "identifier,authors,z", "-f", "csv"},
                   "identifier,authors,z\nABCDEF01,A.Author; B.Author,\n"},
        OutputCase{{"journals", "4", "ACCRA9"},
                   "4\tJACSAT\tcurrent\tJ.Am.Chem.Soc.\n1\tACCRA9\tdiscontinued\tActa Crystallogr.\n"},
        OutputCase{{"verify", archive},
                   SAMPLES_FOLDER
                   "/cross_references.dbe: 1 entry, 745 bytes, rewritten byte for byte\nSHA-256 "
                   "474c71cf491a11ee2ffbc442969947747c40d8852de50084bbf4ee25831d6d92\n"},
        OutputCase{{"show", archive, "-f", "pretty"}, pretty_sample},
        OutputCase{{"stats", archive}, "C\t1\nH\t1\nO\t1\n"},
        OutputCase{{"stats", archive, "--by", "year"}, "1979\t1\n"},
        OutputCase{{"stats", archive, "--by", "journal"}, "J.Am.Chem.Soc.\t1\n"},
        OutputCase{{"stats", archive, "--by", "author"}, "Author\t1\n"},
        OutputCase{{"diff", archive, archive}, ""}));

TEST(Verify, NamesTheFirstByteThatIsRewrittenDifferently) {
  const TemporaryFolder folder;
  std::string bytes = contents_of_file(archive);
  // The one flag of the entry, absolute configuration: read as "not 0", written as 1.
  const std::size_t flag = bytes.find(std::string(5, '\0'), bytes.find("2345"));
  ASSERT_NE(flag, std::string::npos);
  std::size_t changed = 0;
  for (std::size_t place = flag; place < bytes.size() && changed == 0; ++place) {
    std::string other = bytes;
    other[place] = '\2';
    const Outcome result = run({"verify", folder.with("x.dbe", other)});
    if (result.messages.find("differs when rewritten") == std::string::npos) continue;
    changed = place;
    EXPECT_EQ(result.code, 5);
    EXPECT_EQ(result.messages, "" + folder.file("x.dbe") +
                                   ": entry 1 (ABCDEF01) differs when rewritten, first at offset " +
                                   std::to_string(place) + " of the file: 02 is stored, 01 written\n");
  }
  EXPECT_NE(changed, 0U);
}

TEST(Verify, NamesTheEntryThatIsDamaged) {
  const TemporaryFolder folder;
  const std::string bytes = contents_of_file(archive);
  const Outcome result = run({"verify", folder.with("x.dbe", bytes + bytes.substr(0, 30))});
  EXPECT_EQ(result.code, 5);
  EXPECT_THAT(result.messages,
              StartsWith("dbentry: " + folder.file("x.dbe") + ": entry 2 (ABCDEF01) at offset " +
                         std::to_string(bytes.size()) + " is damaged: "));
}

TEST(Diff, NamesTheFieldsThatDifferWithBothValues) {
  const TemporaryFolder folder;
  std::string other = contents_of_file(archive);
  other.replace(other.find("C6 H12"), 6, "C6 H14");
  other.replace(other.find("A.Author"), 8, "X.Author");
  const Outcome result = run({"diff", archive, folder.with("x.dbe", other)});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out,
            "ABCDEF01\tdiffers\tpublication.authors\tA.Author, B.Author\tX.Author, B.Author\n"
            "ABCDEF01\tdiffers\tchemical_info.formula\tC6 H12 O6\tC6 H14 O6\n");
}

TEST(Diff, NamesTheEntriesOfOneFileOnly) {
  const TemporaryFolder folder;
  const Outcome result = run({"diff", archive, folder.with("x.dbe", "")});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "ABCDEF01\tonly in the first\t\t\t\n");
}

TEST(Diff, TellsThatOnlyTheOrderDiffers) {
  const TemporaryFolder folder;
  const std::string one = contents_of_file(archive);
  std::string other = one;
  other.replace(other.find("ABCDEF01"), 8, "ABCDEF02");
  const Outcome result = run({"diff", folder.with("a.dbe", one + other), folder.with("b.dbe", other + one)});
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.messages, HasSubstr("hold the same entries in another order"));
}

// ---- Import

TEST(Import, TakesTheGoodFilesAndReportsTheBroken) {
  const TemporaryFolder folder;
  const Outcome result =
      run({"import", invented, broken, "-o", folder.file("x.dbe"), "--report", folder.file("r.jsonl")});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.messages, broken +
                                 ":3:1: error: data_broken: wrong number of values in the loop\n"
                                 "  hint: 3 values do not fill rows of 2 columns: a row is broken or lost\n");
  EXPECT_THAT(result.out,
              StartsWith("2 entries from 1 file, 1 file not imported, 0 warnings, 0 blocks skipped; "));
  EXPECT_EQ(run({"list", folder.file("x.dbe"), "-c", "identifier,authors,page,operators,atoms"}).out,
            "first\tMüller, A. B.; O'Hara, C.\tL12\t192\t2\nC7654321\tMüller, A. B.; O'Hara, C.\t15\t2\t1\n");
  const std::string report = contents_of_file(folder.file("r.jsonl"));
  EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 3);
  EXPECT_THAT(report, HasSubstr("\"identifier\":\"first\",\"absent\":[\"bioactivity\",\"source\",\"color\""));
  EXPECT_THAT(report, HasSubstr("{\"status\":\"error\",\"file\":\"" + broken +
                                "\",\"block\":\"broken\",\"line\":3,"));
}

TEST(Import, ReportsAFileThatMayNotBeReadAndTakesTheOthers) {
  const TemporaryFolder folder;
  const std::string secret = folder.with("secret.cif", contents_of_file(invented));
  ASSERT_EQ(::chmod(secret.c_str(), 0), 0);
  const Outcome result =
      Program({"import", secret, invented, "-o", folder.file("x.dbe")}).held_to_permissions().run();
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.messages, secret + ": cannot open: Permission denied\n");
  EXPECT_THAT(result.out,
              StartsWith("2 entries from 1 file, 1 file not imported, 0 warnings, 0 blocks skipped; "));
}

TEST(Import, TellsAPersonHowFarItIs) {
  const TemporaryFolder folder;
  const WatchedTerminal terminal;
  const std::string slow = folder.file("slow.cif");
  ASSERT_EQ(::mkfifo(slow.c_str(), 0600), 0);
  std::thread writer([&slow] {
    std::ofstream file(slow);  // waits until the import reads
    std::this_thread::sleep_for(std::chrono::milliseconds(110));
    file << "data_slow\n_cell_length_a 1\n";
  });
  EXPECT_EQ(Program({"import", slow, invented, "--dry-run"}).messages_to(terminal.name()).run().code, 0);
  writer.join();
  EXPECT_THAT(terminal.shown(), EndsWith("\r1/2 files\r\x1b[K"));
}

TEST(Import, WarnsOfAnIdentifierThatComesTwice) {
  const TemporaryFolder folder;
  const Outcome result = run({"import", invented, invented, "-o", folder.file("x.dbe")});
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.messages,
              HasSubstr(invented +
                        ": warning: data_second: the identifier C7654321 was already given to an entry of " +
                        invented + "; --id-from code, name or file keeps them apart\n"));
  EXPECT_THAT(result.out,
              StartsWith("4 entries from 2 files, 0 files not imported, 2 warnings, 0 blocks skipped; "));
}

TEST(Import, FindsTheFilesOfAFolderByNameAndInOrder) {
  const TemporaryFolder folder;
  folder.with("cif/b.cif", "data_b\n_cell_length_a 1\n");
  folder.with("cif/deep/c.CIF", "data_c\n_cell_length_a 1\n");
  folder.with("cif/a.cif", "data_a\n_cell_length_a 1\n");
  folder.with("cif/readme.txt", "no CIF");
  EXPECT_EQ(run({"import", folder.file("cif"), "-o", folder.file("x.dbe")}).code, 0);
  EXPECT_EQ(run({"list", folder.file("x.dbe"), "-c", "identifier"}).out, "a\nb\nc\n");
}

TEST(Import, WritesNothingInADryRun) {
  const TemporaryFolder folder;
  const Outcome result = run({"import", invented, "--dry-run", "-o", folder.file("x.dbe")});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(folder.file_count(), 0U);
}

TEST(Import, KeepsTheOldFileWhenStrictAndNotClean) {
  const TemporaryFolder folder;
  const std::string path = folder.with("x.dbe", old);
  const Outcome result = run({"import", invented, broken, "--strict", "-o", path});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(contents_of_file(path), old);
  EXPECT_EQ(folder.file_count(), 1U);
}

TEST(Import, KeepsTheOldFileWhenNothingCouldBeImported) {
  const TemporaryFolder folder;
  const std::string path = folder.with("x.dbe", old);
  EXPECT_EQ(run({"import", broken, "-o", path}).code, 1);
  EXPECT_EQ(contents_of_file(path), old);
}

TEST(Import, KeepsThePermissionsOfTheOldFile) {
  const TemporaryFolder folder;
  const std::string path = folder.with("x.dbe", old);
  ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
  EXPECT_EQ(run({"import", invented, "-o", path}).code, 0);
  struct stat status = {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST(Import, WritesThroughASymbolicLink) {
  const TemporaryFolder folder;
  const std::string path = folder.with("x.dbe", old);
  std::filesystem::create_symlink(path, folder.file("link"));
  EXPECT_EQ(run({"import", invented, "-o", folder.file("link")}).code, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
  EXPECT_NE(contents_of_file(path), old);
}

struct OutputFault {
  const char* output;
  const char* message;
};

class UnwritableOutput : public testing::TestWithParam<OutputFault> {};

TEST_P(UnwritableOutput, IsNamedWithTheReason) {
  const Outcome result = run({"import", invented, "-o", GetParam().output});
  EXPECT_EQ(result.code, 4);
  EXPECT_EQ(result.messages,
            std::string("dbentry: ") + GetParam().output + ": cannot write: " + GetParam().message + "\n");
}

INSTANTIATE_TEST_SUITE_P(Cases, UnwritableOutput,
                         testing::Values(OutputFault{"/dev/full", "No space left on device"},
                                         OutputFault{"/tmp", "Is a directory"},
                                         OutputFault{"/nowhere/x.dbe", "No such file or directory"}));

// ---- Whole or not there

// Many entries, so that an import takes some time.
std::string many_structures(const TemporaryFolder& folder) {
  const std::string cif = contents_of_file(invented);
  for (int i = 0; i < 200; ++i) folder.with("cif/" + std::to_string(i) + ".cif", cif);
  return folder.file("cif");
}

TEST(Atomicity, LeavesTheOldFileWhenTheDiskIsFull) {
  const TemporaryFolder folder;
  const std::string cif = many_structures(folder);
  const std::string path = folder.with("x.dbe", old);
  const Outcome result = Program({"import", cif, "-o", path}).file_size_limit(100000).run();
  EXPECT_EQ(result.code, 4);
  EXPECT_EQ(contents_of_file(path), old);
  EXPECT_EQ(folder.file_count(), 2U) << "the temporary is gone";
}

class Interrupted : public testing::TestWithParam<int> {};

// Whatever the moment: the old file or the whole new one, and after a signal that can be caught no temporary.
TEST_P(Interrupted, LeavesTheOldFileOrTheNew) {
  const TemporaryFolder folder;
  const std::string cif = many_structures(folder);
  ASSERT_EQ(run({"import", cif, "-o", folder.file("whole.dbe")}).code, 0);
  const std::string whole = contents_of_file(folder.file("whole.dbe"));
  bool was_interrupted = false;
  for (int milliseconds = 0; milliseconds <= 60; milliseconds += 6) {
    const std::string path = folder.with("x.dbe", old);
    const Outcome result = Program({"import", cif, "-o", path})
                               .signalled(GetParam(), std::chrono::milliseconds(milliseconds))
                               .run();
    was_interrupted = was_interrupted || result.signal == GetParam();
    const std::string found = contents_of_file(path);
    EXPECT_TRUE(found == old || found == whole) << milliseconds << " ms: " << found.size() << " bytes";
    if (GetParam() != SIGKILL) {
      EXPECT_EQ(folder.file_count(), 3U) << milliseconds << " ms";
    }
  }
  EXPECT_TRUE(was_interrupted);
  EXPECT_EQ(run({"import", cif, "-o", folder.file("x.dbe")}).code, 0) << "stale temporaries do not disturb";
  EXPECT_TRUE(contents_of_file(folder.file("x.dbe")) == whole);
}

INSTANTIATE_TEST_SUITE_P(Signals, Interrupted, testing::Values(SIGINT, SIGTERM, SIGHUP, SIGKILL));

// ---- Standard output that fails

TEST(StandardOutput, IsToldWhenItIsFull) {
  const Outcome result = Program({"show", archive}).output_to("/dev/full").run();
  EXPECT_EQ(result.code, 4);
  EXPECT_EQ(result.messages, "dbentry: standard output: cannot write: No space left on device\n");
}

TEST(StandardOutput, MayBeClosedBeforeTheStart) {
  const TemporaryFolder folder;
  const Outcome result = Program({"import", invented, "-o", folder.file("x.dbe")}).output_to("").run();
  EXPECT_EQ(result.code, 4);
  EXPECT_EQ(result.messages, "dbentry: standard output: cannot write: Bad file descriptor\n");
  EXPECT_EQ(run({"verify", folder.file("x.dbe")}).code, 0) << "what was printed did not go into the archive";
}

TEST(StandardOutput, MayLoseItsReader) {
  const TemporaryFolder folder;
  const std::string cif = many_structures(folder);
  ASSERT_EQ(run({"import", cif, "-o", folder.file("x.dbe")}).code, 0);
  const std::string command = std::string("set -o pipefail; ") + DBENTRY_PROGRAM + " show " +
                              folder.file("x.dbe") + " 2>" + folder.file("messages") + " | head -1 >" +
                              folder.file("out");
  EXPECT_EQ(std::system(("bash -c '" + command + "'").c_str()), 0);
  EXPECT_EQ(contents_of_file(folder.file("out")), "identifier: first\n");
  EXPECT_EQ(contents_of_file(folder.file("messages")), "");
}

TEST(StandardOutput, MayLoseItsReaderBeforeTheFirstByte) {
  const Outcome result = Program({"list", archive}).output_to_nobody().run();
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.messages, "");
}

TEST(StandardOutput, LosesNothingOfWhatTheCommandFoundWithItsReader) {
  const Outcome whole = run({"import", broken, "--dry-run"});
  const Outcome result = Program({"import", broken, "--dry-run"}).output_to_nobody().run();
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.messages, whole.messages);
}

TEST(StandardOutput, CountsMoreThanProblemsOfTheCommandWhenItIsFull) {
  const std::string of_command = run({"import", broken, "--dry-run"}).messages;
  const Outcome result = Program({"import", broken, "--dry-run"}).output_to("/dev/full").run();
  EXPECT_EQ(result.code, 4);
  EXPECT_EQ(result.messages,
            of_command + "dbentry: standard output: cannot write: No space left on device\n");
}

TEST(StandardOutput, IsToldBesideTheMessageOfTheCommandWhenBothFail) {
  const TemporaryFolder folder;
  const std::string whole = contents_of_file(archive);
  const std::string cut = folder.with("cut.dbe", whole + whole.substr(0, whole.size() - 1));
  const std::string of_command = run({"list", cut}).messages;
  ASSERT_THAT(of_command, HasSubstr("is damaged"));
  const Outcome result = Program({"list", cut}).output_to("/dev/full").run();
  EXPECT_EQ(result.code, 5);
  EXPECT_EQ(result.messages,
            "dbentry: standard output: cannot write: No space left on device\n" + of_command);
}

// ---- Files that are no archives

TEST(Archive, MayBeEmpty) {
  const TemporaryFolder folder;
  const Outcome result = run({"list", folder.with("empty.dbe", "")});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.messages, "dbentry: " + folder.file("empty.dbe") + ": the file is empty: no entries\n");
}

TEST(Archive, MayNotBeKeptFromTheReader) {
  const TemporaryFolder folder;
  const std::string secret = folder.with("secret.dbe", contents_of_file(archive));
  ASSERT_EQ(::chmod(secret.c_str(), 0), 0);
  const Outcome result = Program({"list", secret}).held_to_permissions().run();
  EXPECT_EQ(result.code, 4);
  EXPECT_EQ(result.messages, "dbentry: " + secret + ": cannot open: Permission denied\n");
}

TEST(Archive, MayNotBeAFolder) {
  const Outcome result = run({"show", "/tmp"});
  EXPECT_EQ(result.code, 4);
  EXPECT_EQ(result.messages,
            "dbentry: /tmp: is a folder; a stored archive is wanted (dbentry import makes one)\n");
}

TEST(Archive, MayNotBeACif) {
  const Outcome result = run({"list", invented});
  EXPECT_EQ(result.code, 4);
  EXPECT_EQ(result.messages,
            "dbentry: " + invented +
                ": is a CIF, not a stored archive; an archive is made of it by: dbentry import " + invented +
                " -o invented.dbe\n");
}

TEST(Archive, MayNotBeAnyOtherText) {
  const TemporaryFolder folder;
  const Outcome result = run({"show", folder.with("x", "Dear reader,\n")});
  EXPECT_EQ(result.code, 5);
  EXPECT_THAT(result.messages, StartsWith("dbentry: " + folder.file("x") + ": entry 1 ("));
}

}  // namespace
