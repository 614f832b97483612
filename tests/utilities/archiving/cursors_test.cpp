// The cursor against one fread or fwrite per item: on every kind of stream both must give the same values,
// bytes, positions and failures. The tests are built with the C library's fields and without them.
#include <gtest/gtest.h>
#include <utilities/archiving/field_list.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <functional>
#include <limits>
#include <vector>

#include "support/bytes.h"

#ifndef _WIN32  // has neither pipes of this kind nor streams over memory
#include <unistd.h>
#define HAS_POSIX_STREAMS
#endif
#ifdef __GLIBC__
#define HAS_COOKIE_STREAMS
#endif

namespace {

enum Colour : std::int32_t { red = 0, blue = 7 };

// One of everything that a record holds.
struct Sample {
  int number = 0;
  std::string name;
  double real = 0;
  bool flag = false;
  Colour colour = red;
  std::string note;

  friend bool operator==(const Sample&, const Sample&) = default;
};

const Sample full{-5, "short", 0.1, true, blue, std::string(60, 'n') + "end"};

std::string stored(const Sample& s) {
  return bytes(int32(s.number), text(s.name), float64(s.real), boolean(s.flag), int32(s.colour),
               text(s.note));
}

// What a step left: whether it failed, what it read, and what the stream shows to others.
struct Outcome {
  bool failed = false;
  Sample sample;
  long position = 0;
  bool at_end = false;
  int next_byte = EOF;

  friend bool operator==(const Outcome&, const Outcome&) = default;
};

std::ostream& operator<<(std::ostream& os, const Outcome& o) {
  return os << "failed " << o.failed << ", name '" << o.sample.name << "', note '" << o.sample.note
            << "', number " << o.sample.number << ", colour " << o.sample.colour << ", position "
            << o.position << ", end " << o.at_end << ", next byte " << o.next_byte;
}

template <class T>
bool plain_read(FILE* stream, T& value) {
  std::array<char, sizeof(T)> raw;
  if (std::fread(raw.data(), 1, raw.size(), stream) < raw.size()) return false;
  if (std::endian::native == std::endian::big) std::reverse(raw.begin(), raw.end());
  std::memcpy(&value, raw.data(), raw.size());
  return true;
}

bool plain_read(FILE* stream, std::string& value) {
  int length = 0;
  if (!plain_read(stream, length) || length < 0) return false;
  std::string raw(static_cast<std::size_t>(length), '\0');
  raw.resize(std::fread(raw.data(), 1, raw.size(), stream));
  value = raw.c_str();
  return true;
}

template <class ReadAll>
Outcome outcome(FILE* stream, const ReadAll& read_all) {
  Outcome result;
  result.failed = !read_all(result.sample);
  result.position = std::ftell(stream);
  result.at_end = std::feof(stream) != 0;
  result.next_byte = std::fgetc(stream);
  return result;
}

Outcome plainly(FILE* stream) {
  return outcome(stream, [stream](Sample& s) {
    return plain_read(stream, s.number) && plain_read(stream, s.name) && plain_read(stream, s.real) &&
           plain_read(stream, s.flag) && plain_read(stream, s.colour) && plain_read(stream, s.note);
  });
}

Outcome by_cursor(FILE* stream) {
  return outcome(stream, [stream](Sample& s) {
    Archive archive(stream);
    try {
      read_fields(archive, s.number, s.name, s.real, s.flag, s.colour, s.note);
    } catch (const ArchiveError&) {
      return false;
    }
    return true;
  });
}

#ifdef HAS_COOKIE_STREAMS

// A stream without a file: it gives its text in pieces, with interruptions between them.
struct Trickle {
  std::string contents;
  std::size_t piece = 1;
  bool interrupts = false;
  std::size_t position = 0;
  bool interrupted = false;

