// What a search found: the whole match, and what each capture group took.
//
//   RegexResults results;
//   if (Regex("(\\d+)/(\\d+)").search("no. 12/34", results, 0)) {
//     results.match(0).str();           // "12/34", the whole match
//     results.match(2).str();           // "34", the second group
//     results.match(2).begin_offset();  // 7, in the searched text
//   }
//
// Results own a copy of the matched bytes: they stay valid when the searched text or the expression is gone.
// A Match only looks into them: it is valid until the next search with the results or their end.
// Use one object for many searches, it keeps its memory. Threads: one at a time, as any value.
#pragma once

#include <regex/export.h>

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class REGEX_EXPORT RegexResults {
 public:
  class Match;

  // No match: size() is 0.
  RegexResults() = default;
  RegexResults(const RegexResults&) = default;
  RegexResults& operator=(const RegexResults&) = default;
  // What was moved from is empty.
  RegexResults(RegexResults&& other) noexcept { *this = std::move(other); }
  RegexResults& operator=(RegexResults&& other) noexcept;
  ~RegexResults() = default;

  // One for the whole match and one for each capture group of the expression, whether or not the group took
  // part. 0 when nothing has been searched or the last search found nothing.
  unsigned int size() const noexcept { return size_; }

  // 0 is the whole match, n is the capture group whose bracket opens as the n-th of the pattern. A group in a
  // repeat holds what it took last. Of a group that took no part, and of an index from size() on, the match
  // is not matched(), its text is empty and both its offsets are 0.
  Match match(unsigned int index) const&;
  Match match(unsigned int index) const&& = delete;

  // There is a match, and it is of length 0.
  bool empty_match() const noexcept { return size_ > 0 && offsets()[0] == offsets()[1]; }

 private:
  friend class Regex;

  static constexpr unsigned int no_offset = ~0U;
  // Up to here the offsets are in the object itself, so that ordinary results take no memory for them.
  static constexpr unsigned int few_matches = 16;

  // Room for the offsets of so many matches.
  unsigned int* offsets_for(unsigned int matches) {
    if (matches <= few_matches) return few_offsets_.data();
    many_offsets_.resize(2 * std::size_t{matches});
    return many_offsets_.data();
  }
  // Begin and end of each match; no_offset twice for a group that took no part.
  const unsigned int* offsets() const noexcept {
    return size_ <= few_matches ? few_offsets_.data() : many_offsets_.data();
  }

  unsigned int size_ = 0;
  std::array<unsigned int, 2 * std::size_t{few_matches}> few_offsets_{};
  std::vector<unsigned int> many_offsets_;
  // The bytes of the whole match. A group always lies within it.
  std::string text_;
};

// One of the matched stretches, as a look into the results; a string made of it is independent of them.
class REGEX_EXPORT RegexResults::Match {
 public:
  operator std::string() const { return str(); }
  std::string str() const { return std::string(text_); }
  bool matched() const noexcept { return matched_; }

  // In bytes from the start of the searched text, wherever the search started; the end is one past the last
  // byte.
  unsigned int begin_offset() const noexcept { return begin_; }
  unsigned int end_offset() const noexcept { return begin_ + static_cast<unsigned int>(text_.size()); }

 private:
  friend class RegexResults;
  Match() = default;

  std::string_view text_;
  unsigned int begin_ = 0;
  bool matched_ = false;
};

inline RegexResults& RegexResults::operator=(RegexResults&& other) noexcept {
  few_offsets_ = other.few_offsets_;
  many_offsets_ = std::move(other.many_offsets_);
  text_ = std::move(other.text_);
  size_ = std::exchange(other.size_, 0);
  return *this;
}

inline RegexResults::Match RegexResults::match(unsigned int index) const& {
  Match match;
  const unsigned int* const offsets = this->offsets();
  if (index < size_ && offsets[2 * index] != no_offset) {
    match.matched_ = true;
    match.begin_ = offsets[2 * index];
    match.text_ = {text_.data() + (match.begin_ - offsets[0]), offsets[2 * index + 1] - match.begin_};
  }
  return match;
}
