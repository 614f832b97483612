// The two-dimensional drawing of a compound.
#pragma once

#include <chemistry/diagram_bond.h>
#include <chemistry/export.h>
#include <utilities/fields.h>

#include <iosfwd>
#include <tuple>
#include <vector>

class CHEMISTRY_EXPORT ChemicalDiagram {
 public:
  std::vector<THandle<DiagramAtom>> atoms;
  std::vector<THandle<DiagramBond>> bonds;

  // "diagram atoms: 6, diagram bonds: 6" and a line end.
  void print(std::ostream& os) const;

  static constexpr auto fields() {
    return std::tuple{Field{"atoms", &ChemicalDiagram::atoms}, Field{"bonds", &ChemicalDiagram::bonds}};
  }
};
