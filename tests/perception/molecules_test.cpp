#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <perception/molecules.h>

#include "crystals.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

std::vector<Molecule> molecules_of(const CrystalMaker& maker) {
  return molecules(maker, perceive_bonds(maker));
}

struct Known {
  const char* what;
  CrystalMaker crystal;
  int dimension;
  const char* formula;
  std::size_t in_cell;
};

class KnownMolecule : public testing::TestWithParam<Known> {};

TEST_P(KnownMolecule, IsTheFirstOfTheCrystal) {
  const auto list = molecules_of(GetParam().crystal);
  const auto independent = independent_molecules(list);
  ASSERT_EQ(independent.size(), 1u) << GetParam().what;
  EXPECT_EQ(list[0].dimension, GetParam().dimension) << GetParam().what;
  EXPECT_EQ(list[0].formula, GetParam().formula) << GetParam().what;
  EXPECT_EQ(independent[0].in_cell, GetParam().in_cell) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Molecules, KnownMolecule,
    testing::Values(Known{"carbon dioxide: completed by the centre of symmetry",
                          crystal({5.6, 5.6, 5.6, 90, 90, 90},
                                  {"x,y,z", "-x,-y,-z", "1/2-x,-y,1/2+z", "1/2+x,y,1/2-z", "-x,1/2+y,1/2-z",
                                   "x,1/2-y,1/2+z", "1/2+x,1/2-y,-z", "1/2-x,1/2+y,z"},
                                  {{"C", {0, 0, 0}}, {"O", {0.1185, 0.1185, 0.1185}}}),
                          0, "C O2", 4},
                    Known{"a molecule across a corner of the cell",
                          crystal({8, 8, 8, 90, 90, 90}, {"x,y,z"},
                                  {{"N", {0.95, 0.95, 0.95}}, {"N", {0.03, 0.03, 0.03}}}),
                          0, "N2", 1},
                    Known{"selenium: chains along c",
                          crystal({4.366, 4.366, 4.954, 90, 90, 120},
                                  {"x,y,z", "-y,x-y,1/3+z", "-x+y,-x,2/3+z"}, {{"Se", {0.2254, 0, 0}}}),
                          1, "Se3", 1},
                    Known{"graphite: layers",
                          crystal({2.461, 2.461, 6.708, 90, 90, 120}, {"x,y,z", "-x,-y,1/2+z"},
                                  {{"C", {0, 0, 0.25}}, {"C", {1 / 3.0, 2 / 3.0, 0.25}}}),
                          2, "C2", 2},
                    Known{"boron nitride: layers",
                          crystal({2.504, 2.504, 6.661, 90, 90, 120}, {"x,y,z", "-x,-y,1/2+z"},
                                  {{"B", {1 / 3.0, 2 / 3.0, 0.25}}, {"N", {2 / 3.0, 1 / 3.0, 0.25}}}),
                          2, "B N", 2},
                    Known{"cadmium iodide: layers of octahedra",
                          crystal({4.24, 4.24, 6.84, 90, 90, 120}, {"x,y,z", "-x,-y,-z"},
                                  {{"Cd", {0, 0, 0}}, {"I", {1 / 3.0, 2 / 3.0, 0.249}}}),
                          2, "Cd I2", 1},
                    Known{"rutile: a framework",
                          crystal({4.594, 4.594, 2.959, 90, 90, 90},
                                  {"x,y,z", "-x,-y,-z", "1/2-y,1/2+x,1/2+z", "1/2+y,1/2-x,1/2-z"},
                                  {{"Ti", {0, 0, 0}}, {"O", {0.305, 0.305, 0}}}),
                          3, "O4 Ti2", 1},
                    Known{"diamond: a framework",
                          crystal({3.567, 3.567, 3.567, 90, 90, 90}, face_centred,
                                  {{"C", {0, 0, 0}}, {"C", {0.25, 0.25, 0.25}}}),
                          3, "C8", 1},
                    Known{"argon: atoms alone",
                          crystal({5.31, 5.31, 5.31, 90, 90, 90}, face_centred, {{"Ar", {0, 0, 0}}}), 0, "Ar",
                          4}));

