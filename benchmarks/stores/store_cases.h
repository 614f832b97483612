// What is measured of stores: looking, finding, putting, and the same beside others.
#pragma once

#include <stores/entry_store.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "report/suite.h"
#include "stores/repeated_entries.h"

// A store of the first `count` of the repeated entries.
struct FilledStore {
  std::size_t count;
  std::shared_ptr<EntryStore> store;

  // "50,000"
  [[nodiscard]] std::string size() const;
};

// One publication after another within a snapshot, beside a file that is read by hand.
void add_fetch_cases(Suite& suite, const RepeatedEntries& entries, const FilledStore& small,
                     const FilledStore& large, const std::string& folder);
// Queries and counts of two stores, beside a scan of rows in memory.
void add_query_cases(Suite& suite, const FilledStore& small, const FilledStore& large);
// The same entries in a database of ASE, by the program `peer` that speaks with it.
void add_ase_cases(Suite& suite, const RepeatedEntries& entries, const FilledStore& small,
                   const std::string& peer, const std::string& folder);
// A server of our own on a Unix socket, where one is installed.
void add_postgresql_cases(Suite& suite, const RepeatedEntries& entries, std::size_t count);
// dbentry import of a folder, into a store and into an archive.
void add_store_import_cases(Suite& suite, const std::string& dbentry, const std::string& crystals,
                            const std::string& folder);
