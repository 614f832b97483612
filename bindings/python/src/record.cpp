#include "record.h"

#include <stores/codec/byte_streams.h>

#include <cstring>
#include <string>

#include "list.h"

namespace {

ByteStreams& streams() {
  thread_local ByteStreams kept;
  return kept;
}

}  // namespace

std::size_t position_of(py::ssize_t index, std::size_t size) {
  const py::ssize_t position = index < 0 ? index + static_cast<py::ssize_t>(size) : index;
  if (position < 0 || position >= static_cast<py::ssize_t>(size))
    throw py::index_error("index " + std::to_string(index) + " of a list of " + std::to_string(size));
  return static_cast<std::size_t>(position);
}

void add_descriptor(py::handle type, const char* name, getter get, setter set,
                    const std::string& documentation) {
  // A descriptor points to its definition for as long as the interpreter runs.
  auto* const definition = new PyGetSetDef{strdup(name), get, set, strdup(documentation.c_str()), nullptr};
  const auto descriptor = py::reinterpret_steal<py::object>(
      PyDescr_NewGetSet(reinterpret_cast<PyTypeObject*>(type.ptr()), definition));
  if (!descriptor) throw py::error_already_set();
  py::setattr(type, name, descriptor);
}

std::string archived_bytes(const std::function<void(Archive&)>& write) {
  return streams().written(write);
}

void read_archived_bytes(const std::string& bytes, const std::function<void(Archive&)>& read) {
  streams().read(bytes, read);
}

std::string field_documentation(const std::string& class_name, const std::string& field,
                                const std::string& type) {
  const py::dict texts = py::module_::import("database_entry.documentation").attr("FIELDS");
  const py::str key(class_name + "." + field);
  return type + (texts.contains(key) ? ": " + py::cast<std::string>(texts[key]) : "");
}

const char* class_documentation(const std::string& class_name) {
  const py::dict texts = py::module_::import("database_entry.documentation").attr("CLASSES");
  const py::str key(class_name);
  return texts.contains(key) ? strdup(py::cast<std::string>(texts[key]).c_str()) : "";
}
