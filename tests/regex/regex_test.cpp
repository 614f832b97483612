#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "regex/searches.h"

namespace {

struct Search {
  std::string pattern;
  std::string text;
  std::string found;  // as shown() has it
  std::string reason;
};

const Search searches[] = {
    // Which match, and how much of it.
    {"b", "abcb", "1-2", "the leftmost match is taken"},
    {"a|ab", "ab", "0-1", "the earlier alternative is preferred, not the longer one"},
    {"ab|a", "ab", "0-2", "the earlier alternative is preferred"},
    {"(a|ab)(c|bcd)", "abcd", "0-4 0-1 1-4", "the first alternative stays as long as a match follows"},
    {"a*", "baa", "0-0", "an empty match at the start is the leftmost one"},
    {"a+", "baac", "1-3", "a greedy repeat takes all"},
    {"a+?", "baac", "1-2", "a lazy repeat takes as little as it can"},
    {"a+?c", "baac", "1-4", "a lazy repeat takes as much as it must"},
    {"(a?"
     "?)(a?)",
     "a", "0-1 0-0 0-1", "the lazy option leaves the byte to the greedy one"},
    {"a{2}", "aaa", "0-2", "a count"},
    {"a{2,}", "baaaa", "1-5", "a lower count"},
    {"a{2,3}", "aaaa", "0-3", "a range of counts"},
    {"a{2,3}?", "aaaa", "0-2", "a lazy range of counts"},
    {"a{0}b", "ab", "1-2", "no times"},
    {"(a){0}b", "ab", "1-2 x", "a group that is repeated no times still counts"},
    {"", "ab", "0-0", "the empty pattern matches at once"},
    {"|a", "a", "0-0", "an alternative may be empty"},
    {"(?:)*(?:|)", "a", "0-0", "repeats of nothing match nothing"},

    // Captures in repeats.
    {"(a|b)*", "ab", "0-2 1-2", "a group keeps what it took last"},
    {"((a)|b)*", "ab", "0-2 1-2 0-1",
     "a group that takes no part in the last iteration keeps the earlier one"},
    {"(a|b*)*", "abb", "0-3 3-3", "the iteration that took nothing is the last"},
    {"(a*)+", "aa", "0-2 2-2", "the iteration that took nothing is the last"},
    {"(|a)+", "aa", "0-0 0-0", "an empty iteration that is preferred ends the repeat at once"},
    {"(|a)+b", "aab", "0-3 2-2", "unless that leads to no match; the last iteration took nothing"},
    {"(a?)*?b", "aab", "0-3 1-2", "lazily repeated"},
    {"((a*)*)*", "a", "0-1 1-1 1-1", "repeats in repeats"},
    {"(a|b){2}", "abab", "0-2 1-2", "the last of the counted iterations"},

    // Start and end.
    {"^a", "ba", "none", "the start of the text only"},
    {"^a", "b\na", "none", "not the start of a line"},
    {"a$", "ab", "none", "the end of the text only"},
    {"a$", "a\n", "none", "not before a last line feed"},
    {"^$", "", "0-0", "an empty text"},
    {"$^", "", "0-0", "end and start of an empty text"},
    {"$", "ab", "2-2", "the end alone"},
    {"(^|b)a", "ba", "0-2 0-1", "^ in an alternative"},
    {"a(b|$)", "ca", "1-2 2-2", "$ in an alternative"},
    {"(^a)*b", "aab", "2-3 x", "^ in a repeat"},
    {"a|$", "bb", "2-2", "$ when nothing else is found"},
    {"x*$", "xxyxx", "3-5", "$ after a repeat"},

    // Bytes.
    {".", "\n", "none", ". does not take a line feed"},
    {".+", "\r\v\f ", "0-4", ". takes every other byte"},
    {".", std::string("\0", 1), "0-1", "a NUL is a byte as any other"},
    {"a.b", std::string("a\0b", 3), "0-3", "a NUL in the midst"},
    {std::string("\0+", 2), std::string("x\0\0", 3), "1-3", "a NUL in the pattern"},
    {"\xC3\xA9+", "caf\xC3\xA9", "3-5", "bytes from 0x80 on"},
    {"[\x80-\xFF]+", "a\x80\xFF\x7F", "1-3", "ranges of bytes from 0x80 on"},
    {"[^a]", "\xFF", "0-1", "a negated class takes bytes from 0x80 on"},
    {"\\w|\\d|\\s", "\xC0\xAA\x85\xA0", "none", "letters, digits and blanks are ASCII"},
    {"\\W\\D\\S", "\x80\x80\x80", "0-3", "what is not ASCII is no letter, digit or blank"},
    {"\\s+", "x \t\n\v\f\ry", "1-7", "all white space"},
    {"\\S+", " \t\n\v\f\rab ", "6-8", "no white space"},
    {"\\d+", "/0123456789:", "1-11", "digits, not their neighbours"},
    {"\\D+", "0/:9", "1-3", "no digits"},
    {"\\w+", "`@[{/:AZaz09_^", "6-13", "letters, digits and _, not their neighbours"},
    {"\\W+", "aZ`@[{/:_", "2-8", "no letters, digits and _"},
    {"\\t\\n\\r\\f\\v", "\t\n\r\f\v", "0-5", "control characters"},
    {"\\.\\*\\(\\)\\[\\]\\{\\}\\\\\\/\\-\\_\\ ", ".*()[]{}\\/-_ ", "0-13",
     "escaped punctuation stands for itself"},
    {"A", "a", "none", "case matters"},

    // Classes.
    {"[abc]+", "xcabx", "1-4", "members"},
    {"[a-c]+", "xcabd", "1-4", "a range"},
    {"[^a-c]+", "cxyb", "1-3", "none of a range"},
    {"[^a]", "\n", "0-1", "a negated class takes a line feed"},
    {"[]a]+", "a]", "0-2", "a ] that comes first is a member"},
    {"[^]a]+", "a]b", "2-3", "a ] that comes first is a member of a negated class"},
    {"[a-]+", "b-a", "1-3", "a - at the end is a member"},
    {"[-a]+", "b-a", "1-3", "a - at the start is a member"},
    {"[a\\-c]+", "b-ac", "1-4", "an escaped - is a member"},
    {"[+--]+", "*+,-.", "1-4", "a - may end a range"},
    {"[\\d.]+", "x1.5", "1-4", "an escape for several bytes in a class"},
    {"[\\d-]+", "x1-5", "1-4", "a - at the end after such an escape"},
    {"[^\\s\\d]+", "1 ab", "2-4", "two of them, negated"},
    {"[\\D]+", "1ab2", "1-3", "a negated escape in a class"},
    {"[.*+?(){}|^$]+", "a.*+?(){}|^$b", "1-12", "operators are members as any other byte"},
    {"[a^]+", "^a", "0-2", "a ^ that does not come first is a member"},
    {"[\\]\\\\]+", "a]\\", "1-3", "escaped ] and backslash"},
    {"[a[b]+", "a[b", "0-3", "a [ in a class is a member"},
    {"[\\n-\\r]+", "\t\n\v\f\r", "1-5", "a range between escapes"},

    {"(?:(?:(?:(?:(?:)a{0}){1000}){1000}){1000}){1000}b", "ab", "1-2", "repeats of nothing take no time"},

    // Groups at a fixed distance from an end of the match, or from their own other end.
    {"(a)(bc)d*(e)(f)", "xabcddef", "1-8 1-2 2-4 6-7 7-8", "from the start and from the end"},
    {"((a)b)((c)d)", "xabcd", "1-5 1-3 1-2 3-5 3-4", "groups in groups"},
    {"a*(b|c)(d)?e*(f|gh)", "aacdeegh", "0-8 2-3 3-4 6-8", "of which some are known only when they end"},
    {"a*(bc)?d*", "aadd", "0-4 x", "a group of fixed length that took no part"},
    {"a*(b{2}|cd)*e*", "abbcde", "0-6 3-5", "the last iteration of a group of fixed length"},
    {"b(a*)($)", "baa", "0-3 1-3 3-3", "an empty group at the end"},
    {"a+(b+)c+(d+)e+(f+)g+(h+)i+(j+)k+", "aabbcddeffghhijkk", "0-17 2-4 5-7 8-10 11-13 14-15",
     "more runs than are skipped in one go"},

    // Bytes that look like operators.
    {"a{", "a{", "0-2", "a { that starts no repeat"},
    {"a{,3}", "a{,3}", "0-5", "a repeat needs its lower count"},
    {"a{1", "a{1", "0-3", "a repeat needs its end"},
    {"a{1,x}", "a{1,x}", "0-6", "a repeat has digits only"},
    {"{a}", "{a}", "0-3", "braces"},
    {"a]", "a]", "0-2", "a ] outside a class"},
};

TEST(Regex, FindsTheMatchThatPerlPrefers) {
  for (const Search& search : searches) {
    EXPECT_EQ(found(Regex(search.pattern), search.text), search.found)
        << '/' << search.pattern << "/: " << search.reason;
  }
}

const Search extended_searches[] = {
    {"a b", "ab", "0-2", "a blank is ignored"},
    {" \t\n\v\f\ra", "a", "0-1", "so is all white space"},
    {"a # comment\nb", "ab", "0-2", "a comment ends with its line"},
    {"a#comment", "a", "0-1", "a comment ends with the pattern"},
    {"a# ( [ * \\", "a", "0-1", "nothing in a comment matters"},
    {"a +", "aa", "0-2", "a repeat may be set off"},
    {"a # one\n {2} # two\n", "aa", "0-2", "also by a comment"},
    {"a+ ?", "aa", "0-1", "so may the mark of a lazy one"},
    {"(a) {1,2} \t# few\n ?", "aa", "0-1 0-1", "also by a comment"},
    {"a? ?b", "ab", "0-2", "a lazy one takes what it must"},
    {"a\\ b\\#", "a b#", "0-4", "escaped blank and # are bytes"},
    {"[ #]+", "a# b", "1-3", "in a class they are members"},
    {"( a | b ) c", "bc", "0-2 0-1", "around operators"},
    {" # nothing", "x", "0-0", "the empty pattern"},
};

TEST(Regex, IgnoresBlanksAndCommentsInExtendedSyntax) {
  for (const Search& search : extended_searches) {
    EXPECT_EQ(found(Regex(search.pattern, Regex::extended_syntax), search.text), search.found)
        << '/' << search.pattern << "/: " << search.reason;
  }
}

TEST(Regex, TakesBlanksAndHashLiterallyInOrdinarySyntax) {
  EXPECT_EQ(found(Regex("a #b"), "a #b"), "0-4");
  EXPECT_EQ(found(Regex("a b"), "ab"), "none");
}

// The expressions that the library is made for.
const std::string refcode =
    "\\[          # initial literal [\n"
    "([A-Za-z]{6} # 6 alphabetic characters and opening of capturing brackets\n"
    "(\\d\\d)?)   # optional two decimal digits and closing of capturing brackets\n"
    "\\]          # terminal literal ]\n";
const std::string letter_and_digits =
    "\\[          # initial literal [\n"
    "([A-Za-z]    # alphabetic character and opening of capturing brackets\n"
    "[0-9]{7})    # seven decimal digits and closing of capturing brackets\n"
    "\\]          # terminal literal ]\n";
const std::string named_file = "^([0-9\\.]+)\\s+([A-Za-z0-9\\-\\(\\)\\,\\.]+)\\.qdx";
const std::string plain_file = "^([0-9\\.]+[A-Za-z]+).qdx";

const Search refcode_searches[] = {
    {refcode, "[ABCDEF]", "0-8 1-7 x", "six letters"},
    {refcode, "see [ABCDEF01]", "4-14 5-13 11-13", "six letters and two digits"},
    {refcode, "[abcDEF]", "0-8 1-7 x", "either case"},
    {refcode, "[ABCDE] [ABCDEFG] [ABCDEF1] [ABCDEF123]", "none", "five, seven, one digit, three digits"},
    {refcode, "[[ABCDEF]", "1-9 2-8 x", "a bracket that starts nothing before one that does"},
    {refcode, "[ABC[DEFGHI]", "4-12 5-11 x", "an attempt that fails in the midst of another start"},
    {refcode, "[ABCDEF", "none", "no closing bracket"},
    {letter_and_digits, "[X1234567]", "0-10 1-9", "a letter and seven digits"},
    {letter_and_digits, "[X123456] [X12345678] [XY123456]", "none", "six, eight, two letters"},
};

TEST(Regex, FindsIdentifiersInBrackets) {
  for (const Search& search : refcode_searches) {
    EXPECT_EQ(found(Regex(search.pattern, Regex::extended_syntax), search.text), search.found)
        << '"' << search.text << "\": " << search.reason;
  }
}

const Search code_searches[] = {
    {"VORN\\s(\\d+)", "VORN 12 and VORN 345", "0-7 5-7", "the first of two"},
    {"VORN\\s(\\d+)", "VORNVORN VORN\n7", "9-15 14-15", "any white space, once; false starts before"},
    {"VORN\\s(\\d+)", "VORN  12", "none", "two blanks"},
    {"MRV\\s(\\d+)", "xMRV 5x", "1-6 5-6", "anywhere in the text"},
    {"z?", "abc", "0-0", "nothing is found at once"},
    {"IUC\\d+", "IUC IUC1", "4-8", "digits at once"},
    {"IUC(r|R)\\s(\\w+)", "IUCr AB1234", "0-11 3-4 5-11", "small r"},
    {"IUC(r|R)\\s(\\w+)", "IUCR XY12", "0-9 3-4 5-9", "capital R"},
    {"\\d+/\\d+", "12/34", "0-5", "two numbers"},
    {"\\d+/\\d+", "1 2/ 3/4/5", "5-8", "the first that is whole"},
    {"R\\d+", "RR R77", "3-6", "a letter and digits"},
    {"\\d+[A-Z]{0,1}", "12345A 678", "0-6", "a number with a letter"},
    {"\\d+[A-Z]{0,1}", "x12345AB", "1-7", "one letter at most"},
    {"^\\s*([A-Z]{6}[0-9]{0,2})\\s*$", "ABCDEF", "0-6 0-6", "no digits"},
    {"^\\s*([A-Z]{6}[0-9]{0,2})\\s*$", " \tABCDEF01\n ", "0-12 2-10", "white space around"},
    {"^\\s*([A-Z]{6}[0-9]{0,2})\\s*$", "ABCDEF012", "none", "three digits"},
    {"^\\s*([A-Z]{6}[0-9]{0,2})\\s*$", "abcdef", "none", "small letters"},
    {named_file, "12.5 benzene.qdx", "0-16 0-4 5-12", "number and name"},
    {named_file, "7 a.b.qdx", "0-9 0-1 2-5", "the name has dots"},
    {named_file, "7 a.qdx.qdx.q", "0-11 0-1 2-7", "the last ending is the end"},
    {named_file, "123abc.qdx", "none", "no white space"},
    {plain_file, "123abc.qdx", "0-10 0-6", "no white space"},
    {plain_file, "123abcXqdx", "0-10 0-6", "any byte before the ending"},
    {plain_file, "1qqdxqdx", "0-8 0-4", "letters that look like the ending"},
    {plain_file, "123.qdx", "none", "no letters"},
    {plain_file, "ABC01", "none", "no digits first"},
};

TEST(Regex, FindsNumbersAndNames) {
  for (const Search& search : code_searches) {
    EXPECT_EQ(found(Regex(search.pattern), search.text), search.found)
        << '/' << search.pattern << "/ in \"" << search.text << "\": " << search.reason;
  }
}

TEST(Regex, StartsAtThePositionAndReportsOffsetsInTheText) {
  const Regex number("\\d+");
  EXPECT_EQ(found(number, "12 34", 1), "1-2");
  EXPECT_EQ(found(number, "12 34", 2), "3-5");
  EXPECT_EQ(found(number, "12 34", 5), "none");
}

TEST(Regex, FindsAnEmptyMatchAtTheEndOfTheText) {
  EXPECT_EQ(found(Regex("a*"), "bb", 2), "2-2");
}

TEST(Regex, FindsNothingBeyondTheText) {
  EXPECT_EQ(found(Regex("a*"), "bb", 3), "none");
  EXPECT_EQ(found(Regex("a*"), "", ~0U), "none");
}

TEST(Regex, TakesTheStartForTheTextsOwnWhereverTheSearchStarts) {
  EXPECT_EQ(found(Regex("^a"), "aa", 1), "none");
  EXPECT_EQ(found(Regex("^a|b"), "aab", 1), "2-3");
}

TEST(Regex, IsNotTiedToThePositionByAnyFlag) {
  const Regex number("\\d+");
  for (const unsigned int flags : {0U, 1U, 4096U, ~0U}) {
    RegexResults results;
    EXPECT_TRUE(number.search_from_position("no. 12", 1, results, flags));
    EXPECT_EQ(shown(results), "4-6");
  }
}

TEST(Regex, SearchesWithAPatternGivenAsText) {
  RegexResults results;
  EXPECT_TRUE(Regex::search("b(.)", "abc", results, 0));
  EXPECT_EQ(shown(results), "1-3 2-3");
  EXPECT_FALSE(Regex::search("b b", "bb", results, 0));
}

TEST(Regex, MayBeCopiedAndMovedAndStaysUsable) {
  Regex first("a+");
  Regex second = first;
  Regex third = std::move(first);
  EXPECT_EQ(found(first, "baa"), "1-3");
  second = Regex("b");
  EXPECT_EQ(found(second, "baa"), "0-1");
  EXPECT_EQ(found(third, "baa"), "1-3");
}

// Patterns that make a backtracking matcher take time without end, and attempts that fail late at every
// start.
const std::string hostile_patterns[] = {
    "(a*)*b", "(a|a)*b", "(a|b|ab)*c", "(a?){25}a{25}c", "a*a*a*a*a*b", "(.*)(.*)(.*)(.*)c", "a{50}c", "a+c",
};

TEST(Regex, IsLinearWhereBacktrackingIsNot) {
  const std::string text(20000, 'a');
  for (const std::string& pattern : hostile_patterns)
    EXPECT_EQ(found(Regex(pattern), text), "none") << pattern;
  EXPECT_EQ(found(simulated("(a*)*b"), text), "none");
}

TEST(Regex, IsLinearForTheLibrarysExpressionsInHostileText) {
  for (const char byte : {'1', 'A', 'q', ' ', '[', 'V', 'I', 'R', '.'}) {
    std::string text(1U << 20U, byte);
    text.back() = '!';
    for (const Search& search : code_searches) found(Regex(search.pattern), text);
    for (const Search& search : refcode_searches) EXPECT_EQ(found(Regex(search.pattern, 8), text), "none");
  }
}

TEST(Regex, FindsTheMatchAfterAMegabyteOfFailedAttempts) {
  const std::string digits(1U << 20U, '7');
  EXPECT_EQ(found(Regex("\\d+/\\d+"), digits + " 1/2"), "1048577-1048580");
}

// Runs on a thread whose whole stack is 64 KiB.
void on_small_stack(std::function<void()> work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 65536), 0);
  pthread_t thread;
  const auto run = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  EXPECT_EQ(pthread_join(thread, nullptr), 0);
  EXPECT_EQ(pthread_attr_destroy(&attributes), 0);
}

