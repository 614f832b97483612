#include <lattice/cell_geometry.h>
#include <lattice/lattice_error.h>
#include <lattice/number_text.h>

#include <cmath>
#include <numbers>

namespace {

constexpr double shortest_edge = 1e-3;
constexpr double longest_edge = 1e6;
constexpr double flattest = 1e-4;

// Exactly 0 for a right angle, so that what is orthogonal stays so.
double cosine(double degrees) {
  if (degrees == 90.0) return 0.0;
  if (degrees == 60.0) return 0.5;
  if (degrees == 120.0) return -0.5;
  return std::cos(degrees * std::numbers::pi / 180.0);
}

void check(const std::array<double, 6>& parameters) {
  constexpr const char* names[] = {"a", "b", "c", "alpha", "beta", "gamma"};
  for (std::size_t index = 0; index < 6; ++index) {
    const double value = parameters[index];
    const bool length = index < 3;
    const bool good = length ? value >= shortest_edge && value <= longest_edge : value > 0.0 && value < 180.0;
    if (!good) {
      throw LatticeError(std::string("No cell has ") + names[index] + " = " + number_text(value) +
                         (length ? ": a length is between 0.001 and 1,000,000 Å"
                                 : ": an angle is between 0 and 180 degrees, both excluded"));
    }
  }
}

}  // namespace

CellGeometry::CellGeometry(double a, double b, double c, double alpha, double beta, double gamma)
    : parameters_{a, b, c, alpha, beta, gamma} {
  check(parameters_);
  const double cos_alpha = cosine(alpha);
  const double cos_beta = cosine(beta);
  const double cos_gamma = cosine(gamma);
  metric_ = {{{a * a, a * b * cos_gamma, a * c * cos_beta},
              {a * b * cos_gamma, b * b, b * c * cos_alpha},
              {a * c * cos_beta, b * c * cos_alpha, c * c}}};
  const double squared = 1.0 - cos_alpha * cos_alpha - cos_beta * cos_beta - cos_gamma * cos_gamma +
                         2.0 * cos_alpha * cos_beta * cos_gamma;
  if (!(squared > flattest * flattest)) {
    throw LatticeError("The angles " + number_text(alpha) + ", " + number_text(beta) + ", " +
                       number_text(gamma) + " close no cell: they leave it no volume");
  }
  const double flatness = std::sqrt(squared);
  volume_ = a * b * c * flatness;
  const double sin_gamma = std::sqrt(1.0 - cos_gamma * cos_gamma);
  const double sheared = (cos_alpha - cos_beta * cos_gamma) / sin_gamma;
  axes_ = {{{a, b * cos_gamma, c * cos_beta},
            {0.0, b * sin_gamma, c * sheared},
            {0.0, 0.0, c * flatness / sin_gamma}}};
  const double sin_alpha = std::sqrt(1.0 - cos_alpha * cos_alpha);
  const double sin_beta = std::sqrt(1.0 - cos_beta * cos_beta);
  spacing_ = {a * flatness / sin_alpha, b * flatness / sin_beta, c * flatness / sin_gamma};
}

CellGeometry::CellGeometry(const Cell& cell)
    : CellGeometry(cell.a(), cell.b(), cell.c(), cell.alpha(), cell.beta(), cell.gamma()) {}

CartesianCoordinates CellGeometry::cartesian(const FractionalCoordinates& point) const {
  return {axes_[0][0] * point.x + axes_[0][1] * point.y + axes_[0][2] * point.z,
          axes_[1][1] * point.y + axes_[1][2] * point.z, axes_[2][2] * point.z};
}

FractionalCoordinates CellGeometry::fractional(const CartesianCoordinates& point) const {
  const double z = point.z / axes_[2][2];
  const double y = (point.y - axes_[1][2] * z) / axes_[1][1];
  const double x = (point.x - axes_[0][1] * y - axes_[0][2] * z) / axes_[0][0];
  return {x, y, z};
}

double CellGeometry::length(const FractionalCoordinates& difference) const {
  const CartesianCoordinates vector = cartesian(difference);
  return std::sqrt(vector.x * vector.x + vector.y * vector.y + vector.z * vector.z);
}
