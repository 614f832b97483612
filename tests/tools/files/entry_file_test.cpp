#include <gmock/gmock.h>

#include "tools/files/collection.h"
#include "tools/messages/tool_error.h"
#include "tools/temporary_folder.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

std::string sample() {
  return contents_of_file(SAMPLES_FOLDER "/cross_references.dbe");
}

// The error that `action` ends with; a code of 0 and no text when it does not.
template <class Action>
ToolError error_of(const Action& action) {
  try {
    action();
  } catch (const ToolError& error) {
    return error;
  }
  return ToolError(ExitCode::done, "");
}

void read_all(const std::string& path) {
  EntryFile file(path);
  for (auto entry = file.next(); !entry.is_null(); entry = file.next()) {
    EXPECT_FALSE(identifier_of(*entry).empty());
  }
}

TEST(EntryFile, TellsWhereEachEntryStands) {
  const TemporaryFolder folder;
  EntryFile file(folder.with("two.dbe", sample() + sample()));
  const long size = static_cast<long>(sample().size());
  ASSERT_FALSE(file.next().is_null());
  ASSERT_FALSE(file.next().is_null());
  EXPECT_EQ(file.number(), 2);
  EXPECT_EQ(file.offset(), size);
  EXPECT_EQ(file.end(), 2 * size);
  EXPECT_TRUE(file.next().is_null());
}

TEST(EntryFile, HoldsNothingWhenItIsEmpty) {
  const TemporaryFolder folder;
  EXPECT_TRUE(EntryFile(folder.with("empty.dbe", "")).next().is_null());
}

TEST(EntryFile, NamesTheEntryWhereverItIsCut) {
  const TemporaryFolder folder;
  for (std::size_t size = 1; size < sample().size(); ++size) {
    const std::string path = folder.with("cut.dbe", sample() + sample().substr(0, size));
    const ToolError error = error_of([&] { read_all(path); });
    EXPECT_EQ(error.code(), ExitCode::damaged) << size;
    EXPECT_THAT(error.what(), StartsWith(path + ": entry 2")) << size;
  }
}

TEST(EntryFile, NamesTheIdentifierThatWasRead) {
  const TemporaryFolder folder;
  const std::string path = folder.with("cut.dbe", sample().substr(0, sample().size() - 1));
  EXPECT_THAT(error_of([&] { read_all(path); }).what(),
              StartsWith(path + ": entry 1 (ABCDEF01) at offset 0 is damaged: "));
}

TEST(EntryFile, MasksTheIdentifierOfADamagedFile) {
  EXPECT_EQ(entry_name(7, std::string(100, 'a')), "entry 7 (" + std::string(40, 'a') + "...)");
  EXPECT_EQ(entry_name(7, "a\x1b[2J"), "entry 7 (a?[2J)");
}

TEST(EntryFile, RefusesAFolder) {
  const TemporaryFolder folder;
  const ToolError error = error_of([&] { EntryFile{folder.file("")}; });
  EXPECT_EQ(error.code(), ExitCode::cannot_open);
  EXPECT_THAT(error.what(), HasSubstr("is a folder"));
}

TEST(EntryFile, SaysWhyAFileCannotBeOpened) {
  const ToolError error = error_of([] { EntryFile{"/nowhere/at/all.dbe"}; });
  EXPECT_EQ(error.code(), ExitCode::cannot_open);
  EXPECT_STREQ(error.what(), "/nowhere/at/all.dbe: cannot open: No such file or directory");
}

TEST(ForEachEntry, GoesThroughAllBeforeItMissesOne) {
  const TemporaryFolder folder;
  const std::string path = folder.with("one.dbe", sample());
  std::vector<std::string> taken;
  const ToolError error = error_of([&] {
    for_each_entry(path, {"ABCDEF10", "ABCDEF01"},
                   [&](const StoredEntry& entry) { taken.push_back(identifier_of(entry)); });
  });
  EXPECT_THAT(taken, ElementsAre("ABCDEF01"));
  EXPECT_EQ(error.code(), ExitCode::not_found);
  EXPECT_EQ(error.what(), path + ": unknown identifier 'ABCDEF10'; did you mean 'ABCDEF01'?");
}

}  // namespace
