// The small rings of a molecule.
// Internal: callers want perception/bond_types.h.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

// For each bond a shortest ring through it, with at most `longest` atoms; each ring once, its atoms in order
// around it.
[[nodiscard]] std::vector<std::vector<std::size_t>> small_rings(
    std::size_t atoms, const std::vector<std::array<std::size_t, 2>>& bonds, std::size_t longest);