  static ssize_t read(void* cookie, char* into, std::size_t size) {
    Trickle& self = *static_cast<Trickle*>(cookie);
    self.interrupted = self.interrupts && !self.interrupted;
    if (self.interrupted) {
      errno = EINTR;
      return -1;
    }
    const std::size_t count = std::min({size, self.piece, self.contents.size() - self.position});
    std::memcpy(into, self.contents.data() + self.position, count);
    self.position += count;
    return static_cast<ssize_t>(count);
  }
  static int close(void* cookie) {
    delete static_cast<Trickle*>(cookie);
    return 0;
  }
};

File trickle(const std::string& contents, std::size_t piece, bool interrupts) {
  cookie_io_functions_t functions{};
  functions.read = Trickle::read;
  functions.close = Trickle::close;
  return File(fopencookie(new Trickle{contents, piece, interrupts}, "r", functions));
}

#endif
#ifdef HAS_POSIX_STREAMS

File pipe_with(const std::string& contents) {
  int ends[2];
  if (pipe(ends) != 0) return nullptr;
  const ssize_t put = write(ends[1], contents.data(), contents.size());
  close(ends[1]);
  EXPECT_EQ(put, static_cast<ssize_t>(contents.size()));
  return File(fdopen(ends[0], "r"));
}

File memory_with(const std::string& contents) {
  File file(fmemopen(nullptr, contents.size() + 1, "w+"));
  std::fwrite(contents.data(), 1, contents.size(), file.get());
  std::rewind(file.get());
  return file;
}

#endif

File buffered(const std::string& contents, int mode, std::size_t size) {
  static char buffer[16];
  File file = file_with("");
  std::setvbuf(file.get(), mode == _IOFBF ? buffer : nullptr, mode, size);
  std::fwrite(contents.data(), 1, contents.size(), file.get());
  std::rewind(file.get());
  return file;
}

File pushed_back(const std::string& contents) {
  if (contents.empty()) return file_with("");
  File file = file_with("#" + contents.substr(1));
  std::fgetc(file.get());
  std::ungetc(contents[0], file.get());
  return file;
}

struct StreamKind {
  const char* name;
  std::function<File(const std::string&)> open;
};

const StreamKind readable_kinds[] = {
    {"file", file_with},
#ifdef HAS_POSIX_STREAMS
    {"pipe", pipe_with},
    {"memory", memory_with},
#endif
    {"unbuffered", [](const std::string& contents) { return buffered(contents, _IONBF, 0); }},
    {"line-buffered", [](const std::string& contents) { return buffered(contents, _IOLBF, 64); }},
    {"16-byte buffer", [](const std::string& contents) { return buffered(contents, _IOFBF, 16); }},
    {"pushed-back byte", pushed_back},
#ifdef HAS_COOKIE_STREAMS
    {"one byte at a time", [](const std::string& contents) { return trickle(contents, 1, false); }},
    {"seven bytes at a time", [](const std::string& contents) { return trickle(contents, 7, false); }},
#endif
};

TEST(ReadCursor, LeavesEveryKindOfStreamAsOneFreadPerItemDoesAtEveryTruncation) {
  const std::string whole = bytes(stored(full), "rest");
  for (const StreamKind& kind : readable_kinds) {
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      const std::string contents = whole.substr(0, size);
      const Outcome expected = plainly(kind.open(contents).get());
      EXPECT_EQ(by_cursor(kind.open(contents).get()), expected) << kind.name << ", " << size << " bytes";
    }
  }
}

#ifdef HAS_COOKIE_STREAMS

TEST(ReadCursor, ReadsAnInterruptedStreamAsAWholeOne) {
  for (const std::size_t piece : {1U, 3U, 1000U}) {
    const File interrupted = trickle(bytes(stored(full), "rest"), piece, true);
    const Outcome result = by_cursor(interrupted.get());
    EXPECT_FALSE(result.failed);
    EXPECT_EQ(result.sample, full);
  }
}

