// Answers a mistyped name with the one that was probably meant.
//
//   nearest_name("athors", {"authors", "formula"})   // "authors"
//   unknown_name("column", "athors", columns)
//                                     // "unknown column 'athors'; did you mean 'authors'?"
#pragma once

#include <optional>
#include <string>
#include <vector>

// Insertions, deletions, replacements and swaps of neighbours that lead from one text to the other. The case
// of ASCII letters does not count.
[[nodiscard]] int typing_distance(const std::string& a, const std::string& b);

// The known name with the fewest typing errors, the earliest of several; none when more than a third of the
// letters would be wrong.
[[nodiscard]] std::optional<std::string> nearest_name(const std::string& name,
                                                      const std::vector<std::string>& known);

// One sentence without a full stop: names the nearest known name or, where none is near, all of a few.
[[nodiscard]] std::string unknown_name(const std::string& kind, const std::string& name,
                                       const std::vector<std::string>& known);
