#include <utilities/trim.h>

std::string trim(const std::string& text, std::string characters) {
  const std::size_t first = text.find_first_not_of(characters);
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(characters) - first + 1);
}
