// A bond between two atoms of a crystal.
#pragma once

#include <chemistry/atom.h>
#include <chemistry/bond_type.h>
#include <utilities/fields.h>
#include <utilities/t_handle.h>

#include <tuple>

struct Bond {
  THandle<Atom> first;
  THandle<Atom> second;
  BondType type = BondType::unknown;

  // The same atoms in the same order, by identity, and the same type.
  friend bool operator==(const Bond&, const Bond&) = default;

  static constexpr auto fields() {
    return std::tuple{Field{"first", &Bond::first}, Field{"second", &Bond::second},
                      Field{"type", &Bond::type}};
  }
};
