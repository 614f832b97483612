#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <gtest/gtest.h>

#include "support/sample_entry.h"

namespace {

using Entry = CrystalStructureImmediateDatabaseEntry;

TEST(ImmediateEntry, SharesEveryComponentWithWhoeverHandedItIn) {
  const Entry entry = sample_entry();
  for_each_component([&](auto component) {
    const auto first = component.get(entry);
    const auto second = component.get(entry);
    EXPECT_FALSE(first.is_null()) << component.label;
    EXPECT_EQ(first, second) << component.label;
    EXPECT_EQ(first.use_count(), 3) << component.label;  // the entry's and these two
  });
}

TEST(ImmediateEntry, TakesNullComponents) {
  const Entry entry = empty_entry();
  for_each_component([&](auto component) { EXPECT_TRUE(component.get(entry).is_null()) << component.label; });
}

TEST(ImmediateEntry, HoldsACopyOfTheCellWhenMadeFromACrystalMakerAlone) {
  const THandle<CrystalMaker> maker = sample_entry().crystal_maker();
  const Entry entry(DatabaseEntryIdentifier("ABCDEF"), maker);
  EXPECT_EQ(entry.crystal_maker(), maker);
  EXPECT_NE(entry.cell(), maker->cell());
  EXPECT_EQ(*entry.cell(), *maker->cell());
}

TEST(ImmediateEntry, HasOnlyItsCrystalMakerToPrintWhenMadeFromOneAlone) {
  const Entry entry(DatabaseEntryIdentifier("ABCDEF"), handle_to(CrystalMaker()));
  const std::string start =
      "identifier: ABCDEF\ncrystal maker:\ncell: a: 0, b: 0, c: 0, alpha: 0, beta: 0, gamma: 0, symmetry "
      "operators: 0, atoms: 0\n";
  EXPECT_EQ(printed(entry), start + empty_text.substr(empty_text.find("publication")));
}

TEST(ImmediateEntry, CannotBeMadeFromANullCrystalMaker) {
  EXPECT_THROW(Entry(DatabaseEntryIdentifier("ABCDEF"), THandle<CrystalMaker>()), NullHandleError);
}

TEST(ImmediateEntry, IsMadeFromAHandleForEachComponent) {
  const Entry supplied = sample_entry();
  ComponentHandles handles;
  for_each_component([&](auto component) { handles[component] = component.get(supplied); });
  const Entry entry = Entry::from(DatabaseEntryIdentifier("ABCDEF"), handles);
  EXPECT_EQ(entry.identifier(), DatabaseEntryIdentifier("ABCDEF"));
  for_each_component(
      [&](auto component) { EXPECT_EQ(component.get(entry), component.get(supplied)) << component.label; });
}

TEST(ImmediateEntry, SharesItsComponentsWithItsCopy) {
  const Entry entry = sample_entry();
  const Entry copy = entry;
  for_each_component(
      [&](auto component) { EXPECT_EQ(component.get(entry), component.get(copy)) << component.label; });
}

TEST(ImmediateEntry, TakesANewIdentifier) {
  Entry entry = sample_entry();
  entry.set_identifier(DatabaseEntryIdentifier("GHIJKL"));
  EXPECT_EQ(entry.identifier(), DatabaseEntryIdentifier("GHIJKL"));
}

TEST(ImmediateEntry, LetsTheOldComponentGoAndSharesTheNewOne) {
  const Entry other = sample_entry();
  for_each_setter([&](auto component) {
    Entry entry = sample_entry();
    const auto old = component.get(entry);
    const auto next = component.get(other);
    component.set(entry, next);
    EXPECT_EQ(component.get(entry), next) << component.label;
    EXPECT_EQ(old.use_count(), 1) << component.label;
    EXPECT_EQ(next.use_count(), 3) << component.label;
  });
}

TEST(ImmediateEntry, CountsNothingTwiceWhenItIsGivenTheComponentItHas) {
  Entry entry = sample_entry();
  for_each_setter([&](auto component) {
    const auto same = component.get(entry);
    component.set(entry, same);
    EXPECT_EQ(same.use_count(), 2) << component.label;
  });
}

TEST(ImmediateEntry, TakesNullFromEachSetter) {
  Entry entry = sample_entry();
  for_each_setter([&](auto component) {
    component.set(entry, {});
    EXPECT_TRUE(component.get(entry).is_null()) << component.label;
  });
}

TEST(ArchivedEntry, IsItsElevenItemsBackToBack) {
  EXPECT_EQ(archived(sample_entry()), sample_bytes());
}

// Takes a component away from the entry that is being written.
struct MeddlingCell : Cell {
  void write(Archive& archive) const override {
    entry->set_publication({});
    Cell::write(archive);
  }
  Entry* entry = nullptr;
};

TEST(ArchivedEntry, HoldsWhatTheEntryHeldWhenItsWritingBegan) {
  for (const bool within_maker : {true, false}) {
    const Entry supplied = sample_entry();
    auto* const cell = new MeddlingCell;
    const THandle<Cell> meddling(cell);
    ComponentHandles handles;
    for_each_component([&](auto component) { handles[component] = component.get(supplied); });
    if (within_maker) {
      handles[component_row<ComponentKind::crystal_maker>] = handle_to(CrystalMaker(meddling));
    } else {
      handles[component_row<ComponentKind::cell>] = meddling;
    }
    Entry entry = Entry::from(DatabaseEntryIdentifier("ABCDEF"), handles);
    cell->entry = &entry;
    const std::string publication = sample_items()[3];
    EXPECT_NE(archived(entry).find(publication), std::string::npos);
    EXPECT_TRUE(entry.publication().is_null());
  }
}

TEST(ArchivedEntry, ReadsBackWhatWasWrittenAndNoByteMore) {
  Entry back = empty_entry();
  const long consumed = read_from(sample_bytes() + "after", [&](Archive& archive) { back.read(archive); });
  EXPECT_EQ(consumed, static_cast<long>(sample_bytes().size()));
  EXPECT_EQ(archived(back), sample_bytes());
  EXPECT_EQ(back.identifier(), DatabaseEntryIdentifier("ABCDEF"));
  EXPECT_EQ(*back.deposition_info(), *sample_entry().deposition_info());
}

TEST(ArchivedEntry, LeavesAloneWhatIsNotStored) {
  Entry entry = sample_entry();
  const Entry before = entry;
  read_from(sample_bytes(), [&](Archive& archive) { entry.read(archive); });
  for_each_component([&](auto component) {
    if (component.archived) return;
    EXPECT_EQ(component.get(entry), component.get(before)) << component.label;
  });
}

TEST(ArchivedEntry, ReadsIntoNewObjectsAndLeavesSharedOnesAsTheyWere) {
  Entry entry = sample_entry();
  const Entry sharing = entry;
  sharing.chemical_info()->formula = "old";
  read_from(sample_bytes(), [&](Archive& archive) { entry.read(archive); });
  EXPECT_EQ(sharing.chemical_info()->formula, "old");
  EXPECT_EQ(entry.chemical_info()->formula, "C1 N1");
}

// What an entry has put on the stream when a component turns out to be null.
std::string written_before_null(const Entry& entry) {
  return written([&](Archive& archive) { EXPECT_THROW(entry.write(archive), NullHandleError); });
}

TEST(ArchivedEntry, StopsAtANullComponentAfterTheItemsBeforeIt) {
  std::size_t items_before = 1;  // the identifier
  for_each_component_in_entry_order([&](auto component) {
    if constexpr (!component.archived) return;
    if constexpr (component.archived && component.has_setter) {
      Entry entry = sample_entry();
      component.set(entry, {});
      EXPECT_EQ(written_before_null(entry), joined(sample_items(), items_before)) << component.label;
    }
    ++items_before;
  });
  EXPECT_EQ(items_before, 11U);
}

TEST(ArchivedEntry, MadeFromACrystalMakerAloneStopsAtThePublication) {
  const Entry entry(DatabaseEntryIdentifier("ABCDEF"), sample_entry().crystal_maker());
  EXPECT_EQ(written_before_null(entry), joined(sample_items(), 3));
}

TEST(ArchivedEntry, WithoutAnyComponentIsItsIdentifierOnly) {
  EXPECT_EQ(written_before_null(empty_entry()), text(""));
}

struct WithOtherPublication : Entry {
  WithOtherPublication() : Entry(sample_entry()) {}
  THandle<Publication> publication() const override {
    return handle_to(Publication({}, Journal(4), "13", 2001, "1"));
  }
};

TEST(ArchivedEntry, HoldsWhatTheAccessorsOfADerivedEntryGive) {
  std::vector<std::string> items = sample_items();
  items[3] =
      bytes(text("J.Am.Chem.Soc."), int32(4), text("JACSAT"), int32(0), text("13"), int32(2001), text("1"));
  EXPECT_EQ(archived(WithOtherPublication()), joined(items, 11));
}

struct WithoutDepositions : Entry {
  WithoutDepositions() : Entry(sample_entry()) {}
  THandle<DepositionInfo> deposition_info() const override { throw 7; }
};

TEST(ArchivedEntry, PutsNothingOnTheStreamWhenAnAccessorFails) {
  EXPECT_EQ(written([](Archive& archive) { EXPECT_THROW(WithoutDepositions().write(archive), int); }), "");
}

// One digit for each archived component of `entry`: 1 where it is another object than that of `before`.
std::string renewed(const Entry& entry, const Entry& before) {
  std::string flags;
  for_each_component([&](auto component) {
    if (component.archived) flags += component.get(entry) == component.get(before) ? '0' : '1';
  });
  return flags;
}

TEST(ArchivedEntry, KeepsTheOldComponentsAfterTheOneThatCouldNotBeRead) {
  const std::vector<std::string> items = sample_items();
  for (std::size_t whole = 1; whole < items.size(); ++whole) {
    Entry entry = sample_entry();
    const Entry before = entry;
    const std::string cut = joined(items, whole) + items[whole].substr(0, 2);
    EXPECT_THROW(read_from(cut, [&](Archive& archive) { entry.read(archive); }), ArchiveError);
    EXPECT_EQ(renewed(entry, before), std::string(whole, '1') + std::string(10 - whole, '0')) << whole;
  }
}

TEST(ArchivedEntry, NamesTheComponentThatCouldNotBeReadAndThenNoneAgain) {
  const std::string cut = joined(sample_items(), 3);
  const File file = file_with(cut);
  Archive archive(file.get());
  Entry entry = empty_entry();
  EXPECT_EQ(message_of<ArchiveError>([&] { entry.read(archive); }),
            "Archive: end of the stream while reading an int at offset " + std::to_string(cut.size()) +
                " (publication)");
  EXPECT_EQ(archive.component(), nullptr);
}

TEST(ArchivedEntry, NamesNoComponentBeforeTheFirst) {
  Entry entry = empty_entry();
  EXPECT_EQ(message_of<ArchiveError>([&] { read_from("", [&](Archive& archive) { entry.read(archive); }); }),
            "Archive: end of the stream while reading an int at offset 0");
}

TEST(ArchivedEntry, PassesOnWhatARecordRefuses) {
  std::vector<std::string> items = sample_items();
  items[9] = bytes(int32(1), int32(7), text("x"));
  Entry entry = empty_entry();
  EXPECT_EQ(message_of<std::invalid_argument>(
                [&] { read_from(joined(items, 11), [&](Archive& archive) { entry.read(archive); }); }),
            "Invalid DatabaseCrossReference type");
  EXPECT_TRUE(entry.cross_reference_info()->empty());
  EXPECT_TRUE(entry.deposition_info().is_null());
}

TEST(ArchivedEntry, SeesAFullDiskWhenItIsFlushed) {
  const File full(std::fopen("/dev/full", "wb"));
  if (full == nullptr) GTEST_SKIP() << "no device here is always full";
  ASSERT_NE(full, nullptr);
  Archive archive(full.get());
  sample_entry().write(archive);
  EXPECT_THROW(archive.flush(), ArchiveError);
}

}  // namespace
