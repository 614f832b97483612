// A whole entry as one text of bytes: all sixteen components, a null one as null.
// Internal: for the sources of the module.
//
// Bytes: the number of the layout, 1; the identifier; for each component in the order of its kind a length
// and its bytes, which are those of a store; the length of a null one is -1. Lengths are 4 bytes,
// little-endian.
#pragma once

#include <database_entry/entries/crystal_structure_immediate_database_entry.h>

#include <string>
#include <string_view>

// Throw InvalidValue in Python for a component that cannot be stored.
[[nodiscard]] std::string stored_bytes(const CrystalStructureDatabaseEntry& entry);
[[nodiscard]] bool are_stored_alike(const CrystalStructureDatabaseEntry& left,
                                    const CrystalStructureDatabaseEntry& right);
// Throws std::invalid_argument for bytes that are none of an entry.
[[nodiscard]] THandle<CrystalStructureImmediateDatabaseEntry> entry_from_stored_bytes(std::string_view bytes);
