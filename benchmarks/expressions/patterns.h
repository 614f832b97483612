// The expressions that the library searches with, texts for each of them, and texts made to be slow.
#pragma once

#include "expressions/engine.h"

// In the order in which the library builds them: 2 of cross-references, 11 of depositions, 2 of file names.
const std::vector<Pattern>& patterns();

// 64 texts of 60 to 200 bytes such as this pattern meets: most with a match or several, some with none.
std::vector<std::string> texts_for(const Pattern& pattern);

struct HostileText {
  std::string name;
  std::string text;
};
// Long runs of what the patterns begin with, `size` bytes each.
std::vector<HostileText> hostile_texts(std::size_t size);
