// What is inside a symmetry operator: whole rotation, translation in twenty-fourths where it is one.
// Internal: callers want lattice/space_group.h.
#pragma once

#include <symmetry/crystal_symmetry_operator.h>

#include <array>
#include <cmath>
#include <optional>

struct OperatorParts {
  std::array<std::array<int, 3>, 3> rotation{};
  std::array<double, 3> translation{};

  [[nodiscard]] bool is_translation() const {
    for (std::size_t row = 0; row < 3; ++row)
      for (std::size_t column = 0; column < 3; ++column)
        if (rotation[row][column] != (row == column ? 1 : 0)) return false;
    return true;
  }
};

// An operator is affine, so that where it takes the origin and the ends of the axes says everything. None
// where a number is not finite, or is so large that the rotation cannot be told from it.
inline std::optional<OperatorParts> parts_of(const CrystalSymmetryOperator& op) {
  constexpr double most = 1e6;
  OperatorParts parts;
  const FractionalCoordinates origin = op.apply({0.0, 0.0, 0.0});
  parts.translation = {origin.x, origin.y, origin.z};
  for (const double value : parts.translation)
    if (!(std::abs(value) <= most)) return std::nullopt;
  const FractionalCoordinates ends[] = {op.apply({1.0, 0.0, 0.0}), op.apply({0.0, 1.0, 0.0}),
                                        op.apply({0.0, 0.0, 1.0})};
  for (std::size_t column = 0; column < 3; ++column) {
    const double image[] = {ends[column].x, ends[column].y, ends[column].z};
    for (std::size_t row = 0; row < 3; ++row) {
      const double element = image[row] - parts.translation[row];
      if (!(std::abs(element) <= most)) return std::nullopt;
      parts.rotation[row][column] = static_cast<int>(std::lround(element));
    }
  }
  return parts;
}

// Twenty-fourths hold every translation of the tables; a text like 0.3333 means the nearest within a
// thousandth of the axis.
inline constexpr int translation_denominator = 24;

// From 0 to 23; none where the number is no twenty-fourth.
inline std::optional<int> twenty_fourths(double translation) {
  const double scaled = (translation - std::floor(translation)) * translation_denominator;
  const double nearest = std::round(scaled);
  if (std::abs(scaled - nearest) > 1e-3 * translation_denominator) return std::nullopt;
  return static_cast<int>(nearest) % translation_denominator;
}
