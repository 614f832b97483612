// A stored archive: entries back to back, without a header. The end of the file at an entry boundary is its
// end.
//
//   EntryFile file("structures.dbe");
//   while (const auto entry = file.next()) entry->print(std::cout);
//
// Fails: ToolError. Exit code 4 when the file cannot be opened or read, or holds something else (a CIF): the
// message then says how an archive is made of it. 5 when the stored data are damaged: the message names the
// entry by its number and, when that has been read, its identifier, the offset and the reason.
#pragma once

#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <utilities/t_handle.h>

#include <cstdio>
#include <memory>
#include <string>

#include "tools/messages/tool_error.h"

using StoredEntry = CrystalStructureImmediateDatabaseEntry;

class EntryFile {
 public:
  // Who goes back needs the second: what comes through a pipe is then put into a temporary file first.
  enum class Access { forward, anywhere };

  // "-" is standard input.
  explicit EntryFile(const std::string& name, Access access = Access::forward);

  // The next entry, or a null handle at the end.
  [[nodiscard]] THandle<StoredEntry> next();

  // Of the entry that next() gave last: its number, from 1, and where it starts and ends in the file.
  // The offsets are -1 for a pipe.
  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] long offset() const { return offset_; }
  [[nodiscard]] long end() const;

  // The bytes in [begin, end) of the file. With Access::anywhere only, as go_to().
  [[nodiscard]] std::string bytes(long begin, long end) const;
  // Goes back to an offset at which an entry starts; the numbers of entries count on.
  void go_to(long offset);

 private:
  struct CloseFile {
    void operator()(FILE* file) const { std::fclose(file); }
  };

  void put_aside();
  [[nodiscard]] ToolError damage(const std::string& reason, const StoredEntry& entry) const;

  std::string name_;
  std::string path_;  // empty for standard input
  std::unique_ptr<FILE, CloseFile> file_;
  int number_ = 0;
  long offset_ = 0;
};

// The text of its identifier.
[[nodiscard]] std::string identifier_of(const CrystalStructureDatabaseEntry& entry);

// An entry of which nothing is known: an empty identifier, and null handles for all components.
[[nodiscard]] THandle<StoredEntry> empty_entry();

// "entry 12 (C1010588)", "entry 12" without an identifier, "entry C1010588" without a number (0). Long or
// unprintable identifiers are shortened and masked, so that a message never carries a damaged file with it.
[[nodiscard]] std::string entry_name(int number, const std::string& identifier);
