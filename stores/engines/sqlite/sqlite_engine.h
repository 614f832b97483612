// Stores in SQLite files.
// Internal: callers want open_entry_store().
#pragma once

#include <stores/engines/store_engine.h>

#include <memory>
#include <string>

// Whether the file begins as a SQLite file does. False for a file that cannot be read.
[[nodiscard]] bool is_sqlite_file(const std::string& path);

// Throws EntryStoreError unless it is a store of the present schema version.
[[nodiscard]] std::shared_ptr<StoreEngine> open_sqlite_engine(const std::string& path);

// Throws EntryStoreError when the place is taken.
void init_sqlite_store(const std::string& path, const InitOptions& options);

// Gives the version that the store had.
int upgrade_sqlite_store(const std::string& path);