TEST(Regex, SearchesOnAStackOf64KiB) {
  const std::string text(1U << 20U, 'a');
  const Regex small("(a|b|ab)*c");
  const Regex large = simulated("((a*)*)*b|(a{1000}){5}c");
  std::string small_found;
  std::string large_found;
  on_small_stack([&] {
    small_found = found(small, text);
    large_found = found(large, text.substr(0, 200));
  });
  EXPECT_EQ(small_found, "none");
  EXPECT_EQ(large_found, "none");
}

TEST(Regex, IsBuiltAndSearchedOnAStackOf64KiBWithBracketsAsDeepAsTheyMayBe) {
  std::string loops = "a";
  std::string choices = "a";
  std::string nested = "a";
  for (int depth = 0; depth < 50; ++depth) loops = "(" + loops + ")*";
  for (int depth = 0; depth < 250; ++depth) {
    nested = "(?:" + nested + ")+";
    choices = "(b|c" + choices + "{1}d)";
  }
  std::string loops_found;
  std::string choices_found;
  std::string nested_found;
  on_small_stack([&] {
    nested_found = found(Regex(nested), "aa");
    loops_found = found(Regex(loops), "aa").substr(0, 7);
    choices_found = found(Regex(choices), std::string(250, 'c') + "a" + std::string(250, 'd')).substr(0, 17);
  });
  EXPECT_EQ(nested_found, "0-2");
  EXPECT_EQ(loops_found, "0-2 2-2");
  EXPECT_EQ(choices_found, "0-501 0-501 1-500");
}

TEST(Regex, MayBeSearchedByManyThreadsAtOnce) {
  const Regex automaton("(a|b)*?(\\d+)");
  const Regex simulation = simulated("(a|b)*?(\\d+)");
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  for (unsigned int each = 0; each < 8; ++each) {
    threads.emplace_back([&, text = std::string(each, 'c') + "ab" + std::string(each + 1, '5'), each] {
      const std::string expected = std::to_string(each) + "-" + std::to_string(2 * each + 3) + " ";
      for (int round = 0; round < 200; ++round) {
        wrong += found(automaton, text).find(expected) != 0 ? 1 : 0;
        wrong += found(simulation, text).find(expected) != 0 ? 1 : 0;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

}  // namespace
