// The markup of CIF and of HTML, and the characters that it is written for.
// Internal: callers want exchange/cif/readable_text.h.
#pragma once

#include <string>
#include <string_view>

// Whether a markup code may begin with this byte. Dashes and plus-minus signs, of which most are none, are
// not counted.
[[nodiscard]] constexpr bool begins_markup(char c) {
  return c == '\\' || c == '&' || c == '<' || c == '~' || c == '^';
}

// UTF-8 in, UTF-8 out. A code that is not in the tables stays as it is.
[[nodiscard]] std::string without_markup(std::string_view text);
