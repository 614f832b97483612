// Marks what the symmetry library offers to the programs that link it.
#pragma once

#define SYMMETRY_EXPORT __attribute__((visibility("default")))
