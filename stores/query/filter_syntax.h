// What a filter of the OPTIMADE language says before any name in it is looked up.
// Internal: callers want stores/entry_query.h.
//
//   const FilterPhrase phrase = parse_filter("elements HAS \"Ti\" AND nelements>2");
//   phrase.kind;                     // FilterPhrase::Kind::all
//   phrase.children[1].left.text;    // "nelements"
//
// The time and the memory are linear in the length; parentheses may be deepest_query deep.
#pragma once

#include <stores/query/entry_condition_limits.h>
#include <stores/query/entry_operator.h>

#include <cstddef>
#include <string>
#include <vector>

struct FilterOperand {
  enum class Kind { property, text, number, boolean };
  Kind kind = Kind::text;
  // A property's name without blanks, a text without quotes and escapes, a number as it was written, TRUE or
  // FALSE.
  std::string text;
  std::size_t offset = 0;
};

struct FilterTest {
  EntryOperator comparison = EntryOperator::equal;
  FilterOperand value;
};

struct FilterPhrase {
  enum class Kind {
    all,         // children joined by AND
    any,         // children joined by OR
    negation,    // NOT its only child
    comparison,  // left, then the only test
    known,       // left IS KNOWN
    unknown,     // left IS UNKNOWN
    bare,        // left alone
    has,         // left, then its test
    has_all,     // left, then its tests
    has_any,     //
    has_only,    //
    length,      // left, then the only test
    correlated   // a list of properties with HAS
  };
  Kind kind = Kind::bare;
  std::size_t offset = 0;
  std::vector<FilterPhrase> children = {};
  FilterOperand left = {};
  std::vector<FilterTest> tests = {};
};

// Throws EntryQueryError with what was expected, of the kind `syntax` or `too_large`.
[[nodiscard]] FilterPhrase parse_filter(const std::string& filter);
