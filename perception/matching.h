// Pairs of the greatest total weight, each item in one pair at most.
// Internal: callers want perception/bond_types.h.
#pragma once

#include <cstddef>
#include <vector>

struct WeightedPair {
  std::size_t first = 0;
  std::size_t second = 0;
  double weight = 0.0;  // above 0
};

// The positions of the chosen pairs, sorted. Each connected part is solved alone; of a part with more than
// 400 items the pairs are chosen one by one, the heaviest first.
[[nodiscard]] std::vector<std::size_t> heaviest_matching(std::size_t items,
                                                         const std::vector<WeightedPair>& pairs);
