#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lattice/lattice_error.h>
#include <lattice/reduced_cell.h>

#include <cmath>
#include <random>

#include "operators.h"

namespace {

using Parameters = std::array<double, 6>;

CellGeometry geometry(const Parameters& p) {
  return {p[0], p[1], p[2], p[3], p[4], p[5]};
}

void expect_cell(const Parameters& cell, const Parameters& expected, double within) {
  for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(cell[i], expected[i], within) << "parameter " << i;
}

struct Known {
  const char* source;
  Parameters given;
  char centring;
  Parameters reduced;
  double within;
};

class KnownReduction : public testing::TestWithParam<Known> {};

TEST_P(KnownReduction, IsThatOfTheLiterature) {
  const auto& [source, given, centring, reduced, within] = GetParam();
  SCOPED_TRACE(source);
  expect_cell(ReducedCell(geometry(given), centring).parameters(), reduced, within);
}

const double cube = std::sqrt(0.5);
const double body = std::acos(-1.0 / 3.0) * 180 / M_PI;

INSTANTIATE_TEST_SUITE_P(
    ReducedCell, KnownReduction,
    testing::Values(
        Known{"Krivy and Gruber 1976, the worked example",
              {3.0, std::sqrt(27.0), 2.0, std::acos(-5.0 / (2 * std::sqrt(27.0) * 2)) * 180 / M_PI,
               std::acos(-4.0 / 12) * 180 / M_PI, std::acos(-22.0 / (2 * 3 * std::sqrt(27.0))) * 180 / M_PI},
              'P',
              {2.0, 3.0, 3.0, 60.0, std::acos(3.0 / 12) * 180 / M_PI, std::acos(4.0 / 12) * 180 / M_PI},
              1e-9},
        Known{"face-centred cubic, entry 1 of the tables",
              {1, 1, 1, 90, 90, 90},
              'F',
              {cube, cube, cube, 60, 60, 60},
              1e-12},
        Known{"body-centred cubic, entry 5",
              {1, 1, 1, 90, 90, 90},
              'I',
              {std::sqrt(0.75), std::sqrt(0.75), std::sqrt(0.75), body, body, body},
              1e-12},
        Known{"primitive cubic, entry 3", {2, 2, 2, 90, 90, 90}, 'P', {2, 2, 2, 90, 90, 90}, 1e-12},
        Known{"primitive hexagonal, entry 12", {3, 3, 5, 90, 90, 120}, 'P', {3, 3, 5, 90, 90, 120}, 1e-12},
        Known{"the same, its axes in another order",
              {5, 3, 3, 120, 90, 90},
              'P',
              {3, 3, 5, 90, 90, 120},
              1e-12},
        Known{"the same, with 60 degrees", {3, 3, 5, 90, 90, 60}, 'P', {3, 3, 5, 90, 90, 120}, 1e-12},
        Known{"rhombohedral on hexagonal axes (calcite)",
              {4.9896, 4.9896, 17.061, 90, 90, 120},
              'R',
              {4.9896, 4.9896, 6.3753, 66.964, 66.964, 60.0},
              2e-3},
        Known{"orthorhombic in the order c, a, b", {7, 3, 5, 90, 90, 90}, 'P', {3, 5, 7, 90, 90, 90}, 1e-12},
        Known{"a long way from reduced: 1000 steps along one axis",
              {3, std::hypot(3000.0, 4.0), 5, 90, 90, std::atan2(4.0, 3000.0) * 180 / M_PI},
              'P',
              {3, 4, 5, 90, 90, 90},
              1e-6}));

TEST(ReducedCell, TakesTheCentringFromTheOperators) {
  const Cell cell = cell_with({5.64, 5.64, 5.64, 90, 90, 90},
                              operators({"x,y,z", "x,1/2+y,1/2+z", "1/2+x,y,1/2+z", "1/2+x,1/2+y,z"}));
  EXPECT_NEAR(ReducedCell(cell).volume(), 5.64 * 5.64 * 5.64 / 4, 1e-9);
}

TEST(ReducedCell, TakesRoundedThirdsForThirds) {
  const Cell cell =
      cell_with({4.99, 4.99, 17.06, 90, 90, 120},
                operators({"x,y,z", "0.6667+x,0.3333+y,0.3333+z", "0.3333+x,0.6667+y,0.6667+z"}));
  EXPECT_NEAR(ReducedCell(cell).volume(), cell.volume() / 3, 1e-9);
}

TEST(ReducedCell, OfACellWithoutOperatorsIsPrimitive) {
  EXPECT_NEAR(ReducedCell(cell_with({3, 4, 5, 90, 90, 90}, {})).volume(), 60.0, 1e-12);
  EXPECT_NEAR(ReducedCell(Cell(3, 4, 5, 90, 90, 90, {})).volume(), 60.0, 1e-12);
}

TEST(ReducedCell, NeedsEveryTranslationToBeAFractionOfTheAxes) {
  EXPECT_THROW(ReducedCell(cell_with({3, 4, 5, 90, 90, 90}, operators({"x,y,z", "0.137+x,y,z"}))),
               LatticeError);
}

TEST(ReducedCell, RefusesALetterThatNamesNoCentring) {
  EXPECT_THROW(ReducedCell(geometry({3, 4, 5, 90, 90, 90}), 'Q'), LatticeError);
}

TEST(ReducedCell, TellsItsAxesInThoseOfTheGivenCell) {
  const ReducedCell reduced(geometry({4, 5, 3, 90, 100, 90}), 'C');
  const CellGeometry given = geometry({4, 5, 3, 90, 100, 90});
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_NEAR(given.length(reduced.basis()[i]), reduced.parameters()[i], 1e-12);
}

TEST(CentringOf, NamesTheLetters) {
  EXPECT_EQ(centring_of({}), 'P');
  EXPECT_EQ(centring_of(operators({"x,y,z", "-x,-y,-z"})), 'P');
  EXPECT_EQ(centring_of(operators({"x,y,z", "x,1/2+y,1/2+z"})), 'A');
  EXPECT_EQ(centring_of(operators({"1/2+x,1/2+y,z", "x,y,z"})), 'C');
  EXPECT_EQ(centring_of(operators({"x,y,z", "1/2+x,1/2+y,1/2+z"})), 'I');
  EXPECT_EQ(centring_of(operators({"x,y,z", "2/3+x,1/3+y,1/3+z", "1/3+x,2/3+y,2/3+z"})), 'R');
  EXPECT_EQ(centring_of(operators({"x,y,z", "1/4+x,y,z", "1/2+x,y,z", "3/4+x,y,z"})), 0);
}

// The conditions of the International Tables (volume A, section 3.1.3), with a tolerance.
bool is_niggli(const Parameters& p) {
  const CellGeometry g = geometry(p);
  const double A = g.metric(0, 0), B = g.metric(1, 1), C = g.metric(2, 2);
  const double D = g.metric(1, 2), E = g.metric(0, 2), F = g.metric(0, 1);
  const double e = 2e-5 * A + 2e-12 * C;
  if (A > B + e || B > C + e) return false;
  const bool acute = D > -e && E > -e && F > -e;
  const bool obtuse = D < e && E < e && F < e;
  if (!acute && !obtuse) return false;
  if (2 * std::abs(D) > B + e || 2 * std::abs(E) > A + e || 2 * std::abs(F) > A + e) return false;
  return acute || 2 * (std::abs(D) + std::abs(E) + std::abs(F)) <= A + B + e;
}

TEST(ReducedCell, OfARandomCellIsANiggliCellOfTheSameLattice) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> length(1, 40), angle(30, 150);
  int reduced = 0;
  for (int i = 0; i < 20000; ++i) {
    const Parameters p = {length(random), length(random), length(random),
                          angle(random),  angle(random),  angle(random)};
    try {
      const CellGeometry given = geometry(p);
      const ReducedCell cell(given);
      ASSERT_TRUE(is_niggli(cell.parameters())) << testing::PrintToString(p);
      ASSERT_NEAR(cell.volume() / given.volume(), 1.0, 1e-9) << testing::PrintToString(p);
      expect_cell(ReducedCell(cell.geometry()).parameters(), cell.parameters(), 1e-7);
      ++reduced;
    } catch (const LatticeError&) {
      EXPECT_EQ(Cell(p[0], p[1], p[2], p[3], p[4], p[5], {}).volume() / (p[0] * p[1] * p[2]) < 2e-4, true);
    }
  }
  EXPECT_GT(reduced, 10000);
}

}  // namespace
