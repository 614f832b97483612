// What all other sources convert with.
#include <pybind11/numpy.h>

#include <cstring>

#include "convert.h"
#include "errors.h"

void throw_type_error(const std::string& wanted, py::handle given) {
  throw py::type_error("expected " + wanted + ", not " +
                       py::cast<std::string>(py::repr(given)).substr(0, 60) + " (" +
                       Py_TYPE(given.ptr())->tp_name + ")");
}

int Converter<int>::from(py::handle object) {
  const py::object number = py::reinterpret_steal<py::object>(PyNumber_Index(object.ptr()));
  if (!number) {
    PyErr_Clear();
    throw_type_error(name(), object);
  }
  int overflow = 0;
  const long value = PyLong_AsLongAndOverflow(number.ptr(), &overflow);
  if (overflow != 0 || value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
    PyErr_SetString(PyExc_OverflowError, "the number is too large for 32 bits");
    throw py::error_already_set();
  }
  return static_cast<int>(value);
}

double Converter<double>::from(py::handle object) {
  const double value = PyFloat_AsDouble(object.ptr());
  if (value == -1.0 && PyErr_Occurred() != nullptr) {
    if (PyErr_ExceptionMatches(PyExc_OverflowError) != 0) throw py::error_already_set();
    PyErr_Clear();
    throw_type_error(name(), object);
  }
  return value;
}

std::string Converter<std::string>::from(py::handle object) {
  if (!PyUnicode_Check(object.ptr())) throw_type_error(name(), object);
  Py_ssize_t length = 0;
  if (const char* const text = PyUnicode_AsUTF8AndSize(object.ptr(), &length))
    return std::string(text, static_cast<std::size_t>(length));
  PyErr_Clear();
  const auto bytes =
      py::reinterpret_steal<py::bytes>(PyUnicode_AsEncodedString(object.ptr(), "utf-8", "surrogateescape"));
  if (!bytes) throw py::error_already_set();
  return std::string(bytes);
}

py::object Converter<DatabaseEntryIdentifier>::to(const DatabaseEntryIdentifier& value) {
  // One reference that is never given back.
  static PyObject* const type =
      py::object(py::module_::import("database_entry.values").attr("DatabaseEntryIdentifier"))
          .release()
          .ptr();
  return py::reinterpret_borrow<py::object>(type)(Converter<std::string>::to(value.text()));
}

py::object read_only_array(const double* values, std::size_t count) {
  py::array_t<double> array(static_cast<py::ssize_t>(count));
  std::memcpy(array.mutable_data(), values, count * sizeof(double));
  py::detail::array_proxy(array.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
  return array;
}

FractionalCoordinates coordinates_from(py::handle object) {
  if (PyUnicode_Check(object.ptr()) || !PyObject_HasAttrString(object.ptr(), "__iter__"))
    throw_type_error("three numbers", object);
  const std::vector<double> numbers = Converter<std::vector<double>>::from(object);
  if (numbers.size() != 3) throw_type_error("three numbers", object);
  return {numbers[0], numbers[1], numbers[2]};
}

namespace enumerations {

Table make(const std::string& name, const std::string& qualified_name,
           const std::vector<EnumerationMember>& members) {
  py::list rows;
  for (const EnumerationMember& member : members)
    rows.append(py::make_tuple(member.name, py::make_tuple(member.value, member.text)));
  const py::object type =
      py::module_::import("database_entry.values").attr("make_enumeration")(name, qualified_name, rows);
  // Classes and members live as long as the interpreter.
  Table table;
  table.type = type.inc_ref().ptr();
  for (const EnumerationMember& member : members) {
    table.members.at(static_cast<std::size_t>(member.value - first_value)) =
        py::object(type.attr(member.name.c_str())).release().ptr();
  }
  return table;
}

std::int32_t value_of(const Table& table, py::handle object) {
  if (PyUnicode_Check(object.ptr())) {
    const py::object type = py::reinterpret_borrow<py::object>(table.type);
    return Converter<int>::from(type(object));
  }
  return Converter<int>::from(object);
}

}  // namespace enumerations

void bind_values(py::module_&) {}
