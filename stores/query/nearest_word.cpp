#include <stores/query/nearest_word.h>

#include <algorithm>

namespace {

// Longer words are data, not typing.
constexpr std::size_t longest_word = 100;

char small(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// Three rows of the table of distances between prefixes are kept: this one and the two before it.
std::size_t distance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> before(to.size() + 1);
  std::vector<std::size_t> last(to.size() + 1);
  std::vector<std::size_t> row(to.size() + 1);
  for (std::size_t j = 0; j <= to.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= from.size(); ++i) {
    before.swap(last);
    last.swap(row);
    row[0] = i;
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const bool same = small(from[i - 1]) == small(to[j - 1]);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
      if (i > 1 && j > 1 && small(from[i - 1]) == small(to[j - 2]) &&
          small(from[i - 2]) == small(to[j - 1])) {
        row[j] = std::min(row[j], before[j - 2] + 1);
      }
    }
  }
  return row[to.size()];
}

}  // namespace

std::optional<std::string> nearest_word(std::string_view word, const std::vector<std::string>& known) {
  if (word.size() > longest_word) return std::nullopt;
  std::optional<std::string> nearest;
  std::size_t least = std::max<std::size_t>(1, word.size() / 3) + 1;
  for (const std::string& candidate : known) {
    const std::size_t wrong = distance(word, candidate);
    if (wrong >= least) continue;
    least = wrong;
    nearest = candidate;
  }
  return nearest;
}
