#include <perception/blossoms.h>

#include <algorithm>
#include <limits>
#include <utility>

BlossomMatching::BlossomMatching(std::size_t items)
    : items_(items),
      size_(items + items / 2 + 2),
      nodes_(items),
      edges_(size_ * size_),
      holding_(size_ * size_),
      duals_(size_),
      mates_(size_),
      nearest_(size_),
      top_(size_),
      parent_(size_),
      labels_(size_, Label::free),
      seen_(size_),
      members_(size_) {
  for (Node item = 1; item <= items_; ++item) {
    top_[item] = item;
    holding_[item * size_ + item] = item;
  }
}

void BlossomMatching::add(std::size_t first, std::size_t second, long long weight) {
  const Node one = first + 1;
  const Node other = second + 1;
  edge(one, other) = {one, other, weight};
  edge(other, one) = {other, one, weight};
}

std::vector<std::size_t> BlossomMatching::mates() {
  long long heaviest = 0;
  for (const Edge& of : edges_) heaviest = std::max(heaviest, of.weight);
  std::fill(duals_.begin() + 1, duals_.begin() + static_cast<std::ptrdiff_t>(items_) + 1, heaviest);
  while (find_augmenting_way()) {
  }
  std::vector<std::size_t> partners(items_, none);
  for (Node item = 1; item <= items_; ++item)
    if (mates_[item] != 0) partners[item - 1] = mates_[item] - 1;
  return partners;
}

void BlossomMatching::offer_nearest(Node item, Node node) {
  if (nearest_[node] == 0 || gap(edge(item, node)) < gap(edge(nearest_[node], node))) nearest_[node] = item;
}

void BlossomMatching::find_nearest(Node node) {
  nearest_[node] = 0;
  for (Node item = 1; item <= items_; ++item)
    if (edge(item, node).weight > 0 && top_[item] != node && labels_[top_[item]] == Label::outer)
      offer_nearest(item, node);
}

void BlossomMatching::queue_items(Node node) {
  if (node <= items_) {
    queue_.push_back(node);
    return;
  }
  for (const Node member : members_[node]) queue_items(member);
}

void BlossomMatching::set_top(Node node, Node blossom) {
  top_[node] = blossom;
  for (const Node member : members_[node]) set_top(member, blossom);
}

// Turns the ring so that the member is an even number of steps after the base; gives that number.
std::size_t BlossomMatching::turn_to(Node blossom, Node member) {
  std::vector<Node>& ring = members_[blossom];
  const auto steps = static_cast<std::size_t>(std::find(ring.begin(), ring.end(), member) - ring.begin());
  if (steps % 2 == 0) return steps;
  std::reverse(ring.begin() + 1, ring.end());
  return ring.size() - steps;
}

// Pairs a node with another one, and within a blossom the rest of its members.
void BlossomMatching::marry(Node node, Node other) {
  const Edge by = edge(node, other);
  mates_[node] = by.to;
  if (node <= items_) return;
  const Node member = member_holding(node, by.from);
  const std::size_t steps = turn_to(node, member);
  std::vector<Node>& ring = members_[node];
  for (std::size_t i = 0; i < steps; ++i) marry(ring[i], ring[i ^ 1U]);
  marry(member, other);
  std::rotate(ring.begin(), ring.begin() + static_cast<std::ptrdiff_t>(steps), ring.end());
}

// Exchanges pairs and gaps from a node up to the root of its tree.
void BlossomMatching::augment(Node node, Node other) {
  for (;;) {
    const Node before = top_[mates_[node]];
    marry(node, other);
    if (before == 0) return;
    const Node above = top_[parent_[before]];
    marry(before, above);
    node = above;
    other = before;
  }
}

// The first blossom on the ways of both to their roots; none where the roots differ.
BlossomMatching::Node BlossomMatching::common_root(Node one, Node other) {
  ++search_;
  while (one != 0 || other != 0) {
    if (one != 0) {
      if (seen_[one] == search_) return one;
      seen_[one] = search_;
      one = top_[mates_[one]];
      if (one != 0) one = top_[parent_[one]];
    }
    std::swap(one, other);
  }
  return 0;
}

BlossomMatching::Node BlossomMatching::unused_blossom() {
  Node blossom = items_ + 1;
  while (blossom <= nodes_ && top_[blossom] != 0) ++blossom;
  nodes_ = std::max(nodes_, blossom);
  return blossom;
}

void BlossomMatching::make_blossom(Node one, Node base, Node other) {
  const Node blossom = unused_blossom();
  duals_[blossom] = 0;
  labels_[blossom] = Label::outer;
  mates_[blossom] = mates_[base];
  std::vector<Node>& ring = members_[blossom];
  ring = {base};
  const auto climb = [&](Node from) {
    while (from != base) {
      const Node partner = top_[mates_[from]];
      ring.push_back(from);
      ring.push_back(partner);
      queue_items(partner);
      from = top_[parent_[partner]];
    }
  };
  climb(one);
  std::reverse(ring.begin() + 1, ring.end());
  climb(other);
  set_top(blossom, blossom);
  for (Node node = 1; node <= nodes_; ++node) edge(blossom, node) = edge(node, blossom) = {};
  for (Node item = 1; item <= items_; ++item) holding_[blossom * size_ + item] = 0;
  for (const Node member : ring) {
    for (Node node = 1; node <= nodes_; ++node) {
      if (edge(member, node).weight == 0) continue;
      if (edge(blossom, node).weight != 0 && gap(edge(member, node)) >= gap(edge(blossom, node))) continue;
      edge(blossom, node) = edge(member, node);
      edge(node, blossom) = edge(node, member);
    }
    for (Node item = 1; item <= items_; ++item)
      if (member_holding(member, item) != 0) holding_[blossom * size_ + item] = member;
  }
  find_nearest(blossom);
}

