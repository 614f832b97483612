// The conditions that a query in the short form means.
// Internal: callers want stores/entry_query.h.
#pragma once

#include <stores/query/entry_condition.h>

#include <string>

// Throws EntryQueryError. An empty text is every entry. The time is linear in the length.
[[nodiscard]] ConditionPointer text_meaning(const std::string& text);
