#include "tools/messages/nearest_name.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>

namespace {

std::string folded(const std::string& text) {
  std::string result = text;
  for (char& letter : result) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  return result;
}

// More names than this are no help in a message.
constexpr std::size_t few_names = 40;

// Longer names are data, not typing.
constexpr std::size_t longest_name = 200;

}  // namespace

int typing_distance(const std::string& a, const std::string& b) {
  const std::string from = folded(a);
  const std::string to = folded(b);
  // Three rows of the table of distances between prefixes: two before, one before, this one.
  std::vector<int> before(to.size() + 1);
  std::vector<int> last(to.size() + 1);
  std::vector<int> row(to.size() + 1);
  for (std::size_t j = 0; j <= to.size(); ++j) row[j] = static_cast<int>(j);
  for (std::size_t i = 1; i <= from.size(); ++i) {
    before.swap(last);
    last.swap(row);
    row[0] = static_cast<int>(i);
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const int replaced = last[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
      if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
        row[j] = std::min(row[j], before[j - 2] + 1);
      }
    }
  }
  return row[to.size()];
}

std::optional<std::string> nearest_name(const std::string& name, const std::vector<std::string>& known) {
  if (name.size() > longest_name) return std::nullopt;
  std::optional<std::string> nearest;
  int fewest = std::max(1, static_cast<int>(name.size()) / 3) + 1;
  for (const std::string& candidate : known) {
    if (candidate.size() > longest_name) continue;
    const int distance = typing_distance(name, candidate);
    if (distance >= fewest) continue;
    fewest = distance;
    nearest = candidate;
  }
  return nearest;
}

std::string unknown_name(const std::string& kind, const std::string& name,
                         const std::vector<std::string>& known) {
  const std::string beginning = fmt::format("unknown {} '{}'", kind, name);
  if (const auto nearest = nearest_name(name, known)) {
    return fmt::format("{}; did you mean '{}'?", beginning, *nearest);
  }
  if (known.empty() || known.size() > few_names) return beginning;
  return fmt::format("{}; known are: {}", beginning, fmt::join(known, ", "));
}
