// A tree of conditions, written in either language.
// Internal: callers want stores/entry_query.h.
#pragma once

#include <stores/query/entry_condition.h>

#include <optional>
#include <string>

// Nothing where the language has no words for a part of it.
[[nodiscard]] std::optional<std::string> filter_text(const Condition& condition);
[[nodiscard]] std::optional<std::string> short_text(const Condition& condition);
