#include <stores/entry_query_error.h>
#include <stores/query/filter_syntax.h>
#include <stores/query/found_text.h>

#include <tao/pegtl.hpp>
#include <utility>

namespace {

// What has been read so far. Every rule that has an action is reached by its first token alone, and a rule
// that has begun ends or throws, so nothing that an action did has ever to be taken back.
struct Reading {
  explicit Reading(const std::string& text) : filter(text) {}

  const std::string& filter;
  std::size_t size = 0;
  FilterOperand operand;  // the last value
  EntryOperator comparison = EntryOperator::equal;
  FilterPhrase phrase;
  // What is open: a list of alternatives, and in it a list of what holds together.
  struct Level {
    std::vector<FilterPhrase> alternatives = {};
    std::vector<FilterPhrase> together = {};
    bool negated = false;  // the next phrase
    std::size_t negation_offset = 0;
  };
  bool ends_with_phrase = false;  // and not with a parenthesis
  std::vector<Level> levels = std::vector<Level>(1);

  // The operand becomes the left side of a new phrase.
  void begin_phrase() {
    phrase = FilterPhrase{.kind = FilterPhrase::Kind::bare, .offset = operand.offset};
    phrase.left = std::move(operand);
    grow(phrase.offset);
  }

  void add_test() {
    if (!phrase.tests.empty()) grow(operand.offset);
    phrase.tests.push_back({comparison, std::move(operand)});
  }

  void add_comparison() {
    phrase.kind = FilterPhrase::Kind::comparison;
    add_test();
  }

  void open_group(std::size_t offset) {
    if (levels.size() > deepest_query) {
      throw EntryQueryError(EntryQueryError::Kind::too_large, filter, offset,
                            "parentheses may be " + std::to_string(deepest_query) + " deep, not more");
    }
    levels.emplace_back();
    ends_with_phrase = false;
  }

  void close_group() {
    FilterPhrase closed = close_level();
    ends_with_phrase = false;
    close_phrase(std::move(closed));
  }

  void close_simple() {
    ends_with_phrase = true;
    close_phrase(std::move(phrase));
  }

  void close_phrase(FilterPhrase closed) {
    Level& level = levels.back();
    if (level.negated) {
      FilterPhrase negation{.kind = FilterPhrase::Kind::negation, .offset = level.negation_offset};
      negation.children.push_back(std::move(closed));
      closed = std::move(negation);
      level.negated = false;
    }
    level.together.push_back(std::move(closed));
  }

  void close_conjunction() {
    Level& level = levels.back();
    level.alternatives.push_back(joined(FilterPhrase::Kind::all, level.together));
    level.together.clear();
  }

  [[nodiscard]] static FilterPhrase joined(FilterPhrase::Kind kind, std::vector<FilterPhrase>& phrases) {
    if (phrases.size() == 1) return std::move(phrases.front());
    FilterPhrase result{.kind = kind, .offset = phrases.front().offset};
    result.children = std::move(phrases);
    return result;
  }

  [[nodiscard]] FilterPhrase close_level() {
    close_conjunction();
    FilterPhrase result = joined(FilterPhrase::Kind::any, levels.back().alternatives);
    levels.pop_back();
    return result;
  }

