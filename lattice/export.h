// Marks what the lattice library offers to the programs that link it.
#pragma once

#define LATTICE_EXPORT __attribute__((visibility("default")))
