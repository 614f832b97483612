// Which alternative of a disorder is shown.
// Internal: callers want perception/components.h.
#pragma once

#include <chemistry/disorder_selector.h>
#include <lattice/packed_crystal.h>

#include <vector>

// For each site whether it is left out. Of each assembly the group that is taken most stays, the first of
// equals. Where no selectors are given, of two sites that overlap, closer than half of the sum of their
// radii, and are not both always taken, the one that is taken less goes, the later of equals.
[[nodiscard]] std::vector<bool> sites_not_shown(const CrystalMaker& crystal, const PackedCrystal& packed,
                                                const std::vector<THandle<DisorderSelector>>& selectors);
