#include <stores/engines/nearest_text.h>

#include <algorithm>
#include <numeric>

namespace {

// The beginnings of long texts are enough.
constexpr std::size_t compared = 100;

std::size_t distance(const std::string& one, const std::string& other) {
  std::vector<std::size_t> row(std::min(other.size(), compared) + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < std::min(one.size(), compared); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 1; j < row.size(); ++j) {
      const std::size_t changed = diagonal + (one[i] == other[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string nearest_text(const std::string& text, const std::vector<std::string>& candidates) {
  const auto nearest = std::min_element(candidates.begin(), candidates.end(),
                                        [&](const std::string& one, const std::string& other) {
                                          return distance(text, one) < distance(text, other);
                                        });
  return nearest == candidates.end() ? "" : *nearest;
}
