#include <gtest/gtest.h>
#include <utilities/database_entry_identifier.h>

#include "support/bytes.h"

namespace {

TEST(DatabaseEntryIdentifier, IsEmptyByDefault) {
  EXPECT_EQ(printed(DatabaseEntryIdentifier()), "");
}

TEST(DatabaseEntryIdentifier, GivesItsTextToKeepWhenItIsATemporary) {
  const std::string& kept = DatabaseEntryIdentifier("ABCDEF01").text();
  EXPECT_EQ(kept, "ABCDEF01");
}

TEST(DatabaseEntryIdentifier, PrintsItsTextAndNothingElse) {
  EXPECT_EQ(printed(DatabaseEntryIdentifier("ABCDEF01")), "ABCDEF01");
}

TEST(DatabaseEntryIdentifier, IsArchivedAsAText) {
  const std::string stored =
      written([](Archive& archive) { DatabaseEntryIdentifier("ABCDEF").write(archive); });
  EXPECT_EQ(stored, text("ABCDEF"));
  DatabaseEntryIdentifier back;
  read_from(stored, [&](Archive& archive) { back.read(archive); });
  EXPECT_EQ(back, DatabaseEntryIdentifier("ABCDEF"));
}

TEST(DatabaseEntryIdentifier, IsOrderedByUnsignedBytes) {
  EXPECT_LT(DatabaseEntryIdentifier("Zebra"), DatabaseEntryIdentifier("apple"));
  EXPECT_LT(DatabaseEntryIdentifier("z"), DatabaseEntryIdentifier("\x80"));
  EXPECT_LT(DatabaseEntryIdentifier("AB"), DatabaseEntryIdentifier("ABC"));
}

}  // namespace
