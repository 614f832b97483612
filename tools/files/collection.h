// A collection: a stored archive, a SQLite store, or a store at a URL. This is the one place that knows how a
// collection is opened.
//
//   for_each_entry("structures.dbe", {}, [](const StoredEntry& entry) { entry.print(std::cout); });
//
// An archive gives its entries in its own order, a store in the order of identifiers. "-" is an archive on
// standard input.
//
// Fails: ToolError. Exit code 3 for identifiers that are not found, 4 for what cannot be opened, 5 for stored
// data that are damaged.
#pragma once

#include <stores/entry_store.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/files/entry_file.h"

[[nodiscard]] bool is_url(const std::string& place);

// Whether it is a store, and not an archive.
[[nodiscard]] bool is_store(const std::string& place);

// The store at a place, or an archive as one, which is read only.
[[nodiscard]] std::unique_ptr<EntryStore> open_store(const std::string& place);

// Does what works on a store, and throws what a store throws as ToolError.
template <class Work>
auto with_store_errors(const Work& work);

// Calls `take` for every entry whose identifier is among `wanted`, or for all when it is empty.
// Throws ToolError, exit code 3, after the last entry when some were not found, naming them all and the
// identifier nearest to each. Gives the number of entries in the collection, or, of a store, of those taken.
std::size_t for_each_entry(const std::string& place, const std::vector<std::string>& wanted,
                           const std::function<void(const StoredEntry&)>& take);

// The same with where each entry came from: what the store knows, else the archive and the identifier.
std::size_t for_each_entry_and_origin(
    const std::string& place, const std::vector<std::string>& wanted,
    const std::function<void(const THandle<StoredEntry>&, const EntryOrigin&)>& take);

// Calls `take` with what each entry can be found by.
void for_each_columns(const std::string& place, const std::function<void(const EntryColumns&)>& take);

// What becomes of an entry: itself, another one in its place, or, for a null handle, nothing.
using EntryChange = std::function<THandle<StoredEntry>(const THandle<StoredEntry>&)>;

// Calls `change` for every entry whose identifier is among `wanted`, or for all when it is empty, and writes
// what it gives. An archive is written anew, whole or not at all, and entries that did not change keep their
// bytes; a store changes entry by entry, each whole or not at all, after all were found. Throws as
// for_each_entry().
void change_entries(const std::string& place, const std::vector<std::string>& wanted,
                    const EntryChange& change);

// The failure of a store with the exit code that it has.
[[nodiscard]] ToolError store_failure(const EntryStoreError& error);

template <class Work>
auto with_store_errors(const Work& work) {
  try {
    return work();
  } catch (const EntryStoreError& error) {
    throw store_failure(error);
  }
}
