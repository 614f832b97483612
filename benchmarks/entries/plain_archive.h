// The archive form of plain entries, written and read by hand, without the library.
//
// The benchmark makes its synthetic entries with it, takes stored ones apart for the other libraries, and
// holds the library's bytes against it.
#pragma once

#include <string>
#include <string_view>

#include "entries/plain_entry.h"

namespace plain {

// Appends the bytes of the entry.
void write_entry(const Entry& entry, std::string& bytes);

// Takes one entry from the front of `bytes`. Throws std::runtime_error where they end too early.
Entry take_entry(std::string_view& bytes);

// The same for bytes that hold exactly one entry.
Entry read_entry(std::string_view bytes);

// How many scalars and texts the entry holds, and how many of them are texts.
struct Counts {
  std::size_t items = 0;
  std::size_t texts = 0;
};
Counts counts(const Entry& entry);

}  // namespace plain
