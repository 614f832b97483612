// What a CIF value says, as text and as number.
#pragma once

#include <mathematics/uncertain_value.h>

#include <optional>
#include <string>

// The text on one line. CIF writes letters beyond ASCII as a code before the letter: \"o is "ö", \'e is "é",
// \a is "α"; they become UTF-8. Runs of white space and control characters become one blank, at the ends
// none. Raised and lowered text (^2+^, ~3~) stays as it stands, as does a code that is not in the tables.
[[nodiscard]] std::string readable_text(const std::string& text);

// "5.26(4)" is 5.26 with the standard uncertainty 0.04, "0.8330" is 0.833 without one. No value when the text
// is anything else or does not fit a double.
[[nodiscard]] std::optional<UncertainValue> cif_number(const std::string& text);

// A whole number in the range of an int, digits and a sign only.
[[nodiscard]] std::optional<int> cif_integer(const std::string& text);
