#include <regex/regex_results.h>

RegexResults::Match RegexResults::match(unsigned int index) const {
  Match match;
  if (index < size() && offsets_[2 * index] != no_offset) {
    match.matched_ = true;
    match.begin_ = offsets_[2 * index];
    match.text_.assign(text_, match.begin_ - offsets_[0], offsets_[2 * index + 1] - match.begin_);
  }
  return match;
}
