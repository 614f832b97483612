// The commands that print what a stored archive holds.
#include <exchange/entry_json.h>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <ostream>
#include <utility>

#include "tools/commands/commands.h"
#include "tools/files/collection.h"
#include "tools/messages/nearest_name.h"
#include "tools/output/list_columns.h"
#include "tools/output/pretty_entry.h"
#include "tools/output/table_output.h"

namespace {

// An empty file is a whole archive, but seldom the one that was meant.
void note_if_empty(std::size_t entry_count, const std::string& file, Terminal& terminal) {
  if (entry_count == 0) {
    fmt::print(terminal.messages, "dbentry: {}: {}: no entries\n", file == "-" ? "standard input" : file,
               file == "-" ? "is empty" : "the file is empty");
  }
}

}  // namespace

namespace {

enum class ShowFormat { pretty, text, json, jsonl };

// The empty name means what people like to read where a person watches, and the library's own summary
// otherwise.
ShowFormat show_format(const std::string& name, const Terminal& terminal) {
  static const std::vector<std::pair<std::string, ShowFormat>> formats = {{"pretty", ShowFormat::pretty},
                                                                          {"text", ShowFormat::text},
                                                                          {"json", ShowFormat::json},
                                                                          {"jsonl", ShowFormat::jsonl}};
  if (name.empty()) return terminal.out_is_terminal ? ShowFormat::pretty : ShowFormat::text;
  std::vector<std::string> names;
  for (const auto& [known, format] : formats) {
    if (known == name) return format;
    names.push_back(known);
  }
  throw ToolError(ExitCode::usage, "show: " + unknown_name("format", name, names));
}

void show_entry(const StoredEntry& entry, ShowFormat format, bool is_first, Terminal& terminal) {
  switch (format) {
    case ShowFormat::pretty:
      if (!is_first) terminal.out << '\n';
      print_pretty(terminal.out, entry, terminal.columns);
      break;
    case ShowFormat::text:
      entry.print(terminal.out);
      terminal.out << '\n';
      break;
    case ShowFormat::json:
      terminal.out << (is_first ? "[\n" : ",\n") << json_line(entry_json(entry));
      break;
    case ShowFormat::jsonl:
      terminal.out << json_line(entry_json(entry)) << '\n';
      break;
  }
}

}  // namespace

ExitCode show_command(const ShowOptions& options, Terminal& terminal) {
  const ShowFormat format = show_format(options.format, terminal);
  std::size_t shown = 0;
  const auto finish = [&] {
    if (format == ShowFormat::json) terminal.out << (shown == 0 ? "[]\n" : "\n]\n");
  };
  try {
    const std::size_t count =
        for_each_entry(options.collection, options.identifiers, [&](const StoredEntry& entry) {
          show_entry(entry, format, shown == 0, terminal);
          ++shown;
        });
    note_if_empty(count, options.collection, terminal);
  } catch (const ToolError&) {
    finish();
    throw;
  }
  finish();
  return ExitCode::done;
}

ExitCode list_command(const ListOptions& options, Terminal& terminal) {
  const std::vector<ListColumn> columns = chosen_columns(options.columns);
  const OutputFormat format = output_format(options.format, terminal);
  TableOutput table(terminal, format, headings(columns));
  try {
    const std::size_t count = for_each_entry(
        options.collection, {}, [&](const StoredEntry& entry) { table.add(row_of(columns, entry)); });
    note_if_empty(count, options.collection, terminal);
  } catch (const ToolError&) {
    table.finish();
    throw;
  }
  table.finish();
  return ExitCode::done;
}
