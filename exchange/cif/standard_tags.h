// What an entry says, under the tags of CIF.
// Internal: callers want exchange/cif_writer.h.
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>

#include "exchange/cif/output.h"

// Null components and fields at their defaults are not written.
void write_standard_tags(const CrystalStructureDatabaseEntry& entry, CifOutput& output);
