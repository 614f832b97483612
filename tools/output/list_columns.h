// The columns of `list`, `find` and `export --to csv`: what each shows of an entry.
//
//   const auto columns = chosen_columns("identifier,year");
//   TableOutput table(terminal, format, headings(columns));
//   table.add(row_of(columns, entry));
//
// Only the components that the chosen columns show are asked for. What is not known is an empty cell.
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>

#include <string>
#include <vector>

#include "tools/output/table_output.h"

struct ListColumn {
  const char* name;
  TableOutput::Cell (*cell)(const CrystalStructureDatabaseEntry&);
  const char* separator = ", ";  // of the parts of a list
};

// Of names separated by commas; the empty text means a few usual ones. Throws ToolError (usage) for a name
// that is not known.
[[nodiscard]] std::vector<ListColumn> chosen_columns(const std::string& names);

[[nodiscard]] std::vector<TableOutput::Column> headings(const std::vector<ListColumn>& columns);
[[nodiscard]] std::vector<TableOutput::Cell> row_of(const std::vector<ListColumn>& columns,
                                                    const CrystalStructureDatabaseEntry& entry);

// The names of all columns.
[[nodiscard]] std::vector<std::string> list_columns();
