#include <stores/lattice_columns.h>

void take_lattice(EntryColumns& /*columns*/, const Cell& /*cell*/) {}
