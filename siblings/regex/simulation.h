// Searches with any program, by keeping the list of its threads up to date byte after byte.
// Internal: callers want regex/regex.h.
#pragma once

#include <regex/program.h>

#include <string_view>

namespace regex_detail {

// The first match that starts at `from` or later; its slots are stored in `slots`, which is left alone
// without a match. Time is linear in the text times the program, memory linear in the program.
bool simulate(const Program& program, std::string_view text, std::size_t from, unsigned int* slots);

}  // namespace regex_detail
