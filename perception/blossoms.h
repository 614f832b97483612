// The matching of the greatest weight in a graph of any shape.
// Internal: callers want perception/matching.h.
//
// Edmonds' algorithm with dual variables, in the form that looks at every pair once in a phase (Galil, ACM
// Computing Surveys 18, 23, 1986): time in proportion to the third power of the items, memory to the second.
// Odd rings are taken together into blossoms, blossoms into larger ones. Weights are whole numbers, so that
// equal sums are equal.
#pragma once

#include <cstddef>
#include <vector>

class BlossomMatching {
 public:
  explicit BlossomMatching(std::size_t items);

  // Items are counted from 0; the weight is above 0, and at most 10^15.
  void add(std::size_t first, std::size_t second, long long weight);

  static constexpr std::size_t none = static_cast<std::size_t>(-1);
  // Each item's partner, or none.
  [[nodiscard]] std::vector<std::size_t> mates();

 private:
  // Nodes are items, counted from 1, then blossoms; 0 is none.
  using Node = std::size_t;
  struct Edge {
    Node from = 0;  // items, also where the edge is one of blossoms
    Node to = 0;
    long long weight = 0;  // 0 where there is none
  };
  // Of a blossom: its place in the tree that grows from the items without partner.
  enum class Label { free, outer, inner };

  [[nodiscard]] Edge& edge(Node from, Node to) { return edges_[from * size_ + to]; }
  [[nodiscard]] const Edge& edge(Node from, Node to) const { return edges_[from * size_ + to]; }
  // Twice what the duals of both ends exceed the weight by.
  [[nodiscard]] long long gap(const Edge& of) const {
    return duals_[of.from] + duals_[of.to] - 2 * edge(of.from, of.to).weight;
  }
  [[nodiscard]] bool is_top(Node node) const { return top_[node] == node; }
  [[nodiscard]] Node member_holding(Node blossom, Node item) const {
    return holding_[blossom * size_ + item];
  }

  void offer_nearest(Node item, Node node);
  void find_nearest(Node node);
  void queue_items(Node node);
  void set_top(Node node, Node blossom);
  std::size_t turn_to(Node blossom, Node member);
  void marry(Node node, Node other);
  void augment(Node node, Node other);
  Node common_root(Node one, Node other);
  Node unused_blossom();
  void make_blossom(Node one, Node base, Node other);
  void open_blossom(Node blossom);
  bool take(const Edge& found);
  void plant();
  bool grow();
  bool adjust_duals();
  bool find_augmenting_way();

  std::size_t items_;
  std::size_t size_;   // of the tables: items and as many blossoms as can be, and 0
  std::size_t nodes_;  // the last node in use
  std::vector<Edge> edges_;
  std::vector<Node> holding_;
  std::vector<long long> duals_;
  std::vector<Node> mates_;    // the item at the other end
  std::vector<Node> nearest_;  // the outer item with the smallest gap to a node
  std::vector<Node> top_;      // the outermost blossom that holds a node
  std::vector<Node> parent_;   // the item from which a node was reached
  std::vector<Label> labels_;
  std::vector<std::size_t> seen_;
  std::size_t search_ = 0;
  std::vector<std::vector<Node>> members_;
  std::vector<Node> queue_;
  std::size_t queue_begin_ = 0;
};
