// A collection: a stored archive. This is the one place that knows how a collection is opened.
//
//   for_each_entry("structures.dbe", {}, [](const StoredEntry& entry) { entry.print(std::cout); });
#pragma once

#include <stores/entry_columns.h>

#include <functional>
#include <string>
#include <vector>

#include "tools/files/entry_file.h"

// Calls `take` for every entry whose identifier is among `wanted`, or for all when it is empty.
// Throws ToolError, exit code 3, after the last entry when some were not found, naming them all and the
// identifier nearest to each. Gives the number of entries in the collection.
int for_each_entry(const std::string& place, const std::vector<std::string>& wanted,
                   const std::function<void(const StoredEntry&)>& take);

// Calls `take` with what each entry can be found by.
void for_each_columns(const std::string& place, const std::function<void(const EntryColumns&)>& take);

// What becomes of an entry: itself, another one in its place, or, for a null handle, nothing.
using EntryChange = std::function<THandle<StoredEntry>(const THandle<StoredEntry>&)>;

// Calls `change` for every entry whose identifier is among `wanted`, and writes the collection anew when all
// were found: whole or not at all. Entries that are not wanted keep their bytes. Throws as for_each_entry().
void change_entries(const std::string& place, const std::vector<std::string>& wanted,
                    const EntryChange& change);
