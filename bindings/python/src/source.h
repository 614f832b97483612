// A data source whose operations are those of a Python object.
// Internal: for the sources of the module.
//
// It holds the object, so that a deferred entry keeps a source written in Python alive as a whole. What a
// method raises passes through C++ as it is.
#pragma once

#include <database_entry/entries/components.h>

#include "convert.h"
#include "python.h"

class PythonSource : public CrystalStructureDatabaseEntryDataSource {
 public:
  explicit PythonSource(py::object source) : source_(std::move(source)) {}

  [[nodiscard]] DatabaseEntryIdentifier identifier() const override {
    return Converter<DatabaseEntryIdentifier>::from(source_.attr("identifier")());
  }

#define DATABASE_ENTRY_ASKED(number, name, label, Type)           \
  [[nodiscard]] THandle<Type> name() const override {             \
    return Converter<THandle<Type>>::from(source_.attr(#name)()); \
  }
  DATABASE_ENTRY_COMPONENTS(DATABASE_ENTRY_ASKED, DATABASE_ENTRY_ASKED)
#undef DATABASE_ENTRY_ASKED

 private:
  py::object source_;
};
