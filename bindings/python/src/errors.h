// Exceptions of C++ as Python's, and the other way round.
// Internal: for the sources of the module.
#pragma once

#include <string>

#include "python.h"

// Sets Python's error from the C++ exception that is being handled. To be called in a catch (...) only.
void set_python_error() noexcept;

// de.<name>, one of the classes of errors.py.
[[nodiscard]] py::object error_class(const char* name);

// Throws de.<name>(message); `details` become attributes of the exception.
[[noreturn]] void throw_python(const char* name, const std::string& message,
                               const py::dict& details = py::dict());

// A function of the C interface of Python: what `work` throws becomes Python's error, and the result null.
template <class Work>
PyObject* guarded(const Work& work) noexcept {
  try {
    return work();
  } catch (...) {
    set_python_error();
    return nullptr;
  }
}
