#include <stores/query/entry_condition.h>
#include <stores/query/found_text.h>
#include <stores/query/time_text.h>

#include <algorithm>
#include <charconv>
#include <utility>

namespace {

ConditionPointer made(Condition condition) {
  for (const ConditionPointer& child : condition.children) {
    condition.depth = std::max(condition.depth, child->depth + 1);
    condition.size += child->size;
  }
  if (condition.tests.size() > 1) condition.size += condition.tests.size() - 1;
  // AND and OR take turns within one parenthesis, and each condition of the short form may be several.
  if (condition.depth > 3 * deepest_query + 3) {
    throw EntryQueryError(EntryQueryError::Kind::too_large,
                          "the query is too deep: conditions may be nested " + std::to_string(deepest_query) +
                              " deep, not more");
  }
  if (condition.size > 4 * largest_query) {
    throw EntryQueryError(
        EntryQueryError::Kind::too_large,
        "a query may have " + std::to_string(largest_query) + " conditions and values, not more");
  }
  return std::make_shared<const Condition>(std::move(condition));
}

[[noreturn]] void wrong_type(const std::string& problem) {
  throw EntryQueryError(EntryQueryError::Kind::wrong_type, problem);
}

// A lattice is looked at point by point, as far out as the longest edge. So oblique a cell within so wide a
// tolerance that these could be millions would keep a store busy for hours.
void require_few_points(const LatticeSearch& search, double percent) {
  constexpr double most_points = 200'000;
  constexpr double smallest_cell = 10.0;  // cubic ångström; no crystal has one much smaller
  const auto& parameters = search.compared().parameters();
  const double radius = *std::max_element(parameters.begin(), parameters.begin() + 3) * (1 + percent / 100);
  const double sphere = 4.0 / 3.0 * 3.14159265358979 * radius * radius * radius;
  if (sphere / std::max(search.bounds().least_volume, smallest_cell) > most_points) {
    throw EntryQueryError(EntryQueryError::Kind::too_large,
                          "the cell is too long and oblique for so wide a tolerance");
  }
}

}  // namespace

bool Condition::operator==(const Condition& other) const {
  if (kind != other.kind || truth != other.truth || inverted != other.inverted || left != other.left ||
      tests != other.tests || children.size() != other.children.size()) {
    return false;
  }
  if (kind == Kind::cell &&
      (cell->parameters != other.cell->parameters || cell->percent != other.cell->percent ||
       cell->centring != other.cell->centring)) {
    return false;
  }
  return std::equal(children.begin(), children.end(), other.children.begin(),
                    [](const ConditionPointer& a, const ConditionPointer& b) { return *a == *b; });
}

ConditionPointer constant_condition(bool truth) {
  return made({.kind = Condition::Kind::constant, .truth = truth});
}

ConditionPointer joined_conditions(Condition::Kind kind, const std::vector<ConditionPointer>& children) {
  if (children.size() == 1) return children.front();
  Condition condition{.kind = kind};
  for (const ConditionPointer& child : children) {
    if (child->kind == kind) {
      condition.children.insert(condition.children.end(), child->children.begin(), child->children.end());
    } else {
      condition.children.push_back(child);
    }
  }
  return made(std::move(condition));
}

ConditionPointer negated_condition(const ConditionPointer& child) {
  if (child->kind == Condition::Kind::negation) return child->children.front();
  Condition condition{.kind = Condition::Kind::negation};
  condition.children.push_back(child);
  return made(std::move(condition));
}

ConditionPointer comparison_condition(const PropertyName& left, const EntryTest& test) {
  return made({.kind = Condition::Kind::comparison, .left = left, .tests = {test}});
}

ConditionPointer known_condition(const PropertyName& property) {
  // Folding, counting and shares change nothing about what is known.
  PropertyName plain{property.property};
  if (plain.property->type == EntryProperty::Type::ratios) plain.property = &elements_property();
  return made({.kind = Condition::Kind::known, .left = plain});
}

ConditionPointer has_condition(const PropertyName& list, const std::vector<EntryTest>& tests, bool inverted) {
  return made({.kind = Condition::Kind::has, .inverted = inverted, .left = list, .tests = tests});
}

ConditionPointer length_condition(const PropertyName& list, const EntryTest& test) {
  if (list.property->type == EntryProperty::Type::texts) {
    return made({.kind = Condition::Kind::length, .left = PropertyName{list.property}, .tests = {test}});
  }
  return comparison_condition(PropertyName{&element_count_property()}, test);
}

ConditionPointer cell_condition(const std::array<double, 6>& parameters, double percent, char centring) {
  try {
    // A tolerance that is not a number is outside every limit.
    const CellGeometry geometry(parameters[0], parameters[1], parameters[2], parameters[3], parameters[4],
                                parameters[5]);
    const LatticeSearch search(geometry, percent, centring);
    require_few_points(search, percent);
    Condition condition{.kind = Condition::Kind::cell};
    condition.cell =
        std::make_shared<const CellQuestion>(CellQuestion{parameters, percent, centring, search});
    return made(std::move(condition));
  } catch (const LatticeError& error) {
    wrong_type(error.what());
  }
}

