// Bond types, charges and missing hydrogen atoms of a molecule, from its elements and its shape.
//
//   const MoleculeTypes types = perceive_bond_types(molecule);
//   types.bonds[0];                    // BondType::aromatic
//
// Each atom of a main-group element has a number of pi bonds that its neighbours leave open; which
// neighbours share them is the matching of the greatest weight, in which bonds that are as short as double
// bonds count for more, and charges and open valences for less (Labute, J. Chem. Inf. Model. 45, 215, 2005).
// Planar rings with 4n + 2 electrons are then aromatic, and equal bonds to the oxygen atoms of one group
// delocalised. Where no hydrogen atom is known, the angles at an atom tell how many neighbours it has lost.
// A bond of a metal is unknown, and so are all bonds of an atom whose valences do not come out.
// Fails: nothing is thrown.
#pragma once

#include <chemistry/bond_type.h>
#include <lattice/cell_geometry.h>
#include <perception/export.h>

#include <array>
#include <string>
#include <vector>

struct MoleculeShape {
  std::vector<std::string> elements;
  std::vector<CartesianCoordinates> places;  // in ångström
  std::vector<std::array<std::size_t, 2>> bonds;
};

struct MoleculeTypes {
  std::vector<BondType> bonds;
  // 1, 2 or 3 of one Kekulé structure; 0 where the type is unknown.
  std::vector<int> orders;
  std::vector<int> charges;          // of the atoms, in elementary charges
  std::vector<int> hydrogen_counts;  // hydrogen atoms that the list does not hold
  // Whether every atom's valences come out and no bond is unknown.
  bool complete = true;
};

[[nodiscard]] PERCEPTION_EXPORT MoleculeTypes perceive_bond_types(const MoleculeShape& molecule);
