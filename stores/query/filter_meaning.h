// The conditions that a filter means.
// Internal: callers want stores/entry_query.h.
#pragma once

#include <stores/query/entry_condition.h>
#include <stores/query/filter_syntax.h>

#include <string>

// Throws EntryQueryError; an error of syntax is told before any name is looked up.
[[nodiscard]] ConditionPointer filter_meaning(const std::string& filter);
