// An entry that notes which of its accessors and setters are called, in order.
#pragma once

#include <database_entry/entries/components.h>

#include <string>
#include <vector>

#include "support/sample_entry.h"

class NotingEntry : public CrystalStructureImmediateDatabaseEntry {
 public:
  using Base = CrystalStructureImmediateDatabaseEntry;
  explicit NotingEntry(const Base& entry = sample_entry()) : Base(entry) {}

  [[nodiscard]] const std::vector<std::string>& notes() const { return notes_; }

  DatabaseEntryIdentifier identifier() const override { return note("identifier"), Base::identifier(); }
  void set_identifier(const DatabaseEntryIdentifier& identifier) override {
    note("set identifier"), Base::set_identifier(identifier);
  }

#define NOTING_ACCESSOR(number, name, label, Type) \
  THandle<Type> name() const override {            \
    return note(label), Base::name();              \
  }
#define NOTING_ACCESSOR_AND_SETTER(number, name, label, Type) \
  NOTING_ACCESSOR(number, name, label, Type)                  \
  void set_##name(THandle<Type> component) override {         \
    note("set " label), Base::set_##name(component);          \
  }
  DATABASE_ENTRY_COMPONENTS(NOTING_ACCESSOR, NOTING_ACCESSOR_AND_SETTER)
#undef NOTING_ACCESSOR
#undef NOTING_ACCESSOR_AND_SETTER

 private:
  void note(const char* name) const {
    notes_.emplace_back(name);
  }

  mutable std::vector<std::string> notes_;
};
