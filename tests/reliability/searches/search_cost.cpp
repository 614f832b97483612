// search_cost: the number of searches. search_cost INDEX: the name of one. search_cost INDEX BYTES: runs it
// once. tests/reliability/searches/instruction_counts.py counts its instructions.
#include <cstdlib>
#include <iostream>

#include "searched_texts.h"

int main(int count, char** arguments) {
  const std::vector<Search> all = searches();
  if (count == 1) {
    std::cout << all.size() << '\n';
    return 0;
  }
  const Search& search = all.at(static_cast<std::size_t>(std::atol(arguments[1])));
  if (count == 2) {
    std::cout << search.name << '\n';
    return 0;
  }
  const std::string text = repeated(search.piece, static_cast<std::size_t>(std::atol(arguments[2])));
  std::cout << search.run(text) << " matches\n";
  return 0;
}
