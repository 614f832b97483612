// The journal list that is built in, and what is in a line of it.
// Internal: callers want records/journal.h.
//
//   0036 JORCAI     0  24   0-195   1J.Organomet.Chem.
//
// Columns, counted from 0: the line's own number (0 to 3), a blank, the CODEN or, where the journal has none,
// the number with six digits (5 to 10), a year (11 to 16), three numbers that are not used (17 to 28), the
// status flag, 1 or -1 (29 to 32), and the title to the end; a placeholder line has none. They follow one
// another without a separator, and a number may fill its column: lines are cut by column, never at blanks.
// cmake/JournalList.cmake, which makes the table, checks all of that.
#pragma once

#include <array>
#include <string_view>

namespace journal_table {

inline constexpr int line_count = 1418;

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
