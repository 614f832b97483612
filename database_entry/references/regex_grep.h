// Walks a text match after match.
//
//   const auto collector = regex_grep(expression, text, CountMatches(), 0);
//
// Each match, from left to right, is handed to `collector(results)`; the search goes on where the match
// ended. After an empty match it goes on one byte after the position where that search had started. Gives
// the collector back. An empty text is never searched.
//
// Fails: what the collector throws passes through. Threads: any number may search with one expression.
#pragma once

#include <regex/regex.h>

#include <string>

template <class F>
F regex_grep(const Regex& expression, const std::string& text, F collector, unsigned int search_flags) {
  RegexResults results;
  unsigned int position = 0;
  while (position < text.size() && expression.search_from_position(text, position, results, search_flags)) {
    collector(results);
    position = results.empty_match() ? position + 1 : results.match(0).end_offset();
  }
  return collector;
}
