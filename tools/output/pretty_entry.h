// An entry for people: its components with aligned fields, words for codes, units; what is absent is left
// out.
//
//   print_pretty(terminal.out, entry, terminal.columns);
//
// The fields and their names are those of the JSON of an entry. A field is absent when it is empty or as a
// new record has it.
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>

#include <cstddef>
#include <iosfwd>
#include <map>
#include <string>

// Long texts are broken into lines of `columns`; 0 is 80.
void print_pretty(std::ostream& out, const CrystalStructureDatabaseEntry& entry, std::size_t columns);

// The units of the fields that have one, by the names that they have in JSON: "cell.a" is in "Å".
[[nodiscard]] const std::map<std::string, std::string>& field_units();
