// Which atoms of a crystal are bonded to which, by their distances.
//
//   const CrystalBonds crystal = perceive_bonds(*entry.crystal_maker());
//   for (const CrystalBond& bond : crystal.bonds) { ... crystal.packed.atoms()[bond.first] ... }
//
// Two atoms are bonded where their distance is at most the sum of their covalent radii (Cordero and others,
// Dalton Trans. 2832, 2008) and the tolerance, and at least half of that sum: what is nearer is two places
// of one disordered atom. A hydrogen atom has one bond, or two of about the same length. Bonds cross the
// faces of the cell, and an atom may be bonded to an image of itself. Atoms of different alternatives of a
// disorder are never bonded, nor is an atom whose element is not known.
// Units: ångström.
// Fails: LatticeError as PackedCrystal does; PerceptionError where atoms are so crowded (more than 1,000
// within the reach of one on average) that they are no crystal's.
// Time and memory are in proportion to the atoms of the cell.
#pragma once

#include <chemistry/disorder_selector.h>
#include <lattice/packed_crystal.h>
#include <perception/export.h>

#include <array>
#include <string>
#include <vector>

// The second atom is that of PackedCrystal::atoms() moved by whole cells.
struct CrystalBond {
  std::size_t first = 0;
  std::size_t second = 0;
  std::array<int, 3> translation{};
  double length = 0.0;
};

struct CrystalBonds {
  PackedCrystal packed;  // one cell
  // Each once: first <= second, and of a bond to an image of the same atom the one whose translation is
  // positive. In order of first, second and translation.
  std::vector<CrystalBond> bonds;
};

struct BondOptions {
  double tolerance = 0.4;
  // The alternatives of the crystal's disorder, by the handles of its atoms. Where there are none, sites that
  // are taken less than always and overlap are taken for alternatives.
  std::vector<THandle<DisorderSelector>> alternatives = {};
};

[[nodiscard]] PERCEPTION_EXPORT CrystalBonds perceive_bonds(const CrystalMaker& crystal,
                                                            const BondOptions& options = {});

// All pairs of atoms of the cell, as above but without any judgement of what is a bond, whose distance is
// less than the sum of their two reaches; `reaches` has one for each atom, and one of 0.0 or less has no
// neighbours. An atom that has itself for a neighbour at no distance is left out. Throws PerceptionError for
// crowded atoms.
[[nodiscard]] PERCEPTION_EXPORT std::vector<CrystalBond> neighbours(const PackedCrystal& packed,
                                                                    const std::vector<double>& reaches);

// The covalent radius that is used, 0.0 where the symbol is no element's.
[[nodiscard]] PERCEPTION_EXPORT double bonding_radius(const std::string& element);
