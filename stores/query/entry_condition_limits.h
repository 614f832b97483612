// How large a query may be, so that no text exhausts the stack, and every engine takes every query.
// Internal: callers want stores/entry_query.h.
#pragma once

#include <cstddef>

// Parentheses within parentheses, and negations.
constexpr std::size_t deepest_query = 100;
// Conditions, counting each value of a list: an engine takes some ten thousands of parameters.
constexpr std::size_t largest_query = 2000;
