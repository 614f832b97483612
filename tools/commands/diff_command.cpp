#include <database_entry/foundations/archive_encodings.h>
#include <fmt/ostream.h>

#include <array>
#include <map>
#include <ostream>
#include <utility>

#include "tools/commands/commands.h"
#include "tools/files/entry_file.h"
#include "tools/files/memory_archive.h"
#include "tools/output/table_output.h"

namespace {

// Two components are the same when their archived bytes are.
struct Component {
  const char* name;
  std::string (*bytes)(const StoredEntry&);
};

template <auto accessor>
std::string component_bytes(const StoredEntry& entry) {
  return archived([&](Archive& archive) { archive << (entry.*accessor)(); });
}

constexpr std::array components = {
    Component{"crystal maker", component_bytes<&StoredEntry::crystal_maker>},
    Component{"cell", component_bytes<&StoredEntry::cell>},
    Component{"publication", component_bytes<&StoredEntry::publication>},
    Component{"experimental info", component_bytes<&StoredEntry::experimental_info>},
    Component{"editors info", component_bytes<&StoredEntry::editors_info>},
    Component{"chemical info", component_bytes<&StoredEntry::chemical_info>},
    Component{"crystal info", component_bytes<&StoredEntry::crystal_info>},
    Component{"connectivity info", component_bytes<&StoredEntry::connectivity_info>},
    Component{"cross reference info", component_bytes<&StoredEntry::cross_reference_info>},
    Component{"deposition info", component_bytes<&StoredEntry::deposition_info>},
};

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

std::vector<std::string> differing_components(const StoredEntry& first, const StoredEntry& second) {
  std::vector<std::string> names;
  for (const Component& component : components) {
    if (component.bytes(first) != component.bytes(second)) names.emplace_back(component.name);
  }
  return names;
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
                    {"identifier", "difference", "components"});
  bool differ = false;
  bool same_order = true;
  std::size_t met = 0;
  const auto add = [&](const Name& name, const std::string& difference,
                       const std::vector<std::string>& which) {
    differ = true;
    table.add({name.first, difference, which});
  };
  EntryFile second(options.second);
  Namer second_names;
  for (auto entry = second.next(); !entry.is_null(); entry = second.next()) {
    const Name name = second_names.name(*entry);
    same_order = same_order && met < order.size() && order[met] == name;
    ++met;
    const auto found = offsets.find(name);
    if (found == offsets.end()) {
      add(name, "only in the second file", {});
      continue;
    }
    first.go_to(found->second);
    offsets.erase(found);
    const auto which = differing_components(*first.next(), *entry);
    if (!which.empty()) add(name, "differs", which);
  }
  for (const Name& name : order) {
    if (offsets.count(name) != 0) add(name, "only in the first file", {});
  }
  table.finish();
  if (!differ && !same_order) {
    fmt::print(terminal.messages, "{} and {} hold the same entries in another order\n", options.first,
               options.second);
  }
  return differ || !same_order ? ExitCode::problems : ExitCode::done;
}
