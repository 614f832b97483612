#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <gtest/gtest.h>

#include "entries/sample_entry.h"

namespace {

using Entry = CrystalStructureImmediateDatabaseEntry;

TEST(ImmediateEntry, SharesEveryComponentWithWhoeverHandedItIn) {
  const Entry entry = sample_entry();
  for_each_component<Entry>([&](const char* name, auto accessor) {
    const auto first = (entry.*accessor)();
    const auto second = (entry.*accessor)();
    EXPECT_FALSE(first.is_null()) << name;
    EXPECT_EQ(first, second) << name;
    EXPECT_EQ(first.use_count(), 3) << name;  // the entry's and these two
  });
}

TEST(ImmediateEntry, TakesNullComponents) {
  const Entry entry = empty_entry();
  for_each_component<Entry>(
      [&](const char* name, auto accessor) { EXPECT_TRUE((entry.*accessor)().is_null()) << name; });
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

TEST(ImmediateEntry, SharesItsComponentsWithItsCopy) {
  const Entry entry = sample_entry();
  const Entry copy = entry;
  for_each_component<Entry>(
      [&](const char* name, auto accessor) { EXPECT_EQ((entry.*accessor)(), (copy.*accessor)()) << name; });
}

TEST(ImmediateEntry, TakesANewIdentifier) {
  Entry entry = sample_entry();
  entry.set_identifier(DatabaseEntryIdentifier("GHIJKL"));
  EXPECT_EQ(entry.identifier(), DatabaseEntryIdentifier("GHIJKL"));
}

TEST(ImmediateEntry, LetsTheOldComponentGoAndSharesTheNewOne) {
  const Entry other = sample_entry();
  for_each_setter<Entry>([&](const char* name, auto get, auto set) {
    Entry entry = sample_entry();
    const auto old = (entry.*get)();
    const auto next = (other.*get)();
    (entry.*set)(next);
    EXPECT_EQ((entry.*get)(), next) << name;
    EXPECT_EQ(old.use_count(), 1) << name;
    EXPECT_EQ(next.use_count(), 3) << name;
  });
}

TEST(ImmediateEntry, CountsNothingTwiceWhenItIsGivenTheComponentItHas) {
  Entry entry = sample_entry();
  for_each_setter<Entry>([&](const char* name, auto get, auto set) {
    const auto same = (entry.*get)();
    (entry.*set)(same);
    EXPECT_EQ(same.use_count(), 2) << name;
  });
}

TEST(ImmediateEntry, TakesNullFromEachSetter) {
  Entry entry = sample_entry();
  for_each_setter<Entry>([&](const char* name, auto get, auto set) {
    (entry.*set)({});
    EXPECT_TRUE((entry.*get)().is_null()) << name;
  });
}

TEST(ArchivedEntry, IsItsElevenItemsBackToBack) {
  EXPECT_EQ(archived(sample_entry()), sample_bytes());
}

TEST(ArchivedEntry, ReadsBackWhatWasWrittenAndNoByteMore) {
  Entry back = empty_entry();
  const long consumed = read_from(sample_bytes() + "behind", [&](Archive& archive) { back.read(archive); });
  EXPECT_EQ(consumed, static_cast<long>(sample_bytes().size()));
  EXPECT_EQ(archived(back), sample_bytes());
  EXPECT_EQ(back.identifier(), DatabaseEntryIdentifier("ABCDEF"));
  EXPECT_EQ(*back.deposition_info(), *sample_entry().deposition_info());
}

TEST(ArchivedEntry, LeavesAloneWhatIsNotStored) {
  Entry entry = sample_entry();
  const Entry before = entry;
  read_from(sample_bytes(), [&](Archive& archive) { entry.read(archive); });
  EXPECT_EQ(entry.chemical_diagram(), before.chemical_diagram());
  EXPECT_EQ(entry.crystal_diagram_match(), before.crystal_diagram_match());
  EXPECT_EQ(entry.connectivity_diagram_match(), before.connectivity_diagram_match());
  EXPECT_EQ(entry.crystal_connectivity_match(), before.crystal_connectivity_match());
  EXPECT_EQ(entry.disorder_selector(), before.disorder_selector());
  EXPECT_EQ(entry.published_geometry(), before.published_geometry());
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

TEST(ArchivedEntry, StopsAtANullComponentBehindTheItemsBeforeIt) {
  const std::vector<std::string> order{"experimental info", "editors info",      "chemical info",
                                       "crystal info",      "connectivity info", "cross reference info",
                                       "deposition info"};
  for_each_setter<Entry>([&](const std::string& name, auto, auto set) {
    const auto found = std::find(order.begin(), order.end(), name);
    if (found == order.end()) return;
    Entry entry = sample_entry();
    (entry.*set)({});
    const auto items_before = 4 + static_cast<std::size_t>(found - order.begin());
    EXPECT_EQ(written_before_null(entry), joined(sample_items(), items_before)) << name;
  });
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
  const auto compare = [&](auto accessor) {
    flags += (entry.*accessor)() == (before.*accessor)() ? '0' : '1';
  };
  compare(&Entry::crystal_maker);
  compare(&Entry::cell);
  compare(&Entry::publication);
  compare(&Entry::experimental_info);
  compare(&Entry::editors_info);
  compare(&Entry::chemical_info);
  compare(&Entry::crystal_info);
  compare(&Entry::connectivity_info);
  compare(&Entry::cross_reference_info);
  compare(&Entry::deposition_info);
  return flags;
}

TEST(ArchivedEntry, KeepsOldComponentsBehindTheOneThatCouldNotBeRead) {
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

TEST(ArchivedEntry, NamesNoComponentInFrontOfTheFirst) {
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
  ASSERT_NE(full, nullptr);
  Archive archive(full.get());
  sample_entry().write(archive);
  EXPECT_THROW(archive.flush(), ArchiveError);
}

}  // namespace
