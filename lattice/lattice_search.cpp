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

// No length or volume is as large.
constexpr double unbounded = 1e30;

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

// By how much the vectors of a lattice may be shorter and longer than those of another one, whose basis has
// the matrix of cosines C with eigenvalues from l to m, when lengths change by the share p at most and the
// cosines by d (Frobenius). With y_i = t_i x_i, a vector of whole coordinates x has the squared length y'Cy,
// and y'SC'Sy after the change.
//   |Sy - y| <= p k |y| in the norm of C, with k = sqrt(m / l), and |z'C'z - z'Cz| <= d z'z <= d / l z'Cz, so
//   that its length changes by a factor from (1 - p k) sqrt(1 - d / l) to (1 + p k) sqrt(1 + d / l).
// So do the successive minima of the lattice, and these are the lengths of the reduced cell.
Limits stretch(const Limits& eigen, double p, double difference) {
  if (eigen.lower < 1e-9) return {0.0, unbounded};
  const double k = std::sqrt(eigen.upper / eigen.lower);
  const double share = difference / eigen.lower;
  return {std::max(1.0 - p * k, 0.0) * std::sqrt(std::max(1.0 - share, 0.0)),
          (1.0 + p * k) * std::sqrt(1.0 + share)};
}

// The conditions of a reduced cell hold to 1e-5 of its shortest edge's square.
constexpr double reduction = 1e-4;

// Of lattices that have a basis like the compared one.
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
  const Limits factor = stretch(eigenvalues(exact[0], exact[1], exact[2]), p, std::sqrt(squared_difference));
  const ReducedCell reduced(compared);
  std::array<double, 3> sorted = {a, b, c};
  std::sort(sorted.begin(), sorted.end());
  for (std::size_t i = 0; i < 3; ++i) {
    const double length = reduced.parameters()[i];
    bounds.least_lengths[i] = length * factor.lower * (1.0 - reduction);
    // The i-th minimum is at most the i-th length of the found basis, sorted.
    bounds.most_lengths[i] = std::min(length * factor.upper, sorted[i] * (1.0 + p)) * (1.0 + reduction);
  }
  return bounds;
}

// Of lattices with whose reduced cell some basis of the asked lattice agrees. A reduced cell has a volume of
// at least abc / sqrt(2). So the eigenvalues of its cosines have the product 1/2 at least and the sum 3: the
// smallest, s, is above 0.26, as s (3 - s)² / 4 >= 1/2, and the largest below 2.48. Its angles are from 60 to
// 120 degrees.
// The share is one of the asked lengths, so that of the found ones it is up to p / (1 - p).
LatticeBounds bounds_around(const ReducedCell& asked, double share, double angle_tolerance) {
  const double p = share / (1.0 - share);
  const double angle = angle_tolerance * radians;
  // A cosine changes by no more than its angle does.
  const Limits factor = stretch({0.26, 2.48}, p, std::sqrt(6.0) * angle);
  // The slope of the squared flatness along one angle is 2 sin(u) (cos(u) - cos(v) cos(w)).
  const double cosine = std::min(0.5 + angle, 1.0) + 1e-4;
  const double flatter = 3.0 * angle * 2.0 * (cosine + cosine * cosine) / 0.4999;
  const double least_volume = std::pow(1.0 - p, 3) * std::sqrt(std::max(1.0 - flatter, 0.0));
  const double most_volume = std::pow(1.0 + p, 3) * std::sqrt(1.0 + flatter);
  LatticeBounds bounds;
  bounds.least_volume = asked.volume() / most_volume * (1.0 - rounding);
  bounds.most_volume = least_volume > 0.0 ? asked.volume() / least_volume * (1.0 + rounding) : unbounded;
  for (std::size_t i = 0; i < 3; ++i) {
    bounds.least_lengths[i] = asked.parameters()[i] / factor.upper * (1.0 - reduction);
    bounds.most_lengths[i] =
        factor.lower > 0.0 ? asked.parameters()[i] / factor.lower * (1.0 + reduction) : unbounded;
  }
  return bounds;
}

