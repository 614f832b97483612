// A bond of a chemical diagram.
#pragma once

#include <chemistry/bond_type.h>
#include <chemistry/diagram_atom.h>
#include <utilities/fields.h>
#include <utilities/t_handle.h>

#include <tuple>

struct DiagramBond {
  THandle<DiagramAtom> first;
  THandle<DiagramAtom> second;
  BondType type = BondType::unknown;

  // The same atoms in the same order, by identity, and the same type.
  friend bool operator==(const DiagramBond&, const DiagramBond&) = default;

  static constexpr auto fields() {
    return std::tuple{Field{"first", &DiagramBond::first}, Field{"second", &DiagramBond::second},
                      Field{"type", &DiagramBond::type}};
  }
};
