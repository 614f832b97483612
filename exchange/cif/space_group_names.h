// Space groups by the names that people write.
// Internal: callers want exchange/cif_reader.h.
//
//   find_space_group("P2(1)/c", cell)   // P 1 21/c 1
//   find_space_group("Fd3m", cell)      // F d -3 m, of two origins the first
#pragma once

#include <chemistry/cell.h>
#include <symmetry/crystal_symmetry_operator.h>

#include <string>
#include <vector>

struct NamedSpaceGroup {
  std::vector<CrystalSymmetryOperator> operators;  // empty where there is none of that name
  std::string name;                                // with its setting: "F d -3 m:1"
  int number = 0;
  bool fits_cell = true;           // the cell has the shape that its system asks for
  bool origin_is_a_guess = false;  // the group has two origins and the name does not tell which
};

// A Hermann-Mauguin name: full or short, with or without blanks, screw axes as "21", "2_1", "2(1)", "2~1~" or
// "2<sub>1</sub>", cubic groups with or without the minus of -3, with ":1", ":R", " H", " Z", "{...}" for the
// setting, in letters of either case. Of several settings the one that the angles fit is taken.
[[nodiscard]] NamedSpaceGroup find_space_group(const std::string& name, const Cell& cell);

// The number in the International Tables, 1 to 230.
[[nodiscard]] NamedSpaceGroup find_space_group(int number, const Cell& cell);

// A Hall name as the tables have it, blanks or '_' between its parts.
[[nodiscard]] NamedSpaceGroup find_space_group_by_hall(const std::string& name);
