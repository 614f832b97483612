// A store that is in memory and goes with its object.
// Internal: callers want init_entry_store("memory:").
#pragma once

#include <stores/engines/store_engine.h>

#include <memory>

[[nodiscard]] std::shared_ptr<StoreEngine> make_memory_engine();
