// Binds a record by its list of fields, so that none is forgotten.
// Internal: for the sources of the module.
//
//   bind_record<Publication>(module, "Publication");   // fields, ==, str(), a constructor with keywords
//
// A field is a descriptor of Python's own (PyGetSetDef), not a bound function: it is read in a tenth of the
// time. repr, dictionaries and pickling walk `_fields` in Python (records.py).
#pragma once

#include <database_entry/foundations/archive_encodings.h>
#include <utilities/archive.h>
#include <utilities/fields.h>

#include <concepts>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "convert.h"
#include "errors.h"
#include "python.h"

// The C++ object of a Python object. Throws TypeError where __init__ of the class was never called.
template <class T>
[[nodiscard]] T& object_of(PyObject* self) {
  const auto* const instance = reinterpret_cast<const py::detail::instance*>(self);
  if (instance->simple_layout) [[likely]] {
    if (void* const object = instance->simple_value_holder[0]) [[likely]]
      return *static_cast<T*>(object);
  }
  py::detail::make_caster<T> caster;
  if (!caster.load(self, false)) throw_type_error(bound_name<T>, self);
  return py::detail::cast_op<T&>(caster);
}

template <class T>
inline constexpr bool is_vector = false;
template <class T>
inline constexpr bool is_vector<std::vector<T>> = true;

// "Publication.year: expected int, not 'x' (str)"
template <class Work>
void naming(const std::string& owner, const char* field, const Work& work) {
  try {
    work();
  } catch (const py::type_error& error) {
    throw py::type_error(owner + "." + field + ": " + error.what());
  }
}

// A descriptor of the class. `documentation` is copied.
void add_descriptor(py::handle type, const char* name, getter get, setter set,
                    const std::string& documentation);
// What `write` writes, and the other way round: throws ArchiveError where bytes are left or are missing.
[[nodiscard]] std::string archived_bytes(const std::function<void(Archive&)>& write);
void read_archived_bytes(const std::string& bytes, const std::function<void(Archive&)>& read);
// What is told of a field in help(): its type, then the text for "Class.field", if there is one.
[[nodiscard]] std::string field_documentation(const std::string& class_name, const std::string& field,
                                              const std::string& type);
// The text for a class; the name where there is none.
[[nodiscard]] const char* class_documentation(const std::string& class_name);

// One field, known when the module is compiled.
template <class Record, std::size_t index>
struct BoundField {
  static constexpr auto field = std::get<index>(Record::fields());
  using Value = typename std::remove_const_t<decltype(field)>::Type;
  static constexpr bool is_writable =
      std::is_same_v<std::remove_const_t<decltype(field)>, Field<Record, Value>>;
  static constexpr bool is_list = is_writable && is_vector<Value>;

  static std::string type_name() {
    if constexpr (is_list) {
      return bound_name<Value>;
    } else {
      return Converter<Value>::name();
    }
  }

  static PyObject* get(PyObject* self, void*) noexcept {
    return guarded([&] {
      auto& value = field.of(object_of<Record>(self));
      if constexpr (is_list) {
        // The list itself, which keeps its record alive.
        return py::cast(&value, py::return_value_policy::reference_internal, self).release().ptr();
      } else {
        return Converter<Value>::to(value).release().ptr();
      }
    });
  }

  static int set(PyObject* self, PyObject* value, void*) noexcept requires is_writable {
    try {
      if (value == nullptr)
        throw py::attribute_error(bound_name<Record> + "." + field.name + " cannot be deleted");
      assign(object_of<Record>(self), value);
      return 0;
    } catch (...) {
      set_python_error();
      return -1;
    }
  }

  static void assign(Record& record, py::handle value) requires is_writable {
    naming(bound_name<Record>, field.name, [&] { field.of(record) = Converter<Value>::from(value); });
  }
};

template <class Record, class Visit>
void for_each_bound_field(const Visit& visit) {
  [&]<std::size_t... index>(std::index_sequence<index...>) {
    (visit(BoundField<Record, index>()), ...);
  }
  (std::make_index_sequence<std::tuple_size_v<decltype(Record::fields())>>());
}

