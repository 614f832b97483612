#include <database_entry/references/cross_reference_info.h>
#include <gtest/gtest.h>

#include <limits>

#include "support/bytes.h"

namespace {

using Texts = std::vector<std::string>;

DatabaseCrossReference reference(int type, const std::string& text) {
  return DatabaseCrossReference(static_cast<DatabaseCrossReference::CrossReferenceType>(type), text);
}

CrossReferenceInfo info_with(const std::vector<DatabaseCrossReference>& references) {
  CrossReferenceInfo info;
  for (const DatabaseCrossReference& each : references) info.insert(each);
  return info;
}

// "1 text" for each, in set order.
Texts listed(const CrossReferenceInfo& info) {
  Texts texts;
  for (const DatabaseCrossReference& each : info) {
    texts.push_back(std::to_string(each.type()) + " " + each.text());
  }
  return texts;
}

TEST(CrossReferenceInfo, IsEmptyAtFirst) {
  EXPECT_TRUE(CrossReferenceInfo().empty());
  EXPECT_EQ(CrossReferenceInfo().size(), 0U);
}

TEST(CrossReferenceInfo, HoldsOneOfTwoReferencesOfEqualTypeAndText) {
  EXPECT_EQ(listed(info_with({reference(1, "x"), reference(1, "x")})), Texts{"1 x"});
}

TEST(CrossReferenceInfo, HoldsEqualTextsOfDifferentTypesByType) {
  EXPECT_EQ(listed(info_with({reference(3, "x"), reference(1, "x")})), (Texts{"1 x", "3 x"}));
}

TEST(CrossReferenceInfo, ListsTextsOfOneTypeByByte) {
  const CrossReferenceInfo info = info_with({reference(2, "apple"), reference(2, "Zebra"),
                                             reference(2, "\xe9"), reference(2, "app"), reference(1, "z")});
  EXPECT_EQ(listed(info), (Texts{"1 z", "2 Zebra", "2 app", "2 apple", "2 \xe9"}));
}

TEST(CrossReferenceInfo, OrdersTypesAsSignedIntegers) {
  // A negative type can only come from a failed read.
  DatabaseCrossReference negative;
  EXPECT_THROW(read_from(bytes(int32(-1), text("x")), [&](Archive& archive) { negative.read(archive); }),
               std::invalid_argument);
  EXPECT_EQ(listed(info_with({reference(1, "x"), DatabaseCrossReference(), negative})),
            (Texts{"-1 x", "0 ", "1 x"}));
}

TEST(CrossReferenceInfo, ErasesWhatIsThereAndSaysHowMany) {
  CrossReferenceInfo info = info_with({reference(1, "x"), reference(1, "y")});
  EXPECT_EQ(info.erase(reference(1, "x")), 1U);
  EXPECT_EQ(info.erase(reference(1, "x")), 0U);
  EXPECT_EQ(listed(info), Texts{"1 y"});
}

TEST(CrossReferenceInfo, ClearRemovesAll) {
  CrossReferenceInfo info = info_with({reference(1, "x")});
  info.clear();
  EXPECT_TRUE(info.empty());
}

TEST(CrossReferenceInfo, AppendsTheIdentifiersOfEachReferenceInSetOrder) {
  std::vector<DatabaseEntryIdentifier> identifiers{DatabaseEntryIdentifier("old")};
  info_with({reference(4, "[AAAAAA]"), reference(1, "[Z1234567] [BBBBBB]"), reference(2, "none")})
      .cross_related_identifiers(identifiers);
  Texts texts;
  for (const DatabaseEntryIdentifier& each : identifiers) texts.push_back(each.text());
  EXPECT_EQ(texts, (Texts{"old", "BBBBBB", "Z1234567", "AAAAAA"}));
}

TEST(CrossReferenceInfo, IsEqualBySizeAndElements) {
  const CrossReferenceInfo info = info_with({reference(1, "x"), reference(2, "y")});
  EXPECT_TRUE(info == info_with({reference(2, "y"), reference(1, "x")}));
  EXPECT_FALSE(info == info_with({reference(1, "x")}));
  EXPECT_FALSE(info == info_with({reference(1, "x"), reference(2, "z")}));
}

TEST(CrossReferenceInfo, IsNotEqualBecauseItPrintsAlike) {
  const CrossReferenceInfo two = info_with({reference(1, "a"), reference(1, "b")});
  const CrossReferenceInfo one = info_with({reference(1, "a type: 1text: b")});
  EXPECT_EQ(printed(two), printed(one));
  EXPECT_FALSE(two == one);
}

TEST(CrossReferenceInfo, HoldsTextsThatDifferBeyondANul) {
  EXPECT_EQ(info_with({reference(1, {"a\0b", 3}), reference(1, {"a\0c", 3})}).size(), 2U);
}

TEST(CrossReferenceInfo, PrintsEachReferenceWithABlankAfterIt) {
  EXPECT_EQ(printed(CrossReferenceInfo()), "Cross References: ");
  EXPECT_EQ(printed(info_with({reference(3, "x")})), "Cross References: type: 3text: x ");
  EXPECT_EQ(printed(info_with({reference(3, "x"), reference(1, "y")})),
            "Cross References: type: 1text: y type: 3text: x ");
}

TEST(CrossReferenceInfo, IsArchivedAsItsCountAndItsElementsInOrder) {
  const CrossReferenceInfo info = info_with({reference(3, "x"), reference(1, "yz")});
  const std::string stored = written([&](Archive& archive) { info.write(archive); });
  EXPECT_EQ(stored, bytes(int32(2), int32(1), text("yz"), int32(3), text("x")));
  CrossReferenceInfo back = info_with({reference(6, "old")});
  read_from(stored, [&](Archive& archive) { back.read(archive); });
  EXPECT_EQ(back, info);
}

TEST(CrossReferenceInfo, IsArchivedAlikeAsASetOfItsOwn) {
  CrossReferenceInfo::CrossReferences set{reference(2, "b"), reference(1, "a")};
  const std::string stored = written([&](Archive& archive) { EXPECT_EQ(&write(archive, set), &archive); });
  EXPECT_EQ(stored, bytes(int32(2), int32(1), text("a"), int32(2), text("b")));
  CrossReferenceInfo::CrossReferences back;
  read_from(stored, [&](Archive& archive) { EXPECT_EQ(&read(archive, back), &archive); });
  EXPECT_EQ(back, set);
}

TEST(CrossReferenceInfo, IsEmptyAfterReadingACountOfZero) {
  CrossReferenceInfo info = info_with({reference(1, "old")});
  read_from(int32(0), [&](Archive& archive) { info.read(archive); });
  EXPECT_TRUE(info.empty());
}

TEST(CrossReferenceInfo, ReadsElementsInAnyOrderAndDropsRepeatedOnes) {
  CrossReferenceInfo info;
  const std::string stored =
      bytes(int32(4), int32(2), text("b"), int32(1), text("z"), int32(2), text("b"), int32(1), text("a"));
  EXPECT_EQ(read_from(stored, [&](Archive& archive) { info.read(archive); }),
            static_cast<long>(stored.size()));
  EXPECT_EQ(listed(info), (Texts{"1 a", "1 z", "2 b"}));
}

TEST(CrossReferenceInfo, KeepsTheElementsReadBeforeABadOne) {
  CrossReferenceInfo info = info_with({reference(6, "old")});
  const std::string stored = bytes(int32(3), int32(1), text("a"), int32(7), text("b"), int32(2), text("c"));
  EXPECT_EQ(message_of<std::invalid_argument>(
                [&] { read_from(stored, [&](Archive& archive) { info.read(archive); }); }),
            "Invalid DatabaseCrossReference type");
  EXPECT_EQ(listed(info), Texts{"1 a"});
}

TEST(CrossReferenceInfo, RefusesANegativeCountAndIsThenEmpty) {
  for (const int count : {-1, std::numeric_limits<int>::min()}) {
    CrossReferenceInfo info = info_with({reference(1, "old")});
    EXPECT_EQ(message_of<ArchiveError>(
                  [&] { read_from(int32(count), [&](Archive& archive) { info.read(archive); }); }),
              "Archive: negative count " + std::to_string(count) + " at offset 0");
    EXPECT_TRUE(info.empty());
  }
}

TEST(CrossReferenceInfo, ReportsTheEndOfAStreamThatPromisedMore) {
  CrossReferenceInfo info;
  const std::string stored = bytes(int32(std::numeric_limits<int>::max()), int32(1), text("a"));
  EXPECT_EQ(
      message_of<ArchiveError>([&] { read_from(stored, [&](Archive& archive) { info.read(archive); }); }),
      "Archive: end of the stream while reading an int at offset 13");
  EXPECT_EQ(listed(info), Texts{"1 a"});
}

}  // namespace
