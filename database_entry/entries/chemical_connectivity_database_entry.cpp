#include <database_entry/entries/chemical_connectivity_database_entry.h>
#include <regex/regex.h>

#include <utility>

namespace {

constexpr const char* number_and_name = "^([0-9\\.]+)\\s+([A-Za-z0-9\\-\\(\\)\\,\\.]+)\\.qdx";
// The dot before "qdx" is any character: names with another separator are accepted as well.
constexpr const char* number_and_letters = "^([0-9\\.]+[A-Za-z]+).qdx";

}  // namespace

ChemicalConnectivityDatabaseEntry::ChemicalConnectivityDatabaseEntry(
    const DatabaseEntryIdentifier& entry_identifier, std::string entry_name,
    THandle<Connectivity> entry_connectivity)
    : identifier(entry_identifier), name(std::move(entry_name)), connectivity(entry_connectivity) {}

void ChemicalConnectivityDatabaseEntry::set_identifier(const DatabaseEntryIdentifier& id) {
  // All that can fail comes first; the moves at the end cannot.
  RegexResults results;
  DatabaseEntryIdentifier new_identifier;
  std::string new_name = name;
  if (Regex::search(number_and_name, id.text(), results, 0)) {
    new_identifier = DatabaseEntryIdentifier(results.match(1));
    new_name = results.match(2);
  } else if (Regex::search(number_and_letters, id.text(), results, 0)) {
    new_identifier = DatabaseEntryIdentifier(results.match(1));
  } else {
    new_identifier = id;
  }
  identifier = std::move(new_identifier);
  name = std::move(new_name);
}
