#include "errors.h"

#include <exchange/cif_reader.h>
#include <lattice/lattice_error.h>
#include <perception/perception_error.h>
#include <regex/regex_error.h>
#include <stores/entry_query_error.h>
#include <stores/entry_store_error.h>
#include <utilities/archive_error.h>
#include <utilities/null_handle_error.h>

#include <new>
#include <stdexcept>

namespace {

// A message may hold any bytes that a user gave.
py::str text_of(const std::string& message) {
  return py::reinterpret_steal<py::str>(
      PyUnicode_DecodeUTF8(message.data(), static_cast<Py_ssize_t>(message.size()), "surrogateescape"));
}

void set_error(const char* name, const std::string& message, const py::dict& details = py::dict()) {
  const py::object type = error_class(name);
  const py::object error = type(text_of(message));
  for (const auto& [key, value] : details) py::setattr(error, key, value);
  PyErr_SetObject(type.ptr(), error.ptr());
}

py::dict details_of(const EntryStoreError& error) {
  py::dict details;
  details["store"] = text_of(error.place().store);
  details["entry"] = text_of(error.place().entry);
  details["component"] = text_of(error.place().component);
  details["reason"] = text_of(error.reason());
  return details;
}

void translate() {
  try {
    throw;
  } catch (py::error_already_set& error) {
    error.restore();
  } catch (const py::builtin_exception& error) {
    error.set_error();
  } catch (const NullHandleError& error) {
    set_error("NullHandleError", error.what());
  } catch (const ArchiveError& error) {
    set_error("ArchiveError", error.what());
  } catch (const EntryNotFound& error) {
    py::dict details = details_of(error);
    details["nearest"] = text_of(error.nearest());
    set_error("EntryNotFound", error.what(), details);
  } catch (const EntryAlreadyStored& error) {
    set_error("EntryAlreadyStored", error.what(), details_of(error));
  } catch (const DamagedStore& error) {
    set_error("DamagedStore", error.what(), details_of(error));
  } catch (const EntryStoreError& error) {
    set_error("StoreError", error.what(), details_of(error));
  } catch (const EntryQueryError& error) {
    py::dict details;
    details["column"] = py::int_(error.column());
    details["problem"] = text_of(error.problem());
    set_error("QueryError", error.what(), details);
  } catch (const LatticeError& error) {
    set_error("LatticeError", error.what());
  } catch (const PerceptionError& error) {
    set_error("PerceptionError", error.what());
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::invalid_argument& error) {
    set_error("InvalidValue", error.what());
  } catch (const std::out_of_range& error) {
    PyErr_SetString(PyExc_IndexError, error.what());
  } catch (const std::exception& error) {
    set_error("Error", error.what());
  }
}

}  // namespace

py::object error_class(const char* name) {
  return py::module_::import("database_entry.errors").attr(name);
}

void throw_python(const char* name, const std::string& message, const py::dict& details) {
  set_error(name, message, details);
  throw py::error_already_set();
}

void set_python_error() noexcept {
  try {
    translate();
  } catch (py::error_already_set& error) {
    error.restore();
  } catch (...) {
    PyErr_SetString(PyExc_RuntimeError, "an error of the library has no text");
  }
}

void bind_errors(py::module_&) {
  py::register_exception_translator([](std::exception_ptr error) {
    try {
      std::rethrow_exception(error);
    } catch (const py::error_already_set&) {
      throw;
    } catch (const py::builtin_exception&) {
      throw;
    } catch (...) {
      set_python_error();
    }
  });
}
