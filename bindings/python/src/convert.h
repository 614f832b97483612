// Values of C++ as Python objects, and back.
// Internal: for the sources of the module.
//
//   Converter<std::string>::to("a")          a new Python object
//   Converter<std::string>::from(object)     TypeError where it is none
//   Converter<std::string>::name()           "str", as stubs and errors have it
//
// Texts are bytes in C++, mostly UTF-8: any other byte becomes a lone surrogate and comes back as it was.
#pragma once

#include <symmetry/crystal_symmetry_operator.h>
#include <symmetry/fractional_coordinates.h>
#include <utilities/database_entry_identifier.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "enumerations.h"
#include "python.h"

// "expected float, not 'abc' (str)"
[[noreturn]] void throw_type_error(const std::string& wanted, py::handle given);

// Arrays of doubles, copies that cannot be written to: what is assigned to one of them would change nothing.
[[nodiscard]] py::object read_only_array(const double* values, std::size_t count);
// From anything with three numbers.
[[nodiscard]] FractionalCoordinates coordinates_from(py::handle object);

// The name under which a class is bound, "Publication"; in values.cpp for all of them.
template <class T>
inline std::string bound_name = "object";

// Any bound class: as a copy.
template <class T>
struct ClassConverter {
  static std::string name() { return bound_name<T>; }
  static py::object to(const T& value) { return py::cast(value, py::return_value_policy::copy); }
  static T from(py::handle object) {
    py::detail::make_caster<T> caster;
    if (object.is_none() || !caster.load(object, true)) throw_type_error(name(), object);
    return py::detail::cast_op<T&>(caster);
  }
};
template <class T>
struct Converter : ClassConverter<T> {};

template <>
struct Converter<bool> {
  static std::string name() { return "bool"; }
  static py::object to(bool value) { return py::bool_(value); }
  static bool from(py::handle object) {
    const int truth = PyObject_IsTrue(object.ptr());
    if (truth < 0) throw py::error_already_set();
    return truth != 0;
  }
};

template <>
struct Converter<int> {
  static std::string name() { return "int"; }
  static py::object to(int value) { return py::reinterpret_steal<py::object>(PyLong_FromLong(value)); }
  static int from(py::handle object);
};

template <>
struct Converter<double> {
  static std::string name() { return "float"; }
  static py::object to(double value) { return py::reinterpret_steal<py::object>(PyFloat_FromDouble(value)); }
  static double from(py::handle object);
};

template <>
struct Converter<std::string> {
  static std::string name() { return "str"; }
  static py::object to(const std::string& value) {
    return py::reinterpret_steal<py::object>(
        PyUnicode_DecodeUTF8(value.data(), static_cast<Py_ssize_t>(value.size()), "surrogateescape"));
  }
  static std::string from(py::handle object);
};

// A str of a class of its own.
template <>
struct Converter<DatabaseEntryIdentifier> {
  static std::string name() { return "DatabaseEntryIdentifier"; }
  static py::object to(const DatabaseEntryIdentifier& value);
  static DatabaseEntryIdentifier from(py::handle object) {
    return DatabaseEntryIdentifier(Converter<std::string>::from(object));
  }
};

template <>
struct Converter<FractionalCoordinates> {
  static std::string name() { return "numpy.ndarray"; }
  static py::object to(const FractionalCoordinates& value) {
    const double numbers[] = {value.x, value.y, value.z};
    return read_only_array(numbers, 3);
  }
  static FractionalCoordinates from(py::handle object) { return coordinates_from(object); }
};

template <class E>
requires std::is_enum_v<E>
struct Converter<E> {
  static std::string name() { return enumeration_name<E>(); }
  static py::object to(E value) { return enumeration_object(value); }
  static E from(py::handle object) { return enumeration_value<E>(object); }
};

template <class T>
struct Converter<std::vector<T>>;

