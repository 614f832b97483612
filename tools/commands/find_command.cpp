// find: the entries of a collection that a query, a filter or a cell finds.
#include <database_entry/entries/crystal_structure_deferred_database_entry.h>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ostream>
#include <sstream>

#include "tools/commands/commands.h"
#include "tools/files/collection.h"
#include "tools/output/list_columns.h"

namespace {

constexpr double usual_tolerance = 1.5;  // percent

std::array<double, 6> cell_parameters(const std::string& text) {
  std::array<double, 6> parameters = {};
  std::string numbers = text;
  std::replace(numbers.begin(), numbers.end(), ',', ' ');
  std::istringstream list(numbers);
  list.imbue(std::locale::classic());
  for (double& parameter : parameters) list >> parameter;
  std::string more;
  if (list.fail() || list >> more) {
    throw ToolError(ExitCode::usage,
                    fmt::format("--cell {}: six numbers are wanted: a,b,c,alpha,beta,gamma", text));
  }
  return parameters;
}

// Where the mistake is, under a caret.
ToolError mistake(const char* what, const std::string& text, const EntryQueryError& error) {
  return {ExitCode::usage,
          fmt::format("{}: {}\n  {}\n  {:>{}}", what, error.what(), text, "^", error.column())};
}

EntryQuery query_of(const FindOptions& options) {
  EntryQuery query;
  try {
    if (!options.query.empty()) query = query && EntryQuery::from_text(options.query);
  } catch (const EntryQueryError& error) {
    throw mistake("QUERY", options.query, error);
  }
  try {
    if (!options.filter.empty()) query = query && EntryQuery::from_filter(options.filter);
  } catch (const EntryQueryError& error) {
    throw mistake("--filter", options.filter, error);
  }
  try {
    if (!options.cell.empty()) {
      const double tolerance = options.tolerance < 0 ? usual_tolerance : options.tolerance;
      query = query && EntryQuery::cell(cell_parameters(options.cell), tolerance,
                                        options.centring.empty() ? 'P' : options.centring[0]);
    }
  } catch (const EntryQueryError& error) {
    throw ToolError(ExitCode::usage, fmt::format("--cell {}: {}", options.cell, error.what()));
  }
  return query;
}

// Numbers before texts, what is not known last.
bool goes_before(const TableOutput::Cell& a, const TableOutput::Cell& b) {
  if (a.is_null() || b.is_null()) return !a.is_null() && b.is_null();
  return a < b;
}

// A store finds by its index and gives components as they are asked for; an archive is read through.
template <class Take>
void for_each_found(EntryStore& store, const EntryQuery& query, const SelectOptions& page, const Take& take) {
  constexpr std::size_t page_size = 1000;
  SelectOptions next = page;
  std::size_t left = page.limit.value_or(static_cast<std::size_t>(-1));
  while (left > 0) {
    next.limit = std::min(left, page_size);
    const auto found = store.select(query, next);
    for (const DatabaseEntryIdentifier& identifier : found)
      take(CrystalStructureDeferredDatabaseEntry(store.source(identifier)));
    if (found.size() < *next.limit) return;
    left -= found.size();
    next.after = found.back().text();
  }
}

}  // namespace

ExitCode find_command(const FindOptions& options, Terminal& terminal) {
  const EntryQuery query = query_of(options);
  const std::vector<ListColumn> columns = chosen_columns(options.columns);
  const OutputFormat format = output_format(options.format, terminal);
  if (options.tolerance >= 0 && options.cell.empty())
    throw ToolError(ExitCode::usage, "find: --tolerance belongs to --cell");
  return with_store_errors([&] {
    const auto store = open_store(options.collection);
    if (options.count) {
      fmt::print(terminal.out, "{}\n", store->count(query));
      return ExitCode::done;
    }
    SelectOptions page;
    if (!options.after.empty()) page.after = options.after;
    if (options.limit >= 0 && options.sort.empty()) page.limit = static_cast<std::size_t>(options.limit);
    TableOutput table(terminal, format, headings(columns));
    const auto snapshot = store->snapshot();
    if (options.sort.empty()) {
      for_each_found(*store, query, page,
                     [&](const CrystalStructureDatabaseEntry& entry) { table.add(row_of(columns, entry)); });
      table.finish();
      return ExitCode::done;
    }
    const ListColumn key = chosen_columns(options.sort).front();
    std::vector<std::pair<TableOutput::Cell, std::vector<TableOutput::Cell>>> rows;
    for_each_found(*store, query, page, [&](const CrystalStructureDatabaseEntry& entry) {
      rows.emplace_back(key.cell(entry), row_of(columns, entry));
    });
    std::stable_sort(rows.begin(), rows.end(),
                     [](const auto& a, const auto& b) { return goes_before(a.first, b.first); });
    if (options.limit >= 0 && rows.size() > static_cast<std::size_t>(options.limit))
      rows.resize(static_cast<std::size_t>(options.limit));
    for (const auto& [value, row] : rows) table.add(row);
    table.finish();
    return ExitCode::done;
  });
}
