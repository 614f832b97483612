// How an error names what it met.
// Internal: callers want stores/entry_query.h.
#pragma once

#include <cstddef>
#include <string>

// The word, the number or the sign at an offset, in quotes and shortened; "the end" after the last byte. A
// word that would be a keyword in capitals is told so.
[[nodiscard]] std::string found_text(const std::string& query, std::size_t offset);
