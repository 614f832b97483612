// An atom of a chemical connectivity: no place in space, only what it is and what it is bonded to.
//
// Bytes: element and label as texts, then charge and hydrogen count as ints.
#pragma once

#include <chemistry/export.h>
#include <utilities/archive.h>
#include <utilities/fields.h>

#include <string>
#include <tuple>

class CHEMISTRY_EXPORT ConnectivityAtom {
 public:
  std::string element;     // the symbol: "C"
  std::string label;       // of the crystal's atom where there is one
  int charge = 0;          // in elementary charges
  int hydrogen_count = 0;  // hydrogen atoms that are not atoms of the connectivity themselves

  void write(Archive& archive) const;
  void read(Archive& archive);

  friend bool operator==(const ConnectivityAtom&, const ConnectivityAtom&) = default;

  // In archive order.
  static constexpr auto fields() {
    return std::tuple{Field{"element", &ConnectivityAtom::element}, Field{"label", &ConnectivityAtom::label},
                      Field{"charge", &ConnectivityAtom::charge},
                      Field{"hydrogen_count", &ConnectivityAtom::hydrogen_count}};
  }
  static constexpr bool archived_by_fields = true;
};
