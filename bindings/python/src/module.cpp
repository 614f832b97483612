// The extension module: database_entry (the package) gives its names to the world.
#include "python.h"

namespace {

// Asked for the memory of an object whose __init__ never ran.
void* refuse(std::size_t) {
  throw py::type_error("__init__ of this object was never called");
}

}  // namespace

PYBIND11_MODULE(_database_entry, module) {
  module.doc() = "Inside of the package database_entry.";
  bind_errors(module);
  bind_values(module);
  bind_chemistry(module);
  bind_experiment(module);
  bind_records(module);
  bind_references(module);
  bind_entries(module);
  bind_archives(module);
  bind_exchange(module);
  bind_stores(module);
  bind_lattice(module);
  bind_perception(module);
  for (const auto& [name, value] : module.attr("__dict__").cast<py::dict>()) {
    if (!PyType_Check(value.ptr())) continue;
    auto* const type = py::detail::get_type_info(reinterpret_cast<PyTypeObject*>(value.ptr()));
    if (type != nullptr) type->operator_new = &refuse;
  }
}
