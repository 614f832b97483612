// How an entry wants its bonds perceived.
// Internal: callers want perception/components.h.
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>
#include <perception/bonds.h>

// The editors' own tolerance, where it is one, and the alternatives of the disorder.
[[nodiscard]] inline BondOptions bond_options_of(const CrystalStructureDatabaseEntry& entry) {
  BondOptions options;
  const THandle<EditorsInfo> editors = entry.editors_info();
  if (!editors.is_null() && editors->bonding_tolerance > 0.0 && editors->bonding_tolerance <= 5.0)
    options.tolerance = editors->bonding_tolerance;
  const THandle<DisorderSelectors> selectors = entry.disorder_selector();
  if (!selectors.is_null()) options.alternatives = *selectors;
  return options;
}
