#include <gtest/gtest.h>
#include <lattice/lattice_error.h>
#include <lattice/lattice_search.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {

using Parameters = std::array<double, 6>;
using Matrix = std::array<std::array<int, 3>, 3>;

CellGeometry geometry(const Parameters& p) {
  return {p[0], p[1], p[2], p[3], p[4], p[5]};
}

// The cell whose axes are whole combinations of those of another one.
CellGeometry in_setting(const CellGeometry& cell, const Matrix& axes) {
  const auto dot = [&](std::size_t i, std::size_t j) {
    double total = 0;
    for (std::size_t k = 0; k < 3; ++k)
      for (std::size_t l = 0; l < 3; ++l) total += axes[i][k] * axes[j][l] * cell.metric(k, l);
    return total;
  };
  const auto angle = [&](std::size_t i, std::size_t j) {
    return std::acos(dot(i, j) / std::sqrt(dot(i, i) * dot(j, j))) * 180 / M_PI;
  };
  return {std::sqrt(dot(0, 0)), std::sqrt(dot(1, 1)), std::sqrt(dot(2, 2)),
          angle(1, 2),          angle(0, 2),          angle(0, 1)};
}

int determinant(const Matrix& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

class Random {
 public:
  int whole(int least, int most) { return std::uniform_int_distribution<int>(least, most)(engine_); }
  double between(double least, double most) {
    return std::uniform_real_distribution<double>(least, most)(engine_);
  }
  Matrix setting(int most) {
    for (;;) {
      Matrix matrix{};
      for (auto& row : matrix)
        for (int& element : row) element = whole(-most, most);
      if (std::abs(determinant(matrix)) == 1) return matrix;
    }
  }
  Parameters cell() {
    return {between(3, 12),   between(3, 12),   between(3, 12),
            between(65, 115), between(65, 115), between(65, 115)};
  }

 private:
  std::mt19937 engine_{7};
};

// The plain way: all bases with steps up to three.
// The tolerance is a part of the asked length, or, with `of_lattice`, of the lattice's own.
bool finds_by_trying(const CellGeometry& asked, const ReducedCell& lattice, double percent,
                     bool of_lattice = false) {
  std::vector<std::array<int, 3>> vectors;
  for (int i = -3; i <= 3; ++i)
    for (int j = -3; j <= 3; ++j)
      for (int k = -3; k <= 3; ++k) vectors.push_back({i, j, k});
  const auto fits = [&](const std::array<int, 3>& v, std::size_t axis) {
    const double length = lattice.geometry().length({double(v[0]), double(v[1]), double(v[2])});
    return std::abs(length - asked.parameters()[axis]) <=
           percent / 100 * (of_lattice ? length : asked.parameters()[axis]);
  };
  for (const auto& u : vectors) {
    if (!fits(u, 0)) continue;
    for (const auto& v : vectors) {
      if (!fits(v, 1)) continue;
      for (const auto& w : vectors) {
        if (!fits(w, 2) || std::abs(determinant({u, v, w})) != 1) continue;
        const CellGeometry basis = in_setting(lattice.geometry(), {u, v, w});
        bool angles = true;
        for (std::size_t i = 3; i < 6; ++i)
          angles = angles && std::abs(basis.parameters()[i] - asked.parameters()[i]) <= 0.9 * percent;
        if (angles) return true;
      }
    }
  }
  return false;
}

TEST(LatticeSearch, FindsTheSameCell) {
  const Parameters rutile = {4.594, 4.594, 2.959, 90, 90, 90};
  EXPECT_TRUE(LatticeSearch(geometry(rutile), 0).finds(ReducedCell(geometry(rutile))));
}

TEST(LatticeSearch, TakesWhatIsAtTheLimitAndNothingBeyond) {
  const LatticeSearch search(geometry({10, 11, 12, 90, 90, 90}), 1);
  EXPECT_TRUE(search.finds(ReducedCell(geometry({10.1, 11, 12, 90, 90, 90}))));
  EXPECT_FALSE(search.finds(ReducedCell(geometry({10.101, 11, 12, 90, 90, 90}))));
  EXPECT_TRUE(search.finds(ReducedCell(geometry({9.9, 11, 12, 90, 90, 90}))));
  EXPECT_FALSE(search.finds(ReducedCell(geometry({9.899, 11, 12, 90, 90, 90}))));
  EXPECT_TRUE(search.finds(ReducedCell(geometry({10, 11, 12, 90, 90.9, 90}))));
  EXPECT_FALSE(search.finds(ReducedCell(geometry({10, 11, 12, 90, 90.91, 90}))));
}

TEST(LatticeSearch, FindsACentredSettingOfThePrimitiveLattice) {
  const ReducedCell halite(geometry({5.64, 5.64, 5.64, 90, 90, 90}), 'F');
  EXPECT_TRUE(LatticeSearch(geometry({5.64, 5.64, 5.64, 90, 90, 90}), 1, 'F').finds(halite));
  EXPECT_TRUE(LatticeSearch(geometry({3.988, 3.988, 5.64, 90, 90, 90}), 1, 'I').finds(halite));
  EXPECT_TRUE(LatticeSearch(geometry({3.988, 3.988, 3.988, 60, 60, 60}), 1).finds(halite));
  EXPECT_FALSE(LatticeSearch(geometry({5.64, 5.64, 5.64, 90, 90, 90}), 1).finds(halite));
}

TEST(LatticeSearch, FindsALatticeOnTheOtherSideOfAJumpOfTheReducedCell) {
  // Nearly hexagonal: the reduced angle is above 90 degrees for one, below for the other.
  const LatticeSearch search(geometry({5, 5.01, 9, 90, 90, 119.9}), 0.5);
  EXPECT_TRUE(search.finds(ReducedCell(geometry({5, 5.01, 9, 90, 90, 120.1}))));
}

TEST(LatticeSearch, AgreesWithTryingAllBases) {
  Random random;
  int found = 0;
  for (int i = 0; i < 400; ++i) {
    const CellGeometry cell = ReducedCell(geometry(random.cell())).geometry();
    Parameters changed = cell.parameters();
    for (std::size_t j = 0; j < 6; ++j)
      changed[j] += random.between(-0.012, 0.012) * (j < 3 ? changed[j] : 90);
    const ReducedCell lattice(geometry(changed));
    const CellGeometry asked = in_setting(cell, random.setting(1));
    const ReducedCell reduced(asked);
    const bool expected = finds_by_trying(asked, lattice, 1.0) ||
                          finds_by_trying(reduced.geometry(), lattice, 1.0) ||
                          finds_by_trying(lattice.geometry(), reduced, 1.0, true);
    EXPECT_EQ(LatticeSearch(asked, 1.0).finds(lattice), expected);
    found += expected;
  }
  EXPECT_GT(found, 50);
  EXPECT_LT(found, 350);
}

TEST(LatticeSearch, FindsNothingOutsideItsBounds) {
  Random random;
  for (int i = 0; i < 3000; ++i) {
    const CellGeometry asked = in_setting(geometry(random.cell()), random.setting(1));
    const double percent = random.between(0, 8);
    Parameters changed = asked.parameters();
    for (std::size_t j = 0; j < 6; ++j)
      changed[j] += random.whole(-1, 1) * percent / 100 * (j < 3 ? changed[j] : 90);
    try {
      const ReducedCell lattice(geometry(changed));
      const LatticeBounds bounds = LatticeSearch(asked, percent).bounds();
      EXPECT_GE(lattice.volume(), bounds.least_volume);
      EXPECT_LE(lattice.volume(), bounds.most_volume);
      for (std::size_t j = 0; j < 3; ++j) {
        EXPECT_GE(lattice.parameters()[j], bounds.least_lengths[j]);
        EXPECT_LE(lattice.parameters()[j], bounds.most_lengths[j]);
      }
      EXPECT_TRUE(LatticeSearch(asked, percent).finds(lattice));
    } catch (const LatticeError&) {
      continue;  // the changed angles close no cell
    }
  }
}

TEST(LatticeSearch, BoundsAreNarrowForAReducedCell) {
  const LatticeBounds bounds = LatticeSearch(geometry({5, 6, 7, 90, 90, 90}), 1).bounds();
  EXPECT_GT(bounds.least_volume, 210 * 0.88);
  EXPECT_LT(bounds.most_volume, 210 * 1.15);
  EXPECT_GT(bounds.least_lengths[0], 5 * 0.88);
  EXPECT_LT(bounds.most_lengths[2], 7 * 1.15);
}

TEST(LatticeSearch, ComparesTheReducedCellOfAnAbsurdSetting) {
  const CellGeometry cell = geometry({5, 6, 7, 90, 90, 90});
  const CellGeometry absurd = in_setting(cell, {{{1, 0, 0}, {900, 1, 0}, {0, 0, 1}}});
  EXPECT_TRUE(LatticeSearch(absurd, 1).finds(ReducedCell(cell)));
}

TEST(LatticeSearch, RefusesAToleranceThatIsNone) {
  for (const double percent : {-1.0, 31.0, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_THROW(LatticeSearch(geometry({5, 6, 7, 90, 90, 90}), percent), LatticeError);
}

// Found by the fuzzers of both query languages: each took minutes.
TEST(LatticeSearch, TakesNoTimeForALatticeOfQuiteAnotherVolume) {
  const ReducedCell rutile(CellGeometry(4.594, 4.594, 2.959, 90, 90, 90));
  EXPECT_FALSE(LatticeSearch(CellGeometry(0.6, 0.357, 4, 15, 90, 90), 15.0, 'F').finds(rutile));
  EXPECT_FALSE(LatticeSearch(CellGeometry(0.5, 2.6, 2.9, 90, 90, 1), 9.0).finds(rutile));
}

}  // namespace
