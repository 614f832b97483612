// How the entries of a collection are spread: by element, year, journal, space group or author.
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <algorithm>
#include <array>
#include <map>
#include <ostream>
#include <set>

#include "tools/commands/commands.h"
#include "tools/files/atomic_file.h"
#include "tools/files/collection.h"
#include "tools/files/outputs.h"
#include "tools/messages/nearest_name.h"
#include "tools/output/bar_chart.h"
#include "tools/output/counted.h"
#include "tools/output/progress.h"
#include "tools/output/table_output.h"

namespace {

// Numbers are counted as numbers, so that years are in their order.
template <class Number>
std::vector<std::string> known(const std::optional<Number>& value) {
  return value ? std::vector<std::string>{fmt::format("{}", *value)} : std::vector<std::string>();
}

struct Question {
  const char* name;
  const char* column;                                       // as a row of the table is called
  const char* property;                                     // by which a store counts, if it can
  std::vector<std::string> (*values)(const EntryColumns&);  // none where it is not known
  bool in_order_of_values;                                  // and not of how many
};

constexpr std::array questions = {
    Question{"element", "element", "elements",
             [](const EntryColumns& entry) {
               std::vector<std::string> symbols;
               for (const ElementCount& element : entry.elements) symbols.push_back(element.symbol);
               return symbols;
             },
             false},
    Question{"year", "year", "year", [](const EntryColumns& entry) { return known(entry.year); }, true},
    Question{"journal", "journal", nullptr,
             [](const EntryColumns& entry) {  // the title comes first, then the CODEN
               return entry.journals.empty() ? std::vector<std::string>()
                                             : std::vector<std::string>{entry.journals.front()};
             },
             false},
    Question{"space-group", "space_group", "sg",
             [](const EntryColumns& entry) { return known(entry.space_group); }, false},
    Question{"author", "author", "author", [](const EntryColumns& entry) { return entry.surnames; }, false},
};

const Question& question(const std::string& name) {
  std::vector<std::string> names;
  for (const Question& one : questions) {
    if (one.name == name) return one;
    names.emplace_back(one.name);
  }
  throw ToolError(ExitCode::usage, unknown_name("question", name, names));
}

// Years of four digits and space groups are numbers; other texts go by their bytes.
bool goes_before(const std::string& a, const std::string& b) {
  return a.size() != b.size() && std::isdigit(static_cast<unsigned char>(a[0])) != 0 ? a.size() < b.size()
                                                                                     : a < b;
}

struct Counts {
  std::map<std::string, std::uint64_t> of_values;
  std::uint64_t entries = 0;
  std::uint64_t unknown = 0;  // of which it is not known
};

// A store counts without giving an entry out.
Counts counted_by(EntryStore& store, const Question& asked) {
  const auto one_state = store.snapshot();
  Counts counts;
  const std::string property = asked.property;
  for (const auto& [value, count] : store.tally(property == "elements" ? "element" : property))
    counts.of_values[value] = count;
  counts.entries = store.count();
  counts.unknown = store.count(!EntryQuery::known(property));
  return counts;
}

Counts counted_one_by_one(const std::string& collection, const Question& asked, Terminal& terminal) {
  Progress progress(terminal, 0, "entries");
  Counts counts;
  for_each_columns(collection, [&](const EntryColumns& entry) {
    const std::vector<std::string> values = asked.values(entry);
    if (values.empty()) ++counts.unknown;
    for (const std::string& value : std::set<std::string>(values.begin(), values.end()))
      ++counts.of_values[value];
    progress.show(++counts.entries);
  });
  progress.clear();
  return counts;
}

}  // namespace

std::vector<std::string> stats_questions() {
  std::vector<std::string> names;
  for (const Question& one : questions) names.emplace_back(one.name);
  return names;
}

ExitCode stats_command(const StatsOptions& options, Terminal& terminal) {
  const Question& asked = question(options.by);
  Outputs outputs(options.force);
  outputs.read(options.collection);
  outputs.written("--svg", options.svg, FileKind::svg);
  outputs.check();
  TableOutput table(terminal, output_format(options.format, terminal), {asked.column, "entries"});
  const Counts counts =
      is_store(options.collection) && asked.property != nullptr
          ? with_store_errors([&] { return counted_by(*open_store(options.collection), asked); })
          : counted_one_by_one(options.collection, asked, terminal);
  Tally rows(counts.of_values.begin(), counts.of_values.end());
  std::sort(rows.begin(), rows.end(), [&](const auto& a, const auto& b) {
    if (!asked.in_order_of_values && a.second != b.second) return a.second > b.second;
    return goes_before(a.first, b.first);
  });
  for (const auto& [value, count] : rows) table.add({value, count});
  if (options.svg != "-") table.finish();
  if (counts.unknown > 0)
    fmt::print(terminal.messages, "dbentry: of {} it is not known\n",
               counted(counts.unknown, "entry", "entries"));
  if (options.svg.empty()) return ExitCode::done;
  AtomicFile svg(options.svg);
  svg.write(bar_chart(fmt::format("{} entries by {}", counts.entries, options.by), rows));
  svg.commit();
  return ExitCode::done;
}
