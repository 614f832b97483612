// Entries made up from a fixed seed, with the proportions of published structures.
#pragma once

#include <cstddef>

#include "storages/storage.h"

// About 2,700 bytes each: 65 texts among some 430 scalars and texts. With atoms, ten to sixty of them more.
StoredEntries synthetic_entries(std::size_t count, bool with_atoms);

// The entries of a stored archive, back to back in the file. Throws std::runtime_error when it cannot be read
// or holds something else.
StoredEntries stored_entries(const std::string& path);

// "1000 entries, on average 2709 bytes, 452 scalars and texts, 64 of them texts"
std::string description(const StoredEntries& entries);
