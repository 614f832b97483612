// A stored entry as JSON: its identifier and its ten archived components, fields under the names of the
// records, enumerations by their texts (by their numbers where no text is known), dates as "2003-05-17".
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>
#include <exchange/export.h>

#include <nlohmann/json.hpp>

// No component may be null, except those that no archive holds.
[[nodiscard]] EXCHANGE_EXPORT nlohmann::ordered_json entry_json(const CrystalStructureDatabaseEntry& entry);
