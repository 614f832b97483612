// The groups of bonded atoms in a crystal: finite molecules completed by symmetry, chains, layers and
// frameworks.
//
//   const CrystalBonds crystal = perceive_bonds(maker);
//   for (const Molecule& molecule : molecules(maker, crystal))
//     if (molecule.dimension == 0) std::cout << molecule.formula << '\n';
//
// Fails: nothing is thrown.
// Time and memory are in proportion to atoms and bonds.
#pragma once

#include <perception/bonds.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

struct MoleculeAtom {
  std::size_t atom = 0;  // in CrystalBonds::packed.atoms()
  std::array<int, 3> translation{};
  CartesianCoordinates place;  // of the atom after the translation
};

struct MoleculeBond {
  std::size_t first = 0;  // in Molecule::atoms
  std::size_t second = 0;
  std::array<int, 3> translation{};  // of the second atom; 0 in a finite molecule
};

struct Molecule {
  // 0 for a finite group of atoms, 1 for a chain, 2 for a layer, 3 for a framework: the rank of the
  // translations that lead from the group to itself.
  int dimension = 0;
  // In one piece: each atom next to one that it is bonded to, the first site's first. Of what is not finite,
  // those of one repeat.
  std::vector<MoleculeAtom> atoms;
  std::vector<MoleculeBond> bonds;
  // Hill order, counted with occupancies: "C6 H12 O6", "H2 O"; of what is not finite, that of one repeat.
  std::string formula;
  // The sites of the atoms, sorted; molecules with the same ones are images of one another by symmetry.
  std::vector<std::size_t> sites;
};

// Of one cell, in the order of their first atoms. `hidden` names sites that are left out with their bonds, by
// position in CrystalMaker::atoms(); it may be empty.
[[nodiscard]] PERCEPTION_EXPORT std::vector<Molecule> molecules(const CrystalMaker& crystal,
                                                                const CrystalBonds& bonds,
                                                                const std::vector<bool>& hidden = {});

// Those that no symmetry operator makes from an earlier one, with how many of each a cell holds.
struct MoleculeCount {
  std::size_t molecule = 0;  // in the list
  std::size_t in_cell = 0;
};
[[nodiscard]] PERCEPTION_EXPORT std::vector<MoleculeCount> independent_molecules(
    const std::vector<Molecule>& list);

// The formula of a composition in the order of Hill (J. Am. Chem. Soc. 22, 478, 1900): C, H, then the
// alphabet; without C the alphabet alone. Counts are shown with up to two decimals, 1 is left out.
[[nodiscard]] PERCEPTION_EXPORT std::string hill_formula(
    const std::vector<std::pair<std::string, double>>& counts);

// The counts that a formula says, in any order, with blanks or without: "C2 H6 O", "(Mg0.9 Fe0.1)2 Si O4",
// "2(C H4),H2 O". Brackets with a factor before or after them are multiplied; charges ("2+", "-") are left
// out. Empty where it is no formula.
[[nodiscard]] PERCEPTION_EXPORT std::vector<std::pair<std::string, double>> formula_counts(
    const std::string& formula);
