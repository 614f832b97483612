// A stored archive: entries back to back, without a header. The end of the file at an entry boundary is its
// end.
//
//   EntryFile file("structures.dbe");
//   while (const auto entry = file.next()) entry->print(std::cout);
//
// Fails: ToolError. Exit code 4 when the file cannot be opened or read, 5 when the stored data are damaged:
// the message then names the entry by its number and, when that has been read, its identifier, the offset and
// the reason.
#pragma once

#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <utilities/t_handle.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

using StoredEntry = CrystalStructureImmediateDatabaseEntry;

class EntryFile {
 public:
  explicit EntryFile(const std::string& name);

  // The next entry, or a null handle at the end.
  [[nodiscard]] THandle<StoredEntry> next();

  // Of the entry that next() gave last: its number, from 1, and where it starts and ends in the file.
  // The offsets are -1 for a pipe.
  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] long offset() const { return offset_; }
  [[nodiscard]] long end() const;

  // The bytes that stand in [begin, end) of the file. For files only, not for pipes.
  [[nodiscard]] std::string bytes(long begin, long end) const;
  // Goes back to an offset at which an entry starts; the numbers of entries count on.
  void go_to(long offset);

 private:
  struct CloseFile {
    void operator()(FILE* file) const { std::fclose(file); }
  };

  std::string name_;
  std::unique_ptr<FILE, CloseFile> file_;
  int number_ = 0;
  long offset_ = 0;
};

// The text of its identifier.
[[nodiscard]] std::string identifier_of(const CrystalStructureDatabaseEntry& entry);

// An entry of which nothing is known: an empty identifier, and null handles for all components.
[[nodiscard]] THandle<StoredEntry> empty_entry();

// "entry 12 (C1010588)", or "entry 12" without an identifier. Long or unprintable identifiers are shortened
// and masked, so that a message never carries a damaged file with it.
[[nodiscard]] std::string entry_name(int number, const std::string& identifier);

// Calls `take` for every entry in the file whose identifier is among `wanted`, or for all when it is empty.
// Throws ToolError, exit code 3, after the last entry when some were not found, naming them all and the
// identifier nearest to each. Gives the number of entries in the file.
int for_each_entry(const std::string& file, const std::vector<std::string>& wanted,
                   const std::function<void(const StoredEntry&)>& take);
