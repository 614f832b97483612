// Whether a lattice is the one that is asked for, in whatever setting either of them is given.
//
//   const LatticeSearch search(CellGeometry(4.59, 4.59, 2.96, 90, 90, 90), 1.5);
//   search.finds(ReducedCell(*entry.crystal_maker()->cell()));
//
// A lattice is found within P percent when some basis of it agrees with the asked cell in each length within
// P percent, and in each angle within P percent of 90 degrees; or when it does so with the reduced cell of
// the asked lattice, or some basis of the asked lattice with the reduced cell of the found one. All bases
// are looked at, none of their settings is preferred. The reduced cells are there because a small change of
// a lattice is a large one in an oblique basis: without them a cell that was changed by a third of the
// tolerance is not found again in each of its settings. Of an asked cell that is so oblique that a sphere of
// its longest edge holds more than 200,000 lattice points, the reduced cell alone is compared. A store first
// asks its index for what is within bounds(), then this class for what is found: nothing that is found is
// outside.
// Fails: LatticeError as CellGeometry and ReducedCell do, and for a tolerance that is not from 0 to 30
// percent.
#pragma once

#include <lattice/reduced_cell.h>

#include <array>

// What holds of the reduced cell of every lattice that a search finds. Both limits may be taken.
struct LatticeBounds {
  double least_volume = 0.0;
  double most_volume = 0.0;
  std::array<double, 3> least_lengths{};  // a, b, c of the reduced cell
  std::array<double, 3> most_lengths{};
};

class LatticeSearch {
 public:
  // The centring of the asked cell: P for a cell that is a basis itself.
  LATTICE_EXPORT LatticeSearch(const CellGeometry& asked, double percent, char centring = 'P');

  [[nodiscard]] LATTICE_EXPORT bool finds(const ReducedCell& lattice) const;
  [[nodiscard]] const LatticeBounds& bounds() const& { return bounds_; }
  [[nodiscard]] LatticeBounds bounds() && { return bounds_; }

  // The basis that is compared with first: the asked cell where it is primitive, else its reduced cell.
  [[nodiscard]] const CellGeometry& compared() const& { return compared_; }
  [[nodiscard]] CellGeometry compared() && { return compared_; }

 private:
  CellGeometry compared_;
  ReducedCell reduced_;      // of the asked lattice
  double length_tolerance_;  // a fraction
  double angle_tolerance_;   // degrees
  LatticeBounds bounds_;
};
