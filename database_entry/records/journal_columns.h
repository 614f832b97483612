// The columns of a line of the journal list, counted from 0.
// Internal: callers want records/journal.h.
//
//   0036 JORCAI     0  24   0-195   1J.Organomet.Chem.
//
// Columns follow one another without a separator, and a number may fill its column: lines are cut by column,
// never at blanks.
#pragma once

#include <cstddef>

namespace journal_columns {

struct Column {
  std::size_t first;
  std::size_t width;
};

inline constexpr Column coden = {0, 4};  // the line's own number, zero-padded
inline constexpr Column separator = {4, 1};
inline constexpr Column international_coden = {5, 6};  // or the line's number where the journal has none
inline constexpr Column year = {11, 6};                // 0 when there is none
inline constexpr Column unread[] = {{17, 4}, {21, 4}, {25, 4}};
inline constexpr Column status_flag = {29, 4};  // 1 current, -1 discontinued
inline constexpr std::size_t title = 33;        // to the end; nothing on a placeholder line

inline constexpr int line_count = 1418;

}  // namespace journal_columns
