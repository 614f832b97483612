// The archived bytes of each component of an entry, by the table of components.
#pragma once

#include <database_entry/entries/components.h>

#include <string>

#include "tools/files/memory_archive.h"

// Calls `visit` with the name of each archived component ("crystal_info") and its bytes.
template <class Visit>
void for_each_component_bytes(const CrystalStructureDatabaseEntry& entry, Visit&& visit) {
  for_each_component([&](auto component) {
    if constexpr (component.archived) {
      visit(component.name, archived([&](Archive& archive) { archive << component.get(entry); }));
    }
  });
}
