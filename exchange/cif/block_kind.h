// What a block of a CIF file is.
// Internal: callers want exchange/cif_reader.h.
#pragma once

#include "exchange/cif/document.h"

enum class CifBlockKind {
  structure,  // it has a cell or atoms
  shared,     // it has neither: what it says may hold for the structures of its file
  dictionary,
  monomer_library,
  macromolecule,
  structure_factors
};

[[nodiscard]] CifBlockKind kind_of(const CifBlock& block);

// Why there is no entry of a block of this kind.
[[nodiscard]] const char* reason_for_no_entry(CifBlockKind kind);

// Whether it has a value under any tag of the table except those that tell the kind.
[[nodiscard]] bool says_anything(const CifBlock& block);
