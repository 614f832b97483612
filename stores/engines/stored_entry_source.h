// The data source that every store gives: asks for the bytes of a component, checks their hash, and decodes
// them. Internal: callers want EntryStore::source().
#pragma once

#include <database_entry/entries/components.h>
#include <stores/engines/store_engine.h>

#include <memory>

// Throw EntryNotFound.
[[nodiscard]] THandle<CrystalStructureDatabaseEntryDataSource> make_source(
    const std::shared_ptr<ComponentReader>& reader, const std::string& identifier, Prefetch prefetch);
[[nodiscard]] THandle<CrystalStructureImmediateDatabaseEntry> make_entry(ComponentReader& reader,
                                                                         const std::string& identifier);

[[noreturn]] void throw_not_found(ComponentReader& reader, const std::string& identifier);

// Runs `work`; an EntryStoreError without an entry gets the entry and the component.
template <class Work>
auto naming(const std::string& entry, const std::string& component, const Work& work) {
  const auto place = [&](const EntryStoreError& error) {
    return EntryStoreError::Place{error.place().store, entry, component};
  };
  try {
    return work();
  } catch (const DamagedStore& error) {
    if (!error.place().entry.empty()) throw;
    throw DamagedStore(place(error), error.reason());
  } catch (const EntryNotFound&) {
    throw;
  } catch (const EntryStoreError& error) {
    if (!error.place().entry.empty()) throw;
    throw EntryStoreError(place(error), error.reason());
  }
}
