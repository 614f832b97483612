#include <lattice/lattice_error.h>
#include <lattice/lattice_search.h>
#include <lattice/number_text.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

constexpr double radians = std::numbers::pi / 180.0;
constexpr double most_points = 200000.0;

// What is at the limit is within, whatever the last digits say.
constexpr double rounding = 1e-9;

struct Limits {
  double lower = 0.0;
  double upper = 0.0;
};

Limits product(const Limits& left, const Limits& right) {
  const auto [lower, upper] = std::minmax({left.lower * right.lower, left.lower * right.upper,
                                           left.upper * right.lower, left.upper * right.upper});
  return {lower, upper};
}

Limits square(const Limits& values) {
  const double lower = values.lower * values.lower;
  const double upper = values.upper * values.upper;
  const bool spans_zero = values.lower <= 0.0 && values.upper >= 0.0;
  return {spans_zero ? 0.0 : std::min(lower, upper), std::max(lower, upper)};
}

Limits cosine_limits(double degrees, double tolerance) {
  const double least = std::max(degrees - tolerance, 0.0);
  const double most = std::min(degrees + tolerance, 180.0);
  return {std::cos(most * radians) - rounding, std::cos(least * radians) + rounding};
}

double squared_flatness(double u, double v, double w) {
  return 1.0 - u * u - v * v - w * w + 2.0 * u * v * w;
}

// Of V / abc over all angles within the limits. As a function of one cosine the square is a parabola that
// opens downwards, so that the least value is at a corner. It is also (1 - u²)(1 - v²) - (w - uv)², which
// gives the most.
Limits flatness_limits(const std::array<Limits, 3>& cosines) {
  double least = 1.0;
  for (const double u : {cosines[0].lower, cosines[0].upper})
    for (const double v : {cosines[1].lower, cosines[1].upper})
      for (const double w : {cosines[2].lower, cosines[2].upper})
        least = std::min(least, squared_flatness(u, v, w));
  const Limits u2 = square(cosines[0]);
  const Limits v2 = square(cosines[1]);
  const Limits uv = product(cosines[0], cosines[1]);
  const Limits rest = square({cosines[2].lower - uv.upper, cosines[2].upper - uv.lower});
  const double most = std::max(1.0 - u2.lower, 0.0) * std::max(1.0 - v2.lower, 0.0) - rest.lower;
  return {std::sqrt(std::max(least, 0.0)), std::sqrt(std::clamp(most, 0.0, 1.0))};
}

// Eigenvalues of a symmetric matrix of three rows with a diagonal of ones (Smith, Comm. ACM 4, 168, 1961):
// the smallest and the largest.
Limits eigenvalues(double u, double v, double w) {
  const double p = std::sqrt((u * u + v * v + w * w) / 3.0);
  if (p == 0.0) return {1.0, 1.0};
  const double phi = std::acos(std::clamp(u * v * w / (p * p * p), -1.0, 1.0)) / 3.0;
  return {1.0 + 2.0 * p * std::cos(phi + 2.0 * std::numbers::pi / 3.0), 1.0 + 2.0 * p * std::cos(phi)};
}

