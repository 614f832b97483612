// The commands that print what a stored archive holds.
#include <exchange/entry_json.h>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <algorithm>
#include <array>
#include <ostream>
#include <sstream>
#include <utility>

#include "tools/commands/commands.h"
#include "tools/files/collection.h"
#include "tools/messages/nearest_name.h"
#include "tools/output/pretty_entry.h"
#include "tools/output/table_output.h"

namespace {

using TableCell = TableOutput::Cell;

// A column of `list`: its name and what it shows of an entry. A number that is not known is an empty cell.
struct ListColumn {
  const char* name;
  TableCell (*cell)(const StoredEntry&);
  const char* separator = ", ";
};

TableCell known(double value) {
  return value == 0.0 ? TableCell() : TableCell(value);
}

constexpr std::array columns_of_entries = {
    ListColumn{"identifier", [](const StoredEntry& e) { return TableCell(identifier_of(e)); }},
    ListColumn{"formula", [](const StoredEntry& e) { return TableCell(e.chemical_info()->formula); }},
    ListColumn{"name", [](const StoredEntry& e) { return TableCell(e.chemical_info()->name); }},
    ListColumn{"synonyms", [](const StoredEntry& e) { return TableCell(e.chemical_info()->synonyms); }},
    ListColumn{"source", [](const StoredEntry& e) { return TableCell(e.chemical_info()->source); }},
    ListColumn{"authors", [](const StoredEntry& e) { return TableCell(e.publication()->authors); }, "; "},
    ListColumn{"journal", [](const StoredEntry& e) { return TableCell(e.publication()->journal.name()); }},
    ListColumn{
        "coden",
        [](const StoredEntry& e) { return TableCell(e.publication()->journal.international_coden()); }},
    ListColumn{"volume", [](const StoredEntry& e) { return TableCell(e.publication()->volume); }},
    ListColumn{"year",
               [](const StoredEntry& e) {
                 return e.publication()->year == 0 ? TableCell() : TableCell(e.publication()->year);
               }},
    ListColumn{"page", [](const StoredEntry& e) { return TableCell(e.publication()->page); }},
    ListColumn{"a", [](const StoredEntry& e) { return known(e.cell()->a()); }},
    ListColumn{"b", [](const StoredEntry& e) { return known(e.cell()->b()); }},
    ListColumn{"c", [](const StoredEntry& e) { return known(e.cell()->c()); }},
    ListColumn{"alpha", [](const StoredEntry& e) { return known(e.cell()->alpha()); }},
    ListColumn{"beta", [](const StoredEntry& e) { return known(e.cell()->beta()); }},
    ListColumn{"gamma", [](const StoredEntry& e) { return known(e.cell()->gamma()); }},
    ListColumn{"operators",
               [](const StoredEntry& e) { return TableCell(e.cell()->symmetry_operators()->size()); }},
    ListColumn{"atoms",
               [](const StoredEntry& e) {
                 const auto crystal_maker = e.crystal_maker();
                 return TableCell(crystal_maker->atoms().size());
               }},
    ListColumn{"z", [](const StoredEntry& e) { return known(e.crystal_info()->z); }},
    ListColumn{"color", [](const StoredEntry& e) { return TableCell(e.crystal_info()->color); }},
    ListColumn{"habit", [](const StoredEntry& e) { return TableCell(e.crystal_info()->habit); }},
    ListColumn{"temperature", [](const StoredEntry& e) { return known(e.experimental_info()->temperature); }},
    ListColumn{"pressure", [](const StoredEntry& e) { return TableCell(e.experimental_info()->pressure); }},
    ListColumn{"experimental_density",
               [](const StoredEntry& e) { return known(e.experimental_info()->experimental_density); }},
    ListColumn{"calculated_density",
               [](const StoredEntry& e) { return known(e.experimental_info()->calculated_density); }},
    ListColumn{"r_factor", [](const StoredEntry& e) { return known(e.experimental_info()->r_factor); }},
    ListColumn{"cross_references",
               [](const StoredEntry& e) { return TableCell(e.cross_reference_info()->size()); }},
};

constexpr const char* usual_columns = "identifier,formula,name,journal,year,atoms";

std::vector<ListColumn> chosen_columns(const std::string& names) {
  std::vector<ListColumn> chosen;
  std::istringstream list(names.empty() ? usual_columns : names);
  for (std::string name; std::getline(list, name, ',');) {
    const auto found = std::find_if(columns_of_entries.begin(), columns_of_entries.end(),
                                    [&](const ListColumn& column) { return column.name == name; });
    if (found == columns_of_entries.end()) {
      throw ToolError(ExitCode::usage, unknown_name("column", name, list_columns()));
    }
    chosen.push_back(*found);
  }
  return chosen;
}

// An empty file is a whole archive, but seldom the one that was meant.
void note_if_empty(std::size_t entry_count, const std::string& file, Terminal& terminal) {
  if (entry_count == 0) {
    fmt::print(terminal.messages, "dbentry: {}: {}: no entries\n", file == "-" ? "standard input" : file,
               file == "-" ? "is empty" : "the file is empty");
  }
}

}  // namespace

std::vector<std::string> list_columns() {
  std::vector<std::string> names;
  for (const ListColumn& column : columns_of_entries) names.emplace_back(column.name);
  return names;
}

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
  std::vector<TableOutput::Column> names;
  for (const ListColumn& column : columns) names.emplace_back(column.name, column.separator);
  const OutputFormat format = output_format(options.format, terminal);
  TableOutput table(terminal, format, names);
  try {
    const std::size_t count = for_each_entry(options.collection, {}, [&](const StoredEntry& entry) {
      std::vector<TableCell> row;
      for (const ListColumn& column : columns) row.push_back(column.cell(entry));
      table.add(row);
    });
    note_if_empty(count, options.collection, terminal);
  } catch (const ToolError&) {
    table.finish();
    throw;
  }
  table.finish();
  return ExitCode::done;
}
