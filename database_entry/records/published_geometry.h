// The bond lengths that the authors of a structure published.
//
//   THandle<std::vector<THandle<PublishedBond>>> bonds(new std::vector<THandle<PublishedBond>>);
//   PublishedGeometry geometry(bonds, false);
//   bonds->push_back(bond);                    // seen by the geometry: the list is shared, not copied
//
// Never archived and never printed. Threads: as every record, one at a time.
#pragma once

#include <database_entry/export.h>
#include <database_entry/records/published_bond.h>
#include <utilities/fields.h>
#include <utilities/t_handle.h>

#include <tuple>
#include <vector>

class DATABASE_ENTRY_EXPORT PublishedGeometry {
 public:
  // No list at all: a null handle.
  PublishedGeometry() = default;
  PublishedGeometry(THandle<std::vector<THandle<PublishedBond>>> bonds, bool flag);

  THandle<std::vector<THandle<PublishedBond>>> bonds;
  // A property of the whole that is carried; its meaning is the caller's.
  bool flag = false;

  static constexpr auto fields() {
    return std::tuple{Field{"bonds", &PublishedGeometry::bonds}, Field{"flag", &PublishedGeometry::flag}};
  }
};
