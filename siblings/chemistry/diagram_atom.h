// An atom of a chemical diagram, where it is drawn.
#pragma once

#include <utilities/fields.h>

#include <string>
#include <tuple>

struct DiagramAtom {
  std::string element;  // the symbol: "C"
  std::string label;    // what is drawn beside it; mostly empty
  int charge = 0;       // in elementary charges
  double x = 0.0;       // to the right, in units of the usual bond length
  double y = 0.0;       // upwards

  friend bool operator==(const DiagramAtom&, const DiagramAtom&) = default;

  static constexpr auto fields() {
    return std::tuple{Field{"element", &DiagramAtom::element}, Field{"label", &DiagramAtom::label},
                      Field{"charge", &DiagramAtom::charge}, Field{"x", &DiagramAtom::x},
                      Field{"y", &DiagramAtom::y}};
  }
};
