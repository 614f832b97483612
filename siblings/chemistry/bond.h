// A bond between two atoms of a crystal.
#pragma once

#include <chemistry/atom.h>
#include <chemistry/bond_type.h>
#include <utilities/t_handle.h>

struct Bond {
  THandle<Atom> first;
  THandle<Atom> second;
  BondType type = BondType::unknown;

  // The same atoms in the same order, by identity, and the same type.
  friend bool operator==(const Bond&, const Bond&) = default;
};