LatticeBounds both(const LatticeBounds& left, const LatticeBounds& right) {
  LatticeBounds bounds;
  bounds.least_volume = std::min(left.least_volume, right.least_volume);
  bounds.most_volume = std::max(left.most_volume, right.most_volume);
  for (std::size_t i = 0; i < 3; ++i) {
    bounds.least_lengths[i] = std::min(left.least_lengths[i], right.least_lengths[i]);
    bounds.most_lengths[i] = std::max(left.most_lengths[i], right.most_lengths[i]);
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

// Whether some basis of the lattice agrees with the wanted cell. The lattice's vectors are looked for in its
// reduced cell. A length of it is from `lower` to `upper` times the wanted one.
bool has_basis_like(const CellGeometry& lattice, const CellGeometry& wanted_cell, const Limits& lengths,
                    double angle_tolerance) {
  const std::array<double, 6>& wanted = wanted_cell.parameters();
  std::array<Limits, 3> cosines;
  for (std::size_t i = 0; i < 3; ++i) cosines[i] = cosine_limits(wanted[i + 3], angle_tolerance);
  // Every basis has the volume of the lattice. One of a quite other volume has vectors by the thousand.
  const Limits flatness = flatness_limits(cosines);
  const double edges = wanted[0] * wanted[1] * wanted[2];
  constexpr double slack = 1e-6;
  if (lattice.volume() < edges * std::pow(lengths.lower, 3) * flatness.lower * (1.0 - slack)) return false;
  if (lattice.volume() > edges * std::pow(lengths.upper, 3) * flatness.upper * (1.0 + slack)) return false;
  std::array<std::vector<LatticeVector>, 3> candidates;
  for (std::size_t i = 0; i < 3; ++i) {
    candidates[i] = vectors_within(lattice, {wanted[i] * lengths.lower * (1.0 - rounding),
                                             wanted[i] * lengths.upper * (1.0 + rounding)});
    if (candidates[i].empty()) return false;
  }
  const auto agree = [&](const LatticeVector& u, const LatticeVector& v, std::size_t angle) {
    const double cosine = dot(u.end, v.end) / (u.length * v.length);
    return cosine >= cosines[angle].lower && cosine <= cosines[angle].upper;
  };
  for (const LatticeVector& u : candidates[0]) {
    // Of a basis and its negative one is enough.
    if (u.steps < std::array<int, 3>{}) continue;
    for (const LatticeVector& v : candidates[1]) {
      if (!agree(u, v, 2)) continue;
      for (const LatticeVector& w : candidates[2])
        if (agree(u, w, 1) && agree(v, w, 0) && std::abs(determinant(u, v, w)) == 1) return true;
    }
  }
  return false;
}

}  // namespace

LatticeSearch::LatticeSearch(const CellGeometry& asked, double percent, char centring)
    : compared_(checked(asked, percent, centring)),
      reduced_(asked, centring),
      length_tolerance_(percent / 100.0),
      angle_tolerance_(0.9 * percent),
      bounds_(both(both(bounds_of(compared_, length_tolerance_, angle_tolerance_),
                        bounds_of(reduced_.geometry(), length_tolerance_, angle_tolerance_)),
                   bounds_around(reduced_, length_tolerance_, angle_tolerance_))) {}

bool LatticeSearch::finds(const ReducedCell& lattice) const {
  if (lattice.volume() < bounds_.least_volume || lattice.volume() > bounds_.most_volume) return false;
  const std::array<double, 6>& reduced = lattice.parameters();
  for (std::size_t i = 0; i < 3; ++i)
    if (reduced[i] < bounds_.least_lengths[i] || reduced[i] > bounds_.most_lengths[i]) return false;
  const double p = length_tolerance_;
  // The share is always one of the asked length.
  const Limits of_asked = {1.0 - p, 1.0 + p};
  const Limits of_found = {1.0 / (1.0 + p), 1.0 / (1.0 - p)};
  return has_basis_like(lattice.geometry(), reduced_.geometry(), of_asked, angle_tolerance_) ||
         has_basis_like(reduced_.geometry(), lattice.geometry(), of_found, angle_tolerance_) ||
         has_basis_like(lattice.geometry(), compared_, of_asked, angle_tolerance_);
}
