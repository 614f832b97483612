// The bytes as a journal list, and as one line of a list whose other lines are good.
#include <database_entry/records/journal_columns.h>
#include <database_entry/records/journal_list_format.h>

#include "entry_point.h"

namespace {

std::string placeholder(int coden) {
  char line[64];
  std::snprintf(line, sizeof line, "%04d %06d     0   0   0   0  -1\n", coden, coden);
  return line;
}

void take(const std::string& list) {
  try {
    const auto lines = journal_list_format::lines_of(list, "list");
    require(lines.size() == journal_columns::line_count, "a list of another length was accepted");
    require(journal_list_format::table_source(lines).size() > list.size(),
            "the table holds less than the list");
  } catch (const journal_list_format::BadJournalList& error) {
    require(std::string(error.what()).rfind("list:", 0) == 0, "an error without a place");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  take(bytes);
  static const std::string other_lines = [] {
    std::string lines;
    for (int coden = 2; coden <= journal_columns::line_count; ++coden) lines += placeholder(coden);
    return lines;
  }();
  take(bytes + "\n" + other_lines);
  return 0;
}
