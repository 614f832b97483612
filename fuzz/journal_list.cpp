// The bytes as a journal list, and as the start of a list whose other lines are good.
#include <database_entry/records/journal_columns.h>
#include <database_entry/records/journal_list_format.h>

#include <algorithm>

#include "entry_point.h"

namespace {

std::string placeholder(int coden) {
  char line[64];
  std::snprintf(line, sizeof line, "%04d %06d     0   0   0   0  -1\n", coden, coden);
  return line;
}

// Good lines after these, up to the length of a list.
std::string completed(const std::string& lines) {
  static const std::string placeholders = [] {
    std::string all;
    for (int coden = 1; coden <= journal_columns::line_count; ++coden) all += placeholder(coden);
    return all;
  }();
  const auto count = static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n'));
  return lines + placeholders.substr(std::min(count * placeholder(1).size(), placeholders.size()));
}

// The error, and nothing for a good list.
std::string error_of(const std::string& list) {
  try {
    const auto lines = journal_list_format::lines_of(list, "list");
    require(lines.size() == journal_columns::line_count, "a list of another length was accepted");
    require(journal_list_format::table_source(lines).size() > list.size(),
            "the table holds less than the list");
  } catch (const journal_list_format::BadJournalList& error) {
    const std::string text = error.what();
    require(text.rfind("list:", 0) == 0, "an error without a place");
    return text;
  }
  return "";
}

}  // namespace

void take(const std::uint8_t* data, std::size_t size) {
  std::string list(reinterpret_cast<const char*>(data), size);
  if (error_of(list).find("no line feed") != std::string::npos) list += '\n';
  // A whole list costs a thousand times as much: only where its lines are good so far, and not for every
  // text.
  if (error_of(list).find("the list ends here") != std::string::npos && size % 16 == 0) {
    error_of(completed(list));
  }
}
