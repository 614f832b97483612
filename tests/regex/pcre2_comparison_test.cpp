// Random patterns and texts, with fixed seeds, judged by PCRE2.
#include <gtest/gtest.h>

#include "regex/searches.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <memory>
#include <optional>
#include <random>
#include <string>

namespace {

class Pcre2 {
 public:
  explicit Pcre2(const std::string& pattern)
      : context_(pcre2_compile_context_create(nullptr)), limits_(pcre2_match_context_create(nullptr)) {
    pcre2_set_newline(context_.get(), PCRE2_NEWLINE_LF);
    pcre2_set_match_limit(limits_.get(), 20000);
    int error = 0;
    PCRE2_SIZE offset = 0;
    code_.reset(
        pcre2_compile(bytes(pattern), pattern.size(), PCRE2_DOLLAR_ENDONLY, &error, &offset, context_.get()));
    if (code_) match_.reset(pcre2_match_data_create_from_pattern(code_.get(), nullptr));
  }

  bool accepted() const { return code_ != nullptr; }

  // In the form of shown(); nothing where its backtracking would take too long.
  std::optional<std::string> found(const std::string& text, std::size_t position) {
    const int result =
        pcre2_match(code_.get(), bytes(text), text.size(), position, 0, match_.get(), limits_.get());
    if (result == PCRE2_ERROR_NOMATCH) return "none";
    if (result < 0) return std::nullopt;
    const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(match_.get());
    std::string line;
    for (std::uint32_t group = 0; group < pcre2_get_ovector_count(match_.get()); ++group) {
      line += group > 0 ? " " : "";
      line += offsets[2 * group] == PCRE2_UNSET
                  ? "x"
                  : std::to_string(offsets[2 * group]) + "-" + std::to_string(offsets[2 * group + 1]);
    }
    return line;
  }

 private:
  template <auto Release>
  struct Releaser {
    template <class Target>
    void operator()(Target* target) const {
      Release(target);
    }
  };

  static PCRE2_SPTR bytes(const std::string& text) { return reinterpret_cast<PCRE2_SPTR>(text.data()); }

  std::unique_ptr<pcre2_compile_context, Releaser<pcre2_compile_context_free>> context_;
  std::unique_ptr<pcre2_match_context, Releaser<pcre2_match_context_free>> limits_;
  std::unique_ptr<pcre2_code, Releaser<pcre2_code_free>> code_;
  std::unique_ptr<pcre2_match_data, Releaser<pcre2_match_data_free>> match_;
};

class Generator {
 public:
  explicit Generator(unsigned int seed) : random_(seed) {}

  std::size_t below(std::size_t bound) { return random_() % bound; }

  std::string pattern(int depth) {
    static const char* const atoms[] = {"a",    "a",    "b",   "c",         "^",   "$",   ".",
                                        "[ab]", "[^a]", "\\d", "[\\s\\w-]", "\\S", "\\.", "1"};
    static const char* const repeats[] = {"*", "+", "?", "{2}", "{1,2}", "{2,}", "{0,2}", "{0,}"};
    std::string pattern = below(12) == 0 ? "|" : "";
    for (std::size_t items = below(3) + 1; items > 0; --items) {
      std::string item = atoms[below(std::size(atoms))];
      if (depth > 0 && below(5) < 2) item = (below(3) > 0 ? "(" : "(?:") + this->pattern(depth - 1) + ")";
      pattern += item;
      if (item != "^" && item != "$" && below(2) == 0) {
        pattern += repeats[below(std::size(repeats))];
        if (below(3) == 0) pattern += '?';
      }
      if (below(6) == 0) pattern += '|';
    }
    return pattern;
  }

  std::string text() {
    static const std::string bytes("aaaabbbcc1.- \n\0\xE9", 16);
    std::string text;
    for (std::size_t length = below(10); length > 0; --length) text += bytes[below(bytes.size())];
    return text;
  }

 private:
  std::mt19937 random_;
};

TEST(Pcre2Comparison, RandomPatternsFindTheSame) {
  std::size_t compared = 0;
  for (const unsigned int seed : {1U, 2U, 3U, 4U}) {
    Generator random(seed);
    for (int each = 0; each < 1500; ++each) {
      const std::string pattern = random.pattern(3);
      Pcre2 other(pattern);
      ASSERT_TRUE(other.accepted()) << pattern;
      const Regex automaton(pattern);
      const Regex simulation = simulated(pattern);
      for (int round = 0; round < 12; ++round) {
        const std::string text = random.text();
        const auto position =
            static_cast<unsigned int>(random.below(3) == 0 ? random.below(text.size() + 1) : 0);
        const auto expected = other.found(text, position);
        if (!expected) continue;
        ++compared;
        ASSERT_EQ(found(automaton, text, position), *expected) << '/' << pattern << "/ in \"" << text << '"';
        if (round > 2) continue;
        ASSERT_EQ(found(simulation, text, position), *expected) << '/' << pattern << "/ in \"" << text << '"';
      }
    }
  }
  EXPECT_GT(compared, 65000U);
}

// Whatever bytes a pattern is made of: both take it, or both refuse it, but for what only the other engine
// knows.
TEST(Pcre2Comparison, RandomPunctuationIsAcceptedAlike) {
  static const std::string pieces = "ab()[]{}|*?.^$-,12";
  Generator random(5);
  std::size_t accepted = 0;
  for (int each = 0; each < 30000; ++each) {
    std::string pattern;
    for (std::size_t length = random.below(7); length > 0; --length)
      pattern += pieces[random.below(pieces.size())];
    // (* starts a verb there, and [. a class by name.
    if (pattern.find("(*") != std::string::npos || pattern.find("[.") != std::string::npos) continue;
    const bool ours = [&] {
      try {
        const Regex expression(pattern);
        return true;
      } catch (const RegexError&) {
        return false;
      }
    }();
    // (? starts more kinds of groups there.
    if (!ours && pattern.find("(?") != std::string::npos) continue;
    ASSERT_EQ(ours, Pcre2(pattern).accepted()) << pattern;
    accepted += ours ? 1 : 0;
  }
  EXPECT_GT(accepted, 3000U);
}

}  // namespace
