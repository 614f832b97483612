// The numbers that follow from the six parameters of a cell: where a point is in space, how far it is.
//
//   const CellGeometry geometry(5.64, 5.64, 5.64, 90, 90, 90);
//   geometry.length({0.5, 0.5, 0.0});           // 3.988...
//
// Units: ångström and degrees. The Cartesian axes are those of the Protein Data Bank: X along a, Y in the
// plane of a and b, Z along c* (International Tables for Crystallography, volume B, section 1.1).
// Fails: LatticeError for lengths that are not between 0.001 and 1,000,000 Å, angles that are not between 0
// and 180 degrees, and angles that close no cell or next to none (a volume below a ten-thousandth of abc).
#pragma once

#include <chemistry/cell.h>
#include <lattice/export.h>
#include <symmetry/fractional_coordinates.h>

#include <array>

// A place or a direction in space, in ångström.
struct CartesianCoordinates {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  friend bool operator==(const CartesianCoordinates&, const CartesianCoordinates&) = default;
};

class LATTICE_EXPORT CellGeometry {
 public:
  CellGeometry(double a, double b, double c, double alpha, double beta, double gamma);
  explicit CellGeometry(const Cell& cell);

  // a, b, c, alpha, beta, gamma.
  [[nodiscard]] const std::array<double, 6>& parameters() const& { return parameters_; }
  [[nodiscard]] std::array<double, 6> parameters() && { return parameters_; }
  [[nodiscard]] double volume() const { return volume_; }

  // The scalar product of axes i and j, both 0 to 2.
  [[nodiscard]] double metric(std::size_t i, std::size_t j) const { return metric_[i][j]; }
  // The distance between neighbouring lattice planes across axis 0, 1 or 2: 1/a*, 1/b* or 1/c*.
  [[nodiscard]] double spacing(std::size_t axis) const { return spacing_[axis]; }

  [[nodiscard]] CartesianCoordinates cartesian(const FractionalCoordinates& point) const;
  [[nodiscard]] FractionalCoordinates fractional(const CartesianCoordinates& point) const;
  // Of a difference of two points, as it is: no shorter image is looked for.
  [[nodiscard]] double length(const FractionalCoordinates& difference) const;

 private:
  std::array<double, 6> parameters_;
  std::array<std::array<double, 3>, 3> metric_;
  // The axes in space are its columns; everything below the diagonal is 0.
  std::array<std::array<double, 3>, 3> axes_;
  std::array<double, 3> spacing_;
  double volume_;
};
