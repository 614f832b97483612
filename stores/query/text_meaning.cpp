#include <stores/query/found_text.h>
#include <stores/query/text_meaning.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <tao/pegtl.hpp>
#include <type_traits>
#include <utility>

namespace {

using Kind = EntryQueryError::Kind;

// One condition as it is written.
struct Written {
  bool negated = false;
  std::string word;
  std::size_t word_offset = 0;
  std::string sign;  // empty for a word alone
  std::size_t sign_offset = 0;
  std::string value;
  std::size_t value_offset = 0;
  bool quoted = false;
};

struct Reading {
  const std::string& query;
  Written written = {};
  std::vector<Written> conditions = {};
};

namespace grammar {

using namespace tao::pegtl;

struct blanks : star<one<' ', '\t', '\n', '\r', '\v', '\f'>> {};
struct not_sign : one<'!'> {};
struct letter : ranges<'a', 'z', 'A', 'Z', '_'> {};
struct word : seq<letter, star<sor<letter, digit>>> {};
struct sign
    : sor<string<'!', '='>, string<'!', '~'>, string<'<', '='>, string<'>', '='>, one<'=', '~', '<', '>'>> {};
struct escapable : one<'"', '\\'> {};
struct quoted_content : star<sor<seq<one<'\\'>, must<escapable>>, not_one<'"', '\\'>>> {};
struct closing_quote : one<'"'> {};
struct quoted : seq<one<'"'>, quoted_content, must<closing_quote>, blanks> {};
struct bare : plus<not_one<','>> {};
struct value : sor<quoted, bare> {};
struct named : seq<word, blanks, opt<sign, blanks, must<value>>> {};
struct negated : seq<not_sign, blanks, must<named>> {};
struct condition : seq<sor<negated, named>, blanks> {};
struct end : eof {};
struct query : seq<blanks, opt<condition, star<one<','>, blanks, must<condition>>>, must<end>> {};

// Numbers: 1960, 1960..1990, ..1990, 1960.., 4.5~0.02, 4.5~1%. A number does not end with one of the two
// points of a range.
struct exponent : seq<one<'e', 'E'>, opt<one<'+', '-'>>, plus<digit>> {};
struct fraction : seq<one<'.'>, not_at<one<'.'>>, star<digit>> {};
struct digits : sor<seq<plus<digit>, opt<fraction>>, seq<one<'.'>, plus<digit>>> {};
struct number : seq<opt<one<'+', '-'>>, digits, opt<exponent>> {};
struct points : seq<string<'.', '.'>, blanks> {};
struct tolerance_sign : one<'~'> {};
struct percent : one<'%'> {};
struct first_number : seq<number, blanks> {};
struct last_number : seq<number, blanks> {};
struct tolerance : seq<number, blanks, opt<percent, blanks>> {};
struct numbers
    : must<sor<seq<points, must<last_number>>,
               seq<first_number,
                   opt<sor<seq<points, opt<last_number>>, seq<tolerance_sign, blanks, must<tolerance>>>>>>> {
};
struct numbers_end : eof {};
struct numeric_value : seq<numbers, must<numbers_end>> {};

}  // namespace grammar

template <class Rule>
constexpr const char* expected = nullptr;
template <>
constexpr const char* expected<grammar::escapable> = "\\\" or \\\\, the only two escapes";
template <>
constexpr const char* expected<grammar::closing_quote> = "the closing quote of the text";
template <>
constexpr const char* expected<grammar::value> = "a value";
template <>
constexpr const char* expected<grammar::named> = "an element or the name of a property after '!'";
template <>
constexpr const char* expected<grammar::condition> = "an element or the name of a property";
template <>
constexpr const char* expected<grammar::end> = "an operator (= != < <= > >= ~ !~), a comma or the end";
template <>
constexpr const char* expected<grammar::last_number> = "a number after the two points";
template <>
constexpr const char* expected<grammar::tolerance> = "the tolerance: a number, with % or without";
template <>
constexpr const char* expected<grammar::numbers_end> =
    "a range (1960..1990), a tolerance (4.5~0.02), a comma or the end";

struct NumberReading {
  const std::string& query;
  const char* begin;   // of the value
  std::size_t offset;  // of the value in the query
  std::optional<std::string> first = {};
  std::optional<std::string> last = {};
  std::optional<std::string> tolerance = {};
  bool is_range = false;
  bool is_percent = false;
};

[[noreturn]] void fail(const std::string& query, std::size_t offset, const std::string& what) {
  throw EntryQueryError(Kind::syntax, query, offset,
                        "expected " + what + ", found " + found_text(query, offset));
}

template <class Rule>
struct Control : tao::pegtl::normal<Rule> {
  template <class Input>
  [[noreturn]] static void raise(const Input& in, Reading& reading) {
    static_assert(expected<Rule> != nullptr);
    const auto offset = static_cast<std::size_t>(in.current() - reading.query.data());
    if (std::is_same_v<Rule, grammar::end> && !reading.conditions.empty() &&
        !reading.conditions.back().sign.empty()) {
      fail(reading.query, offset, "a comma or the end");
    }
    if (std::is_same_v<Rule, grammar::end> && reading.conditions.empty()) {
      fail(reading.query, offset, "an element or the name of a property");
    }
    fail(reading.query, offset, expected<Rule>);
  }
};

template <class Rule>
struct NumberControl : tao::pegtl::normal<Rule> {
  template <class Input>
  [[noreturn]] static void raise(const Input& in, NumberReading& reading) {
    const char* what = "a number";
    if constexpr (expected<Rule> != nullptr) what = expected<Rule>;
    fail(reading.query, reading.offset + static_cast<std::size_t>(in.current() - reading.begin), what);
  }
};

template <class Rule>
struct Action : tao::pegtl::nothing<Rule> {};
template <class Rule>
struct NumberAction : tao::pegtl::nothing<Rule> {};

template <class Input>
std::size_t offset_of(const Input& in, const Reading& reading) {
  return static_cast<std::size_t>(in.begin() - reading.query.data());
}

std::string without_blanks_at_end(std::string text) {
  const auto is_blank = [](char letter) { return letter == ' ' || (letter >= '\t' && letter <= '\r'); };
  while (!text.empty() && is_blank(text.back())) text.pop_back();
  return text;
}

template <>
struct Action<grammar::not_sign> {
  static void apply0(Reading& reading) { reading.written.negated = true; }
};
template <>
struct Action<grammar::word> {
  template <class Input>
  static void apply(const Input& in, Reading& reading) {
    reading.written.word = in.string();
    reading.written.word_offset = offset_of(in, reading);
  }
};
template <>
struct Action<grammar::sign> {
  template <class Input>
  static void apply(const Input& in, Reading& reading) {
    reading.written.sign = in.string();
    reading.written.sign_offset = offset_of(in, reading);
  }
};
template <>
struct Action<grammar::quoted_content> {
  template <class Input>
  static void apply(const Input& in, Reading& reading) {
    for (const char* letter = in.begin(); letter != in.end(); ++letter) {
      if (*letter == '\\') ++letter;
      reading.written.value += *letter;
    }
    reading.written.value_offset = offset_of(in, reading);
    reading.written.quoted = true;
  }
};
template <>
struct Action<grammar::bare> {
  template <class Input>
  static void apply(const Input& in, Reading& reading) {
    reading.written.value = without_blanks_at_end(in.string());
    reading.written.value_offset = offset_of(in, reading);
  }
};
template <>
struct Action<grammar::condition> {
  static void apply0(Reading& reading) {
    reading.conditions.push_back(std::exchange(reading.written, {}));
    if (reading.conditions.size() > largest_query) {
      throw EntryQueryError(
          Kind::too_large, reading.query, reading.conditions.back().word_offset,
          "a query may have " + std::to_string(largest_query) + " conditions and values, not more");
    }
  }
};

template <>
struct NumberAction<grammar::first_number> {
  template <class Input>
  static void apply(const Input& in, NumberReading& reading) {
    reading.first = without_blanks_at_end(in.string());
  }
};
template <>
struct NumberAction<grammar::last_number> {
  template <class Input>
  static void apply(const Input& in, NumberReading& reading) {
    reading.last = without_blanks_at_end(in.string());
  }
};
template <>
struct NumberAction<grammar::points> {
  static void apply0(NumberReading& reading) { reading.is_range = true; }
};
template <>
struct NumberAction<grammar::percent> {
  static void apply0(NumberReading& reading) { reading.is_percent = true; }
};
template <>
struct NumberAction<grammar::tolerance> {
  template <class Input>
  static void apply(const Input& in, NumberReading& reading) {
    const std::string text = in.string();
    reading.tolerance = text.substr(0, text.find_first_of("% \t\n\r\v\f"));
  }
};

class Meaning {
 public:
  Meaning(const std::string& query, const Written& written) : query_(query), written_(written) {}

