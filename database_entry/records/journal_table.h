// The journal list that is built in, and what stands in a line of it.
// Internal: callers want records/journal.h.
#pragma once

#include <database_entry/records/journal_columns.h>

#include <array>
#include <string_view>

namespace journal_table {

using journal_columns::line_count;

// Constant data, made by the build from the journal list.
extern const std::array<std::string_view, line_count> lines;

// The line of a coden number from 1 to line_count.
[[nodiscard]] inline std::string_view line(int coden) {
  return lines[static_cast<std::size_t>(coden) - 1];
}

// The contents of a line by column, without blanks and tabs at their ends. Throw std::out_of_range,
// "basic_string::substr", for a line that ends before the column starts.
[[nodiscard]] std::string_view international_coden(std::string_view line);
[[nodiscard]] std::string_view title(std::string_view line);
// 0 where the column holds no number.
[[nodiscard]] int status_flag(std::string_view line);

}  // namespace journal_table
