// A data source whose operations are those of a Python object.
// Internal: for the sources of the module.
//
// It holds the object, so that a deferred entry keeps a source written in Python alive as a whole; where the
// object holds the entry too, the interpreter's collector finds the two. What a method raises passes through
// C++ as it is.
#pragma once

#include <database_entry/entries/components.h>
#include <database_entry/entries/crystal_structure_deferred_database_entry.h>

#include <stdexcept>
#include <utility>

#include "convert.h"
#include "python.h"

class PythonSource : public CrystalStructureDatabaseEntryDataSource {
 public:
  explicit PythonSource(py::object source) : source_(std::move(source)) {}

  [[nodiscard]] DatabaseEntryIdentifier identifier() const override {
    return Converter<DatabaseEntryIdentifier>::from(asked("identifier"));
  }

#define DATABASE_ENTRY_ASKED(number, name, label, Type)  \
  [[nodiscard]] THandle<Type> name() const override {    \
    return Converter<THandle<Type>>::from(asked(#name)); \
  }
  DATABASE_ENTRY_COMPONENTS(DATABASE_ENTRY_ASKED, DATABASE_ENTRY_ASKED)
#undef DATABASE_ENTRY_ASKED

  // For the collector: the object, and how it is let go.
  [[nodiscard]] PyObject* object() const {
    return source_.ptr();
  }
  void forget() {
    // The member is empty before anything else may run.
    const py::object dropped = std::exchange(source_, py::object());
  }

 private:
  [[nodiscard]] py::object asked(const char* what) const {
    // The method may drop the last reference to its object.
    const py::object source = source_;
    if (!source) throw std::runtime_error("the source of the entry was collected with it");
    return source.attr(what)();
  }

  py::object source_;
};

// A deferred entry that knows that its source is Python's.
class EntryOfPythonSource : public CrystalStructureDeferredDatabaseEntry {
 public:
  explicit EntryOfPythonSource(PythonSource* source)
      : EntryOfPythonSource(source, THandle<CrystalStructureDatabaseEntryDataSource>(source)) {}

  // Null where someone else has the source too, so that the collector takes it for held.
  [[nodiscard]] PythonSource* own_source() const { return kept_.use_count() == 2 ? source_ : nullptr; }

 private:
  EntryOfPythonSource(PythonSource* source, const THandle<CrystalStructureDatabaseEntryDataSource>& handle)
      : CrystalStructureDeferredDatabaseEntry(handle), kept_(handle), source_(source) {}

  THandle<CrystalStructureDatabaseEntryDataSource> kept_;
  PythonSource* source_;
};
