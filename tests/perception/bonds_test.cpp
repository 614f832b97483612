#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lattice/lattice_error.h>
#include <perception/bonds.h>
#include <perception/perception_error.h>

#include <cmath>
#include <random>
#include <set>
#include <tuple>

#include "crystals.h"

namespace {

// How many neighbours an atom of the packed cell has, images of itself counted from both ends.
std::size_t coordination(const CrystalBonds& crystal, std::size_t atom) {
  std::size_t count = 0;
  for (const CrystalBond& bond : crystal.bonds) count += (bond.first == atom) + (bond.second == atom);
  return count;
}

struct Known {
  const char* what;
  CrystalMaker crystal;
  double tolerance;
  std::size_t coordination;  // of the first atom
};

class KnownCoordination : public testing::TestWithParam<Known> {};

TEST_P(KnownCoordination, IsThatOfTheStructure) {
  const CrystalBonds bonds =
      perceive_bonds(GetParam().crystal, {.tolerance = GetParam().tolerance, .alternatives = {}});
  EXPECT_EQ(coordination(bonds, 0), GetParam().coordination) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    PerceiveBonds, KnownCoordination,
    testing::Values(
        Known{"rock salt: an octahedron",
              crystal({5.64, 5.64, 5.64, 90, 90, 90}, face_centred, {{"Na", {0, 0, 0}}, {"Cl", {0.5, 0, 0}}}),
              0.4, 6},
        Known{"copper in its primitive cell: twelve images of one atom",
              crystal({2.556, 2.556, 2.556, 60, 60, 60}, {"x,y,z"}, {{"Cu", {0, 0, 0}}}), 0.0, 12},
        Known{"iron, body-centred: eight near, six a little farther",
              crystal({2.87, 2.87, 2.87, 90, 90, 90}, {"x,y,z", "1/2+x,1/2+y,1/2+z"}, {{"Fe", {0, 0, 0}}}),
              0.0, 8},
        Known{"the same with a tolerance that takes all fourteen",
              crystal({2.87, 2.87, 2.87, 90, 90, 90}, {"x,y,z", "1/2+x,1/2+y,1/2+z"}, {{"Fe", {0, 0, 0}}}),
              0.4, 14},
        Known{"diamond",
              crystal({3.567, 3.567, 3.567, 90, 90, 90}, face_centred,
                      {{"C", {0, 0, 0}}, {"C", {0.25, 0.25, 0.25}}}),
              0.4, 4},
        Known{
            "caesium chloride",
            crystal({4.12, 4.12, 4.12, 90, 90, 90}, {"x,y,z"}, {{"Cs", {0, 0, 0}}, {"Cl", {0.5, 0.5, 0.5}}}),
            0.4, 14},  // eight of chlorine; and six of caesium, 4.12 Å away
        Known{"graphite",
              crystal({2.461, 2.461, 6.708, 90, 90, 120}, {"x,y,z"},
                      {{"C", {0, 0, 0.25}},
                       {"C", {1 / 3.0, 2 / 3.0, 0.25}},
                       {"C", {0, 0, 0.75}},
                       {"C", {2 / 3.0, 1 / 3.0, 0.75}}}),
              0.4, 3}));

TEST(PerceiveBonds, LeavesOutWhatHasNoKnownElement) {
  EXPECT_TRUE(
      perceive_bonds(in_a_box({{"Wat", {0, 0, 0}}, {"C", {1.5, 0, 0}}, {"", {1.5, 1.5, 0}}})).bonds.empty());
}

TEST(PerceiveBonds, TakesTheLimitItselfAndNothingBeyond) {
  const auto bonds = [](double length) {
    return perceive_bonds(in_a_box({{"C", {0, 0, 0}}, {"C", {length, 0, 0}}})).bonds.size();
  };
  EXPECT_EQ(bonds(1.86), 1u);
  EXPECT_EQ(bonds(1.861), 0u);
  EXPECT_EQ(bonds(0.74), 1u);
  EXPECT_EQ(bonds(0.72), 0u);
}

TEST(PerceiveBonds, GivesAHydrogenAtomItsNearestNeighbourOnly) {
  // Two water molecules with a short contact, and the two hydrogen atoms of one.
  const CrystalBonds crystal = perceive_bonds(
      in_a_box({{"O", {0, 0, 0}}, {"H", {0.96, 0, 0}}, {"H", {0.3, 0.85, 0}}, {"O", {2.2, 0, 0}}}));
  ASSERT_EQ(crystal.bonds.size(), 2u);
  EXPECT_EQ(crystal.bonds[0].second, 1u);
  EXPECT_EQ(crystal.bonds[1].second, 2u);
}

TEST(PerceiveBonds, LetsAHydrogenAtomBridge) {
  EXPECT_EQ(
      perceive_bonds(in_a_box({{"B", {0, 0, 0}}, {"H", {0.88, 0.97, 0}}, {"B", {1.77, 0, 0}}})).bonds.size(),
      3u);
}

TEST(PerceiveBonds, FindsTheHydrogenMolecule) {
  EXPECT_EQ(perceive_bonds(in_a_box({{"H", {0, 0, 0}}, {"D", {0.74, 0, 0}}})).bonds.size(), 1u);
}

TEST(PerceiveBonds, NeverJoinsTwoAlternatives) {
  const CrystalMaker maker = in_a_box({{"C", {0, 0, 0}}, {"O", {1.4, 0, 0}, 0.6}, {"O", {1.2, 0.8, 0}, 0.4}});
  const THandle<DisorderSelector> one(new DisorderSelector{"A", "1", {maker.atoms()[1]}});
  const THandle<DisorderSelector> other(new DisorderSelector{"A", "2", {maker.atoms()[2]}});
  EXPECT_EQ(perceive_bonds(maker, {.alternatives = {one, other}}).bonds.size(), 2u);
}

TEST(PerceiveBonds, KeepsImagesOfAGroupOnASymmetryElementApart) {
  const CrystalMaker maker =
      crystal({10, 10, 10, 90, 90, 90}, {"x,y,z", "-x,-y,-z"}, {{"C", {0.07, 0, 0}, 0.5}});
  EXPECT_EQ(perceive_bonds(maker).bonds.size(), 1u);
  const THandle<DisorderSelector> selector(new DisorderSelector{"A", "-1", {maker.atoms()[0]}});
  EXPECT_EQ(perceive_bonds(maker, {.alternatives = {selector}}).bonds.size(), 0u);
}

TEST(PerceiveBonds, TellsAlternativesByTheirOccupanciesWhereTheyOverlap) {
  const CrystalMaker maker = in_a_box({{"C", {0, 0, 0}},
                                       {"C", {1.5, 0, 0}, 0.7},
                                       {"C", {1.4, 0.5, 0}, 0.3},
                                       {"C", {2.2, 1.3, 0}, 0.7},
                                       {"C", {2.4, 1.5, 0}, 0.3}});
  std::set<std::pair<std::size_t, std::size_t>> pairs;
  for (const CrystalBond& bond : perceive_bonds(maker).bonds) pairs.insert({bond.first, bond.second});
  EXPECT_THAT(pairs, testing::ElementsAre(std::pair(0u, 1u), std::pair(0u, 2u), std::pair(1u, 3u),
                                          std::pair(2u, 4u)));
}

TEST(PerceiveBonds, RefusesACrowd) {
  std::vector<Site> sites(3000, Site{"Fe", {0, 0, 0}});
  for (std::size_t i = 0; i < sites.size(); ++i) sites[i].position = {0.0003 * static_cast<double>(i), 0, 0};
  EXPECT_THROW((void)perceive_bonds(crystal({3, 3, 3, 90, 90, 90}, {"x,y,z"}, sites)), PerceptionError);
}

TEST(PerceiveBonds, RefusesWhatHasNoCellOrNoTolerance) {
  EXPECT_THROW((void)perceive_bonds(CrystalMaker()), LatticeError);
  EXPECT_THROW((void)perceive_bonds(in_a_box({}), {.tolerance = -1, .alternatives = {}}), PerceptionError);
  EXPECT_THROW((void)perceive_bonds(in_a_box({}), {.tolerance = std::nan(""), .alternatives = {}}),
               PerceptionError);
}

// The plain way: every atom with every image of every other one in the cells around.
std::set<std::tuple<std::size_t, std::size_t, int, int, int>> by_trying(const PackedCrystal& packed,
                                                                        double reach, int cells) {
  std::set<std::tuple<std::size_t, std::size_t, int, int, int>> pairs;
  for (std::size_t i = 0; i < packed.atoms().size(); ++i)
    for (std::size_t j = i; j < packed.atoms().size(); ++j)
      for (int a = -cells; a <= cells; ++a)
        for (int b = -cells; b <= cells; ++b)
          for (int c = -cells; c <= cells; ++c) {
            if (i == j && std::tie(a, b, c) <= std::tuple(0, 0, 0)) continue;
            const FractionalCoordinates& p = packed.atoms()[i].position;
            const FractionalCoordinates& q = packed.atoms()[j].position;
            if (packed.geometry().length({q.x - p.x + a, q.y - p.y + b, q.z - p.z + c}) < reach)
              pairs.insert({i, j, a, b, c});
          }
  return pairs;
}

TEST(Neighbours, AreThoseOfTheCellsAroundInAnyCell) {
  std::mt19937 random(3);
  const auto between = [&](double least, double most) {
    return std::uniform_real_distribution<double>(least, most)(random);
  };
  for (int trial = 0; trial < 60; ++trial) {
    std::vector<Site> sites;
    for (int i = 0; i < 5; ++i) sites.push_back({"C", {between(0, 1), between(0, 1), between(0, 1)}});
    const PackedCrystal packed(crystal({between(1.5, 9), between(1.5, 9), between(1.5, 9), between(70, 110),
                                        between(70, 110), between(70, 110)},
                                       {"x,y,z"}, sites));
    const double reach = between(0.5, 4);
    std::set<std::tuple<std::size_t, std::size_t, int, int, int>> found;
    for (const CrystalBond& pair : neighbours(packed, std::vector<double>(packed.atoms().size(), reach / 2)))
      found.insert({pair.first, pair.second, pair.translation[0], pair.translation[1], pair.translation[2]});
    EXPECT_EQ(found, by_trying(packed, reach, 6)) << "trial " << trial;
  }
}

}  // namespace
