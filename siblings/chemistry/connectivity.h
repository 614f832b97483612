// Which atoms of a compound are bonded to which.
//
// Bytes: the atom count, the atoms, the bond count, then for each bond the positions of its two atoms in the
// list, counted from 0, and its type, each as an int.
#pragma once

#include <chemistry/connectivity_bond.h>
#include <chemistry/export.h>
#include <utilities/fields.h>

#include <tuple>
#include <vector>

class CHEMISTRY_EXPORT Connectivity {
 public:
  std::vector<THandle<ConnectivityAtom>> atoms;
  std::vector<THandle<ConnectivityBond>> bonds;

  // In archive order; a bond is archived by the positions of its atoms.
  static constexpr auto fields() {
    return std::tuple{Field{"atoms", &Connectivity::atoms}, Field{"bonds", &Connectivity::bonds}};
  }

  // Throws NullHandleError for a null atom or bond, and std::invalid_argument for a bond to an atom that is
  // not in the list; what precedes it has been written.
  void write(Archive& archive) const;

  // Makes new atoms and bonds. Throws ArchiveError where the stream ends or a count is negative, and
  // std::invalid_argument for a bond to an atom that is not in the list; the atoms and bonds before it stay.
  void read(Archive& archive);

  // The atoms by value, the bonds by the positions of their atoms and by type, all in order. A null atom or
  // bond equals another null one; a bond to an atom that is not in the list equals none.
  friend CHEMISTRY_EXPORT bool operator==(const Connectivity& left, const Connectivity& right);
};
