#include <database_entry/entries/components.h>
#include <exchange/entry_json.h>
#include <fmt/ostream.h>

#include <map>
#include <ostream>
#include <set>
#include <utility>

#include "tools/commands/commands.h"
#include "tools/files/component_bytes.h"
#include "tools/files/entry_file.h"
#include "tools/output/field_values.h"
#include "tools/output/table_output.h"

namespace {

using Json = nlohmann::ordered_json;

// An entry is known by its identifier and by how many of that identifier stand before it in its file.
using Name = std::pair<std::string, int>;

class Namer {
 public:
  Name name(const StoredEntry& entry) {
    const std::string identifier = identifier_of(entry);
    return {identifier, seen_[identifier]++};
  }

 private:
  std::map<std::string, int> seen_;
};

struct Difference {
  std::string field;
  Json first;
  Json second;
};

// The fields of two components that differ, in the order of the first; what only one of them has, as null in
// the other.
std::vector<Difference> differing_fields(const std::string& component, const Json& first,
                                         const Json& second) {
  std::vector<Difference> differences;
  const std::vector<FieldValue> old_values = field_values({{component, first}});
  const std::vector<FieldValue> new_values = field_values({{component, second}});
  std::map<std::string, const Json*> found;
  for (const auto& [field, value] : new_values) found.emplace(field, &value);
  for (const auto& [field, value] : old_values) {
    const auto other = found.find(field);
    if (other == found.end()) {
      differences.push_back({field, value, nullptr});
      continue;
    }
    if (*other->second != value) differences.push_back({field, value, *other->second});
    found.erase(other);
  }
  for (const auto& [field, value] : new_values) {
    if (found.count(field) != 0) differences.push_back({field, nullptr, value});
  }
  return differences;
}

// Components whose archived bytes differ, and those of which JSON tells a difference (what no archive holds).
std::vector<Difference> differences_of(const StoredEntry& first, const StoredEntry& second) {
  std::map<std::string, std::string> bytes;
  for_each_component_bytes(first, [&](const char* name, const std::string& text) { bytes[name] = text; });
  std::set<std::string> differing;
  for_each_component_bytes(second, [&](const char* name, const std::string& text) {
    if (bytes[name] != text) differing.insert(name);
  });
  const Json first_json = entry_json(first);
  const Json second_json = entry_json(second);
  std::vector<Difference> differences;
  for_each_component([&](auto component) {
    const std::string name = component.name;
    const bool is_told = first_json.contains(name) && second_json.contains(name);
    if (is_told && (!component.archived || differing.count(name) != 0)) {
      for (Difference& difference : differing_fields(name, first_json[name], second_json[name])) {
        differing.erase(name);
        differences.push_back(std::move(difference));
      }
    }
    // No value differs, as 0 and -0 do not.
    if (differing.count(name) != 0) differences.push_back({name, "(its bytes differ)", "(its bytes differ)"});
  });
  return differences;
}

}  // namespace

ExitCode diff_command(const DiffOptions& options, Terminal& terminal) {
  EntryFile first(options.first, EntryFile::Access::anywhere);
  std::map<Name, long> offsets;  // of the entries of the first file that have not been met in the second
  std::vector<Name> order;
  Namer first_names;
  for (auto entry = first.next(); !entry.is_null(); entry = first.next()) {
    order.push_back(first_names.name(*entry));
    offsets[order.back()] = first.offset();
  }

  TableOutput table(terminal, output_format(options.format, terminal),
                    {"identifier", "difference", "field", "first", "second"});
  bool differ = false;
  bool same_order = true;
  std::size_t met = 0;
  const auto add = [&](const Name& name, const std::string& which, const Difference& difference) {
    differ = true;
    table.add({name.first, which, difference.field, difference.first, difference.second});
  };
  EntryFile second(options.second);
  Namer second_names;
  for (auto entry = second.next(); !entry.is_null(); entry = second.next()) {
    const Name name = second_names.name(*entry);
    same_order = same_order && met < order.size() && order[met] == name;
    ++met;
    const auto found = offsets.find(name);
    if (found == offsets.end()) {
      add(name, "only in the second", {});
      continue;
    }
    first.go_to(found->second);
    offsets.erase(found);
    for (const Difference& difference : differences_of(*first.next(), *entry)) {
      add(name, "differs", difference);
    }
  }
  for (const Name& name : order) {
    if (offsets.count(name) != 0) add(name, "only in the first", {});
  }
  table.finish();
  if (!differ && !same_order) {
    fmt::print(terminal.messages, "{} and {} hold the same entries in another order\n", options.first,
               options.second);
  }
  return differ || !same_order ? ExitCode::problems : ExitCode::done;
}
