// Keeps entries in a store, and finds them again: usage: entry_store FILE
#include <stores/entry_store.h>

#include <cstdio>
#include <exception>
#include <iostream>

#include "sample_entry.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: entry_store FILE\n";
    return 2;
  }
  try {
    std::remove(argv[1]);  // an example may be run twice
    // begin store
    const auto store = init_entry_store(argv[1]);
    CrystalStructureImmediateDatabaseEntry entry = sample_entry();
    store->put(entry, {"salt.cif", "salt"}, OnDuplicate::replace);

    const THandle<Publication> later(new Publication({"D.Other"}, Journal(4), "102", 1980, "17"));
    entry.set_publication(later);
    const StoreResult result = store->put(entry, {"salt.cif", "salt"}, OnDuplicate::replace);
    std::cout << (result == StoreResult::replaced ? "replaced\n" : "not replaced\n");

    // The publication alone is fetched.
    const DatabaseEntryIdentifier identifier("ABCDEF01");
    store->source(identifier)->publication()->print(std::cout);
    std::cout << store->origin(identifier).file << ", " << store->count() << " entry, "
              << store->verify().problems.size() << " problems\n";
    // end store
  } catch (const std::exception& error) {
    std::cerr << "entry_store: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
