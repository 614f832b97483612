// A tree of conditions as SQL.
// Internal: callers want stores/entry_query.h.
#pragma once

#include <stores/query/entry_condition.h>

[[nodiscard]] SqlCondition sql_condition(const Condition& condition, SqlDialect dialect, int first_parameter);
