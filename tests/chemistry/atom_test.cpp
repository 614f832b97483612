#include <chemistry/atom.h>
#include <gtest/gtest.h>
#include <utilities/archiving/field_list.h>

#include "support/damage.h"
#include "support/stored_samples.h"

namespace {

Atom carbon() {
  Atom atom;
  atom.label = "C1";
  atom.element = "C";
  atom.position = {0.25, 0.5, 0.75};
  atom.occupancy = 0.5;
  return atom;
}

TEST(Atom, IsFullyOccupiedByDefault) {
  EXPECT_EQ(Atom().occupancy, 1.0);
  EXPECT_EQ(Atom().position, FractionalCoordinates());
}

TEST(Atom, IsItsTextsThenItsNumbers) {
  EXPECT_EQ(written([](Archive& archive) { carbon().write(archive); }), carbon_layout().bytes());
}

TEST(Atom, ReadsBackWhole) {
  Atom atom;
  EXPECT_EQ(read_from(carbon_layout().bytes(), [&](Archive& archive) { atom.read(archive); }),
            static_cast<long>(carbon_layout().bytes().size()));
  EXPECT_EQ(atom, carbon());
}

TEST(Atom, OfAListIsMadeAnewWhenTheListIsRead) {
  const THandle<Atom> held(new Atom);
  std::vector<THandle<Atom>> atoms = {held, held};
  read_from(bytes(int32(1), carbon_layout().bytes()), [&](Archive& archive) { read_fields(archive, atoms); });
  ASSERT_EQ(atoms.size(), 1u);
  EXPECT_EQ(*atoms[0], carbon());
  EXPECT_EQ(*held, Atom());
}

TEST(Atom, DiffersInAnySingleField) {
  Atom atom = carbon();
  atom.occupancy = 1.0;
  EXPECT_NE(atom, carbon());
  atom = carbon();
  atom.position.z = 0.0;
  EXPECT_NE(atom, carbon());
  atom = carbon();
  atom.label = "C2";
  EXPECT_NE(atom, carbon());
  atom = carbon();
  atom.element = "N";
  EXPECT_NE(atom, carbon());
}

TEST(Atom, ThrowsWhereverTheStreamEnds) {
  for_every_truncation(carbon_layout().bytes(), [](const std::string& stored, const Damage&) {
    Atom atom;
    EXPECT_THROW(read_from(stored, [&](Archive& archive) { atom.read(archive); }), ArchiveError)
        << stored.size();
  });
}

TEST(Atom, KeepsTheShortTextThatAStreamEndsIn) {
  Atom atom = carbon();
  const std::string stored = bytes(text("N1"), int32(5), "Fe");
  EXPECT_THROW(read_from(stored, [&](Archive& archive) { atom.read(archive); }), ArchiveError);
  EXPECT_EQ(atom.label, "N1");
  EXPECT_EQ(atom.element, "Fe");
  EXPECT_EQ(atom.position, carbon().position);
}

}  // namespace
