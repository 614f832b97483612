// A pattern as a tree: what the parser reads and the compiler writes out as a program.
// Internal: callers want regex/regex.h.
#pragma once

#include <bit>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace regex_detail {

using ByteSet = std::bitset<256>;
using NodeIndex = std::uint32_t;

inline constexpr NodeIndex no_node = ~NodeIndex{0};
inline constexpr unsigned int unbounded = ~0U;

// The bounds of what a pattern may ask for. They keep an expression below 10 MB and its construction below a
// second.
inline constexpr unsigned int most_instructions = 10000;
inline constexpr unsigned int most_groups = 250;
inline constexpr unsigned int deepest_nesting = 250;
inline constexpr unsigned int highest_repeat_count = 1000;

struct Node {
  enum Kind : std::uint8_t { empty, bytes, text_start, text_end, group, sequence, alternatives, repeat };

  Kind kind = empty;
  bool greedy = true;        // repeat
  unsigned int offset = 0;   // in the pattern
  unsigned int number = 0;   // bytes: index of its set; group: the number of the capture
  unsigned int minimum = 0;  // repeat
  unsigned int maximum = 0;  // repeat, may be unbounded
  NodeIndex first_child = no_node;
  NodeIndex next_sibling = no_node;
};

struct SyntaxTree {
  std::vector<Node> nodes;    // a node comes after its children
  std::vector<ByteSet> sets;  // no two are equal
  NodeIndex root = no_node;
  unsigned int groups = 0;
};

// Calls `visit` with each byte of a set, the lowest first.
template <class Visit>
void for_each_byte(const ByteSet& set, const Visit& visit) {
  constexpr std::size_t word = 64;
  for (std::size_t first = 0; first < set.size(); first += word) {
    std::uint64_t bits = ((set >> first) & ByteSet(~std::uint64_t{0})).to_ullong();
    for (; bits != 0; bits &= bits - 1) visit(first + static_cast<std::size_t>(std::countr_zero(bits)));
  }
}

}  // namespace regex_detail
