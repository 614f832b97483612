// Days as files write them.
// Internal: callers want exchange/cif_reader.h.
#pragma once

#include <utilities/date.h>

#include <optional>
#include <string>

// "2005-05-11", "2005/5/11", "2005.05.11", "20050511", "11-May-2005", "May 11, 2005", "11.05.2005",
// "Wed May 11 13:12:09 2005", "91-02-14", each with or without a time after it. No date for what is no day of
// the calendar, and for "05/11/2005", which is in November for some and in May for others.
[[nodiscard]] std::optional<Date> day_of(const std::string& text);

// The latest day that begins a word of the text.
[[nodiscard]] std::optional<Date> latest_day_of(const std::string& text);