  [[nodiscard]] ConditionPointer meaning() const {
    const ConditionPointer condition = positive();
    return written_.negated ? negated_condition(condition) : condition;
  }

 private:
  [[noreturn]] void fail_at(Kind kind, std::size_t offset, const std::string& problem) const {
    throw EntryQueryError(kind, query_, offset, problem);
  }

  template <class Make>
  [[nodiscard]] ConditionPointer placed(const Make& make) const {
    try {
      return make();
    } catch (const EntryQueryError& error) {
      fail_at(error.kind(), written_.value_offset, error.problem());
    }
  }

  [[nodiscard]] ConditionPointer positive() const {
    const std::string& word = written_.word;
    const auto& symbols = element_symbols();
    if (std::find(symbols.begin(), symbols.end(), word) != symbols.end()) {
      if (written_.sign.empty())
        return has_condition(PropertyName{&elements_property()}, {{EntryOperator::equal, word}});
      return numeric(PropertyName{&elements_property(), false, word});
    }
    if (word == "cell") return cell();
    const auto property = property_of_text(word);
    if (!property) fail_at(Kind::unknown_name, written_.word_offset, unknown_in_text(word));
    if (written_.sign.empty()) return known_condition(*property);
    return property->is_number() ? numeric(*property) : text(*property);
  }

