// The operators of a space group by its symbol, for tests: "C 1 2/c 1", "R -3 m:H", "F d -3 m:2".
#pragma once

#include <gemmi/symmetry.hpp>
#include <stdexcept>
#include <string>
#include <vector>

inline std::vector<std::string> triplets_of_group(const std::string& symbol) {
  const gemmi::SpaceGroup* const group = gemmi::find_spacegroup_by_name(symbol);
  if (group == nullptr) throw std::invalid_argument("no space group is called " + symbol);
  std::vector<std::string> triplets;
  for (const gemmi::Op& op : group->operations()) triplets.push_back(op.triplet());
  return triplets;
}
