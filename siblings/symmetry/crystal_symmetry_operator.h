// A symmetry operator of a crystal: a rotation part and a translation, in fractional coordinates.
//
//   const CrystalSymmetryOperator screw("-x,1/2+y,1/2-z");
//   screw.apply({0.1, 0.2, 0.3});    // {-0.1, 0.7, 0.2}
//
// Bytes: the nine ints of the rotation, row by row, then the three doubles of the translation. Any values
// that an archive holds are taken and kept.
#pragma once

#include <symmetry/export.h>
#include <symmetry/fractional_coordinates.h>
#include <utilities/archive.h>
#include <utilities/fields.h>

#include <array>
#include <string>
#include <tuple>

class SYMMETRY_EXPORT CrystalSymmetryOperator {
 public:
  // The identity, "x,y,z".
  CrystalSymmetryOperator() = default;

  // Takes the coordinate triplet of the International Tables: three sums, separated by commas, of x, y, z
  // (either case, with an integer factor of up to two digits) and numbers (integers, fractions, decimals).
  // Blanks do not count. Throws std::invalid_argument naming the text, the offset and the reason.
  explicit CrystalSymmetryOperator(const std::string& xyz);

  // The triplet with the translation first: "-x,1/2+y,1/2-z". A translation that is a fraction of halves to
  // twenty-fourths to the last bit is written as that fraction, any other as the shortest decimal that reads
  // back.
  [[nodiscard]] std::string xyz() const;

  // Rotation first, then translation; the result is not moved into the cell.
  [[nodiscard]] FractionalCoordinates apply(const FractionalCoordinates& point) const;

  void write(Archive& archive) const;
  void read(Archive& archive);

  friend bool operator==(const CrystalSymmetryOperator&, const CrystalSymmetryOperator&) = default;

  // In archive order; the rotation row by row.
  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"rotation", &CrystalSymmetryOperator::rotation_},
                      ReadOnlyField{"translation", &CrystalSymmetryOperator::translation_}};
  }
  static constexpr bool archived_by_fields = true;

 private:
  std::array<int, 9> rotation_ = {1, 0, 0, 0, 1, 0, 0, 0, 1};
  std::array<double, 3> translation_ = {0.0, 0.0, 0.0};
};
