// The atoms of an entry as XYZ, for programs that know neither cells nor symmetry.
//
//   file << entry_xyz(entry);                     // the atoms as they are stored
//   file << entry_xyz(entry, XyzAtoms::cell);     // all atoms of the cell, by its operators
//
// First the number of atoms, then a comment line, then an atom a line: its element and its Cartesian
// coordinates in ångström with six decimals, along the axes of lattice/cell_geometry.h. The comment is that
// of extended XYZ: Lattice="..." (the three axes of the cell, one after the other), Properties, pbc and the
// identifier. An entry without atoms and without a cell has no Lattice. An atom without an element is X.
// All alternatives of a disorder are written; occupancies and labels are not.
// Throws std::invalid_argument, which names the entry, for an atom whose position is not finite and for atoms
// without a cell (what is fractional has no place in space then), and where packing fails
// (lattice/packed_crystal.h).
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>
#include <exchange/export.h>

#include <string>

enum class XyzAtoms { asymmetric_unit, cell };

[[nodiscard]] EXCHANGE_EXPORT std::string entry_xyz(const CrystalStructureDatabaseEntry& entry,
                                                    XyzAtoms which = XyzAtoms::asymmetric_unit);
