// All atoms of a crystal's cell: every operator on every atom of the asymmetric unit.
//
//   const PackedCrystal packed(*entry.crystal_maker());
//   for (const PackedAtom& atom : packed.atoms()) { ... }      // sites in order, the images of each together
//   packed.multiplicity(0);                                    // atoms of the first site in a cell
//
// Images of one site that are closer than merge_within are one atom on a special position, the image of the
// first operator among them. Images of two sites are one atom, that of the first site, only where both are
// of the same element and would together be taken more than always: a file may list an atom twice.
// Alternatives of a disorder share a place.
// Units: merge_within is in ångström.
// Fails: LatticeError as CellGeometry does; for a merge_within that is not from 0 to 1; for a position or an
// operator that is not finite, or coordinates beyond a million, naming the atom; for a range without cells,
// and for more than 20 million atoms.
// Time and memory are in proportion to the atoms that come out, times the operators.
#pragma once

#include <chemistry/crystal_maker.h>
#include <lattice/cell_geometry.h>

#include <array>
#include <utility>
#include <vector>

// position = operator(site's position) + translation. Without a range, every coordinate is from 0 to below 1.
struct PackedAtom {
  std::size_t site = 0;  // in CrystalMaker::atoms()
  std::size_t op = 0;  // in Cell::symmetry_operators(); 0 where that list is empty, which means the identity
  std::array<int, 3> translation{};
  FractionalCoordinates position;
};

struct PackingOptions {
  double merge_within = 0.01;
  // The cells that are filled along each axis, both included.
  std::array<int, 3> first_cell = {0, 0, 0};
  std::array<int, 3> last_cell = {0, 0, 0};
};

class LATTICE_EXPORT PackedCrystal {
 public:
  explicit PackedCrystal(const CrystalMaker& crystal, const PackingOptions& options = {});

  // Cell after cell, the last axis the fastest; in each the sites in order, their images in the order of
  // operators.
  [[nodiscard]] const std::vector<PackedAtom>& atoms() const& { return atoms_; }
  [[nodiscard]] std::vector<PackedAtom> atoms() && { return std::move(atoms_); }
  // Atoms of the site in one cell; 0 where it repeats an earlier site.
  [[nodiscard]] std::size_t multiplicity(std::size_t site) const { return multiplicities_.at(site); }
  [[nodiscard]] const CellGeometry& geometry() const& { return geometry_; }
  [[nodiscard]] CellGeometry geometry() && { return geometry_; }

 private:
  CellGeometry geometry_;
  std::vector<PackedAtom> atoms_;
  std::vector<std::size_t> multiplicities_;
};
