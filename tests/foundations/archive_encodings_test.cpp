#include <database_entry/foundations/archive_encodings.h>
#include <gtest/gtest.h>

#include <limits>

#include "support/bytes.h"

// A component of our own that opts in, and one that does not.
struct Note {
  std::string first;
  int second = 0;

  void write(Archive& archive) const { archive << first << second; }
  void read(Archive& archive) { archive >> first >> second; }
};
struct Stranger {
  void write(Archive&) const {}
  void read(Archive&) {}
};

template <>
inline constexpr bool is_archived_component<Note> = true;

namespace {

THandle<Note> note(const std::string& first, int second) {
  return THandle<Note>(new Note{first, second});
}

TEST(ArchivedText, IsItsLengthThenItsBytes) {
  EXPECT_EQ(written([](Archive& archive) { archive << std::string("abc"); }), bytes(int32(3), "abc"));
}

TEST(ArchivedText, ThatIsEmptyIsALengthOfZero) {
  EXPECT_EQ(written([](Archive& archive) { archive << std::string(); }), int32(0));
  std::string back = "old";
  EXPECT_EQ(read_from(int32(0), [&](Archive& archive) { archive >> back; }), 4);
  EXPECT_EQ(back, "");
}

TEST(ArchivedText, WithANulIsWrittenWholeAndReadUpToTheNul) {
  for (const std::size_t length : {1U, 5U, 15U, 16U, 17U, 40U, 5000U}) {
    for (const std::size_t nul : {std::size_t{0}, length / 2, length - 1}) {
      std::string value(length, 'x');
      value[nul] = '\0';
      const std::string stored = written([&](Archive& archive) { archive << value << 7; });
      EXPECT_EQ(stored, bytes(text(value), int32(7)));
      std::string back;
      int next = 0;
      read_from(stored, [&](Archive& archive) { archive >> back >> next; });
      EXPECT_EQ(back, std::string(nul, 'x'));
      EXPECT_EQ(next, 7);
    }
  }
}

TEST(ArchivedText, OfEveryShortLengthComesBackWhole) {
  for (std::size_t length = 0; length < 40; ++length) {
    const std::string value =
        std::string("\xFF\x80 abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOP").substr(0, length);
    std::string back = "old";
    read_from(written([&](Archive& archive) { archive << value; }),
              [&](Archive& archive) { archive >> back; });
    EXPECT_EQ(back, value);
  }
}

TEST(ArchivedText, WhoseBytesAreMissingIsTheBytesThatCame) {
  std::string back = "old";
  EXPECT_EQ(read_from(bytes(int32(10), "abc"), [&](Archive& archive) { archive >> back; }), 7);
  EXPECT_EQ(back, "abc");
}

TEST(ArchivedText, OfNegativeLengthIsRefused) {
  std::string back = "old";
  EXPECT_EQ(
      message_of<ArchiveError>([&] { read_from(int32(-1), [&](Archive& archive) { archive >> back; }); }),
      "Archive: negative length -1 at offset 0");
  EXPECT_EQ(back, "old");
}

TEST(ArchivedTextList, IsItsCountThenItsTexts) {
  EXPECT_EQ(written([](Archive& archive) {
              archive << std::vector<std::string>{"a", "", "bc"};
            }),
            bytes(int32(3), text("a"), text(""), text("bc")));
}

TEST(ArchivedTextList, OfNoElementsEmptiesTheTarget) {
  std::vector<std::string> list{"old", "old"};
  read_from(int32(0), [&](Archive& archive) { archive >> list; });
  EXPECT_TRUE(list.empty());
}

TEST(ArchivedTextList, OfAShorterCountTruncates) {
  std::vector<std::string> list{"old", "old", "old"};
  read_from(bytes(int32(1), text("new")), [&](Archive& archive) { archive >> list; });
  EXPECT_EQ(list, std::vector<std::string>{"new"});
}

TEST(ArchivedTextList, CutShortKeepsOldElementsAfterTheFailure) {
  std::vector<std::string> list{"old1", "old2", "old3", "old4"};
  EXPECT_THROW(read_from(bytes(int32(3), text("new")), [&](Archive& archive) { archive >> list; }),
               ArchiveError);
  EXPECT_EQ(list, (std::vector<std::string>{"new", "old2", "old3"}));
}

TEST(ArchivedTextList, OfNegativeCountIsRefusedAndTheTargetKept) {
  std::vector<std::string> list{"old"};
  EXPECT_EQ(message_of<ArchiveError>([&] {
              read_from(int32(std::numeric_limits<int>::min()), [&](Archive& archive) { archive >> list; });
            }),
            "Archive: negative count -2147483648 at offset 0");
  EXPECT_EQ(list, std::vector<std::string>{"old"});
}

TEST(ArchivedTextList, ClaimingMoreThanItHoldsCostsNoMemory) {
  std::vector<std::string> list;
  EXPECT_THROW(read_from(bytes(int32(std::numeric_limits<int>::max()), text("abcd")),
                         [&](Archive& archive) { archive >> list; }),
               ArchiveError);
  EXPECT_EQ(list[0], "abcd");
  EXPECT_LE(list.capacity(), 1024U);
}

TEST(ArchivedTextList, LongerThanTheBelievedCountComesBackWhole) {
  std::vector<std::string> list(5000);
  for (std::size_t index = 0; index < list.size(); ++index) list[index] = std::to_string(index);
  std::vector<std::string> back;
  read_from(written([&](Archive& archive) { archive << list; }), [&](Archive& archive) { archive >> back; });
  EXPECT_EQ(back, list);
}

TEST(ArchivedHandle, IsTheContentsOfItsObjectAndNothingElse) {
  EXPECT_EQ(written([](Archive& archive) { archive << note("x", 2); }), bytes(text("x"), int32(2)));
}

TEST(ArchivedHandle, ThatIsNullIsRefusedBeforeAnythingIsWritten) {
  EXPECT_EQ(written([](Archive& archive) { EXPECT_THROW(archive << THandle<Note>(), NullHandleError); }), "");
}

TEST(ArchivedHandle, IsReadIntoANewObjectThatOtherHoldersDoNotSee) {
  THandle<Note> handle = note("old", 1);
  const THandle<Note> other = handle;
  read_from(bytes(text("new"), int32(2)), [&](Archive& archive) { archive >> handle; });
  EXPECT_EQ(handle->first, "new");
  EXPECT_EQ(other->first, "old");
  EXPECT_EQ(other.use_count(), 1);
}

TEST(ArchivedHandle, KeepsThePartlyFilledNewObjectWhenReadingFails) {
  THandle<Note> handle = note("old", 1);
  EXPECT_THROW(read_from(text("new"), [&](Archive& archive) { archive >> handle; }), ArchiveError);
  EXPECT_EQ(handle->first, "new");
  EXPECT_EQ(handle->second, 0);
}

template <class T>
concept Stored = requires(Archive& archive, THandle<T> handle) {
  archive << handle;
  archive >> handle;
};

TEST(ArchivedHandle, CompilesOnlyForComponentsThatOptIn) {
  static_assert(Stored<Note>);
  static_assert(!Stored<Stranger> && !Stored<int> && !Stored<std::string>);
  SUCCEED();
}

struct CutList {
  std::size_t before, claimed, came, after;
  const char* reason;
};

TEST(ArchivedTexts, HaveGrownThisFarWhenTheStreamEnds) {
  const CutList cases[] = {
      {0, 5, 2, 5, "a short list at once"},       {0, 1024, 2, 1024, "1,024 too"},
      {0, 5000, 2, 1024, "no further than that"}, {0, 5000, 1024, 2048, "by as many as have come"},
      {0, 5000, 3000, 4096, "and again"},         {2000, 5000, 2, 2000, "what was there stays"},
  };
  for (const CutList& c : cases) {
    std::vector<std::string> list(c.before, "before");
    std::string stored = int32(static_cast<int>(c.claimed));
    for (std::size_t index = 0; index < c.came; ++index) stored += text("came");
    EXPECT_THROW(read_from(stored, [&](Archive& archive) { archive >> list; }), ArchiveError) << c.reason;
    EXPECT_EQ(list.size(), c.after) << c.reason;
    EXPECT_EQ(list[c.came - 1], "came") << c.reason;
    EXPECT_EQ(list.back(), c.before == 0 ? "" : "before") << c.reason;
  }
}

}  // namespace
