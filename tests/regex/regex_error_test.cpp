#include <gtest/gtest.h>
#include <regex/regex.h>

#include <string>

namespace {

std::string repeated(const std::string& piece, int times) {
  std::string text;
  for (; times > 0; --times) text += piece;
  return text;
}

struct BadPattern {
  std::string pattern;
  unsigned int offset;
  std::string reason;
};

const std::string nothing_to_repeat = "there is nothing to repeat; write \\";
const std::string never_opened = "the bracket ) was never opened; write \\) for the byte itself";
const std::string never_closed = "the bracket ( is never closed; write \\( for the byte itself";
const std::string no_such_group =
    "of the groups that start with (? only (?: is supported, no lookaround and no options";
const std::string no_named_class = "named classes are not supported; write \\[ for the byte itself";
const std::string no_range_end =
    "a range in a class needs one byte at each end; write \\- for the byte itself";
const std::string no_reference = "back references and octal escapes are not supported";
const std::string too_many_steps = "with its repeats written out the pattern takes more than 10000 steps";

const BadPattern bad_patterns[] = {
    {"a(b", 1, never_closed},
    {"(a|(b)", 0, never_closed},
    {"ab)c", 2, never_opened},
    {"(a))", 3, never_opened},
    {"x[a-z", 1, "the class has no closing ]"},
    {"[]", 0, "the class has no closing ]"},
    {"[^]", 0, "the class has no closing ]"},
    {"[a-", 0, "the class has no closing ]"},
    {"[\\", 1, "nothing follows the \\; write \\\\ for the byte itself"},
    {"ab\\", 2, "nothing follows the \\; write \\\\ for the byte itself"},
    {"*a", 0, nothing_to_repeat + "* for the byte itself"},
    {"a|+", 2, nothing_to_repeat + "+ for the byte itself"},
    {"(?)", 0, no_such_group},
    {"(*a)", 1, nothing_to_repeat + "* for the byte itself"},
    {"a**", 2, nothing_to_repeat + "* for the byte itself"},
    {"a*?+", 3, nothing_to_repeat + "+ for the byte itself"},
    {"a{2}{3}", 4, nothing_to_repeat + "{ for the byte itself"},
    {"^*", 1, nothing_to_repeat + "* for the byte itself"},
    {"a${2}", 2, nothing_to_repeat + "{ for the byte itself"},
    {"a{3,2}", 1, "the lower repeat count is above the higher one"},
    {"a{1001}", 1, "a repeat count is at most 1000"},
    {"a{1001,}", 1, "a repeat count is at most 1000"},
    {"a{0,99999999999999999999}", 1, "a repeat count is at most 1000"},
    {"a\\q", 1, "the escape \\q is unknown"},
    {"\\b", 0, "the escape \\b is unknown"},
    {"[\\b]", 1, "the escape \\b is unknown"},
    {"\\x41", 0, "the escape \\x is unknown"},
    {"(a)\\1", 3, no_reference},
    {"\\0", 0, no_reference},
    {"a(?=b)", 1, no_such_group},
    {"(?!b)", 0, no_such_group},
    {"(?<=b)", 0, no_such_group},
    {"(?i)b", 0, no_such_group},
    {"(?", 0, no_such_group},
    {"[z-a]", 1, "the range in the class is in the wrong order"},
    {"[\\d-z]", 1, no_range_end},
    {"[xa-\\d]", 2, no_range_end},
    {"[[:alpha:]]", 1, no_named_class},
    {"[a[.x.]]", 2, no_named_class},
    {"[[=x=]]", 1, no_named_class},
    {"a{1000}b{1000}(c{1000}){9}", 7, too_many_steps},
    {"((((a{1000}){1000}){1000}){1000}){1000}", 4, too_many_steps},
    {"x((a?){1000}){1000}", 3, too_many_steps},
    {repeated("a", 20001), 20000, "the pattern is too long"},
    {repeated("()", 251), 500, "more than 250 capture groups; use (?: where no capture is needed"},
    {repeated("(?:", 251) + "a" + repeated(")", 251), 750, "brackets are nested deeper than 250"},
    {repeated("(?:", 1000000), 750, "brackets are nested deeper than 250"},
};

TEST(RegexError, NamesOffsetAndReason) {
  for (const BadPattern& bad : bad_patterns) {
    SCOPED_TRACE(bad.pattern.substr(0, 60));
    try {
      const Regex expression(bad.pattern);
      ADD_FAILURE() << "was accepted";
    } catch (const RegexError& error) {
      EXPECT_EQ(error.offset(), bad.offset);
      EXPECT_EQ(std::string(error.what()),
                "Bad regular expression at offset " + std::to_string(bad.offset) + ": " + bad.reason);
    }
  }
}

TEST(RegexError, IsAnInvalidArgument) {
  EXPECT_THROW(Regex("("), std::invalid_argument);
}

TEST(RegexError, IsThrownForOptionsOtherThanExtendedSyntax) {
  try {
    const Regex expression("a", 9);
    ADD_FAILURE() << "was accepted";
  } catch (const RegexError& error) {
    EXPECT_EQ(error.offset(), 0U);
    EXPECT_STREQ(error.what(),
                 "Bad regular expression at offset 0: options 9 are not supported, only 0 and 8");
  }
}

TEST(RegexError, IsThrownByTheStaticSearchWhichLeavesTheResultsAlone) {
  RegexResults results;
  ASSERT_TRUE(Regex("b").search("abc", results, 0));
  EXPECT_THROW(Regex::search("(", "abc", results, 0), RegexError);
  EXPECT_EQ(results.match(0).str(), "b");
}

TEST(RegexError, IsNotThrownAtTheLimits) {
  EXPECT_NO_THROW(Regex(repeated("()", 250)));
  EXPECT_NO_THROW(Regex(repeated("(?:", 250) + "a" + repeated(")", 250)));
  EXPECT_NO_THROW(Regex("a{1000}b{0,1000}"));
  EXPECT_NO_THROW(Regex(repeated("a", 9998)));
  EXPECT_THROW(Regex(repeated("a", 9999)), RegexError);
}

}  // namespace