// An inner blossom whose dual has come to nothing: its members take its place in the tree.
void BlossomMatching::open_blossom(Node blossom) {
  const std::vector<Node>& ring = members_[blossom];
  for (const Node member : ring) set_top(member, member);
  const Node entry = member_holding(blossom, edge(blossom, parent_[blossom]).from);
  const std::size_t steps = turn_to(blossom, entry);
  for (std::size_t i = 0; i < steps; i += 2) {
    const Node inner = ring[i];
    const Node outer = ring[i + 1];
    parent_[inner] = edge(outer, inner).from;
    labels_[inner] = Label::inner;
    labels_[outer] = Label::outer;
    nearest_[inner] = 0;
    find_nearest(outer);
    queue_items(outer);
  }
  labels_[entry] = Label::inner;
  parent_[entry] = parent_[blossom];
  for (std::size_t i = steps + 1; i < ring.size(); ++i) {
    labels_[ring[i]] = Label::free;
    find_nearest(ring[i]);
  }
  top_[blossom] = 0;
  members_[blossom].clear();
}

// A tight edge from an outer node: the tree grows, a ring closes, or two trees meet. True where a pair more
// was made.
bool BlossomMatching::take(const Edge& found) {
  const Edge by = found;
  const Node one = top_[by.from];
  const Node other = top_[by.to];
  if (labels_[other] == Label::free) {
    parent_[other] = by.from;
    labels_[other] = Label::inner;
    const Node partner = top_[mates_[other]];
    nearest_[other] = nearest_[partner] = 0;
    labels_[partner] = Label::outer;
    queue_items(partner);
  } else if (labels_[other] == Label::outer) {
    const Node base = common_root(one, other);
    if (base == 0) {
      augment(one, other);
      augment(other, one);
      return true;
    }
    make_blossom(one, base, other);
  }
  return false;
}

// A tree from each node without partner.
void BlossomMatching::plant() {
  queue_.clear();
  queue_begin_ = 0;
  for (Node node = 1; node <= nodes_; ++node) {
    labels_[node] = Label::free;
    nearest_[node] = 0;
    if (!is_top(node) || mates_[node] != 0) continue;
    parent_[node] = 0;
    labels_[node] = Label::outer;
    queue_items(node);
  }
}

// Along tight edges as far as they lead. True where a pair more was made.
bool BlossomMatching::grow() {
  while (queue_begin_ < queue_.size()) {
    const Node item = queue_[queue_begin_++];
    if (labels_[top_[item]] == Label::inner) continue;
    for (Node next = 1; next <= items_; ++next) {
      if (edge(item, next).weight == 0 || top_[item] == top_[next]) continue;
      if (gap(edge(item, next)) > 0) {
        offer_nearest(item, top_[next]);
      } else if (take(edge(item, next))) {
        return true;
      }
    }
  }
  return false;
}

// Makes another edge tight, or an inner blossom ripe to be opened. False where an item's dual would be
// nothing: the matching is the heaviest.
bool BlossomMatching::adjust_duals() {
  long long step = std::numeric_limits<long long>::max();
  for (Node node = 1; node <= nodes_; ++node) {
    if (!is_top(node)) continue;
    if (node > items_ && labels_[node] == Label::inner) step = std::min(step, duals_[node] / 2);
    if (nearest_[node] == 0) continue;
    const long long rest = gap(edge(nearest_[node], node));
    if (labels_[node] == Label::free) step = std::min(step, rest);
    if (labels_[node] == Label::outer) step = std::min(step, rest / 2);
  }
  const auto sign = [&](Node node) {
    const Label label = labels_[top_[node]];
    return label == Label::outer ? 1 : label == Label::inner ? -1 : 0;
  };
  for (Node item = 1; item <= items_; ++item)
    if (sign(item) == 1 && duals_[item] <= step) return false;
  for (Node item = 1; item <= items_; ++item) duals_[item] -= sign(item) * step;
  for (Node blossom = items_ + 1; blossom <= nodes_; ++blossom)
    if (is_top(blossom)) duals_[blossom] += 2 * sign(blossom) * step;
  return true;
}

bool BlossomMatching::find_augmenting_way() {
  plant();
  if (queue_.empty()) return false;
  for (;;) {
    if (grow()) return true;
    if (!adjust_duals()) return false;
    queue_.clear();
    queue_begin_ = 0;
    for (Node node = 1; node <= nodes_; ++node) {
      const Node item = nearest_[node];
      if (is_top(node) && item != 0 && top_[item] != node && gap(edge(item, node)) == 0 &&
          take(edge(item, node)))
        return true;
    }
    for (Node blossom = items_ + 1; blossom <= nodes_; ++blossom)
      if (is_top(blossom) && labels_[blossom] == Label::inner && duals_[blossom] == 0) open_blossom(blossom);
  }
}
