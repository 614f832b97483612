// Which atom and bond of one graph are which of another.
//
//   GraphMatch<THandle<Atom>, THandle<Bond>, THandle<DiagramAtom>, THandle<DiagramBond>> match;
//   match.atoms.emplace_back(crystal_atom, diagram_atom);
#pragma once

#include <utilities/fields.h>

#include <tuple>
#include <utility>
#include <vector>

template <class A1, class B1, class A2, class B2>
struct GraphMatch {
  std::vector<std::pair<A1, A2>> atoms;
  std::vector<std::pair<B1, B2>> bonds;

  static constexpr auto fields() {
    return std::tuple{Field{"atoms", &GraphMatch::atoms}, Field{"bonds", &GraphMatch::bonds}};
  }
};