TEST(ReadCursor, GivesUpOnAStreamThatIsInterruptedAHundredTimes) {
  cookie_io_functions_t functions{};
  functions.read = [](void* calls, char*, std::size_t) -> ssize_t {
    ++*static_cast<int*>(calls);
    errno = EINTR;
    return -1;
  };
  int calls = 0;
  const File file(fopencookie(&calls, "r", functions));
  Archive archive(file.get());
  int value = 0;
  EXPECT_EQ(message_of<ArchiveError>([&] { archive >> value; }),
            "Archive: cannot read an int: Interrupted system call");
  EXPECT_EQ(calls, 100);
}

TEST(ReadCursor, DoesNotTryAgainOnAStreamThatHadFailedBefore) {
  const File file = trickle(stored(full), 1, true);
  ASSERT_EQ(std::fgetc(file.get()), EOF);
  Archive archive(file.get());
  int value = -1;
  EXPECT_EQ(message_of<ArchiveError>([&] { archive >> value; }),
            "Archive: cannot read an int: Interrupted system call");
  EXPECT_NE(std::ferror(file.get()), 0);
  EXPECT_EQ(value, -1);
}

#endif

TEST(ReadCursor, LetsForeignCodeReadBetweenItems) {
  for (const StreamKind& kind : readable_kinds) {
    const File file = kind.open(bytes(int32(1), "x", int32(2), "yz", float64(3)));
    Archive archive(file.get());
    int first = 0;
    int second = 0;
    double third = 0;
    archive >> first;
    EXPECT_EQ(std::fgetc(file.get()), 'x') << kind.name;
    archive >> second;
    EXPECT_EQ(std::fgetc(file.get()), 'y') << kind.name;
    EXPECT_EQ(std::fgetc(file.get()), 'z') << kind.name;
    archive >> third;
    EXPECT_EQ(first + second + third, 6) << kind.name;
  }
}

// A field whose reading looks at the stream itself.
struct Foreign {
  int byte = 0;
  void read(Archive& archive) { byte = std::fgetc(archive.stream()); }
  void write(Archive& archive) const { std::fputc(byte, archive.stream()); }
};

TEST(ReadCursor, GivesTheStreamFreeForFieldsThatReadThemselves) {
  for (const StreamKind& kind : readable_kinds) {
    const File file = kind.open(bytes(int32(1), "f", int32(2)));
    Archive archive(file.get());
    int first = 0;
    Foreign foreign;
    int second = 0;
    read_fields(archive, first, foreign, second);
    EXPECT_EQ(foreign.byte, 'f') << kind.name;
    EXPECT_EQ(first + second, 3) << kind.name;
  }
}

struct Thrower {
  void read(Archive& archive) {
    std::fgetc(archive.stream());
    throw 7;
  }
  void write(Archive& archive) const {
    std::fputc('t', archive.stream());
    throw 7;
  }
};

TEST(ReadCursor, LeavesThePositionWhereAnExceptionFoundIt) {
  const File file = file_with(bytes(int32(1), "tu"));
  Archive archive(file.get());
  int first = 0;
  Thrower thrower;
  EXPECT_THROW(read_fields(archive, first, thrower), int);
  EXPECT_EQ(std::ftell(file.get()), 5);
  EXPECT_EQ(std::fgetc(file.get()), 'u');
}

TEST(ReadCursor, TakesNoMoreMemoryThanTheBytesThatCome) {
  const File file = file_with(bytes(int32(std::numeric_limits<int>::max()), "abc"));
  Archive archive(file.get());
  std::string value = "old";
  read_fields(archive, value);
  EXPECT_EQ(value, "abc");
  EXPECT_LT(value.capacity(), 100U);
}

