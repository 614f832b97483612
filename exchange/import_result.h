// What became of one block of a file.
//
//   if (result.status == ImportResult::imported) result.entry->write(archive);
//   else std::cerr << result.line << ": " << result.reason << '\n';
#pragma once

#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <utilities/t_handle.h>

#include <cstdint>
#include <string>
#include <vector>

struct ImportWarning {
  int line = 0;  // from 1; 0 when no single line is to blame
  std::string text;
};

struct ImportResult {
  enum Status : std::int32_t {
    imported = 0,
    skipped = 1,  // it is no structure
    error = 2     // it cannot be read; nothing after it in its file is
  };

  Status status = imported;
  // All ten archived components are there. Null unless imported.
  THandle<CrystalStructureImmediateDatabaseEntry> entry;
  std::string identifier;  // of the entry
  std::string block;       // its name in the file
  int line = 0;            // where it begins, or where the error is; from 1
  int column = 0;          // of an error, from 1
  std::string reason;      // why there is no entry
  std::string hint;        // a way out of an error; may be empty

  std::string operators_from;         // "operators", "Hall name", ...; empty when there are none
  std::vector<std::string> absent;    // what the file does not say, by the names of the records' fields
  std::vector<std::string> not_kept;  // what no record has room for, by its tags
  std::vector<ImportWarning> warnings;
};
