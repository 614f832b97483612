// Checks a journal list and turns it into the source of the constant table.
// Internal: run by the build, on the list that DATABASE_ENTRY_JOURNAL_LIST names.
//
// A list is line_count lines of the layout in journal_columns.h, each ended by a line feed; the coden number
// of each is its position. A title is at least one character beyond ASCII control characters, without a tab
// or a blank at its end, or nothing at all.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace journal_list_format {

// The message is "FILE:LINE:COLUMN: error: REASON", lines and columns counted from 1.
class BadJournalList : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The lines of a list, as parts of `contents`. Throws BadJournalList at the first place that is not as it has
// to be; `file_name` is for the message.
[[nodiscard]] std::vector<std::string_view> lines_of(std::string_view contents, const std::string& file_name);

// C++ source that defines journal_table::lines.
[[nodiscard]] std::string table_source(const std::vector<std::string_view>& lines);

}  // namespace journal_list_format
