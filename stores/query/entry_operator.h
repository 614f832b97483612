// How two values are compared.
// Internal: callers want stores/entry_query.h.
#pragma once

#include <stores/entry_query.h>

using EntryOperator = EntryQuery::Operator;

// "=", "!=", ..., "CONTAINS", "STARTS WITH", "ENDS WITH".
[[nodiscard]] const char* text_of(EntryOperator comparison);
