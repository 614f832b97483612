// A bond of a chemical connectivity.
#pragma once

#include <chemistry/bond_type.h>
#include <chemistry/connectivity_atom.h>
#include <utilities/fields.h>
#include <utilities/t_handle.h>

#include <tuple>

struct ConnectivityBond {
  THandle<ConnectivityAtom> first;
  THandle<ConnectivityAtom> second;
  BondType type = BondType::unknown;

  // The same atoms in the same order, by identity, and the same type.
  friend bool operator==(const ConnectivityBond&, const ConnectivityBond&) = default;

  static constexpr auto fields() {
    return std::tuple{Field{"first", &ConnectivityBond::first}, Field{"second", &ConnectivityBond::second},
                      Field{"type", &ConnectivityBond::type}};
  }
};
