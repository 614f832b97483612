// Streams that come in pieces, are interrupted at every call, or fill up.
#include <gtest/gtest.h>
#include <reliability/support/failing_streams.h>
#include <reliability/support/subject_test.h>
#include <sys/resource.h>

#include <csignal>

namespace {

using OverABadStream = SubjectTest;

// Writes the object and flushes. True when neither reported a failure.
bool writes_whole(const Archived& object, FILE* stream) {
  Archive archive(stream);
  try {
    object.write(archive);
    archive.flush();
  } catch (const ArchiveError&) {
    return false;
  }
  return true;
}

TEST_P(OverABadStream, ReadsPiecesAndInterruptionsAsAWholeStream) {
  for (const std::size_t piece : {1U, 2U, 3U, 7U, 1000U}) {
    for (const bool interrupted : {false, true}) {
      TricklingInput input(whole(), piece, interrupted);
      const File stream = input.open();
      Archive archive(stream.get());
      const auto object = GetParam().make();
      object->read(archive);
      EXPECT_EQ(archived(*object), whole()) << piece << ", " << interrupted;
    }
  }
}

TEST_P(OverABadStream, ReportsAStreamThatFillsUpAtAnyByte) {
  const auto object = full();
  for (const int mode : {_IONBF, _IOFBF}) {
    for (std::size_t room = 0; room < whole().size(); ++room) {
      FullOutput output(room);
      const File stream = output.open();
      std::setvbuf(stream.get(), nullptr, mode, BUFSIZ);
      EXPECT_FALSE(writes_whole(*object, stream.get())) << room;
      // A text that does not fit is only reported by the flush, so smaller scalars may follow the gap.
      const std::size_t first_scalar = std::min<std::size_t>(room, 4);
      EXPECT_EQ(output.taken().substr(0, first_scalar), whole().substr(0, first_scalar)) << room;
    }
  }
}

TEST_P(OverABadStream, ReportsAFullDisk) {
  const File disk(std::fopen("/dev/full", "w"));
  EXPECT_FALSE(writes_whole(*full(), disk.get()));
}

// Files of this process may grow to `bytes` while it lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : old_handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_limit_);
    const rlimit limit{bytes, old_limit_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &old_limit_);
    std::signal(SIGXFSZ, old_handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  void (*old_handler_)(int);
  rlimit old_limit_{};
};

TEST_P(OverABadStream, ReportsAFileThatMayNotGrow) {
  const auto object = full();
  const File file = file_with("");
  const FileSizeLimit limit(whole().size() - 1);
  EXPECT_FALSE(writes_whole(*object, file.get()));
}

TEST_P(OverABadStream, WritesIntoAFileOfExactlyItsSize) {
  const auto object = full();
  const File file = file_with("");
  const FileSizeLimit limit(whole().size());
  EXPECT_TRUE(writes_whole(*object, file.get()));
}

INSTANTIATE_TEST_SUITE_P(Everything, OverABadStream, testing::ValuesIn(subjects()),
                         testing::PrintToStringParamName());

}  // namespace
