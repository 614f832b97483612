// Regular expressions over bytes, in Perl's notation, with a search whose time is linear in the text.
//
//   static const Regex number("VORN\\s(\\d+)");
//   RegexResults results;
//   if (number.search("deposited as VORN 123456", results, 0)) {
//     std::string digits = results.match(1);  // "123456"
//   }
//
// Of all matches the leftmost is found; of those at one place the one that Perl prefers: earlier alternatives
// before later ones, greedy repeats as long as possible, lazy ones as short as possible.
//
//   .             any byte but a line feed
//
//   \d \w \s      ASCII digit; ASCII letter, digit or _; blank, \t, \n, \v, \f, \r
//   \D \W \S      any other byte
//
//   \t \n \r \f \v
//                 the control characters
//
//   \x            that byte itself, if x is neither a letter nor a digit
//
//   [a-z\d.] [^...]
//                 a byte of the set, or not of the set; a ] that comes first is a member, so is a - at either
//                 end
//
//   ^ $           the start and the very end of the text, also when the search starts later
//
//   (...) (?:...) |
//                 capture group, plain group, alternatives, which may be empty
//
//   * + ? {n} {n,} {n,m}
//                 repeats; with a ? after them as few as possible
//
//   { ]           themselves, where the { starts no such repeat and the ] is outside a class
//
// A repeat ends with an iteration that took no bytes, and a group in a repeat keeps what it took last, as in
// Perl.
//
// A bad pattern throws RegexError: brackets that do not pair; nothing to repeat (at the start, after |, ( or
// another repeat, after ^ or $); a range or repeat count in the wrong order; any other escaped letter or
// digit (so no back references); any other group that starts with (? (so no lookaround); [: [. or [= inside a
// class; repeat counts above 1000, more than 250 capture groups, brackets nested deeper than 250, or more
// than 10000 steps when all repeats with counts are written out.
//
// Time: a search is linear in the text for every pattern and every text, for small patterns independent of
// the pattern. Searching on after each match can take more: a*b|a looks ahead to the end of a run of a's in
// each search, finds no b and takes one a, so all matches in n bytes take time in proportion to n * n.
// Memory: a search takes less than 4 KiB of stack, and heap in proportion to the pattern at most, never to
// the text. Threads: any number may search one const Regex at the same time.
#pragma once

#include <regex/export.h>
#include <regex/regex_error.h>
#include <regex/regex_results.h>

#include <memory>
#include <string>

class REGEX_EXPORT Regex {
 public:
  // Option: blanks, tabs, line ends, \v and \f in the pattern are ignored outside a class, and # starts a
  // comment that runs to the end of the line.
  static constexpr unsigned int extended_syntax = 8;

  // Throws RegexError for a bad pattern, and (with offset 0) for any option except 0 and extended_syntax.
  explicit Regex(const std::string& pattern, unsigned int options = 0);

  // Copies share what was built. Moving copies, so that no Regex is ever empty.
  Regex(const Regex&) = default;
  Regex& operator=(const Regex&) = default;
  ~Regex();

  // The first match that starts at `position` or later. Without one, or with a position beyond the text, the
  // answer is false and the results are empty (their size() is 0). No flag changes anything; in particular
  // 4096 does not tie the match to the position. Throws std::length_error for a text of 4 GiB or more, whose
  // offsets would not fit.
  bool search_from_position(const std::string& text, unsigned int position, RegexResults& results,
                            unsigned int flags) const;

  // The same from the start of the text.
  bool search(const std::string& text, RegexResults& results, unsigned int flags) const;

  // The same with an expression built for this one search; throws RegexError and then leaves the results
  // alone.
  static bool search(const std::string& pattern, const std::string& text, RegexResults& results,
                     unsigned int flags);

 private:
  class Matcher;
  std::shared_ptr<const Matcher> matcher_;
};
