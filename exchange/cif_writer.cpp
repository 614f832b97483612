#include <database_entry/entries/components.h>
#include <exchange/cif_reader.h>
#include <exchange/cif_writer.h>
#include <exchange/entry_json.h>

#include <optional>
#include <ostream>

#include "exchange/cif/letters.h"
#include "exchange/cif/output.h"
#include "exchange/cif/own_tags.h"
#include "exchange/cif/standard_tags.h"

namespace {

using Json = nlohmann::ordered_json;

std::string identifier_of(const CrystalStructureDatabaseEntry& entry) {
  const DatabaseEntryIdentifier identifier = entry.identifier();
  return identifier.text();
}

std::string block_name_of(const std::string& identifier) {
  constexpr std::size_t longest = 70;
  std::string name = identifier.substr(0, longest);
  for (char& c : name) {
    if (c <= ' ' || c > '~') c = '_';
  }
  return name.empty() ? "unnamed" : name;
}

// What a reader makes of the block; null where it makes no entry of it.
Json read_back(const std::string& text) {
  const auto results = read_cif(text);
  const bool is_entry = results.size() == 1 && results.front().status == ImportResult::imported;
  return is_entry ? entry_json(*results.front().entry) : Json();
}

void write_component(const char* name, const Json& wanted, const Json& found, CifOutput& output) {
  // Compared as texts: 0 and -0 are equal numbers.
  if (wanted.dump() == found.dump()) return;
  const std::string tag = own_tag_prefix + std::string(name);
  if (!wanted.is_object() || !found.is_object()) {
    output.pair(tag, own_tag_text(wanted));
    return;
  }
  for (const auto& [field, value] : wanted.items()) {
    if (value.dump() != found[field].dump()) output.pair(tag + "_" + field, own_tag_text(value));
  }
}

}  // namespace

std::string entry_cif(const CrystalStructureDatabaseEntry& entry, const std::string& block_name) {
  CifOutput output(block_name);
  const std::string identifier = identifier_of(entry);
  write_standard_tags(entry, output);
  const Json wanted = entry_json(entry);
  Json found = read_back(output.text());
  if (found.is_null()) {
    // No structure by its standard tags: its own name for it makes it an entry.
    output.pair(own_identifier_tag, own_tag_text(wanted["identifier"]));
    found = read_back(output.text());
  } else if (found["identifier"] != wanted["identifier"]) {
    output.pair(own_identifier_tag, own_tag_text(wanted["identifier"]));
  }
  for_each_component([&](auto component) {
    write_component(component.name, wanted[component.name], found[component.name], output);
  });
  return output.text();
}

void CifWriter::write(const CrystalStructureDatabaseEntry& entry) {
  const std::string wanted = block_name_of(identifier_of(entry));
  std::string name = wanted;
  for (int suffix = 2; !names_.insert(lower_case(name)).second; ++suffix) {
    name = wanted + "-" + std::to_string(suffix);
  }
  os_ << (names_.size() == 1 ? "#\\#CIF_1.1\n" : "\n") << entry_cif(entry, name);
}
