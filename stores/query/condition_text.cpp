#include <stores/query/condition_text.h>

#include <algorithm>
#include <stdexcept>

namespace {

// The language has no words for this.
struct NoWords {};

bool is_control(char letter) {
  return (letter >= '\0' && letter < ' ' && (letter < '\t' || letter > '\r')) || letter == '\x7F';
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char letter : text) {
    if (letter == '"' || letter == '\\') result += '\\';
    result += letter;
  }
  return result + '"';
}

std::string filter_value(const EntryOperand& operand) {
  if (const auto* const number = std::get_if<double>(&operand)) return number_text(*number);
  if (const auto* const name = std::get_if<PropertyName>(&operand)) return filter_name(*name);
  const std::string& text = std::get<std::string>(operand);
  if (std::any_of(text.begin(), text.end(), is_control)) throw NoWords{};
  return quoted(text);
}

std::string filter_tests(const std::vector<EntryTest>& tests) {
  std::string result;
  for (const EntryTest& test : tests) {
    if (!result.empty()) result += ", ";
    if (test.comparison != EntryOperator::equal) result += std::string(text_of(test.comparison)) + ' ';
    result += filter_value(test.value);
  }
  return result;
}

std::string filter_of(const Condition& condition);

// With parentheses where what is around it binds stronger.
std::string filter_within(const Condition& condition, Condition::Kind around) {
  const bool joined =
      condition.kind == Condition::Kind::any ||
      (condition.kind == Condition::Kind::all && around == Condition::Kind::negation) ||
      (condition.kind == Condition::Kind::has && condition.inverted && around == Condition::Kind::negation);
  return joined ? '(' + filter_of(condition) + ')' : filter_of(condition);
}

std::string filter_of(const Condition& condition) {
  switch (condition.kind) {
    case Condition::Kind::constant:
      return condition.truth ? "1=1" : "1=0";
    case Condition::Kind::all:
    case Condition::Kind::any: {
      std::string result;
      for (const ConditionPointer& child : condition.children) {
        if (!result.empty()) result += condition.kind == Condition::Kind::all ? " AND " : " OR ";
        result += filter_within(*child, condition.kind);
      }
      return result;
    }
    case Condition::Kind::negation: {
      const Condition& child = *condition.children.front();
      if (child.kind == Condition::Kind::has && child.inverted) {
        return filter_name(child.left) + " HAS ONLY " + filter_tests(child.tests);
      }
      if (child.kind == Condition::Kind::known) return filter_name(child.left) + " IS UNKNOWN";
      return "NOT " + filter_within(child, Condition::Kind::negation);
    }
    case Condition::Kind::comparison:
      return filter_name(condition.left) + ' ' + text_of(condition.tests.front().comparison) + ' ' +
             filter_value(condition.tests.front().value);
    case Condition::Kind::known:
      return filter_name(condition.left) + " IS KNOWN";
    case Condition::Kind::has:
      if (condition.inverted)
        return "NOT " + filter_name(condition.left) + " HAS ONLY " + filter_tests(condition.tests);
      return filter_name(condition.left) + (condition.tests.size() > 1 ? " HAS ANY " : " HAS ") +
             filter_tests(condition.tests);
    case Condition::Kind::length:
      return filter_name(condition.left) + " LENGTH " + filter_tests(condition.tests);
    case Condition::Kind::cell:
      return "_dbentry_cell = " + quoted(cell_text(*condition.cell));
  }
  return "";
}

// The short form.

std::string short_value(const std::string& text) {
  const bool plain = !text.empty() && std::all_of(text.begin(), text.end(), [](char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '.' || letter == '-' || letter == '_';
  });
  return plain ? text : quoted(text);
}

std::string short_property(const PropertyName& name) {
  std::string result = short_name(name);
  if (result.empty()) throw NoWords{};
  return result;
}

// Of a number alone; nothing of others.
std::optional<double> limit(const Condition& condition, EntryOperator comparison) {
  if (condition.kind != Condition::Kind::comparison || condition.tests.front().comparison != comparison)
    return {};
  const auto* const number = std::get_if<double>(&condition.tests.front().value);
  return number == nullptr ? std::nullopt : std::optional(*number);
}

// "year=1960..1990" for its two limits.
std::optional<std::string> short_range(const Condition& first, const Condition& second) {
  const auto lower = limit(first, EntryOperator::at_least);
  const auto upper = limit(second, EntryOperator::at_most);
  if (!lower || !upper || !(first.left == second.left) || *lower > *upper) return std::nullopt;
  return short_property(first.left) + '=' + number_text(*lower) + ".." + number_text(*upper);
}

std::string short_test(const PropertyName& left, const EntryTest& test) {
  std::string sign = text_of(test.comparison);
  if (is_fuzzy(test.comparison)) {
    if (test.comparison != EntryOperator::contains) throw NoWords{};
    sign = "~";
  }
  if (const auto* const number = std::get_if<double>(&test.value)) {
    return short_property(left) + sign + number_text(*number);
  }
  const auto* const text = std::get_if<std::string>(&test.value);
  if (text == nullptr || left.is_text() != !left.is_list()) throw NoWords{};
  return short_property(left) + sign + short_value(*text);
}

std::string short_one(const Condition& condition) {
  switch (condition.kind) {
    case Condition::Kind::negation: {
      const Condition& child = *condition.children.front();
      if (child.kind == Condition::Kind::all && child.children.size() == 2) {
        if (const auto range = short_range(*child.children[0], *child.children[1])) return '!' + *range;
      }
      return '!' + short_one(child);
    }
    case Condition::Kind::comparison:
      return short_test(condition.left, condition.tests.front());
    case Condition::Kind::known: {
      PropertyName name = condition.left;
      name.folded = name.property->holds_texts();
      return short_property(name);
    }
    case Condition::Kind::has: {
      if (condition.inverted || condition.tests.size() != 1) throw NoWords{};
      const EntryTest& test = condition.tests.front();
      if (!condition.left.elements()) {
        // Of a list, != says that no member is equal.
        if (test.comparison == EntryOperator::not_equal) throw NoWords{};
        return short_test(condition.left, test);
      }
      const auto* const symbol = std::get_if<std::string>(&test.value);
      const auto& symbols = element_symbols();
      if (test.comparison != EntryOperator::equal || symbol == nullptr ||
          std::find(symbols.begin(), symbols.end(), *symbol) == symbols.end()) {
        throw NoWords{};
      }
      return *symbol;
    }
    case Condition::Kind::cell:
      return "cell=" + quoted(cell_text(*condition.cell));
    default:
      throw NoWords{};
  }
}

std::string short_of(const Condition& condition) {
  if (condition.kind == Condition::Kind::constant && condition.truth) return "";
  if (condition.kind != Condition::Kind::all) return short_one(condition);
  std::string result;
  for (std::size_t index = 0; index < condition.children.size(); ++index) {
    if (!result.empty()) result += ',';
    if (index + 1 < condition.children.size()) {
      if (const auto range = short_range(*condition.children[index], *condition.children[index + 1])) {
        result += *range;
        ++index;
        continue;
      }
    }
    result += short_one(*condition.children[index]);
  }
  return result;
}

}  // namespace

std::optional<std::string> filter_text(const Condition& condition) {
  try {
    return filter_of(condition);
  } catch (const NoWords&) {
    return std::nullopt;
  }
}

std::optional<std::string> short_text(const Condition& condition) {
  try {
    return short_of(condition);
  } catch (const NoWords&) {
    return std::nullopt;
  }
}