  void grow(std::size_t offset) {
    if (++size > largest_query) {
      throw EntryQueryError(
          EntryQueryError::Kind::too_large, filter, offset,
          "a query may have " + std::to_string(largest_query) + " conditions and values, not more");
    }
  }
};

namespace grammar {

using namespace tao::pegtl;

struct blanks : star<one<' ', '\t', '\n', '\r', '\v', '\f'>> {};
template <class... Rules>
struct token : seq<Rules..., blanks> {};

struct word_and : token<string<'A', 'N', 'D'>> {};
struct word_or : token<string<'O', 'R'>> {};
struct word_not : token<string<'N', 'O', 'T'>> {};
struct word_is : token<string<'I', 'S'>> {};
struct word_known : token<string<'K', 'N', 'O', 'W', 'N'>> {};
struct word_unknown : token<string<'U', 'N', 'K', 'N', 'O', 'W', 'N'>> {};
struct word_contains : token<string<'C', 'O', 'N', 'T', 'A', 'I', 'N', 'S'>> {};
struct word_starts : token<string<'S', 'T', 'A', 'R', 'T', 'S'>> {};
struct word_ends : token<string<'E', 'N', 'D', 'S'>> {};
struct word_with : token<string<'W', 'I', 'T', 'H'>> {};
struct word_length : token<string<'L', 'E', 'N', 'G', 'T', 'H'>> {};
struct word_has : token<string<'H', 'A', 'S'>> {};
struct word_all : token<string<'A', 'L', 'L'>> {};
struct word_any : token<string<'A', 'N', 'Y'>> {};
struct word_only : token<string<'O', 'N', 'L', 'Y'>> {};

struct comma : token<one<','>> {};
struct colon : token<one<':'>> {};
struct open : token<one<'('>> {};
struct close : token<one<')'>> {};

struct boolean_word : sor<string<'T', 'R', 'U', 'E'>, string<'F', 'A', 'L', 'S', 'E'>> {};
struct boolean : token<boolean_word> {};

struct exponent : seq<one<'e', 'E'>, opt<one<'+', '-'>>, plus<digit>> {};
struct digits_first : seq<plus<digit>, opt<one<'.'>, star<digit>>> {};
struct point_first : seq<one<'.'>, plus<digit>> {};
struct number_literal : seq<opt<one<'+', '-'>>, sor<digits_first, point_first>, opt<exponent>> {};
struct number : token<number_literal> {};

// From the blank to the tilde except quote and backslash, white space, and every byte of a character above
// ASCII.
struct plain : sor<ranges<' ', '!', '#', '[', ']', '~', '\t', '\r'>, not_range<'\0', '\x7F'>> {};
struct escapable : one<'"', '\\'> {};
struct text_content : star<sor<plain, seq<one<'\\'>, must<escapable>>>> {};
struct text_end : one<'"'> {};
struct text : token<one<'"'>, text_content, must<text_end>> {};

struct identifier : seq<ranges<'a', 'z', '_'>, star<ranges<'a', 'z', '0', '9', '_'>>> {};
struct property_name : seq<identifier, star<blanks, one<'.'>, blanks, must<identifier>>> {};
struct property : token<property_name> {};

struct ordered : sor<text, number, property> {};
struct value : sor<boolean, ordered> {};

struct sign_equal : one<'='> {};
struct sign_not_equal : string<'!', '='> {};
struct sign_at_most : string<'<', '='> {};
struct sign_at_least : string<'>', '='> {};
struct sign_less : one<'<'> {};
struct sign_greater : one<'>'> {};
struct equality : token<sor<sign_not_equal, sign_equal>> {};
struct relation : token<sor<sign_at_most, sign_at_least, sign_less, sign_greater>> {};
struct contains : word_contains {};
struct starts : seq<word_starts, opt<word_with>> {};
struct ends : seq<word_ends, opt<word_with>> {};

struct equality_part : seq<equality, must<value>> {};
struct relation_part : seq<relation, must<ordered>> {};
struct fuzzy_part : seq<sor<contains, starts, ends>, must<value>> {};
struct value_part : sor<equality_part, relation_part> {};

// What lists are compared with.
struct entry_value : value {};
struct entry : sor<equality_part, relation_part, fuzzy_part, entry_value> {};
struct entries : seq<entry, star<comma, must<entry>>> {};
struct zip_colon : colon {};
struct zip : seq<entry, must<zip_colon>, must<entry>, star<colon, must<entry>>> {};
struct zips : seq<zip, star<comma, must<zip>>> {};

struct has_all : word_all {};
struct has_any : word_any {};
struct has_only : word_only {};
struct quantifier : sor<has_all, has_any, has_only> {};
struct has_part : seq<word_has, sor<seq<quantifier, must<entries>>, must<entry>>> {};
struct zip_part : seq<colon, must<property>, star<colon, must<property>>, must<word_has>,
                      sor<seq<quantifier, must<zips>>, must<zip>>> {};
struct length_part : seq<word_length, opt<sor<equality, relation>>, must<value>> {};
struct known_word : sor<word_known, word_unknown> {};
struct known_part : seq<word_is, must<known_word>> {};

struct comparison_part : sor<value_part, fuzzy_part> {};
struct comparison_end : value_part {};
struct boolean_end : equality_part {};
struct first_property : property {};
struct property_first
    : seq<first_property, opt<sor<comparison_part, known_part, has_part, zip_part, length_part>>> {};
struct first_constant : sor<text, number> {};
struct first_boolean : boolean {};
struct constant_first
    : sor<seq<first_constant, must<comparison_end>>, seq<first_boolean, must<boolean_end>>> {};
struct simple : sor<constant_first, property_first> {};

struct expression;
struct group : seq<open, must<expression>, must<close>> {};
struct item : sor<group, simple> {};
struct item_or_not : sor<seq<word_not, must<item>>, item> {};
struct conjunction : seq<item_or_not, star<word_and, must<item_or_not>>> {};
struct expression : seq<conjunction, star<word_or, must<conjunction>>> {};
struct filter : seq<blanks, must<expression>, must<eof>> {};

}  // namespace grammar

// What is missing where a rule cannot go on.
template <class Rule>
constexpr const char* expected = nullptr;
template <>
constexpr const char* expected<grammar::escapable> = "\\\" or \\\\, the only two escapes";
template <>
constexpr const char* expected<grammar::text_end> = "the closing quote of the text";
template <>
constexpr const char* expected<grammar::identifier> = "a name after the period";
template <>
constexpr const char* expected<grammar::value> =
    "a value: a number, a text in double quotes, a property, TRUE or FALSE";
template <>
constexpr const char* expected<grammar::ordered> = "a value: a number, a text in double quotes or a property";
template <>
constexpr const char* expected<grammar::entry> = "a value, with an operator before it or none";
template <>
constexpr const char* expected<grammar::entries> = expected<grammar::entry>;
template <>
constexpr const char* expected<grammar::zip> = "values with a colon between them";
template <>
constexpr const char* expected<grammar::zips> = expected<grammar::zip>;
template <>
constexpr const char* expected<grammar::zip_colon> = "a colon and one more value";
template <>
constexpr const char* expected<grammar::property> = "a property";
template <>
constexpr const char* expected<grammar::word_has> = "HAS";
template <>
constexpr const char* expected<grammar::known_word> = "KNOWN or UNKNOWN";
template <>
constexpr const char* expected<grammar::comparison_end> = "one of = != < <= > >=";
template <>
constexpr const char* expected<grammar::boolean_end> = "= or !=";
template <>
constexpr const char* expected<grammar::item> = "a property, a value or '('";
template <>
constexpr const char* expected<grammar::item_or_not> = "a property, a value, NOT or '('";
template <>
constexpr const char* expected<grammar::conjunction> = expected<grammar::item_or_not>;
template <>
constexpr const char* expected<grammar::expression> = expected<grammar::item_or_not>;
template <>
constexpr const char* expected<grammar::close> = "AND, OR or ')'";
template <>
constexpr const char* expected<grammar::eof> = "AND, OR or the end of the filter";

template <class Rule>
struct Control : tao::pegtl::normal<Rule> {
  template <class Input, class... States>
  [[noreturn]] static void raise(const Input& in, Reading& reading, States&&... /*unused*/) {
    static_assert(expected<Rule> != nullptr);
    const auto offset = static_cast<std::size_t>(in.current() - reading.filter.data());
    std::string problem = "expected ";
    if constexpr (std::is_same_v<Rule, grammar::close> || std::is_same_v<Rule, grammar::eof>) {
      if (reading.phrase.kind == FilterPhrase::Kind::bare && reading.ends_with_phrase)
        problem += "an operator, ";
    }
    throw EntryQueryError(EntryQueryError::Kind::syntax, reading.filter, offset,
                          problem + expected<Rule> + ", found " + found_text(reading.filter, offset));
  }
};

template <class Rule>
struct Action : tao::pegtl::nothing<Rule> {};

template <class Input>
std::size_t offset_of(const Input& in, const Reading& reading) {
  return static_cast<std::size_t>(in.begin() - reading.filter.data());
}

// Actions that only need to know that their rule was read.
#define WHEN_READ(rule, statements)                      \
  template <>                                            \
  struct Action<grammar::rule> {                         \
    static void apply0(Reading& reading) { statements; } \
  }

WHEN_READ(sign_equal, reading.comparison = EntryOperator::equal);
WHEN_READ(sign_not_equal, reading.comparison = EntryOperator::not_equal);
WHEN_READ(sign_less, reading.comparison = EntryOperator::less);
WHEN_READ(sign_at_most, reading.comparison = EntryOperator::at_most);
WHEN_READ(sign_greater, reading.comparison = EntryOperator::greater);
WHEN_READ(sign_at_least, reading.comparison = EntryOperator::at_least);
WHEN_READ(contains, reading.comparison = EntryOperator::contains);
WHEN_READ(starts, reading.comparison = EntryOperator::starts_with);
WHEN_READ(ends, reading.comparison = EntryOperator::ends_with);
WHEN_READ(entry_value, reading.comparison = EntryOperator::equal);
WHEN_READ(entry, reading.add_test());
WHEN_READ(has_all, reading.phrase.kind = FilterPhrase::Kind::has_all);
WHEN_READ(has_any, reading.phrase.kind = FilterPhrase::Kind::has_any);
WHEN_READ(has_only, reading.phrase.kind = FilterPhrase::Kind::has_only);
WHEN_READ(word_has, reading.phrase.kind = FilterPhrase::Kind::has);
WHEN_READ(zip_part, reading.phrase.kind = FilterPhrase::Kind::correlated);
WHEN_READ(word_known, reading.phrase.kind = FilterPhrase::Kind::known);
WHEN_READ(word_unknown, reading.phrase.kind = FilterPhrase::Kind::unknown);
WHEN_READ(word_length, reading.comparison = EntryOperator::equal;
          reading.phrase.kind = FilterPhrase::Kind::length);
WHEN_READ(length_part, reading.add_test());
WHEN_READ(comparison_part, reading.add_comparison());
WHEN_READ(comparison_end, reading.add_comparison());
WHEN_READ(boolean_end, reading.add_comparison());
WHEN_READ(first_property, reading.begin_phrase());
WHEN_READ(first_constant, reading.begin_phrase());
WHEN_READ(first_boolean, reading.begin_phrase());
WHEN_READ(simple, reading.close_simple());
WHEN_READ(word_or, reading.close_conjunction());
WHEN_READ(group, reading.close_group());
#undef WHEN_READ

template <>
struct Action<grammar::word_not> {
  template <class Input>
  static void apply(const Input& in, Reading& reading) {
    reading.levels.back().negated = true;
    reading.levels.back().negation_offset = offset_of(in, reading);
  }
};

template <>
struct Action<grammar::open> {
  template <class Input>
  static void apply(const Input& in, Reading& reading) {
    reading.open_group(offset_of(in, reading));
  }
};

template <>
struct Action<grammar::number_literal> {
  template <class Input>
  static void apply(const Input& in, Reading& reading) {
    reading.operand = {FilterOperand::Kind::number, in.string(), offset_of(in, reading)};
  }
};

template <>
struct Action<grammar::boolean_word> {
  template <class Input>
  static void apply(const Input& in, Reading& reading) {
    reading.operand = {FilterOperand::Kind::boolean, in.string(), offset_of(in, reading)};
  }
};

template <>
struct Action<grammar::property_name> {
  template <class Input>
  static void apply(const Input& in, Reading& reading) {
    std::string name = in.string();
    std::erase_if(name, [](char letter) { return letter == ' ' || (letter >= '\t' && letter <= '\r'); });
    reading.operand = {FilterOperand::Kind::property, std::move(name), offset_of(in, reading)};
  }
};

template <>
struct Action<grammar::text_content> {
  template <class Input>
  static void apply(const Input& in, Reading& reading) {
    std::string text;
    for (const char* letter = in.begin(); letter != in.end(); ++letter) {
      if (*letter == '\\') ++letter;
      text += *letter;
    }
    reading.operand = {FilterOperand::Kind::text, std::move(text), offset_of(in, reading) - 1};
  }
};

}  // namespace

FilterPhrase parse_filter(const std::string& filter) {
  Reading reading(filter);
  // Positions are offsets: lines would have to be counted.
  tao::pegtl::memory_input<tao::pegtl::tracking_mode::lazy> input(filter.data(), filter.size(), "");
  tao::pegtl::parse<grammar::filter, Action, Control>(input, reading);
  return reading.close_level();
}
