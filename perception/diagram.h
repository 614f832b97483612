// A drawing of a molecule on paper, laid out by libcoordgen.
//
//   const ChemicalDiagram diagram = draw_diagram(molecule, perceive_bond_types(molecule));
//
// Hydrogen atoms with one heavier neighbour are not atoms of the diagram: chemists leave them out. Those of
// other elements than carbon are told by the atom's label, "H2" for the nitrogen atom of an amine. Molecules
// of a compound are drawn beside each other. Lengths are in units of the usual bond, y upwards.
// Fails: PerceptionError where the library gives no drawing in which all atoms have places of their own.
#pragma once

#include <chemistry/chemical_diagram.h>
#include <perception/bond_types.h>

#include <vector>

struct DrawnMolecule {
  ChemicalDiagram diagram;
  // For each atom of the diagram its atom of the molecule; for each bond its bond.
  std::vector<std::size_t> atoms;
  std::vector<std::size_t> bonds;
  // Pairs of atoms that are nearer than two fifths of a bond.
  std::size_t overlaps = 0;
};

[[nodiscard]] PERCEPTION_EXPORT DrawnMolecule draw_diagram(const MoleculeShape& molecule,
                                                           const MoleculeTypes& types);