// A found lattice has a basis with lengths s_i t_i, where t are the compared lengths and 1-p <= s <= 1+p, and
// cosines that differ from the compared ones by at most d. With C and C' the two matrices of cosines and y_i
// = t_i x_i, a vector of whole coordinates x has the squared length y'Cy in the compared lattice and y'SC'Sy
// in the found one.
//   SC'S - C = (SCS - C) + S(C'-C)S, whose norms are at most (2p + p²)|C| and (1+p)²|d| (Frobenius), so that
//   |y'SC'Sy - y'Cy| <= e y'Cy with e = ((2p + p²)|C| + (1+p)²|d|) / (the smallest eigenvalue of C).
// All vectors are longer or shorter by at most sqrt(1 +- e); so are the successive minima of the lattice, and
// these are the lengths of the reduced cell. The upper limit is also that of the found basis: the i-th
// minimum is at most its i-th length, sorted.
LatticeBounds bounds_of(const CellGeometry& compared, double p, double angle_tolerance) {
  const auto& [a, b, c, alpha, beta, gamma] = compared.parameters();
  const std::array<double, 3> angles = {alpha, beta, gamma};
  std::array<Limits, 3> cosines;
  std::array<double, 3> exact{};
  double squared_difference = 0.0;
  for (std::size_t i = 0; i < 3; ++i) {
    cosines[i] = cosine_limits(angles[i], angle_tolerance);
    exact[i] = std::cos(angles[i] * radians);
    const double difference = std::max(cosines[i].upper - exact[i], exact[i] - cosines[i].lower);
    squared_difference += 2.0 * difference * difference;
  }
  const Limits flatness = flatness_limits(cosines);
  const double edges = a * b * c;
  LatticeBounds bounds;
  bounds.least_volume = edges * std::pow(1.0 - p, 3) * flatness.lower * (1.0 - rounding);
  bounds.most_volume = edges * std::pow(1.0 + p, 3) * flatness.upper * (1.0 + rounding);

  const Limits eigen = eigenvalues(exact[0], exact[1], exact[2]);
  const double growth = 2.0 * p + p * p;
  const double change =
      eigen.lower > 1e-9
          ? (growth * eigen.upper + (1.0 + growth) * std::sqrt(squared_difference)) / eigen.lower
          : std::numeric_limits<double>::infinity();
  // The conditions of a reduced cell hold to 1e-5 of its shortest edge's square.
  constexpr double reduction = 1e-4;
  const double least = std::sqrt(std::max(1.0 - change, 0.0)) * (1.0 - reduction);
  const double most = std::sqrt(1.0 + change) * (1.0 + reduction);
  const ReducedCell reduced(compared);
  std::array<double, 3> sorted = {a, b, c};
  std::sort(sorted.begin(), sorted.end());
  for (std::size_t i = 0; i < 3; ++i) {
    const double length = reduced.parameters()[i];
    bounds.least_lengths[i] = length * least;
    bounds.most_lengths[i] = std::min(length * most, sorted[i] * (1.0 + p) * (1.0 + reduction));
  }
  return bounds;
}

// How many points of the lattice a sphere of that radius holds, about.
double points_within(double radius, double volume) {
  return 4.0 / 3.0 * std::numbers::pi * radius * radius * radius / volume;
}

CellGeometry checked(const CellGeometry& asked, double percent, char centring) {
  if (!(percent >= 0.0 && percent <= 30.0))
    throw LatticeError("The tolerance of a cell is from 0 to 30 percent, not " + number_text(percent));
  const ReducedCell reduced(asked, centring);
  const auto& [a, b, c, alpha, beta, gamma] = asked.parameters();
  const double longest = std::max({a, b, c}) * (1.0 + percent / 100.0);
  if (centring != 'P' || points_within(longest, asked.volume()) > most_points) return reduced.geometry();
  return asked;
}

struct LatticeVector {
  std::array<int, 3> steps;
  CartesianCoordinates end;
  double length;
};

double dot(const CartesianCoordinates& left, const CartesianCoordinates& right) {
  return left.x * right.x + left.y * right.y + left.z * right.z;
}

