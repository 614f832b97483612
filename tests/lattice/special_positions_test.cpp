// Wyckoff positions of International Tables for Crystallography, volume A: how many atoms a site gives.
#include <gtest/gtest.h>
#include <lattice/packed_crystal.h>
#include <lattice/space_group.h>

#include <cmath>
#include <ostream>

#include "operators.h"
#include "space_group_operators.h"

namespace {

struct SpecialPositions {
  const char* system;
  const char* group;
  std::vector<const char*> positions;  // "8f 0,y,z": multiplicity, letter, coordinates
};

void PrintTo(const SpecialPositions& row, std::ostream* out) {
  *out << row.group;
}

// A cell that has the symmetry of the system, and no more.
std::array<double, 6> cell_of(const std::string& system, const std::string& group) {
  if (system == "triclinic") return {7.1, 8.3, 9.7, 81, 74, 68};
  if (system == "monoclinic" && group.substr(1, 4) == " 1 1") return {7.1, 8.3, 9.7, 90, 90, 105};
  if (system == "monoclinic") return {7.1, 8.3, 9.7, 90, 105, 90};
  if (system == "orthorhombic") return {7.1, 8.3, 9.7, 90, 90, 90};
  if (system == "tetragonal") return {8.3, 8.3, 9.7, 90, 90, 90};
  if (system == "cubic") return {9.7, 9.7, 9.7, 90, 90, 90};
  if (group.ends_with(":R")) return {8.3, 8.3, 8.3, 75, 75, 75};
  return {8.3, 8.3, 9.7, 90, 90, 120};
}

std::size_t multiplicity(const SpecialPositions& row, const FractionalCoordinates& position) {
  const THandle<Atom> atom(new Atom);
  atom->element = "C";
  atom->position = position;
  const Cell cell = cell_with(cell_of(row.system, row.group), operators(triplets_of_group(row.group)));
  return PackedCrystal(CrystalMaker(THandle<Cell>(new Cell(cell)), {atom})).multiplicity(0);
}

// Where the site of the row is for some x, y and z.
FractionalCoordinates place_of(const std::string& position) {
  return CrystalSymmetryOperator(position.substr(position.find(' ') + 1)).apply({0.1234, 0.2871, 0.0687});
}

FractionalCoordinates printed(const FractionalCoordinates& place) {
  const auto digits = [](double value) { return std::round(value * 1e4) / 1e4; };
  return {digits(place.x), digits(place.y), digits(place.z)};
}

class SpecialPositionsOf : public testing::TestWithParam<SpecialPositions> {};

TEST_P(SpecialPositionsOf, HaveTheMultiplicitiesOfTheTables) {
  for (const std::string position : GetParam().positions)
    EXPECT_EQ(multiplicity(GetParam(), place_of(position)), std::stoul(position)) << position;
}

TEST_P(SpecialPositionsOf, HaveThemWithFourDigitsToo) {
  for (const std::string position : GetParam().positions)
    EXPECT_EQ(multiplicity(GetParam(), printed(place_of(position))), std::stoul(position)) << position;
}

TEST_P(SpecialPositionsOf, AreThoseOfAGroupOfTheirSystem) {
  const SpaceGroup group(operators(triplets_of_group(GetParam().group)));
  EXPECT_EQ(group.crystal_system(), GetParam().system);
  EXPECT_EQ(group.reason(), "");
}

INSTANTIATE_TEST_SUITE_P(
    PackedCrystal, SpecialPositionsOf,
    testing::Values(
        SpecialPositions{"triclinic", "P 1", {"1a x,y,z"}},
        SpecialPositions{"triclinic", "P -1", {"1a 0,0,0", "1b 0,0,1/2", "1h 1/2,1/2,1/2", "2i x,y,z"}},
        SpecialPositions{"triclinic", "C -1", {"2a 0,0,0", "4i x,y,z"}},
        SpecialPositions{"monoclinic", "P 1 2 1", {"1a 0,y,0", "1d 1/2,y,1/2", "2e x,y,z"}},
        SpecialPositions{"monoclinic", "P 1 1 2", {"1a 0,0,z", "2e x,y,z"}},
        SpecialPositions{"monoclinic", "P 1 21 1", {"2a x,y,z"}},
        SpecialPositions{"monoclinic", "P 1 m 1", {"1a x,0,z", "1b x,1/2,z", "2c x,y,z"}},
        SpecialPositions{"monoclinic", "C 1 2 1", {"2a 0,y,0", "2b 0,y,1/2", "4c x,y,z"}},
        SpecialPositions{"monoclinic", "C 1 m 1", {"2a x,0,z", "4b x,y,z"}},
        SpecialPositions{
            "monoclinic", "P 1 2/m 1", {"1a 0,0,0", "1h 1/2,1/2,1/2", "2i 0,y,0", "2m x,0,z", "4o x,y,z"}},
        SpecialPositions{"monoclinic",
                         "C 1 2/m 1",
                         {"2a 0,0,0", "2d 0,1/2,1/2", "4e 1/4,1/4,0", "4g 0,y,0", "4i x,0,z", "8j x,y,z"}},
        SpecialPositions{"monoclinic", "I 1 2/m 1", {"2a 0,0,0", "4e 1/4,1/4,1/4", "4i x,0,z", "8j x,y,z"}},
        SpecialPositions{"monoclinic", "P 1 2/c 1", {"2a 0,0,0", "2e 0,y,1/4", "4g x,y,z"}},
        SpecialPositions{"monoclinic", "P 1 21/c 1", {"2a 0,0,0", "2d 1/2,0,1/2", "4e x,y,z"}},
        SpecialPositions{"monoclinic", "P 1 21/n 1", {"2a 0,0,0", "2b 0,0,1/2", "4e x,y,z"}},
        SpecialPositions{"monoclinic", "P 1 1 21/b", {"2a 0,0,0", "4e x,y,z"}},
        SpecialPositions{"monoclinic", "C 1 2/c 1", {"4a 0,0,0", "4c 1/4,1/4,0", "4e 0,y,1/4", "8f x,y,z"}},
        SpecialPositions{"monoclinic", "I 1 2/a 1", {"4a 0,0,0", "4e 1/4,y,0", "8f x,y,z"}},
        SpecialPositions{
            "orthorhombic", "P 2 2 2", {"1a 0,0,0", "2i x,0,0", "2m 0,y,0", "2q 0,0,z", "4u x,y,z"}},
        SpecialPositions{"orthorhombic", "P 21 21 21", {"4a x,y,z"}},
        SpecialPositions{
            "orthorhombic",
            "P m m m",
            {"1a 0,0,0", "1h 1/2,1/2,1/2", "2i x,0,0", "4u 0,y,z", "4w x,0,z", "4y x,y,0", "8α x,y,z"}},
        SpecialPositions{"orthorhombic", "P n m a", {"4a 0,0,0", "4b 0,0,1/2", "4c x,1/4,z", "8d x,y,z"}},
        SpecialPositions{"orthorhombic", "P b n m", {"4a 0,0,0", "4c x,y,1/4", "8d x,y,z"}},
        SpecialPositions{"orthorhombic", "P b c n", {"4a 0,0,0", "4c 0,y,1/4", "8d x,y,z"}},
        SpecialPositions{"orthorhombic", "P b c a", {"4a 0,0,0", "4b 0,0,1/2", "8c x,y,z"}},
        SpecialPositions{"orthorhombic", "P n a 21", {"4a x,y,z"}},
        SpecialPositions{"orthorhombic",
                         "C m c m",
                         {"4a 0,0,0", "4b 0,1/2,0", "4c 0,y,1/4", "8d 1/4,1/4,0", "8e x,0,0", "8f 0,y,z",
                          "8g x,y,1/4", "16h x,y,z"}},
        SpecialPositions{
            "orthorhombic", "C m c a", {"4a 0,0,0", "8d x,0,0", "8e 1/4,y,1/4", "8f 0,y,z", "16g x,y,z"}},
        SpecialPositions{"orthorhombic", "A m a 2", {"4a 0,0,z", "4b 1/4,y,z", "8c x,y,z"}},
        SpecialPositions{
            "orthorhombic", "I m m m", {"2a 0,0,0", "4e x,0,0", "8k 1/4,1/4,1/4", "8l 0,y,z", "16o x,y,z"}},
        SpecialPositions{
            "orthorhombic", "I b a m", {"4a 0,0,1/4", "8e 1/4,1/4,1/4", "8j x,y,0", "16k x,y,z"}},
        SpecialPositions{"orthorhombic", "F d d 2", {"8a 0,0,z", "16b x,y,z"}},
        SpecialPositions{
            "orthorhombic",
            "F m m m",
            {"4a 0,0,0", "8c 0,1/4,1/4", "8f 1/4,1/4,1/4", "8g x,0,0", "16m 0,y,z", "32p x,y,z"}},
        SpecialPositions{
            "orthorhombic", "F d d d:2", {"8a 1/8,1/8,1/8", "16c 0,0,0", "16e x,1/8,1/8", "32h x,y,z"}},
        SpecialPositions{"tetragonal", "P 4", {"1a 0,0,z", "1b 1/2,1/2,z", "2c 0,1/2,z", "4d x,y,z"}},
        SpecialPositions{"tetragonal", "I 4", {"2a 0,0,z", "4b 0,1/2,z", "8c x,y,z"}},
        SpecialPositions{"tetragonal", "P -4", {"1a 0,0,0", "2e 0,0,z", "4h x,y,z"}},
        SpecialPositions{"tetragonal", "I -4", {"2a 0,0,0", "2c 0,1/2,1/4", "4e 0,0,z", "8g x,y,z"}},
        SpecialPositions{"tetragonal", "I 41/a:2", {"4a 0,1/4,1/8", "8c 0,0,0", "8e 0,1/4,z", "16f x,y,z"}},
        SpecialPositions{"tetragonal", "P 41 21 2", {"4a x,x,0", "8b x,y,z"}},
        SpecialPositions{
            "tetragonal", "P -4 21 m", {"2a 0,0,0", "2c 0,1/2,z", "4d 0,0,z", "4e x,x+1/2,z", "8f x,y,z"}},
        SpecialPositions{
            "tetragonal",
            "P 4/n m m:2",
            {"2a 3/4,1/4,0", "2c 1/4,1/4,z", "4d 0,0,0", "8g x,-x,0", "8i 1/4,y,z", "16k x,y,z"}},
        SpecialPositions{"tetragonal",
                         "P 42/m n m",
                         {"2a 0,0,0", "4c 0,1/2,0", "4d 0,1/2,1/4", "4e 0,0,z", "4f x,x,0", "8h 0,1/2,z",
                          "8i x,y,0", "8j x,x,z", "16k x,y,z"}},
        SpecialPositions{"tetragonal",
                         "I 4/m m m",
                         {"2a 0,0,0", "4c 0,1/2,0", "4d 0,1/2,1/4", "4e 0,0,z", "8f 1/4,1/4,1/4", "8h x,x,0",
                          "8i x,0,0", "16l x,y,0", "16m x,x,z", "16n 0,y,z", "32o x,y,z"}},
        SpecialPositions{"tetragonal",
                         "I 41/a m d:2",
                         {"4a 0,3/4,1/8", "4b 0,1/4,3/8", "8c 0,0,0", "8e 0,1/4,z", "16f x,0,0", "16h 0,y,z",
                          "32i x,y,z"}},
        SpecialPositions{"trigonal", "P 3", {"1a 0,0,z", "1b 1/3,2/3,z", "1c 2/3,1/3,z", "3d x,y,z"}},
        SpecialPositions{"trigonal", "P 31 2 1", {"3a x,0,1/3", "3b x,0,5/6", "6c x,y,z"}},
        SpecialPositions{
            "trigonal", "P -3", {"1a 0,0,0", "2c 0,0,z", "2d 1/3,2/3,z", "3e 1/2,0,0", "6g x,y,z"}},
        SpecialPositions{
            "trigonal",
            "P -3 m 1",
            {"1a 0,0,0", "2c 0,0,z", "2d 1/3,2/3,z", "3e 1/2,0,0", "6g x,0,0", "6i x,-x,z", "12j x,y,z"}},
        SpecialPositions{
            "trigonal", "P -3 1 m", {"1a 0,0,0", "2c 1/3,2/3,0", "2e 0,0,z", "6k x,0,z", "12l x,y,z"}},
        SpecialPositions{"trigonal", "R 3:H", {"3a 0,0,z", "9b x,y,z"}},
        SpecialPositions{"trigonal",
                         "R -3:H",
                         {"3a 0,0,0", "3b 0,0,1/2", "6c 0,0,z", "9d 1/2,0,1/2", "9e 1/2,0,0", "18f x,y,z"}},
        SpecialPositions{"trigonal", "R -3:R", {"1a 0,0,0", "2c x,x,x", "3d 1/2,0,0", "6f x,y,z"}},
        SpecialPositions{"trigonal",
                         "R -3 m:H",
                         {"3a 0,0,0", "6c 0,0,z", "9e 1/2,0,0", "18f x,0,0", "18h x,-x,z", "36i x,y,z"}},
        SpecialPositions{"trigonal",
                         "R -3 m:R",
                         {"1a 0,0,0", "1b 1/2,1/2,1/2", "2c x,x,x", "3e 0,1/2,1/2", "6h x,x,z", "12i x,y,z"}},
        SpecialPositions{"trigonal",
                         "R -3 c:H",
                         {"6a 0,0,1/4", "6b 0,0,0", "12c 0,0,z", "18d 1/2,0,0", "18e x,0,1/4", "36f x,y,z"}},
        SpecialPositions{"hexagonal", "P 6", {"1a 0,0,z", "2b 1/3,2/3,z", "3c 1/2,0,z", "6d x,y,z"}},
        SpecialPositions{"hexagonal", "P 63", {"2a 0,0,z", "2b 1/3,2/3,z", "6c x,y,z"}},
        SpecialPositions{"hexagonal",
                         "P -6",
                         {"1a 0,0,0", "1c 1/3,2/3,0", "2g 0,0,z", "3j x,y,0", "6l x,y,z"}},
        SpecialPositions{"hexagonal",
                         "P 63/m",
                         {"2a 0,0,1/4", "2b 0,0,0", "2c 1/3,2/3,1/4", "4e 0,0,z", "4f 1/3,2/3,z",
                          "6g 1/2,0,0", "6h x,y,1/4", "12i x,y,z"}},
        SpecialPositions{"hexagonal", "P 61 2 2", {"6a x,0,0", "6b x,2x,1/4", "12c x,y,z"}},
        SpecialPositions{"hexagonal", "P 63 m c", {"2a 0,0,z", "2b 1/3,2/3,z", "6c x,-x,z", "12d x,y,z"}},
        SpecialPositions{"hexagonal",
                         "P 6/m m m",
                         {"1a 0,0,0", "2c 1/3,2/3,0", "2e 0,0,z", "3f 1/2,0,0", "6j x,0,0", "6l x,2x,0",
                          "12n x,0,z", "24r x,y,z"}},
        SpecialPositions{"hexagonal",
                         "P 63/m m c",
                         {"2a 0,0,0", "2b 0,0,1/4", "2c 1/3,2/3,1/4", "4f 1/3,2/3,z", "6g 1/2,0,0",
                          "6h x,2x,1/4", "12i x,0,0", "12k x,2x,z", "24l x,y,z"}},
        SpecialPositions{"cubic", "P 2 3", {"1a 0,0,0", "3c 0,1/2,1/2", "4e x,x,x", "6f x,0,0", "12j x,y,z"}},
        SpecialPositions{"cubic", "P 21 3", {"4a x,x,x", "12b x,y,z"}},
        SpecialPositions{"cubic", "P a -3", {"4a 0,0,0", "4b 1/2,1/2,1/2", "8c x,x,x", "24d x,y,z"}},
        SpecialPositions{
            "cubic", "I a -3", {"8a 0,0,0", "8b 1/4,1/4,1/4", "16c x,x,x", "24d x,0,1/4", "48e x,y,z"}},
        SpecialPositions{"cubic", "P 41 3 2", {"4a 3/8,3/8,3/8", "8c x,x,x", "12d 1/8,y,y+1/4", "24e x,y,z"}},
        SpecialPositions{"cubic", "I -4 3 d", {"12a 3/8,0,1/4", "16c x,x,x", "24d x,0,1/4", "48e x,y,z"}},
        SpecialPositions{"cubic",
                         "P m -3 m",
                         {"1a 0,0,0", "3c 0,1/2,1/2", "3d 1/2,0,0", "6e x,0,0", "8g x,x,x", "12i 0,y,y",
                          "24k 0,y,z", "48n x,y,z"}},
        SpecialPositions{"cubic",
                         "F -4 3 m",
                         {"4a 0,0,0", "4c 1/4,1/4,1/4", "16e x,x,x", "24f x,0,0", "48h x,x,z", "96i x,y,z"}},
        SpecialPositions{"cubic",
                         "F m -3 m",
                         {"4a 0,0,0", "4b 1/2,1/2,1/2", "8c 1/4,1/4,1/4", "24d 0,1/4,1/4", "24e x,0,0",
                          "32f x,x,x", "48h 0,y,y", "96k x,x,z", "192l x,y,z"}},
        SpecialPositions{"cubic", "F m -3 c", {"8a 1/4,1/4,1/4", "8b 0,0,0", "24d 0,1/4,1/4", "192j x,y,z"}},
        SpecialPositions{"cubic", "F d -3 m:1", {"8a 0,0,0", "16c 1/8,1/8,1/8", "32e x,x,x", "192i x,y,z"}},
        SpecialPositions{"cubic",
                         "F d -3 m:2",
                         {"8a 1/8,1/8,1/8", "16c 0,0,0", "16d 1/2,1/2,1/2", "32e x,x,x", "48f x,1/8,1/8",
                          "96g x,x,z", "192i x,y,z"}},
        SpecialPositions{"cubic",
                         "I m -3 m",
                         {"2a 0,0,0", "6b 0,1/2,1/2", "8c 1/4,1/4,1/4", "12d 1/4,0,1/2", "12e x,0,0",
                          "16f x,x,x", "24h 0,y,y", "48k x,x,z", "96l x,y,z"}},
        SpecialPositions{
            "cubic",
            "I a -3 d",
            {"16a 0,0,0", "16b 1/8,1/8,1/8", "24c 1/8,0,1/4", "24d 3/8,0,1/4", "32e x,x,x", "96h x,y,z"}}));

}  // namespace
