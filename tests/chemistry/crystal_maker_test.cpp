#include <chemistry/crystal_maker.h>
#include <gtest/gtest.h>
#include <utilities/null_handle_error.h>

#include "support/damage.h"
#include "support/stored_samples.h"

namespace {

std::string stored_crystal() {
  return bytes(cell_layout(1).bytes(), int32(2), carbon_layout().bytes(), carbon_layout().bytes());
}

CrystalMaker read_crystal(const std::string& stored) {
  CrystalMaker crystal;
  read_from(stored, [&](Archive& archive) { crystal.read(archive); });
  return crystal;
}

TEST(CrystalMaker, HoldsADefaultCellAndNoAtomsByDefault) {
  const CrystalMaker crystal;
  EXPECT_EQ(*crystal.cell(), Cell());
  EXPECT_TRUE(crystal.atoms().empty());
}

TEST(CrystalMaker, SharesItsCellAndItsAtoms) {
  const THandle<Cell> cell(new Cell);
  const THandle<Atom> atom(new Atom);
  const CrystalMaker crystal(cell, {atom});
  EXPECT_EQ(crystal.cell(), cell);
  EXPECT_EQ(crystal.atoms(), std::vector<THandle<Atom>>{atom});
}

TEST(CrystalMaker, NeedsACell) {
  EXPECT_THROW(CrystalMaker crystal{THandle<Cell>()}, NullHandleError);
}

TEST(CrystalMaker, ReadsBackItsCellAndItsAtoms) {
  const CrystalMaker crystal = read_crystal(stored_crystal());
  EXPECT_EQ(crystal.cell()->beta(), 95.5);
  EXPECT_EQ(crystal.cell()->symmetry_operators()->size(), 1u);
  ASSERT_EQ(crystal.atoms().size(), 2u);
  EXPECT_EQ(crystal.atoms()[1]->label, "C1");
  EXPECT_EQ(crystal.atoms()[1]->position, (FractionalCoordinates{0.25, 0.5, 0.75}));
}

TEST(CrystalMaker, WritesTheBytesItWasReadFrom) {
  const CrystalMaker crystal = read_crystal(stored_crystal());
  EXPECT_EQ(written([&](Archive& archive) { crystal.write(archive); }), stored_crystal());
}

TEST(CrystalMaker, WithAMissingAtomIsNotWrittenWhole) {
  const CrystalMaker crystal(THandle<Cell>(new Cell), {THandle<Atom>()});
  written([&](Archive& archive) { EXPECT_THROW(crystal.write(archive), NullHandleError); });
}

TEST(CrystalMaker, LeavesSharedCellsAndAtomsAloneWhenItIsRead) {
  const THandle<Cell> cell(new Cell);
  const THandle<Atom> atom(new Atom);
  CrystalMaker crystal(cell, {atom});
  read_from(stored_crystal(), [&](Archive& archive) { crystal.read(archive); });
  EXPECT_NE(crystal.cell(), cell);
  EXPECT_EQ(*cell, Cell());
  EXPECT_EQ(*atom, Atom());
}

TEST(CrystalMaker, PrintsOneLine) {
  EXPECT_EQ(printed(read_crystal(stored_crystal())),
            "cell: a: 10, b: 11, c: 12, alpha: 90, beta: 95.5, gamma: 90, symmetry operators: 1, atoms: 2\n");
}

TEST(CrystalMaker, ThrowsWhereverTheStreamEnds) {
  for_every_truncation(stored_crystal(), [](const std::string& stored, const Damage&) {
    EXPECT_THROW(read_crystal(stored), ArchiveError) << stored.size();
  });
}

TEST(CrystalMaker, KeepsTheAtomsThatCameWhereTheCountIsFalse) {
  for (const std::int32_t count : {2, INT32_MAX}) {
    CrystalMaker crystal;
    const std::string stored = bytes(cell_layout(1).bytes(), int32(count), carbon_layout().bytes());
    EXPECT_THROW(read_from(stored, [&](Archive& archive) { crystal.read(archive); }), ArchiveError);
    EXPECT_EQ(crystal.atoms().size(), 1u);
  }
}

TEST(CrystalMaker, RefusesANegativeCount) {
  EXPECT_EQ(message_of<ArchiveError>([] { read_crystal(bytes(cell_layout(1).bytes(), int32(-1))); }),
            "Archive: negative count -1 at offset 112");
  EXPECT_EQ(message_of<ArchiveError>([] { read_crystal(bytes(cell_layout(1).bytes(), int32(INT32_MIN))); }),
            "Archive: negative count -2147483648 at offset 112");
}

TEST(CrystalMaker, SurvivesDamageToAnyByteAndCanBeShownAfterwards) {
  for_every_telling_byte(stored_crystal(), [](const std::string& stored, const Damage&) {
    CrystalMaker crystal;
    try {
      read_from(stored, [&](Archive& archive) { crystal.read(archive); });
    } catch (const ArchiveError&) {
      EXPECT_LE(crystal.atoms().size(), 2u);
    }
    for (const auto& op : *crystal.cell()->symmetry_operators()) EXPECT_FALSE(op.xyz().empty());
    EXPECT_EQ(printed(crystal).back(), '\n');
  });
}

}  // namespace
