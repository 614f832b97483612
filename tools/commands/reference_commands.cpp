// What entries refer to: other entries, and the numbers under which their data were deposited.
#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <utility>

#include "tools/commands/commands.h"
#include "tools/files/collection.h"
#include "tools/messages/nearest_name.h"
#include "tools/output/table_output.h"

namespace {

std::string upper_case(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

using Kinds = std::vector<std::pair<DepositionInfo::DepositionType, std::string>>;

// All kinds of deposition for the empty name, else the kind of that name, in whatever case.
Kinds chosen_kinds(const std::string& name) {
  const auto all = DepositionInfo::deposition_type_text();
  Kinds kinds;
  std::vector<std::string> names;
  for (const auto& [kind, text] : *all) {
    names.push_back(text);
    if (name.empty() || upper_case(name) == upper_case(text)) kinds.emplace_back(kind, text);
  }
  if (kinds.empty()) throw ToolError(ExitCode::usage, unknown_name("kind of deposition", name, names));
  return kinds;
}

std::vector<std::string> identifiers_in(const StoredEntry& entry) {
  std::vector<std::string> names;
  const auto references = entry.cross_reference_info();
  if (references.is_null()) return names;
  std::vector<DatabaseEntryIdentifier> related;
  references->cross_related_identifiers(related);
  for (const DatabaseEntryIdentifier& identifier : related) names.push_back(identifier.text());
  return names;
}

// Who refers to whom, in the order of the entries.
class References {
 public:
  References(const std::string& collection, bool reverse) {
    for_each_columns(collection, [&](const EntryColumns& entry) {
      entries_.push_back(entry.identifier);
      for (const std::string& other : entry.related) {
        (reverse ? next_[other] : next_[entry.identifier]).push_back(reverse ? entry.identifier : other);
      }
    });
  }

  [[nodiscard]] bool knows(const std::string& identifier) const {
    return next_.count(identifier) != 0 ||
           std::find(entries_.begin(), entries_.end(), identifier) != entries_.end();
  }
  [[nodiscard]] const std::vector<std::string>& entries() const { return entries_; }
  [[nodiscard]] const std::vector<std::string>& next(const std::string& identifier) const {
    static const std::vector<std::string> none;
    const auto found = next_.find(identifier);
    return found == next_.end() ? none : found->second;
  }

 private:
  std::vector<std::string> entries_;
  std::map<std::string, std::vector<std::string>> next_;
};

// Each identifier once, at the least number of references away.
void add_related(const References& references, const RelatedOptions& options, TableOutput& table) {
  std::set<std::string> met = {options.identifier};
  std::vector<std::string> reached = {options.identifier};
  for (int depth = 1; depth <= options.depth && !reached.empty(); ++depth) {
    std::vector<std::string> further;
    for (const std::string& from : reached) {
      for (const std::string& identifier : references.next(from)) {
        if (!met.insert(identifier).second) continue;
        further.push_back(identifier);
        if (options.depth == 1) {
          table.add({identifier});
        } else {
          table.add({identifier, depth, from});
        }
      }
    }
    reached = std::move(further);
  }
}

}  // namespace

ExitCode related_command(const RelatedOptions& options, Terminal& terminal) {
  if (options.depth < 1) throw ToolError(ExitCode::usage, "related: --depth is 1 or more");
  std::vector<TableOutput::Column> columns = {"identifier"};
  if (options.depth > 1) columns.insert(columns.end(), {"depth", "through"});
  TableOutput table(terminal, output_format(options.format, terminal), columns);
  if (options.depth == 1 && !options.reverse) {
    for_each_entry(options.collection, {options.identifier}, [&](const StoredEntry& entry) {
      for (const std::string& identifier : identifiers_in(entry)) table.add({identifier});
    });
  } else {
    const References references(options.collection, options.reverse);
    if (!references.knows(options.identifier)) {
      throw ToolError(ExitCode::not_found,
                      fmt::format("{}: {}", options.collection,
                                  unknown_name("identifier", options.identifier, references.entries())));
    }
    add_related(references, options, table);
  }
  table.finish();
  return ExitCode::done;
}

ExitCode depositions_command(const DepositionsOptions& options, Terminal& terminal) {
  const Kinds kinds = chosen_kinds(options.kind);
  std::vector<TableOutput::Column> columns = {"kind", "text", "numbers"};
  const bool of_all = options.identifier.empty();
  if (of_all) columns.insert(columns.begin(), "identifier");
  TableOutput table(terminal, output_format(options.format, terminal), columns);
  std::vector<std::string> identifiers;
  if (!of_all) identifiers.push_back(options.identifier);
  std::vector<std::string> known;
  bool found = false;
  for_each_entry(options.collection, identifiers, [&](const StoredEntry& entry) {
    const auto depositions = entry.deposition_info();
    if (depositions.is_null()) return;
    for (const auto& [kind, name] : kinds) {
      if (!depositions->has_text(kind)) continue;
      std::vector<std::string> numbers;
      depositions->deposition_numbers(kind, numbers);
      const std::string text = depositions->text(kind);
      if (!options.number.empty()) {
        known.insert(known.end(), numbers.begin(), numbers.end());
        const auto is_number = [&](const std::string& number) {
          return upper_case(number) == upper_case(options.number);
        };
        if (!is_number(text) && std::none_of(numbers.begin(), numbers.end(), is_number)) continue;
      }
      found = true;
      std::vector<TableOutput::Cell> row = {name, text, numbers};
      if (of_all) row.insert(row.begin(), identifier_of(entry));
      table.add(row);
    }
  });
  table.finish();
  if (found || options.number.empty()) return ExitCode::done;
  throw ToolError(ExitCode::not_found, fmt::format("{}: {}", options.collection,
                                                   unknown_name("deposition number", options.number, known)));
}
