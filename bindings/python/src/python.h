// What every source of the module includes: pybind11, with handles as holders.
// Internal: for the sources of the module.
#pragma once

#include <pybind11/pybind11.h>
#include <utilities/t_handle.h>

// A Python object holds a handle, so that C++ and Python share one object and its count.
PYBIND11_DECLARE_HOLDER_TYPE(T, THandle<T>)

namespace py = pybind11;

// Each binds one group of classes; module.cpp calls them in this order.
void bind_errors(py::module_& module);
void bind_values(py::module_& module);
void bind_chemistry(py::module_& module);
void bind_records(py::module_& module);
void bind_experiment(py::module_& module);
void bind_references(py::module_& module);
void bind_entries(py::module_& module);
void bind_archives(py::module_& module);
void bind_exchange(py::module_& module);
void bind_stores(py::module_& module);
void bind_lattice(py::module_& module);
void bind_perception(py::module_& module);
