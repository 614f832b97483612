// What joins two atoms, in crystals, diagrams and connectivities alike.
#pragma once

#include <cstdint>

enum class BondType : std::int32_t {
  unknown = 0,
  single_bond = 1,
  double_bond = 2,
  triple_bond = 3,
  quadruple_bond = 4,
  aromatic = 5,
  delocalised = 6,
  pi = 7,
};
