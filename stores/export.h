// Marks what the library of stores offers to the programs that link it.
#pragma once

#define STORES_EXPORT __attribute__((visibility("default")))
