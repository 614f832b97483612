#include <database_entry/entries/components.h>
#include <exchange/entry_json.h>
#include <fmt/ostream.h>

#include <map>
#include <memory>
#include <ostream>
#include <set>
#include <utility>

#include "tools/commands/commands.h"
#include "tools/files/collection.h"
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

// The entries of a collection, of which any can be asked for again.
class KnownEntries {
 public:
  virtual ~KnownEntries() = default;
  [[nodiscard]] const std::vector<Name>& names() const { return names_; }
  [[nodiscard]] virtual THandle<StoredEntry> entry(const Name& name) = 0;

 protected:
  std::vector<Name> names_;
};

class EntriesOfArchive : public KnownEntries {
 public:
  explicit EntriesOfArchive(const std::string& place) : file_(place, EntryFile::Access::anywhere) {
    Namer namer;
    for (auto entry = file_.next(); !entry.is_null(); entry = file_.next()) {
      names_.push_back(namer.name(*entry));
      offsets_[names_.back()] = file_.offset();
    }
  }
  THandle<StoredEntry> entry(const Name& name) override {
    file_.go_to(offsets_.at(name));
    return file_.next();
  }

 private:
  EntryFile file_;
  std::map<Name, long> offsets_;
};

class EntriesOfStore : public KnownEntries {
 public:
  explicit EntriesOfStore(const std::string& place) : store_(open_store(place)) {
    for_each_columns(place, [&](const EntryColumns& columns) { names_.emplace_back(columns.identifier, 0); });
  }
  THandle<StoredEntry> entry(const Name& name) override {
    return with_store_errors([&] { return store_->entry(DatabaseEntryIdentifier(name.first)); });
  }

 private:
  std::unique_ptr<EntryStore> store_;
};

std::unique_ptr<KnownEntries> known_entries(const std::string& place) {
  if (is_store(place)) return std::make_unique<EntriesOfStore>(place);
  return std::make_unique<EntriesOfArchive>(place);
}

}  // namespace

ExitCode diff_command(const DiffOptions& options, Terminal& terminal) {
  const std::unique_ptr<KnownEntries> first = known_entries(options.first);
  const std::vector<Name>& order = first->names();
  std::set<Name> left(order.begin(), order.end());  // those that have not been met in the second
  TableOutput table(terminal, output_format(options.format, terminal),
                    {"identifier", "difference", "field", "first", "second"});
  bool differ = false;
  bool same_order = true;
  std::size_t met = 0;
  const auto add = [&](const Name& name, const std::string& which, const Difference& difference) {
    differ = true;
    table.add({name.first, which, difference.field, difference.first, difference.second});
  };
  Namer second_names;
  for_each_entry(options.second, {}, [&](const StoredEntry& entry) {
    const Name name = second_names.name(entry);
    same_order = same_order && met < order.size() && order[met] == name;
    ++met;
    if (left.erase(name) == 0) {
      add(name, "only in the second", {});
      return;
    }
    for (const Difference& difference : differences_of(*first->entry(name), entry))
      add(name, "differs", difference);
  });
  for (const Name& name : order) {
    if (left.count(name) != 0) add(name, "only in the first", {});
  }
  table.finish();
  // A store has no order of its own.
  const bool has_order = !is_store(options.first) && !is_store(options.second);
  if (!has_order) return differ ? ExitCode::problems : ExitCode::done;
  if (!differ && !same_order) {
    fmt::print(terminal.messages, "{} and {} hold the same entries in another order\n", options.first,
               options.second);
  }
  return differ || !same_order ? ExitCode::problems : ExitCode::done;
}
