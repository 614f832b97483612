// The bytes of the chemistry classes, put together by hand.
#pragma once

#include "support/bytes.h"

inline std::string stored_cell_numbers(double a) {
  return bytes(float64(a), float64(11.0), float64(12.0), float64(90.0), float64(95.5), float64(90.0));
}

// The operator "-x,1/2+y,-z".
inline std::string stored_screw_axis() {
  return bytes(int32(-1), int32(0), int32(0), int32(0), int32(1), int32(0), int32(0), int32(0), int32(-1),
               float64(0.0), float64(0.5), float64(0.0));
}

inline std::string stored_cell() {
  return bytes(stored_cell_numbers(10.0), int32(1), stored_screw_axis());
}

inline std::string stored_carbon() {
  return bytes(text("C1"), text("C"), float64(0.25), float64(0.5), float64(0.75), float64(0.5));
}

// The first `length` bytes, for every length short of the whole.
template <class Try>
void for_every_truncation(const std::string& whole, const Try& try_it) {
  for (std::size_t length = 0; length < whole.size(); ++length) try_it(whole.substr(0, length));
}

// Every byte in turn replaced by values that make counts negative, huge or zero.
template <class Try>
void for_every_damage(const std::string& whole, const Try& try_it) {
  for (std::size_t place = 0; place < whole.size(); ++place) {
    for (const char value : {'\0', '\1', '\x7F', '\x80', '\xFF'}) {
      std::string damaged = whole;
      damaged[place] = value;
      try_it(damaged);
    }
  }
}
