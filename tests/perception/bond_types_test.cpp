#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <perception/bond_types.h>
#include <perception/matching.h>

#include <bit>
#include <cmath>
#include <random>

namespace {

constexpr BondType one = BondType::single_bond, two = BondType::double_bond, three = BondType::triple_bond,
                   ring = BondType::aromatic, shared = BondType::delocalised, none = BondType::unknown;

struct Drawn {
  const char* name;
  MoleculeShape shape;
  std::vector<BondType> bonds;
  std::vector<int> charges;
  std::vector<int> hydrogens;
};

// Atoms around a circle with bonds of that length, the first to the right.
std::vector<CartesianCoordinates> circle(std::size_t count, double length, double outside = 0.0) {
  const double radius = length / (2 * std::sin(M_PI / static_cast<double>(count))) + outside;
  std::vector<CartesianCoordinates> places;
  for (std::size_t i = 0; i < count; ++i) {
    const double angle = 2 * M_PI * static_cast<double>(i) / static_cast<double>(count);
    places.push_back({radius * std::cos(angle), radius * std::sin(angle), 0});
  }
  return places;
}

MoleculeShape benzene() {
  MoleculeShape shape;
  for (const CartesianCoordinates& place : circle(6, 1.39)) {
    shape.elements.emplace_back("C");
    shape.places.push_back(place);
  }
  for (const CartesianCoordinates& place : circle(6, 1.39, 0.95)) {
    shape.elements.emplace_back("H");
    shape.places.push_back(place);
  }
  for (std::size_t i = 0; i < 6; ++i) {
    shape.bonds.push_back({i, (i + 1) % 6});
    shape.bonds.push_back({i, i + 6});
  }
  return shape;
}

// Cyclopentane's five carbon atoms without hydrogen atoms, flat rings of five with one other atom.
MoleculeShape five_ring(const char* other, double length) {
  MoleculeShape shape;
  for (const CartesianCoordinates& place : circle(5, length)) {
    shape.elements.emplace_back(shape.elements.empty() ? other : "C");
    shape.places.push_back(place);
  }
  for (std::size_t i = 0; i < 5; ++i) shape.bonds.push_back({i, (i + 1) % 5});
  return shape;
}

class KnownTypes : public testing::TestWithParam<Drawn> {};

TEST_P(KnownTypes, AreThoseOfTheTextbook) {
  const MoleculeTypes types = perceive_bond_types(GetParam().shape);
  EXPECT_EQ(types.bonds, GetParam().bonds) << GetParam().name;
  const auto said = [](const std::vector<int>& expected, const std::vector<int>& found) {
    return expected.empty() ? found : expected;
  };
  EXPECT_EQ(types.charges, said(GetParam().charges, types.charges)) << GetParam().name;
  EXPECT_EQ(types.hydrogen_counts, said(GetParam().hydrogens, types.hydrogen_counts)) << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(
    BondTypes, KnownTypes,
    testing::Values(
        Drawn{"nitrogen", {{"N", "N"}, {{0, 0, 0}, {1.1, 0, 0}}, {{0, 1}}}, {three}, {0, 0}, {0, 0}},
        Drawn{"carbon dioxide",
              {{"C", "O", "O"}, {{0, 0, 0}, {1.16, 0, 0}, {-1.16, 0, 0}}, {{0, 1}, {0, 2}}},
              {two, two},
              {0, 0, 0},
              {0, 0, 0}},
        Drawn{"carbon monoxide", {{"C", "O"}, {{0, 0, 0}, {1.13, 0, 0}}, {{0, 1}}}, {three}, {}, {}},
        Drawn{"hydrogen cyanide",
              {{"H", "C", "N"}, {{0, 0, 0}, {1.06, 0, 0}, {2.22, 0, 0}}, {{0, 1}, {1, 2}}},
              {one, three},
              {0, 0, 0},
              {}},
        Drawn{"acetylene",
              {{"C", "C", "H", "H"},
               {{0, 0, 0}, {1.2, 0, 0}, {-1.06, 0, 0}, {2.26, 0, 0}},
               {{0, 1}, {0, 2}, {1, 3}}},
              {three, one, one},
              {},
              {}},
        Drawn{"formaldehyde",
              {{"C", "O", "H", "H"},
               {{0, 0, 0}, {1.21, 0, 0}, {-0.6, 0.95, 0}, {-0.6, -0.95, 0}},
               {{0, 1}, {0, 2}, {0, 3}}},
              {two, one, one},
              {0, 0, 0, 0},
              {}},
        Drawn{"formate",
              {{"C", "O", "O", "H"},
               {{0, 0, 0}, {0.7, 1.04, 0}, {0.7, -1.04, 0}, {-1.1, 0, 0}},
               {{0, 1}, {0, 2}, {0, 3}}},
              {shared, shared, one},
              {},
              {}},
        Drawn{"formic acid",
              {{"C", "O", "O", "H", "H"},
               {{0, 0, 0}, {0.65, 1.01, 0}, {0.8, -1.07, 0}, {-1.1, 0, 0}, {1.75, -0.95, 0}},
               {{0, 1}, {0, 2}, {0, 3}, {2, 4}}},
              {two, one, one, one},
              {0, 0, 0, 0, 0},
              {}},
        Drawn{"ammonium",
              {{"N", "H", "H", "H", "H"},
               {{0, 0, 0}, {.6, .6, .6}, {-.6, -.6, .6}, {-.6, .6, -.6}, {.6, -.6, -.6}},
               {{0, 1}, {0, 2}, {0, 3}, {0, 4}}},
              {one, one, one, one},
              {1, 0, 0, 0, 0},
              {}},
        Drawn{"nitrate",
              {{"N", "O", "O", "O"},
               {{0, 0, 0}, {1.25, 0, 0}, {-.625, 1.0825, 0}, {-.625, -1.0825, 0}},
               {{0, 1}, {0, 2}, {0, 3}}},
              {shared, shared, shared},
              {},
              {}},
        Drawn{"azide",
              {{"N", "N", "N"}, {{0, 0, 0}, {1.17, 0, 0}, {-1.17, 0, 0}}, {{0, 1}, {0, 2}}},
              {two, two},
              {1, -1, -1},
              {}},
        Drawn{"tetrafluoroborate",
              {{"B", "F", "F", "F", "F"},
               {{0, 0, 0}, {.8, .8, .8}, {-.8, -.8, .8}, {-.8, .8, -.8}, {.8, -.8, -.8}},
               {{0, 1}, {0, 2}, {0, 3}, {0, 4}}},
              {one, one, one, one},
              {-1, 0, 0, 0, 0},
              {}},
        Drawn{
            "benzene", benzene(), {ring, one, ring, one, ring, one, ring, one, ring, one, ring, one}, {}, {}},
        Drawn{"furan without its hydrogen atoms",
              five_ring("O", 1.38),
              {ring, ring, ring, ring, ring},
              {0, 0, 0, 0, 0},
              {0, 1, 1, 1, 1}},
        Drawn{"a flat ring of five with bonds of 1.54 Å",
              five_ring("C", 1.54),
              {one, one, one, one, one},
              {},
              {2, 2, 2, 2, 2}},
        Drawn{"ethane without its hydrogen atoms",
              {{"C", "C"}, {{0, 0, 0}, {1.53, 0, 0}}, {{0, 1}}},
              {one},
              {},
              {3, 3}},
        Drawn{"ethylene without its hydrogen atoms",
              {{"C", "C"}, {{0, 0, 0}, {1.33, 0, 0}}, {{0, 1}}},
              {two},
              {},
              {2, 2}},
        Drawn{"a metal's bonds",
              {{"Pt", "Cl", "Cl"}, {{0, 0, 0}, {2.3, 0, 0}, {0, 2.3, 0}}, {{0, 1}, {0, 2}}},
              {none, none},
              {},
              {}},
        Drawn{
            "an element that is not known", {{"X", "C"}, {{0, 0, 0}, {1.5, 0, 0}}, {{0, 1}}}, {none}, {}, {}},
        Drawn{"five bonds of carbon",
              {{"C", "H", "H", "H", "H", "H"},
               {{0, 0, 0}, {1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}},
               {{0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}}},
              {none, none, none, none, none},
              {},
              {}},
        Drawn{"nothing", {}, {}, {}, {}}));

TEST(BondTypes, KeepsOneKekuleStructureOfAnAromaticRing) {
  const MoleculeTypes types = perceive_bond_types(benzene());
  int sum = 0;
  for (std::size_t i = 0; i < 12; i += 2) sum += types.orders[i];
  EXPECT_EQ(sum, 9);
  EXPECT_TRUE(types.complete);
}

TEST(BondTypes, OfAMetalCompoundAreNotComplete) {
  EXPECT_FALSE(perceive_bond_types({{"Pt", "Cl"}, {{0, 0, 0}, {2.3, 0, 0}}, {{0, 1}}}).complete);
}

double weight_of(const std::vector<WeightedPair>& pairs, const std::vector<std::size_t>& chosen) {
  double weight = 0;
  for (const std::size_t pair : chosen) weight += pairs[pair].weight;
  return weight;
}

// Of the items that are not taken, the first stays alone or is paired with any other one.
double heaviest_by_trying(std::size_t items, const std::vector<WeightedPair>& pairs) {
  std::vector<double> best(std::size_t{1} << items);
  for (std::size_t taken = best.size() - 1; taken-- > 0;) {
    const auto item = static_cast<std::size_t>(std::countr_one(taken));
    best[taken] = best[taken | std::size_t{1} << item];
    for (const auto& [first, second, weight] : pairs) {
      const std::size_t both = std::size_t{1} << first | std::size_t{1} << second;
      if ((first == item || second == item) && (taken & both) == 0)
        best[taken] = std::max(best[taken], weight + best[taken | both]);
    }
  }
  return best[0];
}

TEST(HeaviestMatching, IsAsHeavyAsTheBestOfAll) {
  std::mt19937 random(5);
  for (int trial = 0; trial < 4000; ++trial) {
    const std::size_t items = 2 + random() % 11;
    const std::size_t weights = 1 + random() % 40;  // few of them make many equal matchings
    std::vector<WeightedPair> pairs;
    for (std::size_t i = 0; i < 2 + random() % 30; ++i) {
      const std::size_t first = random() % items, second = random() % items;
      if (first != second)
        pairs.push_back({first, second, 0.5 + static_cast<double>(random() % weights) / 4});
    }
    const auto chosen = heaviest_matching(items, pairs);
    std::vector<int> uses(items);
    for (const std::size_t pair : chosen) {
      EXPECT_EQ(++uses[pairs[pair].first], 1);
      EXPECT_EQ(++uses[pairs[pair].second], 1);
    }
    EXPECT_NEAR(weight_of(pairs, chosen), heaviest_by_trying(items, pairs), 1e-9) << "trial " << trial;
  }
}

TEST(HeaviestMatching, OfRingsInRingsPairsAllItems) {
  // Rings of five around a ring of five and so on, as in a fullerene: 60 items with three neighbours each.
  std::vector<WeightedPair> pairs;
  for (std::size_t i = 0; i < 60; ++i) {
    pairs.push_back({i, i % 5 == 4 ? i - 4 : i + 1, 1.0});
    if (i % 5 < 2) pairs.push_back({i, (i + 8) % 60, 1.0});
  }
  EXPECT_EQ(heaviest_matching(60, pairs).size(), 30u);
}

TEST(HeaviestMatching, OfALargePartIsAMatchingStill) {
  std::vector<WeightedPair> pairs;
  for (std::size_t i = 0; i + 1 < 1000; ++i) pairs.push_back({i, i + 1, 1.0 + static_cast<double>(i % 3)});
  EXPECT_GE(heaviest_matching(1000, pairs).size(), 333u);
}

}  // namespace