TEST(Molecules, AreInOnePiece) {
  const CrystalMaker maker =
      crystal({8, 8, 8, 90, 90, 90}, {"x,y,z"}, {{"N", {0.95, 0.95, 0.95}}, {"N", {0.03, 0.03, 0.03}}});
  const auto list = molecules_of(maker);
  ASSERT_EQ(list[0].atoms.size(), 2u);
  const CartesianCoordinates& first = list[0].atoms[0].place;
  const CartesianCoordinates& second = list[0].atoms[1].place;
  EXPECT_NEAR(std::hypot(first.x - second.x, first.y - second.y, first.z - second.z), 0.08 * 8 * std::sqrt(3),
              1e-9);
}

TEST(Molecules, InterpenetratingFrameworksAreTwo) {
  // Ice VIII's kind: two diamond nets, shifted by half of the cell.
  const auto list =
      molecules_of(crystal({6, 6, 6, 90, 90, 90}, face_centred,
                           {{"Si", {0, 0, 0}}, {"Si", {0.25, 0.25, 0.25}}, {"N", {0.5, 0, 0}}}));
  EXPECT_EQ(list.size(), 5u);
  EXPECT_EQ(list[0].dimension, 3);
}

TEST(Molecules, LeavesHiddenSitesOut) {
  const CrystalMaker maker = in_a_box({{"C", {0, 0, 0}}, {"O", {1.2, 0, 0}}, {"O", {-1.2, 0, 0}}});
  const auto list = molecules(maker, perceive_bonds(maker), {false, true, false});
  ASSERT_EQ(list.size(), 1u);
  EXPECT_EQ(list[0].formula, "C O");
  EXPECT_EQ(list[0].bonds.size(), 1u);
}

struct Formula {
  const char* text;
  std::vector<std::pair<std::string, double>> counts;
};

class FormulaCounts : public testing::TestWithParam<Formula> {};

TEST_P(FormulaCounts, AreThoseOfTheText) {
  EXPECT_EQ(formula_counts(GetParam().text), GetParam().counts);
}

INSTANTIATE_TEST_SUITE_P(
    Molecules, FormulaCounts,
    testing::Values(Formula{"O2 Ti", {{"O", 2}, {"Ti", 1}}}, Formula{"TiO2", {{"O", 2}, {"Ti", 1}}},
                    Formula{"C2 H6 O", {{"C", 2}, {"H", 6}, {"O", 1}}},
                    Formula{"Al2 (Si O4)3", {{"Al", 2}, {"O", 12}, {"Si", 3}}},
                    Formula{"C H4,2(H2 O)", {{"C", 1}, {"H", 8}, {"O", 2}}},
                    Formula{"C12 H8 N2 2+,2(Cl 1-)", {{"C", 12}, {"Cl", 2}, {"H", 8}, {"N", 2}}},
                    Formula{"Fe0.9 O", {{"Fe", 0.9}, {"O", 1}}}, Formula{"", {}}, Formula{"Xx2", {}},
                    Formula{"(C H4", {}}, Formula{"C H4)", {}}, Formula{"water", {}}));

TEST(HillFormula, HasCarbonAndHydrogenFirstAndElseTheAlphabet) {
  EXPECT_EQ(hill_formula({{"O", 1}, {"H", 6}, {"C", 2}}), "C2 H6 O");
  EXPECT_EQ(hill_formula({{"O", 4}, {"H", 2}, {"S", 1}}), "H2 O4 S");
  EXPECT_EQ(hill_formula({{"C", 0.5}, {"C", 0.25}, {"D", 1}}), "C0.75 H");
  EXPECT_EQ(hill_formula({}), "");
}

}  // namespace
