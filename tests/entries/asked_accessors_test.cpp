// Which virtual operations of an entry, and of the components that have some, are called, how often and in
// which order: derived entries see it.
#include <gtest/gtest.h>

#include "entries/noting_entry.h"

namespace {

using Names = std::vector<std::string>;

const Names archived_names{"identifier",        "crystal maker",        "cell",           "publication",
                           "experimental info", "editors info",         "chemical info",  "crystal info",
                           "connectivity info", "cross reference info", "deposition info"};

const Names printed_names{"identifier",        "crystal maker",        "publication",    "experimental info",
                          "editors info",      "chemical info",        "crystal info",   "chemical diagram",
                          "connectivity info", "cross reference info", "deposition info"};

TEST(AskedAccessors, AreEachOnceWhenAnEntryIsWritten) {
  const NotingEntry entry;
  EXPECT_EQ(archived(entry), sample_bytes());
  EXPECT_EQ(entry.notes(), archived_names);
}

TEST(AskedAccessors, AreEachOnceWhenAnEntryIsPrinted) {
  const NotingEntry entry;
  EXPECT_EQ(printed(entry), sample_text);
  EXPECT_EQ(entry.notes(), printed_names);
}

TEST(AskedAccessors, AreEachOnceWhenAnEntryWithoutComponentsIsPrinted) {
  const NotingEntry entry(empty_entry());
  EXPECT_EQ(printed(entry), empty_text);
  EXPECT_EQ(entry.notes(), printed_names);
}

TEST(AskedAccessors, AreNoneWhenAnEntryIsRead) {
  NotingEntry entry(empty_entry());
  read_from(sample_bytes(), [&](Archive& archive) { entry.read(archive); });
  EXPECT_EQ(entry.notes(), Names());
  EXPECT_EQ(archived(entry), sample_bytes());
}

TEST(AskedAccessors, AreNoneWhenAReadOverAFullEntryFails) {
  for (std::size_t items = 0; items < 11; ++items) {
    NotingEntry entry;
    EXPECT_THROW(read_from(joined(sample_items(), items), [&](Archive& archive) { entry.read(archive); }),
                 ArchiveError);
    EXPECT_EQ(entry.notes(), Names()) << items;
  }
}

// Note what they are asked, and go on as their base does.
struct NotingCell : Cell {
  explicit NotingCell(const Cell& cell, Names& notes) : Cell(cell), notes_(notes) {}
  void write(Archive& archive) const override { note("write cell"), Cell::write(archive); }
  void read(Archive& archive) override { note("read cell"), Cell::read(archive); }
  void print(std::ostream& os) const override { note("print cell"), Cell::print(os); }
  void note(const char* name) const { notes_.emplace_back(name); }
  Names& notes_;
};

struct NotingMaker : CrystalMaker {
  NotingMaker(const CrystalMaker& maker, Names& notes) : CrystalMaker(maker), notes_(notes) {}
  void write(Archive& archive) const override { note("write maker"), CrystalMaker::write(archive); }
  void read(Archive& archive) override { note("read maker"), CrystalMaker::read(archive); }
  void print(std::ostream& os) const override { note("print maker"), CrystalMaker::print(os); }
  void note(const char* name) const { notes_.emplace_back(name); }
  Names& notes_;
};

// The sample entry with a crystal maker that notes, whose cell notes too; and the same cell as its own.
CrystalStructureImmediateDatabaseEntry entry_with_noting_model(Names& notes) {
  const auto sample = sample_entry();
  ComponentHandles handles;
  for_each_component([&](auto component) { handles[component] = component.get(sample); });
  auto& maker = handles[component_row<ComponentKind::crystal_maker>];
  auto& cell = handles[component_row<ComponentKind::cell>];
  cell = THandle<Cell>(new NotingCell(*cell, notes));
  maker = THandle<CrystalMaker>(new NotingMaker(CrystalMaker(cell, maker->atoms()), notes));
  return CrystalStructureImmediateDatabaseEntry::from(sample.identifier(), handles);
}

TEST(AskedComponents, WriteThemselvesOnceEach) {
  Names notes;
  EXPECT_EQ(archived(entry_with_noting_model(notes)), sample_bytes());
  EXPECT_EQ(notes, (Names{"write maker", "write cell", "write cell"}));
}

TEST(AskedComponents, PrintThemselvesOnceEach) {
  Names notes;
  EXPECT_EQ(printed(entry_with_noting_model(notes)), sample_text);
  EXPECT_EQ(notes, (Names{"print maker", "print cell"}));
}

TEST(AskedComponents, AreReplacedByOrdinaryOnesWhenTheEntryIsRead) {
  Names notes;
  auto entry = entry_with_noting_model(notes);
  read_from(sample_bytes(), [&](Archive& archive) { entry.read(archive); });
  EXPECT_EQ(notes, Names());
  EXPECT_EQ(archived(entry), sample_bytes());
}

}  // namespace
