#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lattice/cell_geometry.h>
#include <lattice/lattice_error.h>

#include <cmath>
#include <limits>

namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

TEST(CellGeometry, HasTheVolumeOfTheFormula) {
  EXPECT_DOUBLE_EQ(CellGeometry(2, 3, 4, 90, 90, 90).volume(), 24.0);
  EXPECT_NEAR(CellGeometry(2, 2, 3, 90, 90, 120).volume(), 12.0 * std::sqrt(0.75), 1e-12);
  EXPECT_NEAR(CellGeometry(2, 2, 2, 60, 60, 60).volume(), 8.0 * std::sqrt(0.5), 1e-12);
}

TEST(CellGeometry, TakesAPointThereAndBack) {
  const CellGeometry geometry(5.1, 6.2, 7.3, 81, 102, 113);
  const FractionalCoordinates back = geometry.fractional(geometry.cartesian({0.1, -0.7, 1.3}));
  EXPECT_NEAR(back.x, 0.1, 1e-14);
  EXPECT_NEAR(back.y, -0.7, 1e-14);
  EXPECT_NEAR(back.z, 1.3, 1e-14);
}

TEST(CellGeometry, GivesEachAxisItsLengthAndEachPairItsAngle) {
  const CellGeometry geometry(5.1, 6.2, 7.3, 81, 102, 113);
  EXPECT_NEAR(geometry.length({1, 0, 0}), 5.1, 1e-13);
  EXPECT_NEAR(geometry.length({0, 1, 0}), 6.2, 1e-13);
  EXPECT_NEAR(geometry.length({0, 0, -1}), 7.3, 1e-13);
  EXPECT_NEAR(geometry.metric(0, 2), 5.1 * 7.3 * std::cos(102 * M_PI / 180), 1e-12);
}

TEST(CellGeometry, HasPlanesWhoseSpacingTimesAreaIsTheVolume) {
  const CellGeometry geometry(5.1, 6.2, 7.3, 81, 102, 113);
  EXPECT_NEAR(geometry.spacing(2) * 5.1 * 6.2 * std::sin(113 * M_PI / 180), geometry.volume(), 1e-10);
}

struct Refused {
  std::array<double, 6> cell;
  const char* words;
};

class RefusedCell : public testing::TestWithParam<Refused> {};

TEST_P(RefusedCell, IsRefusedByTheNumberThatIsWrong) {
  const auto& [p, words] = GetParam();
  EXPECT_THAT(([&p = p] { CellGeometry(p[0], p[1], p[2], p[3], p[4], p[5]); }),
              ThrowsMessage<LatticeError>(HasSubstr(words)));
}

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(CellGeometry, RefusedCell,
                         testing::Values(Refused{{0, 0, 0, 0, 0, 0}, "a = 0:"},               // not known
                                         Refused{{1, nan, 1, 90, 90, 90}, "b = nan:"},        //
                                         Refused{{1, 1, -3, 90, 90, 90}, "c = -3:"},          //
                                         Refused{{1, 1, infinity, 90, 90, 90}, "c = inf:"},   //
                                         Refused{{1, 1, 1, 180, 90, 90}, "alpha = 180:"},     //
                                         Refused{{1, 1, 1, 90, 0, 90}, "beta = 0:"},          //
                                         Refused{{1, 1, 1, 90, 90, nan}, "gamma = nan:"},     //
                                         Refused{{1, 1, 1, 120, 120, 120}, "close no cell"},  // flat
                                         Refused{{1, 1, 1, 30, 40, 90}, "close no cell"},     // impossible
                                         Refused{{1, 1, 1, 120, 120, 119.9999999}, "no volume"}
                                         // all but flat
                                         ));

}  // namespace