  [[nodiscard]] ConditionPointer cell() const {
    if (written_.sign != "=")
      fail_at(Kind::wrong_type, written_.sign.empty() ? written_.word_offset : written_.sign_offset,
              "a cell is compared by '=' alone: cell=4.6 4.6 3.0 90 90 90~1%");
    return placed([&] { return cell_from_text(written_.value); });
  }

  // The sign without a '!' that negates the whole; != of a single value is an operator of its own.
  [[nodiscard]] EntryOperator comparison() const {
    const std::string& sign = written_.sign;
    if (sign == "<") return EntryOperator::less;
    if (sign == "<=") return EntryOperator::at_most;
    if (sign == ">") return EntryOperator::greater;
    if (sign == ">=") return EntryOperator::at_least;
    if (sign == "!=") return EntryOperator::not_equal;
    if (sign == "=") return EntryOperator::equal;
    return EntryOperator::contains;
  }

  [[nodiscard]] ConditionPointer text(const PropertyName& property) const {
    const bool negated = written_.sign == "!~" || (written_.sign == "!=" && property.is_list());
    const EntryOperator sign = written_.sign == "!=" && negated ? EntryOperator::equal : comparison();
    const ConditionPointer condition = placed([&] {
      return checked_condition(property, {sign, written_.value});
    });
    return negated ? negated_condition(condition) : condition;
  }

