// Answers a mistyped name with the one that was probably meant.
// Internal: callers want stores/entry_query.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The known word with the fewest letters inserted, deleted, replaced or swapped with their neighbour, the
// earliest of several; the case of ASCII letters does not count. None where more than a third of the letters
// would be wrong.
[[nodiscard]] std::optional<std::string> nearest_word(std::string_view word,
                                                      const std::vector<std::string>& known);
