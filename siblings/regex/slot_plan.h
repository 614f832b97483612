// Which ends of the capture groups a search has to note on its way, and how the others follow from them.
// Internal: callers want regex/regex.h.
//
// In VORN\s(\d+) the group begins 5 bytes behind the start of the match and ends with it: only the start has
// to be noted. In x*(ab)?y the group has taken part or not, but if it has, it began 2 bytes before its end.
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
struct SlotPlan {
  // Where a slot is found: so many bytes behind what a thread has noted under this number; 2^32 - n is n
  // bytes before it. Unset if that is unset.
  struct Place {
    std::uint32_t note;
    std::uint32_t distance;
  };

  SlotPlan(const SyntaxTree& tree, const std::vector<Extent>& extents);

  // Whether the slot is noted as it is passed.
  bool noted(std::uint32_t slot) const { return own_note[slot]; }

  static constexpr std::uint32_t match_start = 0;    // the note that every thread begins with
  std::uint32_t match_end() const { return notes; }  // is no note: the search knows it when it ends

  std::vector<Place> places;   // by slot
  std::vector<bool> own_note;  // by slot
  std::uint32_t notes = 1;
};

}  // namespace regex_detail
