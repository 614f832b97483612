// What an entry writes to the log when it goes.
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <gtest/gtest.h>
#include <utilities/vorn_log.h>

#include <cstdlib>
#include <iostream>
#include <locale>
#include <memory>

#include "support/sample_entry.h"

#ifndef _WIN32  // has no fork
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace {

using Entry = CrystalStructureImmediateDatabaseEntry;

// Sets the levels and the stream of the log for as long as it lives.
class CaughtLog {
 public:
  CaughtLog(int level, int minimum_level, std::ostream& stream) {
    VORNLog::level_ = level;
    VORNLog::minimum_level_ = minimum_level;
    VORNLog::set_stream(stream);
  }
  CaughtLog(const CaughtLog&) = delete;
  CaughtLog& operator=(const CaughtLog&) = delete;
  ~CaughtLog() {
    VORNLog::level_ = 0;
    VORNLog::minimum_level_ = 0;
    VORNLog::set_stream(std::cerr);
  }
};

// Destroys an entry and gives the line that it should have written.
std::string destroy_one(const std::locale& locale = std::locale::classic()) {
  const std::unique_ptr<Entry> entry(new Entry(DatabaseEntryIdentifier("ABCDEF"), handle_to(CrystalMaker())));
  std::ostringstream line;
  line.imbue(locale);
  line << "Entered CrystalStructureImmediateDatabaseEntry::~CrystalStructureImmediateDatabaseEntry() - "
       << static_cast<const void*>(entry.get()) << '\n';
  return line.str();
}

TEST(DestroyedEntry, WritesItsAddressToTheLogAtLevel3) {
  const struct {
    int level, minimum_level;
    bool written;
    const char* reason;
  } cases[] = {{3, 3, true, "just this level"},
               {9, 0, true, "all levels"},
               {2, 0, false, "the level is too low"},
               {9, 4, false, "the minimum level is too high"}};
  for (const auto& each : cases) {
    std::ostringstream stream;
    const CaughtLog log(each.level, each.minimum_level, stream);
    const std::string line = destroy_one();
    EXPECT_EQ(stream.str(), each.written ? line : "") << each.reason;
  }
}

struct GroupedDigits : std::numpunct<char> {
  char do_thousands_sep() const override { return '\''; }
  std::string do_grouping() const override { return "\2"; }
};

// Sets the global locale to one that groups digits, for as long as it lives.
class GroupingLocale {
 public:
  GroupingLocale() : before_(std::locale::global(grouping())) {}
  GroupingLocale(const GroupingLocale&) = delete;
  GroupingLocale& operator=(const GroupingLocale&) = delete;
  ~GroupingLocale() { std::locale::global(before_); }

  static std::locale grouping() { return {std::locale::classic(), new GroupedDigits}; }

 private:
  std::locale before_;
};

TEST(DestroyedEntry, IsLoggedWithoutTheGlobalLocale) {
  std::ostringstream stream;
  const CaughtLog log(3, 0, stream);
  std::string line;
  {
    const GroupingLocale global;
    line = destroy_one(std::locale::classic());
  }
  EXPECT_EQ(stream.str(), line);
  EXPECT_EQ(line.find('\''), std::string::npos);
}

TEST(DestroyedEntry, IsLoggedInTheLocaleOfTheLogStream) {
  std::ostringstream stream;
  stream.imbue(GroupingLocale::grouping());
  const CaughtLog log(3, 0, stream);
  const std::string line = destroy_one(stream.getloc());
  EXPECT_EQ(stream.str(), line);
#ifdef __GLIBCXX__
  EXPECT_NE(line.find('\''), std::string::npos);  // other libraries never group the digits of an address
#endif
}

TEST(DestroyedEntry, IsNotLoggedWhenItCouldNotBeMade) {
  std::ostringstream stream;
  const CaughtLog log(3, 0, stream);
  EXPECT_THROW(Entry(DatabaseEntryIdentifier(), THandle<CrystalMaker>()), NullHandleError);
  EXPECT_EQ(stream.str(), "");
}

TEST(DestroyedEntry, LeavesTheFormatOfTheLogStreamAlone) {
  std::ostringstream stream;
  stream << std::oct << std::uppercase;
  const auto format = stream.flags();
  const CaughtLog log(3, 0, stream);
  const std::string line = destroy_one();
  EXPECT_EQ(stream.str(), line);
  EXPECT_EQ(stream.flags(), format);
}

struct ThrowingBuffer : std::streambuf {
  int overflow(int) override { throw 7; }
};

TEST(DestroyedEntry, DoesNotThrowWhenTheLogStreamDoes) {
  ThrowingBuffer buffer;
  std::ostream stream(&buffer);
  stream.exceptions(std::ios::badbit | std::ios::failbit);
  const auto format = stream.flags();
  const CaughtLog log(3, 0, stream);
  EXPECT_NO_THROW(destroy_one());
  EXPECT_TRUE(stream.bad());
  EXPECT_EQ(stream.flags(), format);
}

#ifndef _WIN32

// In a child process, so that its end can be looked at.
TEST(DestroyedEntry, IsLoggedSafelyWhenTheProgramEnds) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDERR_FILENO);
    VORNLog::level_ = 3;
    static const Entry at_exit(DatabaseEntryIdentifier("ABCDEF"), handle_to(CrystalMaker()));
    std::exit(0);
  }
  close(ends[1]);
  const File reader(fdopen(ends[0], "r"));
  std::string log;
  for (int byte = std::fgetc(reader.get()); byte != EOF; byte = std::fgetc(reader.get())) {
    log += static_cast<char>(byte);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(log.starts_with("Entered CrystalStructureImmediateDatabaseEntry::~")) << log;
}

#endif

}  // namespace
