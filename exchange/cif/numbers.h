// What a CIF value says as a number.
// Internal: callers want exchange/cif_reader.h.
#pragma once

#include <mathematics/uncertain_value.h>

#include <optional>
#include <string_view>

// "5.26(4)" is 5.26 with the standard uncertainty 0.04, "0.8330" is 0.833 without one. No value when the text
// is anything else or does not fit a double.
[[nodiscard]] std::optional<UncertainValue> cif_number(std::string_view text);

// A whole number in the range of an int, digits and a sign only.
[[nodiscard]] std::optional<int> cif_integer(std::string_view text);

// How far the value of such a number may be from the true one: the greater of its uncertainty and half a unit
// of its last digit.
[[nodiscard]] double cif_number_margin(std::string_view text);
