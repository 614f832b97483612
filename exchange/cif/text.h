// What a CIF value says, as text and as number.
// Internal: callers want exchange/cif_import.h.
#pragma once

#include <mathematics/uncertain_value.h>

#include <optional>
#include <string>

#include "exchange/cif/readable_text.h"

// "5.26(4)" is 5.26 with the standard uncertainty 0.04, "0.8330" is 0.833 without one. No value when the text
// is anything else or does not fit a double.
[[nodiscard]] std::optional<UncertainValue> cif_number(const std::string& text);

// A whole number in the range of an int, digits and a sign only.
[[nodiscard]] std::optional<int> cif_integer(const std::string& text);