  [[nodiscard]] long double number(const std::string& text) const {
    const char* const begin = text.data() + (text.front() == '+' ? 1 : 0);
    // A double decides what is in range; the digits beyond it matter where a tolerance is added.
    double rounded = 0.0;
    long double value = 0.0L;
    if (std::from_chars(begin, text.data() + text.size(), rounded).ec != std::errc() ||
        std::from_chars(begin, text.data() + text.size(), value).ec != std::errc()) {
      fail_at(Kind::wrong_type, written_.value_offset,
              "the number is not within the range of a double: 0, or from 1e-307 to 1e308 with either sign");
    }
    return value;
  }

  [[nodiscard]] double rounded(long double value) const {
    const auto result = static_cast<double>(value);
    if (!std::isfinite(result)) {
      fail_at(Kind::wrong_type, written_.value_offset, "the tolerance leads beyond the range of a double");
    }
    return result;
  }

  [[nodiscard]] ConditionPointer range(const PropertyName& property, std::optional<double> lower,
                                       std::optional<double> upper) const {
    std::vector<ConditionPointer> limits;
    if (lower) limits.push_back(comparison_condition(property, {EntryOperator::at_least, *lower}));
    if (upper) limits.push_back(comparison_condition(property, {EntryOperator::at_most, *upper}));
    const ConditionPointer condition = joined_conditions(Condition::Kind::all, limits);
    return written_.sign == "!=" ? negated_condition(condition) : condition;
  }

  [[nodiscard]] ConditionPointer numeric(const PropertyName& property) const {
    if (written_.sign == "~" || written_.sign == "!~") {
      fail_at(Kind::wrong_type, written_.sign_offset,
              "'" + written_.word + "' is a number: '" + written_.sign + "' is for texts");
    }
    if (written_.quoted)
      fail_at(Kind::wrong_type, written_.value_offset - 1,
              "'" + written_.word + "' is compared with numbers");
    NumberReading reading{query_, written_.value.data(), written_.value_offset};
    tao::pegtl::memory_input<tao::pegtl::tracking_mode::lazy> input(written_.value.data(),
                                                                    written_.value.size(), "");
    tao::pegtl::parse<grammar::numeric_value, NumberAction, NumberControl>(input, reading);
    const bool exact = written_.sign == "=" || written_.sign == "!=";
    if ((reading.is_range || reading.tolerance) && !exact) {
      fail_at(Kind::wrong_type, written_.sign_offset,
              "a range and a tolerance follow '=' or '!=', not '" + written_.sign + "'");
    }
    if (reading.is_range) {
      std::optional<double> lower;
      std::optional<double> upper;
      if (reading.first) lower = rounded(number(*reading.first));
      if (reading.last) upper = rounded(number(*reading.last));
      if (lower && upper && *lower > *upper)
        fail_at(Kind::wrong_type, written_.value_offset, "the range ends before it begins");
      return range(property, lower, upper);
    }
    const long double value = number(*reading.first);
    if (!reading.tolerance) return comparison_condition(property, {comparison(), rounded(value)});
    long double tolerance = number(*reading.tolerance);
    if (tolerance < 0) fail_at(Kind::wrong_type, written_.value_offset, "a tolerance is not negative");
    if (reading.is_percent) tolerance *= (value < 0 ? -value : value) / 100;
    return range(property, rounded(value - tolerance), rounded(value + tolerance));
  }

  const std::string& query_;
  const Written& written_;
};

}  // namespace

ConditionPointer text_meaning(const std::string& text) {
  Reading reading{text};
  tao::pegtl::memory_input<tao::pegtl::tracking_mode::lazy> input(text.data(), text.size(), "");
  tao::pegtl::parse<grammar::query, Action, Control>(input, reading);
  if (reading.conditions.empty()) return constant_condition(true);
  std::vector<ConditionPointer> conditions;
  for (const Written& written : reading.conditions) conditions.push_back(Meaning(text, written).meaning());
  return joined_conditions(Condition::Kind::all, conditions);
}
