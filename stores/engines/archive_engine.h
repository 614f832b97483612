// A stored archive as a store: read only, with an index of offsets that is made in one pass.
// Internal: callers want open_entry_store().
#pragma once

#include <stores/engines/store_engine.h>

#include <memory>
#include <string>

// Throws EntryStoreError when the file cannot be read. Where it is damaged, the entries before the damage are
// found; what asks for all entries then throws DamagedStore.
[[nodiscard]] std::shared_ptr<StoreEngine> open_archive_engine(const std::string& path);
