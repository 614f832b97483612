// Whether a condition holds for the columns of an entry: the judge of every database's answers.
#include <stores/query/entry_condition.h>

#include <algorithm>
#include <type_traits>

namespace {

// What a comparison is between; nothing is not known.
using EntryValue = std::variant<std::monostate, double, std::string>;

Truth truth(bool holds) {
  return holds ? Truth::yes : Truth::no;
}
Truth negation(Truth truth) {
  return truth == Truth::unknown ? truth : truth == Truth::yes ? Truth::no : Truth::yes;
}

double count_of(const std::vector<ElementCount>& elements, const std::string& symbol) {
  for (const ElementCount& element : elements) {
    if (element.symbol == symbol) return element.count;
  }
  return 0.0;
}

EntryValue value_of(const PropertyName& name, const EntryColumns& columns) {
  return std::visit(
      [&]<class T>(T EntryColumns::*member) -> EntryValue {
        const T& value = columns.*member;
        if constexpr (std::is_same_v<T, std::string>) {
          return name.folded ? folded(value) : value;
        } else if constexpr (std::is_same_v<T, std::optional<std::string>>) {
          if (!value) return {};
          return name.folded ? folded(*value) : *value;
        } else if constexpr (std::is_same_v<T, std::vector<ElementCount>>) {
          if (value.empty()) return {};
          return count_of(value, name.element);
        } else if constexpr (std::is_same_v<T, std::vector<std::string>>) {
          return {};
        } else {
          if (!value) return {};
          return static_cast<double>(*value);
        }
      },
      name.property->member);
}

EntryValue value_of(const EntryOperand& operand, const EntryColumns& columns) {
  return std::visit(
      [&]<class T>(const T& value) -> EntryValue {
        if constexpr (std::is_same_v<T, PropertyName>) {
          return value_of(value, columns);
        } else {
          return value;
        }
      },
      operand);
}

template <class T>
bool compares(const T& left, EntryOperator comparison, const T& right) {
  switch (comparison) {
    case EntryOperator::equal:
      return left == right;
    case EntryOperator::not_equal:
      return left != right;
    case EntryOperator::less:
      return left < right;
    case EntryOperator::at_most:
      return left <= right;
    case EntryOperator::greater:
      return left > right;
    case EntryOperator::at_least:
      return left >= right;
    default:
      break;
  }
  if constexpr (std::is_same_v<T, std::string>) {
    if (comparison == EntryOperator::contains) return left.find(right) != std::string::npos;
    if (comparison == EntryOperator::starts_with) return left.starts_with(right);
    if (comparison == EntryOperator::ends_with) return left.ends_with(right);
  }
  return false;
}

Truth truth_of(const EntryValue& left, EntryOperator comparison, const EntryValue& right) {
  if (std::holds_alternative<std::monostate>(left) || std::holds_alternative<std::monostate>(right)) {
    return Truth::unknown;
  }
  if (const auto* const number = std::get_if<double>(&left)) {
    return truth(compares(*number, comparison, std::get<double>(right)));
  }
  return truth(compares(std::get<std::string>(left), comparison, std::get<std::string>(right)));
}

// The members of a list; none of a list that is not known.
std::vector<EntryValue> members_of(const PropertyName& list, const EntryColumns& columns) {
  std::vector<EntryValue> members;
  if (list.property->type == EntryProperty::Type::texts) {
    for (const std::string& text :
         columns.*std::get<std::vector<std::string> EntryColumns::*>(list.property->member)) {
      members.emplace_back(list.folded ? folded(text) : text);
    }
    return members;
  }
  double atoms = 0.0;
  for (const ElementCount& element : columns.elements) atoms += element.count;
  for (const ElementCount& element : columns.elements) {
    if (list.elements()) {
      members.emplace_back(element.symbol);
    } else {
      members.emplace_back(element.count / atoms);
    }
  }
  return members;
}

Truth truth_of_has(const Condition& condition, const EntryColumns& columns) {
  const std::vector<EntryValue> members = members_of(condition.left, columns);
  if (members.empty()) return Truth::unknown;
  Truth found = Truth::no;
  for (const EntryValue& member : members) {
    Truth passed = Truth::no;
    for (const EntryTest& test : condition.tests) {
      passed = std::max(passed, truth_of(member, test.comparison, value_of(test.value, columns)));
    }
    found = std::max(found, condition.inverted ? negation(passed) : passed);
  }
  return found;
}

bool is_known(const PropertyName& name, const EntryColumns& columns) {
  return std::visit(
      [&]<class T>(T EntryColumns::*member) {
        const T& value = columns.*member;
        if constexpr (std::is_same_v<T, std::string>) {
          return true;
        } else if constexpr (requires { value.has_value(); }) {
          return value.has_value();
        } else {
          return !value.empty();
        }
      },
      name.property->member);
}

// Few lattices are within the bounds, and only these are worth a look at their bases.
bool is_within(const LatticeBounds& bounds, const EntryColumns& columns) {
  const auto is_between = [](double least, double value, double most) {
    return value >= least * (1 - bounds_slack) && value <= most * (1 + bounds_slack);
  };
  return (!columns.reduced_volume ||
          is_between(bounds.least_volume, *columns.reduced_volume, bounds.most_volume)) &&
         is_between(bounds.least_lengths[0], *columns.reduced_a, bounds.most_lengths[0]) &&
         is_between(bounds.least_lengths[1], *columns.reduced_b, bounds.most_lengths[1]) &&
         is_between(bounds.least_lengths[2], *columns.reduced_c, bounds.most_lengths[2]);
}

Truth truth_of_cell(const CellQuestion& cell, const EntryColumns& columns) {
  if (!columns.reduced_a || !columns.reduced_b || !columns.reduced_c || !columns.reduced_alpha ||
      !columns.reduced_beta || !columns.reduced_gamma) {
    return Truth::unknown;
  }
  if (!is_within(cell.search.bounds(), columns)) return Truth::no;
  try {
    return truth(cell.search.finds(
        ReducedCell(CellGeometry(*columns.reduced_a, *columns.reduced_b, *columns.reduced_c,
                                 *columns.reduced_alpha, *columns.reduced_beta, *columns.reduced_gamma))));
  } catch (const LatticeError&) {
    return Truth::unknown;
  }
}

}  // namespace

