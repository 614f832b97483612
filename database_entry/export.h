// Marks what the library offers to the programs that link it.
#pragma once

#define DATABASE_ENTRY_EXPORT __attribute__((visibility("default")))
