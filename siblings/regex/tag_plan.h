// Which ends of the capture groups a search records in a tag, and how the others follow from these.
// Internal: callers want regex/regex.h.
//
// In VORN\s(\d+) the group begins 5 bytes after the start of the match and ends with it: only the start needs
// a tag. In x*(ab)?y the group has taken part or not, but if it has, it began 2 bytes before its end. The
// literature calls an end that follows from another a fixed tag.
#pragma once

#include <regex/syntax_tree.h>

#include <cstdint>
#include <vector>

namespace regex_detail {

// The bytes that a node may take, at least and at most. A width that is not limited, or out of proportion, is
// `wide`.
struct Extent {
  static constexpr unsigned int wide = 1U << 20U;

  bool can_be_empty() const { return least == 0; }
  bool fixed() const { return least == most && most < wide; }

  unsigned int least = 0;
  unsigned int most = 0;
};

// By node.
std::vector<Extent> extents(const SyntaxTree& tree);

// Slots are numbered like the brackets' offsets in the results: two a group, begin and end, the whole match
// being group 0.
struct TagPlan {
  // The position of a slot is the value of this tag plus the distance, modulo 2^32: 2^32 - n is n bytes
  // before the tag. Unset if the tag is unset.
  struct Place {
    std::uint32_t tag;
    std::uint32_t distance;
  };

  TagPlan(const SyntaxTree& tree, const std::vector<Extent>& extents);

  // Whether the slot has a tag of its own, which is set as the bracket is passed.
  bool has_tag(std::uint32_t slot) const { return tagged[slot]; }

  static constexpr std::uint32_t match_start = 0;   // the tag that every thread begins with
  std::uint32_t match_end() const { return tags; }  // is no tag: the search knows it when it ends

  std::vector<Place> places;  // by slot
  std::vector<bool> tagged;   // by slot
  std::uint32_t tags = 1;
};

}  // namespace regex_detail
