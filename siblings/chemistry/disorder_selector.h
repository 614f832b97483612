// Which of the alternative groups of a disordered part of the structure is shown.
#pragma once

#include <chemistry/atom.h>
#include <utilities/fields.h>
#include <utilities/t_handle.h>

#include <string>
#include <tuple>
#include <vector>

struct DisorderSelector {
  std::string assembly;              // the disordered part: "A"
  std::string group;                 // the alternative chosen: "1"
  std::vector<THandle<Atom>> atoms;  // the atoms of that alternative

  static constexpr auto fields() {
    return std::tuple{Field{"assembly", &DisorderSelector::assembly},
                      Field{"group", &DisorderSelector::group}, Field{"atoms", &DisorderSelector::atoms}};
  }
};
