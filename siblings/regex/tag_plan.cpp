#include <regex/tag_plan.h>

#include <algorithm>

namespace regex_detail {
namespace {

constexpr std::uint32_t nowhere = ~std::uint32_t{0};

unsigned int sum(unsigned int first, unsigned int second) {
  return std::min(first + second, Extent::wide);
}

// The factors are below 2^21, a repeat that has no highest count aside.
unsigned int product(unsigned int width, unsigned int times) {
  if (times == unbounded) return width == 0 ? 0 : Extent::wide;
  return static_cast<unsigned int>(std::min<std::uint64_t>(std::uint64_t{width} * times, Extent::wide));
}

// What every match passes exactly once, from its start to its end: brackets of groups, and what is
// between them.
struct Piece {
  NodeIndex node;
  std::uint32_t slot;  // of a bracket; nowhere for a node
};

std::vector<Piece> spine_of(const SyntaxTree& tree) {
  std::vector<Piece> spine;
  std::vector<Piece> pending{{tree.root, nowhere}};
  while (!pending.empty()) {
    const Piece piece = pending.back();
    pending.pop_back();
    const Node& node = tree.nodes[piece.node];
    if (piece.slot == nowhere && node.kind == Node::group) {
      pending.push_back({piece.node, 2 * node.number + 1});
      pending.push_back({node.first_child, nowhere});
      pending.push_back({piece.node, 2 * node.number});
    } else if (piece.slot == nowhere && node.kind == Node::sequence) {
      const auto first = static_cast<std::ptrdiff_t>(pending.size());
      for (NodeIndex item = node.first_child; item != no_node; item = tree.nodes[item].next_sibling) {
        pending.push_back({item, nowhere});
      }
      std::reverse(pending.begin() + first, pending.end());
    } else {
      spine.push_back(piece);
    }
  }
  return spine;
}

}  // namespace

std::vector<Extent> extents(const SyntaxTree& tree) {
  std::vector<Extent> extents(tree.nodes.size());
  for (std::size_t index = 0; index < tree.nodes.size(); ++index) {
    const Node& node = tree.nodes[index];
    Extent& extent = extents[index];
    if (node.kind == Node::bytes) extent = {1, 1};
    if (node.first_child == no_node) continue;
    extent = extents[node.first_child];
    if (node.kind == Node::repeat) {
      extent = {product(extent.least, node.minimum), product(extent.most, node.maximum)};
    }
    if (node.kind != Node::sequence && node.kind != Node::alternatives) continue;
    for (NodeIndex each = tree.nodes[node.first_child].next_sibling; each != no_node;
         each = tree.nodes[each].next_sibling) {
      const Extent& other = extents[each];
      extent = node.kind == Node::sequence
                   ? Extent{sum(extent.least, other.least), sum(extent.most, other.most)}
                   : Extent{std::min(extent.least, other.least), std::max(extent.most, other.most)};
    }
  }
  return extents;
}

TagPlan::TagPlan(const SyntaxTree& tree, const std::vector<Extent>& extents)
    : places(2 * (tree.groups + 1), {nowhere, 0}), tagged(places.size(), false) {
  // What is at a fixed distance after the start or before the end of the match, as long as nothing between
  // varies.
  std::vector<Piece> spine = spine_of(tree);
  const auto place_along_spine = [&](std::uint32_t tag, std::uint32_t direction) {
    std::uint32_t distance = 0;
    for (const Piece& piece : spine) {
      if (piece.slot == nowhere) {
        if (!extents[piece.node].fixed()) return;
        distance += direction * extents[piece.node].least;
      } else if (places[piece.slot].tag == nowhere) {
        places[piece.slot] = {tag, distance};
      }
    }
  };
  // The end has its number last, when the tags have been counted.
  const std::uint32_t end = nowhere - 1;
  places[0] = {match_start, 0};
  places[1] = {end, 0};
  place_along_spine(match_start, 1);
  std::reverse(spine.begin(), spine.end());
  place_along_spine(end, ~std::uint32_t{0});

  const auto give_tag = [this](std::uint32_t slot) {
    places[slot] = {tags++, 0};
    tagged[slot] = true;
  };
  for (std::size_t index = 0; index < tree.nodes.size(); ++index) {
    if (tree.nodes[index].kind != Node::group) continue;
    const std::uint32_t begin = 2 * tree.nodes[index].number;
    if (places[begin + 1].tag == nowhere) give_tag(begin + 1);
    if (places[begin].tag != nowhere) continue;
    if (extents[index].fixed()) {
      places[begin] = {places[begin + 1].tag, places[begin + 1].distance - extents[index].least};
    } else {
      give_tag(begin);
    }
  }
  for (Place& place : places) {
    if (place.tag == end) place.tag = match_end();
  }
}

}  // namespace regex_detail
