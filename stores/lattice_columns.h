// What a cell and its operators say of the lattice: the reduced cell and the space group.
// Internal: callers want entry_columns().
#pragma once

#include <chemistry/cell.h>
#include <stores/entry_columns.h>

// Leaves what cannot be told as it is.
void take_lattice(EntryColumns& columns, const Cell& cell);
