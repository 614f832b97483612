#include <utilities/trim.h>

std::string trim(const std::string& text, std::string characters) {
  return std::string(trim_view(text, characters));
}

std::string_view trim_view(std::string_view text, std::string_view characters) {
  const std::size_t first = text.find_first_not_of(characters);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(characters) - first + 1);
}
