// The Niggli cell of a lattice: the one primitive cell that every setting of the lattice leads to.
//
//   const ReducedCell reduced(*entry.crystal_maker()->cell());
//   reduced.parameters();             // a <= b <= c, then the angles
//
// The reduction is that of Krivy and Gruber (Acta Cryst. A32, 297, 1976) with a tolerance, after
// Grosse-Kunstleve, Sauter and Adams (Acta Cryst. A60, 1, 2004): scalar products that differ by less than
// 1e-5 of the square of the shortest edge are equal, so that a <= b <= c and the other conditions hold to
// about that. Near such an equality the reduced cell jumps; to compare lattices, use LatticeSearch.
// Units: ångström and degrees.
// Fails: LatticeError as CellGeometry does, for a translation that is no multiple of 1/24, for an operator
// that is not finite, and for an unknown centring letter. The number of steps is bounded.
#pragma once

#include <lattice/cell_geometry.h>

#include <array>
#include <vector>

class LATTICE_EXPORT ReducedCell {
 public:
  // Three lattice vectors, each in fractions of the axes of the cell that was given.
  using Basis = std::array<FractionalCoordinates, 3>;

  // The lattice that the cell's axes and the pure translations among its operators generate; with none of
  // these, or no operators, the cell is primitive.
  explicit ReducedCell(const Cell& cell);

  // The centring is P, A, B, C, I, F, R (obverse, on hexagonal axes) or H.
  explicit ReducedCell(const CellGeometry& cell, char centring = 'P');

  // a, b, c, alpha, beta, gamma.
  [[nodiscard]] const std::array<double, 6>& parameters() const& { return geometry_.parameters(); }
  [[nodiscard]] std::array<double, 6> parameters() && { return geometry_.parameters(); }
  [[nodiscard]] double volume() const { return geometry_.volume(); }
  [[nodiscard]] const CellGeometry& geometry() const& { return geometry_; }
  [[nodiscard]] CellGeometry geometry() && { return geometry_; }

  // The axes of the reduced cell in those of the given one.
  [[nodiscard]] const Basis& basis() const& { return basis_; }
  [[nodiscard]] Basis basis() && { return basis_; }

 private:
  ReducedCell(const CellGeometry& cell, const Basis& primitive);

  Basis basis_;
  CellGeometry geometry_;
};

// The centring of a list of operators: P, A, B, C, I, F, R (obverse), H, or 0 where the pure translations are
// a lattice without a letter. An empty list is P. Throws LatticeError for a translation that is no multiple
// of 1/24.
[[nodiscard]] LATTICE_EXPORT char centring_of(const std::vector<CrystalSymmetryOperator>& operators);
