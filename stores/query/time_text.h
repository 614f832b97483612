// Times in filters, which are kept as texts.
// Internal: callers want stores/entry_query.h.
#pragma once

#include <stores/query/entry_condition.h>

#include <optional>
#include <string>

// A comparison with a time by RFC 3339 ("2007-04-05T16:30:20.5+02:00"), as one with a text in whole seconds
// of universal time, which is how times are kept ("2007-04-05T14:30:20Z"). Nothing for what is no such time,
// or no comparison of times. A leap second is the first second of the minute after it.
[[nodiscard]] std::optional<ConditionPointer> time_condition(const PropertyName& property,
                                                             EntryOperator comparison,
                                                             const std::string& text);
