// An entry as JSON, whole, and back.
//
//   std::cout << entry_json(entry).dump() << '\n';
//   const JsonEntry back = entry_from_json(entry_json(entry));    // equal components, equal bytes
//
// An object of the identifier and the sixteen components, each an object of its fields under the names of the
// record. A null component is null. Enumerations are their texts (their numbers where no text is known),
// dates "2003-05-17", symmetry operators "-x,1/2+y,z". What points to an atom or a bond is its position in
// the list of its component, counted from 0. Infinities and NaN are "inf", "-inf" and "nan"; a text that is
// not UTF-8 is {"latin1": "..."}, its bytes as characters of ISO 8859-1.
// "volume", "identifiers" and "numbers" are for readers: they are made, and not read back.
#pragma once

#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <exchange/export.h>
#include <utilities/t_handle.h>

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

[[nodiscard]] EXCHANGE_EXPORT nlohmann::ordered_json entry_json(const CrystalStructureDatabaseEntry& entry);

struct JsonEntry {
  THandle<CrystalStructureImmediateDatabaseEntry> entry;
  // Components and fields that are not there; they stay at their defaults, and the journal is an unknown one.
  std::vector<std::string> absent;
  // Names that mean nothing here, as "crystal_info.colour".
  std::vector<std::string> unknown;
};

// A value of the wrong kind; the text names the entry, the field and what may be there, as in
// "entry ABCDEF: crystal_info.z: a number is expected".
class EXCHANGE_EXPORT JsonEntryError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~JsonEntryError() override;
};

// Throws JsonEntryError.
[[nodiscard]] EXCHANGE_EXPORT JsonEntry entry_from_json(const nlohmann::ordered_json& json);
