#include <perception/rings.h>

#include <algorithm>
#include <set>

namespace {

// All shortest ways from one atom to another, up to a length, without the bond between them.
class Walk {
 public:
  Walk(const std::vector<std::vector<std::size_t>>& neighbours)
      : neighbours_(neighbours), distance_(neighbours.size(), 0) {}

  std::vector<std::vector<std::size_t>> ways(std::size_t from, std::size_t to, std::size_t longest) {
    found_.clear();
    // Distances from the end, found in rings around it; 0 is "not reached", so that they begin with 1.
    std::vector<std::size_t> reached = {to};
    distance_[to] = 1;
    for (std::size_t next = 0; next < reached.size(); ++next) {
      const std::size_t atom = reached[next];
      if (atom == from || distance_[atom] >= longest) break;
      for (const std::size_t other : neighbours_[atom]) {
        if (distance_[other] != 0 || (atom == to && other == from)) continue;
        distance_[other] = distance_[atom] + 1;
        reached.push_back(other);
      }
    }
    if (distance_[from] != 0) {
      way_ = {from};
      follow(from, to);
    }
    for (const std::size_t atom : reached) distance_[atom] = 0;
    return found_;
  }

 private:
  void follow(std::size_t atom, std::size_t to) {
    if (found_.size() >= 8) return;  // as many as meet in one bond of a cage
    if (atom == to) {
      found_.push_back(way_);
      return;
    }
    for (const std::size_t other : neighbours_[atom]) {
      if (distance_[other] == 0 || distance_[other] + 1 != distance_[atom]) continue;
      way_.push_back(other);
      follow(other, to);
      way_.pop_back();
    }
  }

  const std::vector<std::vector<std::size_t>>& neighbours_;
  std::vector<std::size_t> distance_;
  std::vector<std::size_t> way_;
  std::vector<std::vector<std::size_t>> found_;
};

}  // namespace

std::vector<std::vector<std::size_t>> small_rings(std::size_t atoms,
                                                  const std::vector<std::array<std::size_t, 2>>& bonds,
                                                  std::size_t longest) {
  std::vector<std::vector<std::size_t>> neighbours(atoms);
  for (const auto& [first, second] : bonds) {
    if (first == second) continue;
    neighbours[first].push_back(second);
    neighbours[second].push_back(first);
  }
  Walk walk(neighbours);
  std::set<std::vector<std::size_t>> known;
  std::vector<std::vector<std::size_t>> rings;
  for (const auto& [first, second] : bonds) {
    if (first == second || neighbours[first].size() < 2 || neighbours[second].size() < 2) continue;
    for (const std::vector<std::size_t>& ring : walk.ways(first, second, longest)) {
      if (ring.size() < 3) continue;
      std::vector<std::size_t> sorted = ring;
      std::sort(sorted.begin(), sorted.end());
      if (known.insert(std::move(sorted)).second) rings.push_back(ring);
    }
  }
  return rings;
}
