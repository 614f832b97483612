// Stores in a PostgreSQL database, in a schema of their own, `dbentry`.
// Internal: callers want open_entry_store().
#pragma once

#include <stores/engines/store_engine.h>

#include <memory>
#include <string>

[[nodiscard]] bool is_postgresql_address(const std::string& place);

// Throws EntryStoreError unless there is a store of the present schema version.
[[nodiscard]] std::shared_ptr<StoreEngine> open_postgresql_engine(const std::string& address);

// Throws EntryStoreError when there is one already. The database must be there.
void init_postgresql_store(const std::string& address, const InitOptions& options);

// Gives the version that the store had.
int upgrade_postgresql_store(const std::string& address);
