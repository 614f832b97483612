#include <perception/blossoms.h>
#include <perception/matching.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>

namespace {

constexpr std::size_t largest_part = 400;

// Weights as whole numbers, so that equal sums are equal.
long long scaled(double weight) {
  return std::max(1LL, static_cast<long long>(weight * 20000.0));
}

std::vector<std::size_t> greedy(const std::vector<WeightedPair>& pairs, std::vector<std::size_t> part) {
  std::stable_sort(part.begin(), part.end(), [&](std::size_t left, std::size_t right) {
    return pairs[left].weight > pairs[right].weight;
  });
  std::vector<std::size_t> taken;
  std::vector<std::size_t> chosen;
  for (const std::size_t pair : part) {
    const auto& [first, second, weight] = pairs[pair];
    const auto is_taken = [&](std::size_t item) {
      return std::binary_search(taken.begin(), taken.end(), item);
    };
    if (is_taken(first) || is_taken(second)) continue;
    for (const std::size_t item : {first, second})
      taken.insert(std::upper_bound(taken.begin(), taken.end(), item), item);
    chosen.push_back(pair);
  }
  return chosen;
}

std::vector<std::size_t> exact(const std::vector<WeightedPair>& pairs, const std::vector<std::size_t>& part,
                               const std::vector<std::size_t>& place, std::size_t items) {
  // Of several pairs of the same two items the heaviest.
  std::map<std::pair<std::size_t, std::size_t>, std::size_t> best;
  for (const std::size_t pair : part) {
    const auto ends = std::minmax(place[pairs[pair].first], place[pairs[pair].second]);
    const auto [known, is_new] = best.emplace(ends, pair);
    if (!is_new && pairs[known->second].weight < pairs[pair].weight) known->second = pair;
  }
  BlossomMatching matching(items);
  for (const auto& [ends, pair] : best) matching.add(ends.first, ends.second, scaled(pairs[pair].weight));
  const std::vector<std::size_t> mates = matching.mates();
  std::vector<std::size_t> chosen;
  for (const auto& [ends, pair] : best)
    if (mates[ends.first] == ends.second) chosen.push_back(pair);
  return chosen;
}

}  // namespace

std::vector<std::size_t> heaviest_matching(std::size_t items, const std::vector<WeightedPair>& pairs) {
  // Connected parts, by joining the ends of each pair.
  std::vector<std::size_t> root(items);
  std::iota(root.begin(), root.end(), std::size_t{0});
  const auto find = [&](std::size_t item) {
    while (root[item] != item) item = root[item] = root[root[item]];
    return item;
  };
  for (const WeightedPair& pair : pairs) root[find(pair.first)] = find(pair.second);
  std::vector<std::vector<std::size_t>> parts(items);
  for (std::size_t pair = 0; pair < pairs.size(); ++pair) parts[find(pairs[pair].first)].push_back(pair);
  std::vector<std::size_t> size(items);
  std::vector<std::size_t> place(items);
  for (std::size_t item = 0; item < items; ++item) place[item] = size[find(item)]++;
  std::vector<std::size_t> chosen;
  for (std::size_t part = 0; part < items; ++part) {
    if (parts[part].empty()) continue;
    const std::vector<std::size_t> of_part =
        size[part] > largest_part ? greedy(pairs, parts[part]) : exact(pairs, parts[part], place, size[part]);
    chosen.insert(chosen.end(), of_part.begin(), of_part.end());
  }
  std::sort(chosen.begin(), chosen.end());
  return chosen;
}