TEST(ReadCursor, ReadsATextLongerThanAnyBuffer) {
  const std::string value(300'000, 'x');
  std::string back;
  int next = 0;
  read_from(bytes(text(value), int32(9)), [&](Archive& archive) { read_fields(archive, back, next); });
  EXPECT_EQ(back, value);
  EXPECT_EQ(next, 9);
}

TEST(ShortText, IsHeldInTheStringItselfWhereTheBuildSaysSo) {
  if (archiving::strings_hold_short_texts) {
    EXPECT_GE(std::string().capacity(), archiving::short_text - 1);
  }
}

TEST(ReadCursor, RefusesNegativeLengthsWithTheirPlace) {
  struct Case {
    int length;
    const char* message;
  };
  for (const Case& c :
       {Case{-1, "Archive: negative length -1 at offset 4"},
        Case{std::numeric_limits<int>::min(), "Archive: negative length -2147483648 at offset 4"}}) {
    std::string value = "old";
    EXPECT_EQ(message_of<ArchiveError>([&] {
                read_from(bytes(int32(1), int32(c.length)), [&](Archive& archive) {
                  int first = 0;
                  read_fields(archive, first, value);
                });
              }),
              c.message);
    EXPECT_EQ(value, "old");
  }
}

// Writing. A stream that can be written, and what it holds when it is closed.
struct WritableKind {
  const char* name;
  std::function<std::string(const std::function<void(FILE*)>&)> write;
};

std::string written_buffered(const std::function<void(FILE*)>& write, int mode, std::size_t size) {
  static char buffer[16];
  const File file = file_with("");
  std::setvbuf(file.get(), mode == _IOFBF ? buffer : nullptr, mode, size);
  write(file.get());
  return contents_of(file.get());
}

std::string written_over(const std::function<void(FILE*)>& write) {
  const File file = file_with(std::string(400, '.'));
  std::fgetc(file.get());
  std::fseek(file.get(), 3, SEEK_SET);
  write(file.get());
  return contents_of(file.get());
}

#ifdef HAS_POSIX_STREAMS

std::string written_to_memory(const std::function<void(FILE*)>& write) {
  char* memory = nullptr;
  std::size_t size = 0;
  FILE* stream = open_memstream(&memory, &size);
  std::fputs(std::string(400, '.').c_str(), stream);
  std::fseek(stream, 5, SEEK_SET);
  write(stream);
  std::fseek(stream, 400, SEEK_SET);  // its end as it was: SEEK_END would be where the writing ended
  std::fclose(stream);
  const std::string result(memory, size);
  std::free(memory);
  return result;
}

#endif

const WritableKind writable_kinds[] = {
    {"file", [](const auto& write) { return written_buffered(write, _IOFBF, 16); }},
    {"unbuffered", [](const auto& write) { return written_buffered(write, _IONBF, 0); }},
    {"line-buffered", [](const auto& write) { return written_buffered(write, _IOLBF, 64); }},
    {"over what a file held", written_over},
#ifdef HAS_POSIX_STREAMS
    {"over what a memory stream held", written_to_memory},
#endif
};

template <class T>
void plain_write(FILE* stream, const T& value) {
  std::array<char, sizeof(T)> raw;
  std::memcpy(raw.data(), &value, raw.size());
  if (std::endian::native == std::endian::big) std::reverse(raw.begin(), raw.end());
  std::fwrite(raw.data(), 1, raw.size(), stream);
}

void plain_write(FILE* stream, const std::string& value) {
  plain_write(stream, static_cast<unsigned int>(value.size()));
  std::fwrite(value.data(), 1, value.size(), stream);
}

TEST(WriteCursor, GivesEveryKindOfStreamTheBytesOfOneFwritePerItem) {
  for (const WritableKind& kind : writable_kinds) {
    for (std::size_t length = 0; length < 70; ++length) {
      Sample s = full;
      s.name = std::string(length, 'a') + "\n";
      std::vector<long> positions;
      const std::string expected = kind.write([&](FILE* stream) {
        plain_write(stream, s.number);
        plain_write(stream, s.name);
        std::fputc('f', stream);
        positions.push_back(std::ftell(stream));
        plain_write(stream, s.real);
        plain_write(stream, s.note);
        positions.push_back(std::ftell(stream));
      });
      const std::string actual = kind.write([&](FILE* stream) {
        Archive archive(stream);
        write_fields(archive, s.number, s.name, Foreign{'f'});
        EXPECT_EQ(std::ftell(stream), positions[0]) << kind.name;
        write_fields(archive, s.real, s.note);
        EXPECT_EQ(std::ftell(stream), positions[1]) << kind.name;
      });
      EXPECT_EQ(actual, expected) << kind.name << ", " << length;
    }
  }
}

#ifdef HAS_POSIX_STREAMS

TEST(WriteCursor, LeavesWhatIsAfterAShortTextInAMemoryStream) {
  for (std::size_t length = 0; length <= 20; ++length) {
    const std::string value(length, 'a');
    const std::string actual = written_to_memory([&](FILE* stream) {
      Archive archive(stream);
      write_fields(archive, value);
    });
    EXPECT_EQ(actual, "....." + text(value) + std::string(391 - length, '.'));
  }
}

#endif

TEST(WriteCursor, StaysInTheBufferOfALineBufferedStream) {
  std::string memory(256, '.');
  const File file = file_with("");
  std::setvbuf(file.get(), memory.data(), _IOLBF, 64);
  Archive archive(file.get());
  std::string expected;
  for (int number = 0; number < 60; ++number) {
    write_fields(archive, number);
    expected += bytes(int32(number));
  }
  EXPECT_EQ(contents_of(file.get()), expected);
  EXPECT_EQ(memory.substr(64), std::string(192, '.'));
}

TEST(WriteCursor, LeavesWhatWasWrittenBeforeAnException) {
  const File file = file_with("");
  Archive archive(file.get());
  EXPECT_THROW(write_fields(archive, 1, std::string("ab"), Thrower()), int);
  std::fputc('.', file.get());
  EXPECT_EQ(contents_of(file.get()), bytes(int32(1), text("ab"), "t."));
}

TEST(WriteCursor, RefusesACountThatCouldNotBeReadBack) {
  const std::size_t most = 0x7FFFFFFF;
  EXPECT_EQ(written([&](Archive& archive) {
              archiving::WriteCursor cursor(archive);
              cursor.write_run(1);
              EXPECT_EQ(cursor.checked_count(most, "length"), most);
              EXPECT_EQ(message_of<ArchiveError>([&] { cursor.checked_count(most + 1, "length"); }),
                        "Archive: the length 2147483648 is above 2147483647 and could not be read back "
                        "at offset 4");
            }),
            int32(1));
}

TEST(WriteCursor, LeavesTheBytesOfATextUncheckedAndItsFailureToTheFlush) {
  static char buffer[128];  // smaller ones are passed by, and without one the stream takes a page
  const File file(std::fopen("/dev/full", "w"));
  if (file == nullptr) GTEST_SKIP() << "no device here is always full";
  std::setvbuf(file.get(), buffer, _IOFBF, sizeof buffer);
  Archive archive(file.get());
  EXPECT_NO_THROW(write_fields(archive, std::string(1000, 'x')));
  EXPECT_NE(std::ferror(file.get()), 0) << "the bytes fell short";
  EXPECT_EQ(message_of<ArchiveError>([&] { archive.flush(); }),
            "Archive: the stream has failed: an earlier write was lost");
}

TEST(WriteCursor, ThrowsAtTheScalarThatCannotBeWritten) {
  const File file(std::fopen("/dev/full", "w"));
  if (file == nullptr) GTEST_SKIP() << "no device here is always full";
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  Archive archive(file.get());
  EXPECT_EQ(message_of<ArchiveError>([&] { write_fields(archive, std::string("x")); }),
            "Archive: cannot write an int at offset 0: No space left on device");
}

}  // namespace
