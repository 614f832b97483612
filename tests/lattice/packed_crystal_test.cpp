#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lattice/lattice_error.h>
#include <lattice/packed_crystal.h>

#include <limits>

#include "operators.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

THandle<Atom> atom(const std::string& element, FractionalCoordinates position) {
  const THandle<Atom> made(new Atom);
  made->element = element;
  made->label = element + "1";
  made->position = position;
  return made;
}

CrystalMaker crystal(const Cell& cell, std::vector<THandle<Atom>> atoms) {
  return CrystalMaker(THandle<Cell>(new Cell(cell)), std::move(atoms));
}

CrystalMaker rutile() {
  return crystal(cell_with({4.594, 4.594, 2.959, 90, 90, 90}, rutile_operators),
                 {atom("Ti", {0, 0, 0}), atom("O", {0.3053, 0.3053, 0})});
}

TEST(PackedCrystal, MergesSpecialPositions) {
  const PackedCrystal packed(rutile());
  EXPECT_EQ(packed.multiplicity(0), 2u);
  EXPECT_EQ(packed.multiplicity(1), 4u);
  EXPECT_EQ(packed.atoms().size(), 6u);
}

TEST(PackedCrystal, TellsWhereEachAtomComesFrom) {
  const CrystalMaker maker = rutile();
  for (const PackedAtom& image : PackedCrystal(maker).atoms()) {
    const FractionalCoordinates made =
        (*maker.cell()->symmetry_operators())[image.op].apply(maker.atoms()[image.site]->position);
    EXPECT_DOUBLE_EQ(image.position.x, made.x + image.translation[0]);
    EXPECT_DOUBLE_EQ(image.position.y, made.y + image.translation[1]);
    EXPECT_DOUBLE_EQ(image.position.z, made.z + image.translation[2]);
  }
}

TEST(PackedCrystal, LiesInTheCell) {
  const CrystalMaker maker = crystal(cell_with({5, 5, 5, 90, 90, 90}, {}),
                                     {atom("C", {-1e-17, 1.0, -7.25}), atom("C", {1e5 + 0.5, 0, 0})});
  for (const PackedAtom& image : PackedCrystal(maker).atoms()) {
    for (const double coordinate : {image.position.x, image.position.y, image.position.z}) {
      EXPECT_GE(coordinate, 0.0);
      EXPECT_LT(coordinate, 1.0);
    }
  }
}

TEST(PackedCrystal, MergesImagesAcrossAFaceOfTheCell) {
  const CrystalMaker maker = crystal(cell_with({10, 10, 10, 90, 90, 90}, operators({"x,y,z", "-x,-y,-z"})),
                                     {atom("C", {0.0004, 0, 0})});
  EXPECT_EQ(PackedCrystal(maker).multiplicity(0), 1u);
  EXPECT_EQ(PackedCrystal(maker, {.merge_within = 0.005}).multiplicity(0), 2u);
}

TEST(PackedCrystal, KeepsTwoElementsOnOnePlace) {
  const CrystalMaker maker =
      crystal(cell_with({10, 10, 10, 90, 90, 90}, {}), {atom("Si", {0, 0, 0}), atom("Al", {0, 0, 0})});
  EXPECT_EQ(PackedCrystal(maker).atoms().size(), 2u);
}

TEST(PackedCrystal, KeepsTwoHalvesOfOneElementOnOnePlace) {
  const std::vector<THandle<Atom>> halves = {atom("C", {0.9999, 0, 0}), atom("C", {0, 0, 0})};
  for (const THandle<Atom>& half : halves) half->occupancy = 0.5;
  EXPECT_EQ(PackedCrystal(crystal(cell_with({10, 10, 10, 90, 90, 90}, {}), halves)).atoms().size(), 2u);
}

TEST(PackedCrystal, TakesAnAtomThatIsListedTwiceForOne) {
  const PackedCrystal packed(crystal(cell_with({10, 10, 10, 90, 90, 90}, operators({"x,y,z", "-x,-y,-z"})),
                                     {atom("C", {0.1, 0.2, 0.3}), atom("C", {0.9, 0.8, 0.7})}));
  EXPECT_EQ(packed.atoms().size(), 2u);
  EXPECT_EQ(packed.multiplicity(0), 2u);
  EXPECT_EQ(packed.multiplicity(1), 0u);
}

TEST(PackedCrystal, FillsARangeOfCells) {
  const PackedCrystal packed(rutile(), {.first_cell = {-1, 0, 0}, .last_cell = {1, 0, 1}});
  EXPECT_EQ(packed.atoms().size(), 36u);
  EXPECT_EQ(packed.multiplicity(1), 4u);
  EXPECT_EQ(packed.atoms().front().position, (FractionalCoordinates{-1, 0, 0}));
  EXPECT_THAT(packed.atoms().back().translation, ElementsAre(testing::Ge(1), testing::_, testing::_));
}

TEST(PackedCrystal, OfNoAtomsIsEmpty) {
  EXPECT_TRUE(PackedCrystal(crystal(cell_with({5, 5, 5, 90, 90, 90}, {}), {})).atoms().empty());
}

TEST(PackedCrystal, RefusesAPositionThatIsNotFiniteByItsAtom) {
  const auto packed = [](double x) {
    PackedCrystal(
        crystal(cell_with({5, 5, 5, 90, 90, 90}, {}), {atom("C", {0, 0, 0}), atom("N", {0, x, 0})}));
  };
  const auto refusal = ThrowsMessage<LatticeError>(HasSubstr("The position of atom 2 (N1)"));
  EXPECT_THAT([&] { packed(std::numeric_limits<double>::quiet_NaN()); }, refusal);
  EXPECT_THAT([&] { packed(std::numeric_limits<double>::infinity()); }, refusal);
  EXPECT_THAT([&] { packed(1e7); }, refusal);
}

TEST(PackedCrystal, RefusesACellThatIsNotKnown) {
  EXPECT_THROW(PackedCrystal{CrystalMaker()}, LatticeError);
}

TEST(PackedCrystal, RefusesARangeThatIsEmptyOrOutOfProportion) {
  EXPECT_THROW(PackedCrystal(rutile(), {.first_cell = {1, 0, 0}}), LatticeError);
  EXPECT_THROW(PackedCrystal(rutile(), {.first_cell = {-2147483647, 0, 0}, .last_cell = {2147483647, 0, 0}}),
               LatticeError);
}

}  // namespace