void require_comparable(const PropertyName& left, EntryTest& test) {
  const std::string name = "'" + filter_name(left) + "'";
  if (const auto* const right = std::get_if<PropertyName>(&test.value)) {
    if (right->is_list())
      wrong_type("'" + filter_name(*right) + "' is a list, which is no value to compare with");
    const bool times = left.property->type == EntryProperty::Type::time;
    if (times != (right->property->type == EntryProperty::Type::time))
      wrong_type(name + " and '" + filter_name(*right) + "' are of different types");
  }
  const bool texts = left.holds_texts() || left.is_text();
  if (!texts && is_fuzzy(test.comparison))
    wrong_type(name + " is a number: " + text_of(test.comparison) + " is for texts");
  if (texts && left.property->type == EntryProperty::Type::time && is_fuzzy(test.comparison)) {
    wrong_type(name + " is a time: " + text_of(test.comparison) + " is for texts");
  }
  const bool text_value =
      std::holds_alternative<std::string>(test.value) ||
      (std::holds_alternative<PropertyName>(test.value) && std::get<PropertyName>(test.value).is_text());
  if (texts != text_value) {
    wrong_type(texts ? name + " is compared with texts, in double quotes"
                     : name + " is compared with numbers");
  }
  if (left.folded) {
    if (auto* const text = std::get_if<std::string>(&test.value)) *text = folded(*text);
  }
}

ConditionPointer checked_condition(const PropertyName& left, const EntryTest& test) {
  EntryTest checked = test;
  require_comparable(left, checked);
  if (left.property->type == EntryProperty::Type::time &&
      std::holds_alternative<std::string>(checked.value)) {
    if (const auto condition =
            time_condition(left, checked.comparison, std::get<std::string>(checked.value))) {
      return *condition;
    }
    wrong_type("expected a time by RFC 3339, such as \"2007-04-05T14:30:20Z\"");
  }
  return left.is_list() ? has_condition(left, {checked}) : comparison_condition(left, checked);
}

ConditionPointer cell_from_text(const std::string& text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  const auto skip = [&] {
    while (at != end && (*at == ' ' || *at == ',' || (*at >= '\t' && *at <= '\r'))) ++at;
  };
  const auto number = [&](const char* what) {
    skip();
    double value = 0.0;
    const auto result = std::from_chars(at, end, value);
    if (result.ec != std::errc()) {
      wrong_type(std::string("expected ") + what + " of the cell, found " +
                 found_text(text, static_cast<std::size_t>(at - text.data())));
    }
    at = result.ptr;
    return value;
  };
  skip();
  char centring = 'P';
  if (at != end && *at >= 'A' && *at <= 'Z') centring = *at++;
  std::array<double, 6> parameters{};
  constexpr std::array<const char*, 6> names = {"a", "b", "c", "alpha", "beta", "gamma"};
  for (std::size_t index = 0; index < parameters.size(); ++index) parameters[index] = number(names[index]);
  skip();
  double percent = 1.0;
  if (at != end && *at == '~') {
    ++at;
    percent = number("the tolerance");
    skip();
    if (at != end && *at == '%') ++at;
    skip();
  }
  if (at != end)
    wrong_type("expected the end of the cell, found " +
               found_text(text, static_cast<std::size_t>(at - text.data())));
  return cell_condition(parameters, percent, centring);
}

std::string cell_text(const CellQuestion& cell) {
  std::string text = cell.centring == 'P' ? "" : std::string(1, cell.centring) + ' ';
  for (const double parameter : cell.parameters) text += number_text(parameter) + ' ';
  return text + "~ " + number_text(cell.percent) + "%";
}

EntryOperator exchanged(EntryOperator comparison) {
  switch (comparison) {
    case EntryOperator::less:
      return EntryOperator::greater;
    case EntryOperator::at_most:
      return EntryOperator::at_least;
    case EntryOperator::greater:
      return EntryOperator::less;
    case EntryOperator::at_least:
      return EntryOperator::at_most;
    default:
      return comparison;
  }
}

EntryOperator contrary(EntryOperator comparison) {
  switch (comparison) {
    case EntryOperator::equal:
      return EntryOperator::not_equal;
    case EntryOperator::not_equal:
      return EntryOperator::equal;
    case EntryOperator::less:
      return EntryOperator::at_least;
    case EntryOperator::at_most:
      return EntryOperator::greater;
    case EntryOperator::greater:
      return EntryOperator::at_most;
    case EntryOperator::at_least:
      return EntryOperator::less;
    default:
      return comparison;
  }
}

bool is_fuzzy(EntryOperator comparison) {
  return comparison == EntryOperator::contains || comparison == EntryOperator::starts_with ||
         comparison == EntryOperator::ends_with;
}

const char* text_of(EntryOperator comparison) {
  constexpr std::array<const char*, 9> texts = {"=",  "!=",       "<",           "<=",       ">",
                                                ">=", "CONTAINS", "STARTS WITH", "ENDS WITH"};
  return texts[static_cast<std::size_t>(comparison)];
}

std::string number_text(double number) {
  std::array<char, 32> text{};
  const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
  return {text.data(), result.ptr};
}
