#include <exchange/xyz_writer.h>
#include <gmock/gmock.h>

#include <limits>
#include <stdexcept>

#include "exchange/full_entry.h"

namespace {

using testing::StartsWith;

Entry entry_of(const std::string& identifier, const THandle<Cell>& cell,
               const std::vector<THandle<Atom>>& atoms) {
  return Entry(DatabaseEntryIdentifier(identifier), made<CrystalMaker>(cell, atoms), cell, {}, {}, {}, {}, {},
               {}, {}, {}, {}, {}, {}, {}, {}, {});
}

THandle<Cell> cubic(double edge, const std::vector<CrystalSymmetryOperator>& operators = {}) {
  const auto list = made<std::vector<CrystalSymmetryOperator>>(operators);
  return made<Cell>(edge, edge, edge, 90.0, 90.0, 90.0, list);
}

std::string refusal(const Entry& entry, XyzAtoms which) {
  try {
    return entry_xyz(entry, which);
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
}

TEST(Xyz, HasTheAtomsAsTheyAreStoredUnderTheLattice) {
  const Entry entry = entry_of("ONE \"1\"", cubic(5.0, {CrystalSymmetryOperator("-x,-y,-z")}),
                               {atom("Na1", "Na", {0, 0.5, -0.1}), atom("?", "", {1.25, -1e-9, 1.0 / 3.0})});
  EXPECT_EQ(entry_xyz(entry),
            "2\n"
            "Lattice=\"5.000000 0.000000 0.000000 0.000000 5.000000 0.000000 0.000000 0.000000 5.000000\" "
            "Properties=species:S:1:pos:R:3 pbc=\"T T T\" identifier=\"ONE \\\"1\\\"\"\n"
            "Na 0.000000 2.500000 -0.500000\n"
            "X 6.250000 0.000000 1.666667\n");
}

TEST(Xyz, IsAlongTheAxesOfAnObliqueCell) {
  const auto cell =
      made<Cell>(2.0, 4.0, 3.0, 90.0, 90.0, 120.0, made<std::vector<CrystalSymmetryOperator>>());
  EXPECT_EQ(entry_xyz(entry_of("H", cell, {atom("C1", "C", {0, 1, 0.5})})),
            "1\n"
            "Lattice=\"2.000000 0.000000 0.000000 -2.000000 3.464102 0.000000 0.000000 0.000000 3.000000\" "
            "Properties=species:S:1:pos:R:3 pbc=\"T T T\" identifier=\"H\"\n"
            "C -2.000000 3.464102 1.500000\n");
}

TEST(Xyz, OfTheCellOfRockSaltHasEightAtoms) {
  const Entry salt =
      entry_of("NACL",
               cubic(5.64, {CrystalSymmetryOperator("x,y,z"), CrystalSymmetryOperator("x,y+1/2,z+1/2"),
                            CrystalSymmetryOperator("x+1/2,y,z+1/2"),
                            CrystalSymmetryOperator("x+1/2,y+1/2,z"), CrystalSymmetryOperator("-x,-y,-z")}),
               {atom("Na1", "Na", {0, 0, 0}), atom("Cl1", "Cl", {0.5, 0.5, 0.5})});
  EXPECT_EQ(entry_xyz(salt, XyzAtoms::cell),
            "8\n"
            "Lattice=\"5.640000 0.000000 0.000000 0.000000 5.640000 0.000000 0.000000 0.000000 5.640000\" "
            "Properties=species:S:1:pos:R:3 pbc=\"T T T\" identifier=\"NACL\"\n"
            "Na 0.000000 0.000000 0.000000\n"
            "Na 0.000000 2.820000 2.820000\n"
            "Na 2.820000 0.000000 2.820000\n"
            "Na 2.820000 2.820000 0.000000\n"
            "Cl 2.820000 2.820000 2.820000\n"
            "Cl 2.820000 0.000000 0.000000\n"
            "Cl 0.000000 2.820000 0.000000\n"
            "Cl 0.000000 0.000000 2.820000\n");
  EXPECT_THAT(entry_xyz(salt), StartsWith("2\n"));
}

TEST(Xyz, OfAnEntryWithoutAtomsIsEmpty) {
  const std::string none = "0\nProperties=species:S:1:pos:R:3 identifier=\"E\"\n";
  for (const XyzAtoms which : {XyzAtoms::asymmetric_unit, XyzAtoms::cell}) {
    EXPECT_EQ(entry_xyz(entry_of("E", made<Cell>(), {}), which), none);
    EXPECT_EQ(entry_xyz(Entry(DatabaseEntryIdentifier("E"), {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {},
                              {}, {}, {}, {}),
                        which),
              none);
  }
}

TEST(Xyz, RefusesWhatHasNoPlaceInSpaceNamingTheEntry) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  for (const XyzAtoms which : {XyzAtoms::asymmetric_unit, XyzAtoms::cell}) {
    EXPECT_EQ(
        refusal(entry_of("BAD", cubic(5), {atom("C1", "C", {0, 0, 0}), atom("C2", "C", {0, nan, 0})}), which),
        "entry BAD: the position of atom 2 (C2) is not finite");
    EXPECT_EQ(refusal(entry_of("BAD", cubic(5), {atom("C1", "C", {0, 0, -infinity})}), which),
              "entry BAD: the position of atom 1 (C1) is not finite");
    EXPECT_EQ(refusal(entry_of("BAD", made<Cell>(), {atom("C1", "C", {0, 0, 0})}), which),
              "entry BAD: it has atoms but no cell");
    EXPECT_EQ(refusal(entry_of("BAD", cubic(5), {THandle<Atom>()}), which), "entry BAD: atom 1 is null");
    EXPECT_THAT(refusal(entry_of("BAD", cubic(-5), {}), which), StartsWith("entry BAD: "));
  }
}

}  // namespace
