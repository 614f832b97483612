// All small patterns against all small texts, judged by a matcher that is plain enough to be right by
// inspection.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "regex/reference_matcher.h"
#include "regex/searches.h"

namespace {

std::vector<std::string> texts_up_to(std::size_t length) {
  std::vector<std::string> texts{""};
  for (std::size_t each = 0; each < texts.size(); ++each) {
    if (texts[each].size() == length) break;
    texts.push_back(texts[each] + 'a');
    texts.push_back(texts[each] + 'b');
  }
  return texts;
}

template <class Expression>
std::optional<Expression> expression_of(const std::string& pattern) {
  try {
    return std::optional<Expression>(std::in_place, pattern);
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
}

class Comparison {
 public:
  explicit Comparison(std::size_t longest_text) : texts_(texts_up_to(longest_text)) {}

  void compare(const std::string& pattern) {
    auto reference = expression_of<ReferenceMatcher>(pattern);
    const auto expression = expression_of<Regex>(pattern);
    ASSERT_EQ(reference.has_value(), expression.has_value()) << pattern;
    if (!reference) return;
    ++patterns_;
    for (const std::string& text : texts_) {
      ASSERT_EQ(found(*expression, text), reference->found(text))
          << '/' << pattern << "/ in \"" << text << '"';
    }
  }

  // Every pattern of up to so many of these pieces.
  void compare_all(const std::vector<std::string>& pieces, std::size_t most,
                   const std::string& pattern = "") {
    compare(pattern);
    if (most == 0 || testing::Test::HasFatalFailure()) return;
    for (const std::string& piece : pieces) compare_all(pieces, most - 1, pattern + piece);
  }

  std::size_t patterns() const { return patterns_; }

 private:
  std::vector<std::string> texts_;
  std::size_t patterns_ = 0;
};

TEST(SmallPatterns, OfFivePiecesFindWhatTheReferenceFinds) {
  Comparison comparison(3);
  comparison.compare_all({"a", "b", "(", ")", "|", "*", "*?", "?", "+", "^", "$", ".", "{2}"}, 5);
  EXPECT_GT(comparison.patterns(), 35000U);
}

TEST(SmallPatterns, WithLazyAndCountedRepeatsFindWhatTheReferenceFinds) {
  Comparison comparison(4);
  comparison.compare_all({"a", "b", "(", ")", "|", "*", "*?", "+?", "??", "$", "{2}"}, 5);
  EXPECT_GT(comparison.patterns(), 7500U);
}

TEST(SmallPatterns, OfNestedRepeatsFindWhatTheReferenceFinds) {
  Comparison comparison(4);
  comparison.compare_all({"(a|", "(|", "b", "a?", ")*", ")+", ")*?", "){2}", "^", "$)"}, 5);
  EXPECT_GT(comparison.patterns(), 5000U);
}

// The simulation takes over where a pattern is too large for the automaton.
TEST(SmallPatterns, FindTheSameWithTheSimulation) {
  std::size_t compared = 0;
  for (const std::string inner :
       {"a", "b?", "|a", "a|", "a*|b", "^|a", "$|a", "(a)|b", "(|a)+b", "a{2}|b*?"}) {
    for (const std::string repeat : {"", "*", "+", "?", "*?", "+?", "{2}", "{2}*"}) {
      const std::string pattern = "(" + (repeat == "{2}*" ? "(" + inner + "){2}" : inner) + ")" +
                                  (repeat == "{2}*" ? "*" : repeat) + "(a|b|)";
      const Regex simulation = simulated(pattern);
      ReferenceMatcher reference(pattern);
      for (const std::string& text : texts_up_to(5)) {
        ASSERT_EQ(found(simulation, text), reference.found(text))
            << '/' << pattern << "/ in \"" << text << '"';
        ++compared;
      }
    }
  }
  EXPECT_EQ(compared, 80U * 63U);
}

}  // namespace
