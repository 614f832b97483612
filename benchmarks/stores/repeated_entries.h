// Published structures over and over, each time with another cell, year and element: as many entries as
// wanted, which are about as long and as various as imported ones.
#pragma once

#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <stores/entry_store.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class RepeatedEntries {
 public:
  // Of the entries of a stored archive. Throws EntryStoreError when it cannot be opened.
  explicit RepeatedEntries(const std::string& archive);

  // The same for the same index, in every run. The first round is not the published structures either.
  [[nodiscard]] CrystalStructureImmediateDatabaseEntry entry(std::size_t index) const;
  [[nodiscard]] std::string identifier(std::size_t index) const;

  // Those from `begin` to `end`, 500 in a transaction.
  void put(EntryStore& store, std::size_t begin, std::size_t end) const;

 private:
  std::vector<THandle<CrystalStructureImmediateDatabaseEntry>> published_;
};
