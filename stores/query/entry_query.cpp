#include <stores/entry_query.h>
#include <stores/query/condition_text.h>
#include <stores/query/entry_condition.h>
#include <stores/query/filter_meaning.h>
#include <stores/query/sql_writer.h>
#include <stores/query/text_meaning.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

bool is_everything(const Condition& condition) {
  return condition.kind == Condition::Kind::constant && condition.truth;
}

PropertyName named(const std::string& name) {
  if (const auto property = property_of_text(name)) return *property;
  if (const auto property = property_of_filter(name)) return *property;
  throw EntryQueryError(EntryQueryError::Kind::unknown_name,
                        name.starts_with('_') ? unknown_in_filter(name) : unknown_in_text(name));
}

void require_finite(double number) {
  if (!std::isfinite(number)) {
    throw EntryQueryError(EntryQueryError::Kind::wrong_type, "a number to compare with is finite");
  }
}

}  // namespace

EntryQuery::EntryQuery() : condition_(constant_condition(true)) {}
EntryQuery::EntryQuery(std::shared_ptr<const Condition> condition) : condition_(std::move(condition)) {}
EntryQuery::EntryQuery(const EntryQuery&) = default;
EntryQuery& EntryQuery::operator=(const EntryQuery&) = default;
EntryQuery::~EntryQuery() = default;

EntryQuery EntryQuery::from_text(const std::string& text) {
  return EntryQuery(text_meaning(text));
}

EntryQuery EntryQuery::from_filter(const std::string& filter) {
  return EntryQuery(filter_meaning(filter));
}

EntryQuery EntryQuery::compare(const std::string& property, Operator comparison, double number) {
  require_finite(number);
  return EntryQuery(checked_condition(named(property), {comparison, number}));
}

EntryQuery EntryQuery::compare(const std::string& property, Operator comparison, const std::string& text) {
  return EntryQuery(checked_condition(named(property), {comparison, text}));
}

EntryQuery EntryQuery::between(const std::string& property, double lower, double upper) {
  return compare(property, Operator::at_least, lower) && compare(property, Operator::at_most, upper);
}

EntryQuery EntryQuery::known(const std::string& property) {
  return EntryQuery(known_condition(named(property)));
}

EntryQuery EntryQuery::element(const std::string& symbol) {
  return EntryQuery(has_condition(PropertyName{&elements_property()}, {{Operator::equal, symbol}}));
}

EntryQuery EntryQuery::element(const std::string& symbol, Operator comparison, double count) {
  const auto& symbols = element_symbols();
  if (std::find(symbols.begin(), symbols.end(), symbol) == symbols.end()) {
    throw EntryQueryError(EntryQueryError::Kind::unknown_name, "there is no element '" + symbol + "'");
  }
  require_finite(count);
  return EntryQuery(
      checked_condition(PropertyName{&elements_property(), false, symbol}, {comparison, count}));
}

EntryQuery EntryQuery::cell(const std::array<double, 6>& parameters, double percent, char centring) {
  return EntryQuery(cell_condition(parameters, percent, centring));
}

EntryQuery operator&&(const EntryQuery& left, const EntryQuery& right) {
  if (is_everything(*left.condition_)) return right;
  if (is_everything(*right.condition_)) return left;
  return EntryQuery(joined_conditions(Condition::Kind::all, {left.condition_, right.condition_}));
}

EntryQuery operator||(const EntryQuery& left, const EntryQuery& right) {
  return EntryQuery(joined_conditions(Condition::Kind::any, {left.condition_, right.condition_}));
}

EntryQuery operator!(const EntryQuery& query) {
  return EntryQuery(negated_condition(query.condition_));
}

bool operator==(const EntryQuery& left, const EntryQuery& right) {
  return *left.condition_ == *right.condition_;
}

std::optional<std::string> EntryQuery::text() const {
  return short_text(*condition_);
}

std::optional<std::string> EntryQuery::filter() const {
  return filter_text(*condition_);
}

bool EntryQuery::matches(const EntryColumns& columns) const {
  return truth_of(*condition_, columns) == Truth::yes;
}

SqlCondition EntryQuery::sql(SqlDialect dialect, int first_parameter) const {
  return sql_condition(*condition_, dialect, first_parameter);
}
