// Where a command puts entries: a new archive or a store, with a rule for entries that are there already.
//
//   const auto sink = open_archive_sink("both.dbe", Duplicates::replace);
//   sink->put(entry);
//   sink->commit();                      // now, and only now, both.dbe is the new archive
//
// Fails: ToolError; what was there before stays.
#pragma once

#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <stores/entry_origin.h>
#include <stores/entry_store.h>

#include <memory>
#include <string>
#include <vector>

using StoredEntry = CrystalStructureImmediateDatabaseEntry;

// What becomes of an entry whose identifier was put before.
enum class Duplicates {
  both,     // it is one more entry
  keep,     // the first stays
  replace,  // it takes the place of the first
  refuse,   // nothing is put, and the caller is told
};

// `unchanged` is an entry that is there already, the same byte for byte.
enum class PutResult { added, replaced, unchanged, kept, refused };

class EntrySink {
 public:
  // An entry to be put, which is only read.
  struct Put {
    const StoredEntry* entry;
    EntryOrigin origin;
  };

  EntrySink() = default;
  EntrySink(const EntrySink&) = delete;
  EntrySink& operator=(const EntrySink&) = delete;
  virtual ~EntrySink() = default;

  // What has become of each, in their order. A store has them then, in one transaction.
  virtual std::vector<PutResult> put_all(const std::vector<Put>& entries) = 0;
  PutResult put(const StoredEntry& entry, const EntryOrigin& origin = {}) {
    return put_all({{&entry, origin}}).front();
  }
  // Whether every entry of such a file is there already, as a store knows; and that they are now.
  [[nodiscard]] virtual bool has_imported(const std::string& file, const std::string& sha256);
  virtual void set_imported(const std::vector<ImportedFile>& files);
  // Once, after the last entry. Gives what has come of it, in words: "745 bytes in x.dbe".
  virtual std::string commit() = 0;
};

// "-" is standard output; it gets nothing before commit() when `held` or when entries may be replaced.
[[nodiscard]] std::unique_ptr<EntrySink> open_archive_sink(const std::string& path, Duplicates duplicates,
                                                           bool held = false);

// A store, which is there already. Never Duplicates::both.
[[nodiscard]] std::unique_ptr<EntrySink> open_store_sink(const std::string& place, Duplicates duplicates);

// keep, replace or refuse; the empty name gives `usual`. Throws ToolError (usage) for another name.
[[nodiscard]] Duplicates duplicates_rule(const std::string& name, Duplicates usual);
