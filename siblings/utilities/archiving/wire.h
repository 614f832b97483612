// How scalars are encoded as bytes. Streams are not known here.
// Internal: callers want utilities/archive.h.
//
//   char bytes[wire_size<int> + wire_size<double>];
//   encode_all(bytes, 4, 0.5);
//   decode(bytes, number);
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace archiving {

// A scalar is archived as an unsigned integer of its width, least significant byte first. The name is for
// errors.
template <class T>
struct Wire;
template <>
struct Wire<bool> {
  using type = std::uint8_t;
  static constexpr const char* name = "a bool";
};
template <>
struct Wire<std::int32_t> {
  using type = std::uint32_t;
  static constexpr const char* name = "an int";
};
template <>
struct Wire<std::uint32_t> {
  using type = std::uint32_t;
  static constexpr const char* name = "an int";
};
template <>
struct Wire<double> {
  using type = std::uint64_t;
  static constexpr const char* name = "a double";
};

template <class T>
concept Enumeration = std::is_enum_v<T> && std::same_as<std::underlying_type_t<T>, std::int32_t>;

// An enumeration is archived as an int. Whether the value names a member is the record's to check.
template <Enumeration T>
struct Wire<T> : Wire<std::int32_t> {};

template <class T>
concept Scalar = requires {
  typename Wire<T>::type;
};

// An array of scalars is archived as they are, one after the other, and is copied whole where it can be.
template <class T>
struct Elements {
  using type = T;
  static constexpr std::size_t count = 1;
};
template <class T, std::size_t size>
struct Elements<std::array<T, size>> {
  using type = T;
  static constexpr std::size_t count = size;
};

template <class T>
concept ScalarOrArray = Scalar<typename Elements<T>::type>;

template <class T>
inline constexpr std::size_t wire_size = Elements<T>::count *
                                         sizeof(typename Wire<typename Elements<T>::type>::type);

template <class Unsigned>
constexpr Unsigned little_endian(Unsigned value) {
  if constexpr (std::endian::native == std::endian::little) {
    return value;
  } else {
    Unsigned swapped = 0;
    for (unsigned byte = 0; byte < sizeof value; ++byte) {
      swapped = static_cast<Unsigned>(swapped << 8 | (value >> (8 * byte) & 0xFF));
    }
    return swapped;
  }
}

template <ScalarOrArray T>
void decode(const char* bytes, T& value) {
  using Element = typename Elements<T>::type;
  if constexpr (!Scalar<T>) {
    if constexpr (std::endian::native == std::endian::little && !std::same_as<Element, bool>) {
      static_assert(sizeof(T) == wire_size<T>);
      std::memcpy(value.data(), bytes, sizeof(T));
    } else {
      for (Element& element : value) decode(std::exchange(bytes, bytes + wire_size<Element>), element);
    }
  } else {
    typename Wire<T>::type wire;
    std::memcpy(&wire, bytes, sizeof wire);
    wire = little_endian(wire);
    if constexpr (std::same_as<T, bool>) {
      value = wire != 0;
    } else if constexpr (std::is_enum_v<T>) {
      value = static_cast<T>(std::bit_cast<std::int32_t>(wire));
    } else {
      value = std::bit_cast<T>(wire);
    }
  }
}

template <ScalarOrArray T>
void encode(char* bytes, const T& value) {
  using Element = typename Elements<T>::type;
  if constexpr (!Scalar<T>) {
    if constexpr (std::endian::native == std::endian::little && !std::same_as<Element, bool>) {
      std::memcpy(bytes, value.data(), sizeof(T));
    } else {
      for (const Element& element : value) encode(std::exchange(bytes, bytes + wire_size<Element>), element);
    }
  } else {
    using Unsigned = typename Wire<T>::type;
    Unsigned wire;
    if constexpr (std::same_as<T, bool>) {
      wire = value ? 1 : 0;
    } else if constexpr (std::is_enum_v<T>) {
      wire = static_cast<Unsigned>(value);
    } else {
      wire = std::bit_cast<Unsigned>(value);
    }
    wire = little_endian(wire);
    std::memcpy(bytes, &wire, sizeof wire);
  }
}

// Encodes the values one after the other. Gives the position after the last.
template <ScalarOrArray... T>
char* encode_all(char* to, const T&... values) {
  (encode(std::exchange(to, to + wire_size<T>), values), ...);
  return to;
}

// Decodes the value at `bytes` and steps over it if all of it is there.
template <ScalarOrArray T>
bool decode_whole(const char*& bytes, const char* end, T& value) {
  if constexpr (!Scalar<T>) {
    return std::all_of(value.begin(), value.end(),
                       [&](auto& element) { return decode_whole(bytes, end, element); });
  } else {
    if (static_cast<std::size_t>(end - bytes) < wire_size<T>) return false;
    decode(std::exchange(bytes, bytes + wire_size<T>), value);
    return true;
  }
}

// One scalar of a run, for the error that names the first one that could not be read or written.
struct Item {
  std::size_t size;
  const char* name;
};

// Scalars that follow one another.
struct Run {
  const Item* items;
  std::size_t count;
};

// The scalars T... as they follow one another on the stream.
template <class... T>
struct Items {
  static constexpr auto items = [] {
    std::array<Item, (Elements<T>::count + ...)> all{};
    Item* next = all.data();
    ((next =
          std::fill_n(next, Elements<T>::count,
                      Item{wire_size<typename Elements<T>::type>, Wire<typename Elements<T>::type>::name})),
     ...);
    return all;
  }();
  static constexpr Run run = {items.data(), items.size()};
  static constexpr std::size_t size = (wire_size<T> + ...);
};

}  // namespace archiving
