// Lists of symmetry operators for the tests of lattices and crystals.
#pragma once

#include <chemistry/cell.h>

#include <array>
#include <string>
#include <vector>

inline std::vector<CrystalSymmetryOperator> operators(const std::vector<std::string>& triplets) {
  std::vector<CrystalSymmetryOperator> list;
  for (const std::string& triplet : triplets) list.emplace_back(triplet);
  return list;
}

inline Cell cell_with(const std::array<double, 6>& p, const std::vector<CrystalSymmetryOperator>& list) {
  return {p[0],
          p[1],
          p[2],
          p[3],
          p[4],
          p[5],
          THandle<std::vector<CrystalSymmetryOperator>>(new std::vector<CrystalSymmetryOperator>(list))};
}

inline const std::vector<CrystalSymmetryOperator> rutile_operators =
    operators({"x,y,z", "-x,-y,z", "1/2-y,1/2+x,1/2+z", "1/2+y,1/2-x,1/2+z", "1/2-x,1/2+y,1/2-z",
               "1/2+x,1/2-y,1/2-z", "y,x,-z", "-y,-x,-z", "-x,-y,-z", "x,y,-z", "1/2+y,1/2-x,1/2-z",
               "1/2-y,1/2+x,1/2-z", "1/2+x,1/2-y,1/2+z", "1/2-x,1/2+y,1/2+z", "-y,-x,z", "y,x,z"});
