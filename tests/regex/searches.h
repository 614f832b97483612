// What a search finds, as one line to compare: "0-5 2-3 x" is a match from 0 to 5, whose first group took 2
// to 3 and whose second took no part; "none" is no match.
#pragma once

#include <regex/regex.h>

#include <string>

inline std::string shown(const RegexResults& results) {
  std::string line;
  for (unsigned int group = 0; group < results.size(); ++group) {
    const RegexResults::Match match = results.match(group);
    line += group > 0 ? " " : "";
    line += match.matched() ? std::to_string(match.begin_offset()) + "-" + std::to_string(match.end_offset())
                            : "x";
  }
  return line.empty() ? "none" : line;
}

inline std::string found(const Regex& expression, const std::string& text, unsigned int position = 0) {
  RegexResults results;
  expression.search_from_position(text, position, results, 0);
  return shown(results);
}

// The same expression, for texts without a z, but too long for the automaton, so that the simulation
// searches.
inline Regex simulated(const std::string& pattern) {
  return Regex("(?:" + pattern + ")|z{600}");
}
