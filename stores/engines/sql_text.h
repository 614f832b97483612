// The SQL that the databases share.
// Internal: for the engines.
#pragma once

#include <stores/entry_columns.h>

#include <string>

// "e.identifier, e.elements, ...": the columns of the table entry that hold EntryColumns, in the order of
// their numbers. With another prefix, or none.
[[nodiscard]] inline std::string entry_column_names(const std::string& prefix) {
  std::string names;
  for_each_entry_column(
      [&](const auto& column) { names += (names.empty() ? "" : ", ") + prefix + column.sql_name; });
  return names;
}

[[nodiscard]] constexpr int entry_column_count() {
  int count = 0;
  for_each_entry_column([&](const auto&) { ++count; });
  return count;
}