template <class T, std::size_t size>
struct Converter<std::array<T, size>> {
  static std::string name() { return "Tuple[" + Converter<T>::name() + ", ...]"; }
  static py::object to(const std::array<T, size>& values) {
    py::tuple items(size);
    for (std::size_t i = 0; i < size; ++i) items[i] = Converter<T>::to(values[i]);
    return items;
  }
  static std::array<T, size> from(py::handle object) {
    const auto items = Converter<std::vector<T>>::from(object);
    if (items.size() != size) throw_type_error(std::to_string(size) + " numbers", object);
    std::array<T, size> values;
    std::copy(items.begin(), items.end(), values.begin());
    return values;
  }
};

// None is a null handle.
template <class T>
struct Converter<THandle<T>> {
  static std::string name() { return "Optional[" + Converter<T>::name() + "]"; }
  static py::object to(const THandle<T>& value) { return py::cast(value); }
  static THandle<T> from(py::handle object) {
    if (object.is_none()) return THandle<T>();
    py::detail::make_caster<THandle<T>> caster;
    if (!caster.load(object, true)) throw_type_error(Converter<T>::name(), object);
    return py::detail::cast_op<THandle<T>&>(caster);
  }
};

template <class A, class B>
struct Converter<std::pair<A, B>> {
  static std::string name() { return "Tuple[" + Converter<A>::name() + ", " + Converter<B>::name() + "]"; }
  static py::object to(const std::pair<A, B>& value) {
    return py::make_tuple(Converter<A>::to(value.first), Converter<B>::to(value.second));
  }
  static std::pair<A, B> from(py::handle object) {
    if (!PySequence_Check(object.ptr()) || PyUnicode_Check(object.ptr()) || py::len(object) != 2)
      throw_type_error("a pair", object);
    const auto sequence = py::reinterpret_borrow<py::sequence>(object);
    return {Converter<A>::from(sequence[0]), Converter<B>::from(sequence[1])};
  }
};

// Any iterable but a text, whose letters nobody means.
template <class T>
struct Converter<std::vector<T>> {
  static std::string name() { return "Sequence[" + Converter<T>::name() + "]"; }
  static py::object to(const std::vector<T>& values) {
    py::tuple list(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) list[i] = Converter<T>::to(values[i]);
    return list;
  }
  static std::vector<T> from(py::handle object) {
    if (PyUnicode_Check(object.ptr()) || PyBytes_Check(object.ptr()) ||
        !PyObject_HasAttrString(object.ptr(), "__iter__"))
      throw_type_error("a sequence of " + Converter<T>::name(), object);
    std::vector<T> values;
    for (const py::handle item : py::iter(object)) values.push_back(Converter<T>::from(item));
    return values;
  }
};

// A list that several objects share. Another sequence than such a list is copied into a new one.
template <class T>
struct Converter<THandle<std::vector<T>>> {
  using List = std::vector<T>;
  static std::string name() { return "Optional[" + bound_name<List> + "]"; }
  static py::object to(const THandle<List>& value) { return py::cast(value); }
  static THandle<List> from(py::handle object) {
    if (object.is_none()) return THandle<List>();
    py::detail::make_caster<THandle<List>> caster;
    if (py::isinstance<List>(object) && is_held(object) && caster.load(object, false))
      return py::detail::cast_op<THandle<List>&>(caster);
    return THandle<List>(new List(Converter<List>::from(object)));
  }

 private:
  // A list that is a part of its record has no handle.
  static bool is_held(py::handle object) {
    auto* const instance = reinterpret_cast<py::detail::instance*>(object.ptr());
    return instance->simple_layout && instance->simple_holder_constructed;
  }
};

template <class T>
struct Converter<std::optional<T>> {
  static std::string name() { return "Optional[" + Converter<T>::name() + "]"; }
  static py::object to(const std::optional<T>& value) {
    return value ? Converter<T>::to(*value) : py::none();
  }
};

template <>
struct Converter<std::int64_t> {
  static std::string name() { return "int"; }
  static py::object to(std::int64_t value) { return py::int_(value); }
};

// A text is read as a coordinate triplet, "-x,1/2+y,1/2-z".
template <>
struct Converter<CrystalSymmetryOperator> : ClassConverter<CrystalSymmetryOperator> {
  static CrystalSymmetryOperator from(py::handle object) {
    return PyUnicode_Check(object.ptr()) ? CrystalSymmetryOperator(Converter<std::string>::from(object))
                                         : ClassConverter::from(object);
  }
};
