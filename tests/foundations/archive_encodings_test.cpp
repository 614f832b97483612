#include <database_entry/foundations/archive_encodings.h>
#include <gtest/gtest.h>

#include "support/bytes.h"

namespace {

TEST(ArchivedText, IsItsLengthThenItsBytes) {
  EXPECT_EQ(written([](Archive& archive) { archive << std::string("abc"); }), bytes(int32(3), "abc"));
}

TEST(ArchivedText, WithANulIsWrittenWholeAndReadUpToTheNul) {
  const std::string value("ab\0cd", 5);
  const std::string stored = written([&](Archive& archive) { archive << value << 7; });
  EXPECT_EQ(stored, bytes(text(value), int32(7)));
  read_from(stored, [](Archive& archive) {
    std::string back;
    int next = 0;
    archive >> back >> next;
    EXPECT_EQ(back, "ab");
    EXPECT_EQ(next, 7);
  });
}

TEST(ArchivedText, OfNegativeLengthIsRefused) {
  EXPECT_EQ(message_of<ArchiveError>([] {
              read_from(int32(-1), [](Archive& archive) {
                std::string back;
                archive >> back;
              });
            }),
            "Archive: negative length -1 at offset 0");
}

TEST(ArchivedTextList, OfAShorterCountTruncates) {
  std::vector<std::string> list{"old", "old", "old"};
  read_from(bytes(int32(1), text("new")), [&](Archive& archive) { archive >> list; });
  EXPECT_EQ(list, std::vector<std::string>{"new"});
}

}  // namespace
