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
  std::vector<std::string> (*values)(const EntryColumns&);  // none where it is not known
  bool in_order_of_values;                                  // and not of how many
};

constexpr std::array questions = {
    Question{"element", "element",
             [](const EntryColumns& entry) {
               std::vector<std::string> symbols;
               for (const ElementCount& element : entry.elements) symbols.push_back(element.symbol);
               return symbols;
             },
             false},
    Question{"year", "year", [](const EntryColumns& entry) { return known(entry.year); }, true},
    Question{"journal", "journal",
             [](const EntryColumns& entry) {  // the title comes first, then the CODEN
               return entry.journals.empty() ? std::vector<std::string>()
                                             : std::vector<std::string>{entry.journals.front()};
             },
             false},
    Question{"space-group", "space_group", [](const EntryColumns& entry) { return known(entry.space_group); },
             false},
    Question{"author", "author", [](const EntryColumns& entry) { return entry.surnames; }, false},
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
  Progress progress(terminal, 0, "entries");
  std::map<std::string, std::uint64_t> counts;
  std::size_t done = 0;
  std::uint64_t unknown = 0;
  for_each_columns(options.collection, [&](const EntryColumns& entry) {
    const std::vector<std::string> values = asked.values(entry);
    if (values.empty()) ++unknown;
    for (const std::string& value : std::set<std::string>(values.begin(), values.end())) ++counts[value];
    progress.show(++done);
  });
  progress.clear();
  Tally rows(counts.begin(), counts.end());
  std::sort(rows.begin(), rows.end(), [&](const auto& a, const auto& b) {
    if (!asked.in_order_of_values && a.second != b.second) return a.second > b.second;
    return goes_before(a.first, b.first);
  });
  for (const auto& [value, count] : rows) table.add({value, count});
  if (options.svg != "-") table.finish();
  if (unknown > 0) fmt::print(terminal.messages, "dbentry: of {} entries it is not known\n", unknown);
  if (options.svg.empty()) return ExitCode::done;
  AtomicFile svg(options.svg);
  svg.write(bar_chart(fmt::format("{} entries by {}", done, options.by), rows));
  svg.commit();
  return ExitCode::done;
}
