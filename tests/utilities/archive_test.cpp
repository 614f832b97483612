#include <gtest/gtest.h>
#include <utilities/archive.h>

#include <cmath>
#include <limits>

#include "support/bytes.h"

namespace {

TEST(Archive, MayBeMadeWithoutAStream) {
  EXPECT_EQ(Archive(nullptr).stream(), nullptr);
}

TEST(Archive, WritesIntsAsFourBytesLeastSignificantFirst) {
  EXPECT_EQ(written([](Archive& archive) { archive << 1 << -2 << 0x01020304; }),
            std::string("\1\0\0\0\xFE\xFF\xFF\xFF\4\3\2\1", 12));
}

TEST(Archive, WritesAnUnsignedIntThatReadsBackAsAnInt) {
  const std::string stored = written([](Archive& archive) { archive << 0x89ABCDEFU; });
  EXPECT_EQ(stored, "\xEF\xCD\xAB\x89");
  int back = 0;
  read_from(stored, [&](Archive& archive) { archive >> back; });
  EXPECT_EQ(static_cast<unsigned int>(back), 0x89ABCDEFU);
}

TEST(Archive, WritesADoubleAsItsEightBytes) {
  EXPECT_EQ(written([](Archive& archive) { archive << 1.0 << -0.5; }),
            std::string("\0\0\0\0\0\0\xF0\x3F\0\0\0\0\0\0\xE0\xBF", 16));
}

TEST(Archive, WritesABoolAsOneByte) {
  EXPECT_EQ(written([](Archive& archive) { archive << true << false; }), std::string("\1\0", 2));
}

TEST(Archive, ReadsAnyByteButZeroAsTrue) {
  bool values[4] = {};
  read_from(std::string("\0\1\2\xFF", 4),
            [&](Archive& archive) { archive >> values[0] >> values[1] >> values[2] >> values[3]; });
  EXPECT_FALSE(values[0]);
  EXPECT_TRUE(values[1] && values[2] && values[3]);
}

TEST(Archive, KeepsEveryBitOfADouble) {
  for (const double value : {0.0, -0.0, 1e-310, std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()}) {
    double back = 1;
    read_from(float64(value), [&](Archive& archive) { archive >> back; });
    EXPECT_EQ(float64(back), float64(value));
  }
}

TEST(Archive, ChainsInTheOrderOfTheCalls) {
  int i = 0;
  bool b = false;
  double d = 0;
  EXPECT_EQ(read_from(bytes(int32(7), boolean(true), float64(2.5)),
                      [&](Archive& archive) { archive >> i >> b >> d; }),
            13);
  EXPECT_EQ(i, 7);
  EXPECT_TRUE(b);
  EXPECT_EQ(d, 2.5);
}

TEST(Archive, NamesWhatWasWantedAndWhereTheStreamEnds) {
  int value = 77;
  const std::string message = message_of<ArchiveError>([&] {
    read_from(bytes(int32(5), "ab"), [&](Archive& archive) {
      int first = 0;
      archive >> first >> value;
    });
  });
  EXPECT_EQ(message, "Archive: end of the stream while reading an int at offset 4");
  EXPECT_EQ(value, 77);
}

TEST(Archive, NamesTheComponentThatIsBeingRead) {
  const std::string message = message_of<ArchiveError>([] {
    read_from("", [](Archive& archive) {
      double value = 0;
      archive.name_component("publication");
      archive >> value;
    });
  });
  EXPECT_EQ(message, "Archive: end of the stream while reading a double at offset 0 (publication)");
}

TEST(Archive, ConsumesTheBytesOfAScalarThatIsNotWhole) {
  const File file = file_with("abc");
  Archive archive(file.get());
  int value = 0;
  EXPECT_THROW(archive >> value, ArchiveError);
  EXPECT_EQ(std::ftell(file.get()), 3);
}

TEST(Archive, SaysThatAStreamOpenForWritingCannotBeRead) {
  const File file(std::fopen("/dev/null", "w"));
  Archive archive(file.get());
  int value = 0;
  EXPECT_EQ(message_of<ArchiveError>([&] { archive >> value; }),
            "Archive: cannot read an int at offset 0: Bad file descriptor");
}

TEST(Archive, SaysThatAStreamOpenForReadingCannotBeWritten) {
  const File file(std::fopen("/dev/null", "r"));
  Archive archive(file.get());
  EXPECT_EQ(message_of<ArchiveError>([&] { archive << 1; }),
            "Archive: cannot write an int at offset 0: Bad file descriptor");
}

TEST(Archive, SeesAFullDiskWhenItFlushes) {
  const File file(std::fopen("/dev/full", "w"));
  if (file == nullptr) GTEST_SKIP() << "no device here is always full";
  Archive archive(file.get());
  archive << 1;
  EXPECT_EQ(message_of<ArchiveError>([&] { archive.flush(); }),
            "Archive: the stream has failed: No space left on device");
}

TEST(Archive, FailsEveryFlushAfterALostWrite) {
  const File file(std::fopen("/dev/full", "w"));
  if (file == nullptr) GTEST_SKIP() << "no device here is always full";
  Archive archive(file.get());
  archive << 1;
  EXPECT_THROW(archive.flush(), ArchiveError);
  EXPECT_EQ(message_of<ArchiveError>([&] { archive.flush(); }),
            "Archive: the stream has failed: an earlier write was lost");
}

TEST(Archive, DoesNotOwnItsStream) {
  const File file = file_with("");
  {
    Archive archive(file.get());
    archive << 1;
  }
  EXPECT_EQ(std::fputc('x', file.get()), 'x');
  EXPECT_EQ(Archive(file.get()).stream(), file.get());
}

template <class Value>
concept Writable = requires(Archive& archive, Value value) {
  archive << value;
};

TEST(Archive, RefusesPointersAtCompileTime) {
  static_assert(!Writable<const char*> && !Writable<int*>);
  static_assert(Writable<int> && Writable<unsigned int> && Writable<bool> && Writable<double>);
  SUCCEED();
}

}  // namespace