// Fields from keywords. Throws TypeError for a keyword that is no field.
template <class Record>
void assign_fields(Record& record, const py::kwargs& keywords) {
  std::size_t taken = 0;
  for_each_bound_field<Record>([&](auto field) {
    if constexpr (field.is_writable) {
      if (!keywords.contains(field.field.name)) return;
      ++taken;
      field.assign(record, keywords[field.field.name]);
    }
  });
  if (taken == keywords.size()) return;
  for (const auto& keyword : keywords) {
    const auto name = py::cast<std::string>(keyword.first);
    bool is_field = false;
    for_each_bound_field<Record>(
        [&](auto field) { is_field = is_field || (field.is_writable && name == field.field.name); });
    if (!is_field) throw py::type_error(bound_name<Record> + " has no field '" + name + "'");
  }
}

// Fills a record whose archive form is its fields, one after the other, whatever its constructors refuse.
template <class Record>
[[nodiscard]] THandle<Record> made_of_fields(const py::tuple& values, THandle<Record> record) {
  const std::string bytes = archived_bytes([&](Archive& archive) {
    std::size_t i = 0;
    for_each_bound_field<Record>([&](auto field) {
      const auto value = Converter<typename decltype(field)::Value>::from(values[i++]);
      if constexpr (requires { archive << value; }) {
        archive << value;
      } else {
        for (const auto& each : value) archive << each;
      }
    });
  });
  read_archived_bytes(bytes, [&](Archive& archive) { record->read(archive); });
  return record;
}

template <class Record>
[[nodiscard]] std::string printed(const Record& record) {
  std::ostringstream os;
  record.print(os);
  std::string text = os.str();
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

// By the class's own ==, or by all fields.
template <class Record>
[[nodiscard]] bool are_equal(const Record& a, const Record& b) {
  if constexpr (std::equality_comparable<Record>) {
    return a == b;
  } else {
    return equal_fields(a, b);
  }
}

enum class Equality { by_value, by_identity };

// The class with its fields, ==, str() and what records.py walks; without a constructor.
template <class Record, Equality equality = Equality::by_value>
py::class_<Record, THandle<Record>> bind_fields(py::module_& module, const char* name) {
  bound_name<Record> = name;
  py::class_<Record, THandle<Record>> bound(module, name, class_documentation(name));
  py::list names;
  py::dict types;
  for_each_bound_field<Record>([&](auto field) {
    const char* const field_name = field.field.name;
    setter set = nullptr;
    if constexpr (field.is_writable) set = &decltype(field)::set;
    add_descriptor(bound, field_name, &decltype(field)::get, set,
                   field_documentation(name, field_name, field.type_name()));
    names.append(field_name);
    types[field_name] = py::make_tuple(field.type_name(), field.is_writable);
  });
  bound.attr("_fields") = py::tuple(names);
  bound.attr("_field_types") = types;
  bound.attr("__match_args__") = py::tuple(names);
  if constexpr (equality == Equality::by_value) {
    bound.def(
        "__eq__",
        [](const Record& left, py::handle right) -> py::object {
          if (!py::isinstance<Record>(right)) return py::reinterpret_borrow<py::object>(Py_NotImplemented);
          return py::bool_(are_equal(left, object_of<Record>(right.ptr())));
        },
        py::arg("other"));
    bound.attr("__hash__") = py::none();
  }
  if constexpr (requires(const Record& record, std::ostream& os) { record.print(os); }) {
    bound.def("__str__", [](const Record& record) { return Converter<std::string>::to(printed(record)); });
  }
  if constexpr (requires(const Record& record, Archive& archive) { record.write(archive); }) {
    bound.def(
        "to_bytes",
        [](const Record& record) {
          return py::bytes(archived_bytes([&](Archive& archive) { record.write(archive); }));
        },
        "The record as an archive holds it.");
    bound.def("_read_bytes", [](Record& record, const std::string& bytes) {
      read_archived_bytes(bytes, [&](Archive& archive) { record.read(archive); });
    });
  }
  return bound;
}

// A record that is its public fields: made with any of them as keywords.
template <class Record, Equality equality = Equality::by_value>
py::class_<Record, THandle<Record>> bind_record(py::module_& module, const char* name) {
  auto bound = bind_fields<Record, equality>(module, name);
  bound.def(py::init([](const py::kwargs& fields) {
    auto record = THandle<Record>::make();
    assign_fields(*record, fields);
    return record;
  }));
  return bound;
}
