// Where a command puts entries: a new archive, with a rule for entries that are there already.
//
//   const auto sink = open_archive_sink("both.dbe", Duplicates::replace);
//   sink->put(entry);
//   sink->commit();                      // now, and only now, both.dbe is the new archive
//
// Fails: ToolError; what was there before stays.
#pragma once

#include <database_entry/entries/crystal_structure_immediate_database_entry.h>

#include <memory>
#include <string>

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

// Where an entry came from, for those sinks that keep it. May be empty.
struct PutOrigin {
  std::string file;
  std::string block;
};

class EntrySink {
 public:
  EntrySink() = default;
  EntrySink(const EntrySink&) = delete;
  EntrySink& operator=(const EntrySink&) = delete;
  virtual ~EntrySink() = default;

  virtual PutResult put(const StoredEntry& entry, const PutOrigin& origin = {}) = 0;
  // Once, after the last entry. Gives what has come of it, in words: "745 bytes in x.dbe".
  virtual std::string commit() = 0;
};

// "-" is standard output; it gets nothing before commit() when `held` or when entries may be replaced.
[[nodiscard]] std::unique_ptr<EntrySink> open_archive_sink(const std::string& path, Duplicates duplicates,
                                                           bool held = false);

// keep, replace or refuse; the empty name gives `usual`. Throws ToolError (usage) for another name.
[[nodiscard]] Duplicates duplicates_rule(const std::string& name, Duplicates usual);
