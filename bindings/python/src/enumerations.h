// Enumerations of C++ as enum.IntEnum, made from their own names and texts.
// Internal: for the sources of the module.
//
// The names of the members are what the compiler calls the values; the texts are those of the record's table,
// or of the function that gives them. A value that is no member, which an archive may hold, is a plain int.
#pragma once

#include <database_entry/foundations/enum_text_mapping.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "python.h"

struct EnumerationMember {
  std::string name;
  std::int32_t value = 0;
  std::string text;  // as the library writes it; the name where it has no text
};

namespace enumerations {

constexpr std::int32_t first_value = -4;
constexpr std::int32_t value_count = 24;

// "ExperimentalInfo::x_ray" for a member, "(ExperimentalInfo::RadiationProbe)9" for any other value.
template <auto value>
constexpr std::string_view spelled() {
  constexpr std::string_view function = __PRETTY_FUNCTION__;
  constexpr std::size_t start = function.find("value = ") + 8;
  return function.substr(start, function.find_first_of(";]", start) - start);
}

template <class E>
constexpr std::string_view spelled_type() {
  constexpr std::string_view function = __PRETTY_FUNCTION__;
  constexpr std::size_t start = function.find("E = ") + 4;
  return function.substr(start, function.find_first_of(";]", start) - start);
}

constexpr std::string_view last_name(std::string_view spelling) {
  const std::size_t colon = spelling.rfind(':');
  return colon == std::string_view::npos ? spelling : spelling.substr(colon + 1);
}

// The Python class, and an object for each of the values that may have one.
struct Table {
  PyObject* type = nullptr;
  std::array<PyObject*, value_count> members{};
};

template <class E>
inline Table table;

[[nodiscard]] Table make(const std::string& name, const std::string& qualified_name,
                         const std::vector<EnumerationMember>& members);
[[nodiscard]] std::int32_t value_of(const Table& table, py::handle object);

}  // namespace enumerations

template <class E>
[[nodiscard]] std::vector<EnumerationMember> enumeration_members() {
  std::vector<EnumerationMember> members;
  [&]<std::int32_t... offset>(std::integer_sequence<std::int32_t, offset...>) {
    const auto add = [&](std::string_view spelling, std::int32_t value) {
      if (spelling.find('(') != std::string_view::npos) return;
      const std::string name(enumerations::last_name(spelling));
      members.push_back({name, value, name});
    };
    (add(enumerations::spelled<static_cast<E>(enumerations::first_value + offset)>(),
         enumerations::first_value + offset),
     ...);
  }
  (std::make_integer_sequence<std::int32_t, enumerations::value_count>());
  if constexpr (!std::is_null_pointer_v<std::remove_const_t<decltype(enum_texts<E>)>>) {
    const auto texts = enum_texts<E>();
    for (const auto& [value, text] : *texts) {
      for (EnumerationMember& member : members)
        if (member.value == static_cast<std::int32_t>(value)) member.text = text;
    }
  }
  return members;
}

template <class E>
[[nodiscard]] std::string enumeration_name() {
  // "ExperimentalInfo::RadiationProbe" is ExperimentalInfo.RadiationProbe.
  std::string name(enumerations::spelled_type<E>());
  for (std::size_t colons; (colons = name.find("::")) != std::string::npos;) name.replace(colons, 2, ".");
  return name;
}

// Makes the class as an attribute of `scope`, and for a class its members too, as in C++.
template <class E>
void bind_enumeration(py::object scope, std::vector<EnumerationMember> members = enumeration_members<E>()) {
  const std::string qualified = enumeration_name<E>();
  const std::string name(enumerations::last_name(enumerations::spelled_type<E>()));
  enumerations::table<E> = enumerations::make(name, qualified, members);
  const py::object type = py::reinterpret_borrow<py::object>(enumerations::table<E>.type);
  scope.attr(name.c_str()) = type;
  if constexpr (std::is_convertible_v<E, std::int32_t>) {
    for (const EnumerationMember& member : members)
      scope.attr(member.name.c_str()) = type.attr(member.name.c_str());
  }
}

template <class E>
[[nodiscard]] py::object enumeration_object(E value) {
  const auto number = static_cast<std::int32_t>(value);
  const std::int64_t position = static_cast<std::int64_t>(number) - enumerations::first_value;
  if (position >= 0 && position < enumerations::value_count) {
    PyObject* const member = enumerations::table<E>.members[static_cast<std::size_t>(position)];
    if (member != nullptr) return py::reinterpret_borrow<py::object>(member);
  }
  return py::int_(number);
}

// From a member, its text, or any 32-bit number.
template <class E>
[[nodiscard]] E enumeration_value(py::handle object) {
  return static_cast<E>(enumerations::value_of(enumerations::table<E>, object));
}
