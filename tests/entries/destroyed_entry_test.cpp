// What an entry writes to the log when it goes.
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utilities/vorn_log.h>

#include <cstdlib>
#include <iostream>
#include <memory>

#include "entries/sample_entry.h"

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
std::string destroy_one() {
  const std::unique_ptr<Entry> entry(new Entry(DatabaseEntryIdentifier("ABCDEF"), handle_to(CrystalMaker())));
  std::ostringstream line;
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

}  // namespace
