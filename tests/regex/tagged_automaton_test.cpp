#include <gtest/gtest.h>
#include <regex/parser.h>
#include <regex/program.h>
#include <regex/tagged_automaton.h>

#include <string>

namespace {

regex_detail::Program program_of(const std::string& pattern) {
  return regex_detail::compile(regex_detail::parse(pattern, false));
}

// a|a|a: a byte and a fork each, except the last; the start of the match and the match are an instruction
// each.
std::string alternatives(std::size_t count) {
  std::string pattern = "a";
  while (--count > 0) pattern += "|a";
  return pattern;
}

TEST(TaggedAutomaton, IsBuiltOfUpTo500Instructions) {
  const regex_detail::Program program = program_of("b(?:" + alternatives(249) + ")");
  ASSERT_EQ(program.instructions.size(), 500U);
  EXPECT_TRUE(regex_detail::TaggedAutomaton::build(program));
}

TEST(TaggedAutomaton, IsNotBuiltOf501Instructions) {
  const regex_detail::Program program = program_of(alternatives(250));
  ASSERT_EQ(program.instructions.size(), 501U);
  EXPECT_FALSE(regex_detail::TaggedAutomaton::build(program));
}

}  // namespace
