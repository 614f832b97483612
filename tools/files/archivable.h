// Whether an entry can go into an archive. Stores and JSON also take one of which a component is null.
//
//   if (const std::string reason = why_not_archived(entry); !reason.empty()) ...   // "its cell is null: ..."
#pragma once

#include <database_entry/entries/components.h>

#include <string>

// Empty for an entry that can.
[[nodiscard]] inline std::string why_not_archived(const CrystalStructureDatabaseEntry& entry) {
  std::string reason;
  for_each_component([&](auto component) {
    if (component.archived && reason.empty() && component.get(entry).is_null())
      reason = std::string("its ") + component.label + " is null, and an archive has all ten components";
  });
  return reason;
}
