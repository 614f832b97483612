// Reads a pattern.
// Internal: callers want regex/regex.h.
#pragma once

#include <regex/syntax_tree.h>

#include <string>

namespace regex_detail {

// Throws RegexError. Takes stack independent of the pattern: open brackets are kept on the heap.
SyntaxTree parse(const std::string& pattern, bool extended_syntax);

}  // namespace regex_detail
