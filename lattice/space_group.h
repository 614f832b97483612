// The space group of a list of symmetry operators.
//
//   const SpaceGroup group(*cell.symmetry_operators());
//   group.number();             // 136
//   group.hermann_mauguin();    // "P 42/m n m"
//
// The list holds every operator of the cell, centring translations included, in any order and with any whole
// translations added. It is looked up among the settings of gemmi's table; what is not there is brought to
// one of them by a change of axes (whole numbers from -1 to 1) and of origin (in twenty-fourths of the
// axes), so that symbol and centring are then those of another setting, and is_tabulated() is false.
// Fails: nothing is thrown. A list that is no group, or no group of a crystal, or that is not found, gives a
// group that is not known, and says why.
#pragma once

#include <lattice/export.h>
#include <symmetry/crystal_symmetry_operator.h>

#include <string>
#include <utility>
#include <vector>

class LATTICE_EXPORT SpaceGroup {
 public:
  explicit SpaceGroup(const std::vector<CrystalSymmetryOperator>& operators);

  [[nodiscard]] bool is_known() const { return number_ != 0; }
  // Empty where the group is known.
  [[nodiscard]] const std::string& reason() const& { return reason_; }
  [[nodiscard]] std::string reason() && { return std::move(reason_); }

  // 1 to 230 of the International Tables; 0 where it is not known.
  [[nodiscard]] int number() const { return number_; }
  // The full symbol, "P 1 21/c 1", and the Hall symbol of the same setting, "-P 2ybc"; empty where it is not
  // known. The origin and the axes are told after a colon where a group has two: "F d -3 m:2", "R -3 m:H".
  [[nodiscard]] const std::string& hermann_mauguin() const& { return hermann_mauguin_; }
  [[nodiscard]] std::string hermann_mauguin() && { return std::move(hermann_mauguin_); }
  [[nodiscard]] const std::string& hall() const& { return hall_; }
  [[nodiscard]] std::string hall() && { return std::move(hall_); }
  // P, A, B, C, I, F, R or H of the operators as they are; 0 where they have none of these.
  [[nodiscard]] char centring() const { return centring_; }
  // "cubic", "hexagonal", "trigonal", "tetragonal", "orthorhombic", "monoclinic", "triclinic", or empty.
  [[nodiscard]] const std::string& crystal_system() const& { return crystal_system_; }
  [[nodiscard]] std::string crystal_system() && { return std::move(crystal_system_); }
  // Whether the operators are those of the named setting themselves.
  [[nodiscard]] bool is_tabulated() const { return is_tabulated_; }

 private:
  int number_ = 0;
  char centring_ = 0;
  bool is_tabulated_ = false;
  std::string hermann_mauguin_;
  std::string hall_;
  std::string crystal_system_;
  std::string reason_;
};
