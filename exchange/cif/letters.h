// Letters of ASCII, whatever the locale of the process.
// Internal: callers want exchange/cif_reader.h.
#pragma once

#include <string>
#include <string_view>

[[nodiscard]] constexpr bool is_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

[[nodiscard]] constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

[[nodiscard]] inline std::string lower_case(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

[[nodiscard]] inline bool has_digit(std::string_view text) {
  return text.find_first_of("0123456789") != std::string_view::npos;
}
