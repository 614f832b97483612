// Entries made up from a fixed seed, with the proportions of published structures.
#pragma once

#include <cstddef>

#include "storages/storage.h"

// All have 65 texts. Plain ones have some 450 scalars and texts in 2,700 bytes; those with atoms ten to sixty
// atoms more; small ones five symmetry operators a cell and 1,700 bytes.
enum class EntryForm { plain, with_atoms, small };
StoredEntries synthetic_entries(std::size_t count, EntryForm form);

// The entries of a stored archive, back to back in the file. Throws std::runtime_error when it cannot be read
// or holds something else.
StoredEntries stored_entries(const std::string& path);

// "1000 entries, on average 2709 bytes, 452 scalars and texts, 64 of them texts"
std::string description(const StoredEntries& entries);
