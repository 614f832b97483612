// An atom site of a crystal's asymmetric unit.
//
// Bytes: label and element as texts, then x, y, z and the occupancy as doubles.
#pragma once

#include <chemistry/export.h>
#include <symmetry/fractional_coordinates.h>
#include <utilities/archive.h>
#include <utilities/fields.h>

#include <string>
#include <tuple>

class CHEMISTRY_EXPORT Atom {
 public:
  std::string label;               // as published: "C1", "O1W"; need not be unique
  std::string element;             // the symbol without charge: "Fe"; empty when not known
  FractionalCoordinates position;  // in fractions of the cell axes
  double occupancy = 1.0;          // the fraction of cells in which the site is taken

  void write(Archive& archive) const;
  void read(Archive& archive);

  // Exactly; a NaN is equal to nothing.
  friend bool operator==(const Atom&, const Atom&) = default;

  // In archive order.
  static constexpr auto fields() {
    return std::tuple{Field{"label", &Atom::label}, Field{"element", &Atom::element},
                      Field{"position", &Atom::position}, Field{"occupancy", &Atom::occupancy}};
  }
  static constexpr bool archived_by_fields = true;
};
