// The ways in which a valid stream is damaged, all of them, none sampled.
//
//   for_every_truncation(layout, [](const std::string& damaged, const Damage& damage) { ... });
#pragma once

#include <array>
#include <limits>
#include <numeric>
#include <ostream>

#include "support/layout.h"

// What was done, for the message of a test that fails.
struct Damage {
  const char* kind;
  std::size_t offset;
  std::int64_t value;
};

inline std::ostream& operator<<(std::ostream& os, const Damage& damage) {
  return os << damage.kind << " at offset " << damage.offset << ", value " << damage.value;
}

template <class Visit>
void for_every_truncation(const std::string& whole, const Visit& visit) {
  for (std::size_t size = 0; size < whole.size(); ++size) {
    visit(whole.substr(0, size), Damage{"truncation", size, 0});
  }
}

template <class Values, class Visit>
void for_every_byte(const std::string& whole, const Values& values, const Visit& visit) {
  std::string damaged = whole;
  for (std::size_t offset = 0; offset < whole.size(); ++offset) {
    for (const int value : values) {
      damaged[offset] = static_cast<char>(value);
      visit(damaged, Damage{"byte", offset, value});
    }
    damaged[offset] = whole[offset];
  }
}

// Every flip of a bit, and of any of its neighbours, is among them.
template <class Visit>
void for_every_byte_value(const std::string& whole, const Visit& visit) {
  std::array<int, 256> all{};
  std::iota(all.begin(), all.end(), 0);
  for_every_byte(whole, all, visit);
}

// The values that make counts zero, negative or huge.
template <class Visit>
void for_every_telling_byte(const std::string& whole, const Visit& visit) {
  for_every_byte(whole, std::array{0x00, 0x01, 0x7F, 0x80, 0xFF}, visit);
}

// Around zero, around the true value, around the limits of one byte and two, and the ends of the range.
inline std::array<std::int32_t, 12> boundary_values(std::int32_t true_value) {
  using limits = std::numeric_limits<std::int32_t>;
  return {limits::min(), limits::min() + 1, -2,           -1, 0, true_value - 1, true_value + 1, 256, 65'536,
          1 << 30,       limits::max() - 1, limits::max()};
}

// Where the places of the sizes are not known: at every offset.
template <class Visit>
void for_boundary_values_everywhere(const std::string& whole, const Visit& visit) {
  std::string damaged = whole;
  for (std::size_t offset = 0; offset + 4 <= whole.size(); ++offset) {
    for (const std::int32_t value : boundary_values(0)) {
      damaged.replace(offset, 4, int32(value));
      visit(damaged, Damage{"boundary value", offset, value});
    }
    damaged.replace(offset, 4, whole, offset, 4);
  }
}

template <class Visit>
void for_every_boundary_value(const Layout& layout, const Visit& visit) {
  std::string damaged = layout.bytes();
  for (const Place& place : layout.places()) {
    for (const std::int32_t value : boundary_values(place.value)) {
      damaged.replace(place.offset, 4, int32(value));
      visit(damaged, Damage{place.name.c_str(), place.offset, value});
    }
    damaged.replace(place.offset, 4, int32(place.value));
  }
}

// Each count and each length in turn replaced by `value`.
template <class Visit>
void for_every_size(const Layout& layout, std::int32_t value, const Visit& visit) {
  std::string damaged = layout.bytes();
  for (const Place& place : layout.places()) {
    if (!place.is_size) continue;
    damaged.replace(place.offset, 4, int32(value));
    visit(damaged, Damage{place.name.c_str(), place.offset, value});
    damaged.replace(place.offset, 4, int32(place.value));
  }
}