// Every lattice vector whose length is within the limits. A step along an axis adds the spacing of its planes
// to the distance, which bounds the number of steps.
std::vector<LatticeVector> vectors_within(const CellGeometry& cell, const Limits& lengths) {
  std::vector<LatticeVector> found;
  std::array<int, 3> most{};
  for (std::size_t axis = 0; axis < 3; ++axis)
    most[axis] = static_cast<int>(std::min(std::floor(lengths.upper / cell.spacing(axis) + rounding), 1e6));
  for (int i = -most[0]; i <= most[0]; ++i) {
    for (int j = -most[1]; j <= most[1]; ++j) {
      // Along the third axis the squared length is a parabola: only its two branches within the limits are
      // walked.
      const CartesianCoordinates foot = cell.cartesian({double(i), double(j), 0.0});
      const CartesianCoordinates axis = cell.cartesian({0.0, 0.0, 1.0});
      const double square = dot(axis, axis);
      const double lowest = -dot(foot, axis) / square;
      const double rest = dot(foot, foot) - lowest * lowest * square;
      const double reach = (lengths.upper * lengths.upper - rest) / square;
      if (reach < -rounding) continue;
      const double outer = std::sqrt(std::max(reach, 0.0)) + 1e-6;
      const double inner = std::sqrt(std::max((lengths.lower * lengths.lower - rest) / square, 0.0)) - 1e-6;
      const auto last = static_cast<int>(std::floor(lowest + outer));
      for (int k = static_cast<int>(std::ceil(lowest - outer)); k <= last; ++k) {
        if (std::abs(k - lowest) < inner) {
          k = std::max(k, static_cast<int>(std::ceil(lowest + inner)) - 1);
          continue;
        }
        const CartesianCoordinates end = {foot.x + k * axis.x, foot.y + k * axis.y, foot.z + k * axis.z};
        const double length = std::sqrt(dot(end, end));
        if (length >= lengths.lower && length <= lengths.upper && length > 0.0)
          found.push_back({{i, j, k}, end, length});
      }
    }
  }
  return found;
}

long long determinant(const LatticeVector& u, const LatticeVector& v, const LatticeVector& w) {
  const auto minor = [&](std::size_t i, std::size_t j) {
    return static_cast<long long>(v.steps[i]) * w.steps[j] - static_cast<long long>(v.steps[j]) * w.steps[i];
  };
  return u.steps[0] * minor(1, 2) + u.steps[1] * minor(2, 0) + u.steps[2] * minor(0, 1);
}

}  // namespace

LatticeSearch::LatticeSearch(const CellGeometry& asked, double percent, char centring)
    : compared_(checked(asked, percent, centring)),
      length_tolerance_(percent / 100.0),
      angle_tolerance_(0.9 * percent),
      bounds_(bounds_of(compared_, length_tolerance_, angle_tolerance_)) {}

bool LatticeSearch::finds(const ReducedCell& lattice) const {
  if (lattice.volume() < bounds_.least_volume || lattice.volume() > bounds_.most_volume) return false;
  const std::array<double, 6>& reduced = lattice.parameters();
  for (std::size_t i = 0; i < 3; ++i)
    if (reduced[i] < bounds_.least_lengths[i] || reduced[i] > bounds_.most_lengths[i]) return false;

  const std::array<double, 6>& wanted = compared_.parameters();
  std::array<std::vector<LatticeVector>, 3> candidates;
  for (std::size_t i = 0; i < 3; ++i) {
    candidates[i] =
        vectors_within(lattice.geometry(), {wanted[i] * (1.0 - length_tolerance_) * (1.0 - rounding),
                                            wanted[i] * (1.0 + length_tolerance_) * (1.0 + rounding)});
    if (candidates[i].empty()) return false;
  }
  // Of a basis and its negative one is enough.
  std::array<Limits, 3> cosines;
  for (std::size_t i = 0; i < 3; ++i) cosines[i] = cosine_limits(wanted[i + 3], angle_tolerance_);
  const auto agree = [&](const LatticeVector& u, const LatticeVector& v, std::size_t angle) {
    const double cosine = dot(u.end, v.end) / (u.length * v.length);
    return cosine >= cosines[angle].lower && cosine <= cosines[angle].upper;
  };
  for (const LatticeVector& u : candidates[0]) {
    if (u.steps < std::array<int, 3>{}) continue;
    for (const LatticeVector& v : candidates[1]) {
      if (!agree(u, v, 2)) continue;
      for (const LatticeVector& w : candidates[2])
        if (agree(u, w, 1) && agree(v, w, 0) && std::abs(determinant(u, v, w)) == 1) return true;
    }
  }
  return false;
}
