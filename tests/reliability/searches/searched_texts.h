// Every search that the library makes in strangers' texts, and expressions and texts that are hostile to
// engines that try one way after the other.
#pragma once

#include <functional>
#include <string>
#include <vector>

struct Search {
  std::string name;
  // A piece of the text to search, which is repeated to any length.
  std::string piece;
  // Searches the text. Gives the number of matches.
  std::function<std::size_t(const std::string& text)> run;
};

[[nodiscard]] std::vector<Search> searches();

[[nodiscard]] std::string repeated(const std::string& piece, std::size_t size);