Truth truth_of(const Condition& condition, const EntryColumns& columns) {
  switch (condition.kind) {
    case Condition::Kind::constant:
      return truth(condition.truth);
    case Condition::Kind::all: {
      Truth result = Truth::yes;
      for (const ConditionPointer& child : condition.children) {
        result = std::min(result, truth_of(*child, columns));
        if (result == Truth::no) break;
      }
      return result;
    }
    case Condition::Kind::any: {
      Truth result = Truth::no;
      for (const ConditionPointer& child : condition.children) {
        result = std::max(result, truth_of(*child, columns));
        if (result == Truth::yes) break;
      }
      return result;
    }
    case Condition::Kind::negation:
      return negation(truth_of(*condition.children.front(), columns));
    case Condition::Kind::comparison:
      return truth_of(value_of(condition.left, columns), condition.tests.front().comparison,
                      value_of(condition.tests.front().value, columns));
    case Condition::Kind::known:
      return truth(is_known(condition.left, columns));
    case Condition::Kind::has:
      return truth_of_has(condition, columns);
    case Condition::Kind::length: {
      const std::size_t length = members_of(condition.left, columns).size();
      if (length == 0) return Truth::unknown;
      return truth_of(static_cast<double>(length), condition.tests.front().comparison,
                      value_of(condition.tests.front().value, columns));
    }
    case Condition::Kind::cell:
      return truth_of_cell(*condition.cell, columns);
  }
  return Truth::unknown;
}
