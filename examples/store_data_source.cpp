// A data source of one's own on top of a store: it corrects the year of every publication that it gives.
#include <stores/entry_store.h>

#include <exception>
#include <iostream>

#include "sample_entry.h"

// begin source
class Corrected : public CrystalStructureDatabaseEntryDataSource {
 public:
  explicit Corrected(const THandle<CrystalStructureDatabaseEntryDataSource>& stored) : stored_(stored) {}

  DatabaseEntryIdentifier identifier() const override { return stored_->identifier(); }
  THandle<CrystalMaker> crystal_maker() const override { return stored_->crystal_maker(); }
  THandle<Publication> publication() const override {
    const THandle<Publication> corrected(new Publication(*stored_->publication()));
    corrected->year += 1;
    return corrected;
  }

 private:
  THandle<CrystalStructureDatabaseEntryDataSource> stored_;
};
// end source

int main() {
  try {
    const auto store = init_entry_store("memory:");
    store->put(sample_entry(), {}, OnDuplicate::refuse);
    const auto stored = store->source(DatabaseEntryIdentifier("ABCDEF01"));
    const CrystalStructureDeferredDatabaseEntry entry(
        THandle<CrystalStructureDatabaseEntryDataSource>(new Corrected(stored)));
    stored->publication()->print(std::cout);
    entry.publication()->print(std::cout);
  } catch (const std::exception& error) {
    std::cerr << "store_data_source: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
