// From what a filter says to the conditions that it means: names are looked up, types are checked.
#include <stores/query/filter_meaning.h>

#include <charconv>
#include <optional>
#include <utility>

namespace {

using Kind = EntryQueryError::Kind;

// A property of the filter language that is no column: a cell to be found, the type of every entry, and what
// follows from what is known.
constexpr const char* cell_name = "_dbentry_cell";
constexpr const char* type_name = "type";
constexpr const char* type_text = "structures";

class Meaning {
 public:
  explicit Meaning(const std::string& filter) : filter_(filter) {}

  [[nodiscard]] ConditionPointer of(const FilterPhrase& phrase) const {
    switch (phrase.kind) {
      case FilterPhrase::Kind::all:
        return joined_conditions(Condition::Kind::all, children_of(phrase));
      case FilterPhrase::Kind::any:
        return joined_conditions(Condition::Kind::any, children_of(phrase));
      case FilterPhrase::Kind::negation:
        return negated_condition(of(phrase.children.front()));
      case FilterPhrase::Kind::comparison:
        return comparison(phrase.left, phrase.tests.front());
      case FilterPhrase::Kind::known:
        return known(phrase.left);
      case FilterPhrase::Kind::unknown:
        return negated_condition(known(phrase.left));
      case FilterPhrase::Kind::bare: {
        const auto boolean = boolean_of(phrase.left);
        return boolean ? *boolean : known(phrase.left);
      }
      case FilterPhrase::Kind::has:
      case FilterPhrase::Kind::has_any:
        return has_condition(list_of(phrase.left), tests_of(phrase));
      case FilterPhrase::Kind::has_only:
        return negated_condition(has_condition(list_of(phrase.left), tests_of(phrase), true));
      case FilterPhrase::Kind::has_all: {
        const PropertyName list = list_of(phrase.left);
        std::vector<ConditionPointer> each;
        for (const EntryTest& test : tests_of(phrase)) each.push_back(has_condition(list, {test}));
        return joined_conditions(Condition::Kind::all, each);
      }
      case FilterPhrase::Kind::length:
        return length(phrase);
      case FilterPhrase::Kind::correlated:
        fail(Kind::not_supported, phrase.left, "correlated lists ('list:list HAS ...') are not supported");
    }
    return constant_condition(false);
  }

 private:
  [[noreturn]] void fail(Kind kind, const FilterOperand& at, const std::string& problem) const {
    throw EntryQueryError(kind, filter_, at.offset, problem);
  }

  // What is wrong with a phrase is told with the column of a part of it.
  template <class Make>
  auto placed(const FilterOperand& at, const Make& make) const {
    try {
      return make();
    } catch (const EntryQueryError& error) {
      if (error.column() != 0) throw;
      fail(error.kind(), at, error.problem());
    }
  }

  [[nodiscard]] std::vector<ConditionPointer> children_of(const FilterPhrase& phrase) const {
    std::vector<ConditionPointer> children;
    for (const FilterPhrase& child : phrase.children) children.push_back(of(child));
    return children;
  }

  [[nodiscard]] PropertyName property_of(const FilterOperand& operand) const {
    if (const auto property = property_of_filter(operand.text)) return *property;
    if (operand.text == cell_name) {
      fail(Kind::wrong_type, operand, "'" + operand.text + "' is only compared with a text, by = or !=");
    }
    if (boolean_of(operand)) fail(Kind::wrong_type, operand, "'" + operand.text + "' is TRUE or FALSE");
    if (operand.text == type_name) fail(Kind::wrong_type, operand, "'type' is only compared with a text");
    const std::string problem = unknown_in_filter(operand.text);
    fail(problem.find("not supported") != std::string::npos ? Kind::not_supported : Kind::unknown_name,
         operand, problem);
  }

  [[nodiscard]] double number_of(const FilterOperand& operand) const {
    const char* const begin = operand.text.data() + (operand.text.front() == '+' ? 1 : 0);
    double number = 0.0;
    const auto result = std::from_chars(begin, operand.text.data() + operand.text.size(), number);
    if (result.ec != std::errc()) {
      fail(Kind::wrong_type, operand,
           "the number is not within the range of a double: 0, or from 1e-307 to 1e308 with either sign");
    }
    return number;
  }

  [[nodiscard]] EntryOperand value_of(const FilterOperand& operand) const {
    switch (operand.kind) {
      case FilterOperand::Kind::property: {
        const PropertyName property = property_of(operand);
        if (property.is_list())
          fail(Kind::wrong_type, operand,
               "'" + operand.text + "' is a list, which is no value to compare with");
        return property;
      }
      case FilterOperand::Kind::text:
        return operand.text;
      case FilterOperand::Kind::number:
        return number_of(operand);
      case FilterOperand::Kind::boolean:
        fail(Kind::wrong_type, operand,
             operand.text + " is only compared with properties that are TRUE or FALSE");
    }
    return 0.0;
  }

  // The condition under which a constant or a property is TRUE; none for what is neither TRUE nor FALSE.
  [[nodiscard]] static std::optional<ConditionPointer> boolean_of(const FilterOperand& operand) {
    if (operand.kind == FilterOperand::Kind::boolean) return constant_condition(operand.text == "TRUE");
    if (operand.kind != FilterOperand::Kind::property) return std::nullopt;
    if (operand.text == "_dbentry_has_cell") return known_condition(*property_of_filter("_dbentry_volume"));
    if (operand.text == "_dbentry_has_atoms") {
      const PropertyName atoms = *property_of_filter("_dbentry_natoms");
      return joined_conditions(
          Condition::Kind::all,
          {known_condition(atoms), comparison_condition(atoms, {EntryOperator::greater, 0.0})});
    }
    return std::nullopt;
  }

  [[nodiscard]] ConditionPointer known(const FilterOperand& left) const {
    if (boolean_of(left) || left.text == type_name) return constant_condition(true);
    if (left.text == cell_name) return known_condition(*property_of_filter("_dbentry_reduced_volume"));
    return known_condition(property_of(left));
  }

  [[nodiscard]] PropertyName list_of(const FilterOperand& left) const {
    const PropertyName list = property_of(left);
    if (!list.is_list()) fail(Kind::wrong_type, left, "'" + left.text + "' is no list");
    return list;
  }

  [[nodiscard]] std::vector<EntryTest> tests_of(const FilterPhrase& phrase) const {
    const PropertyName list = list_of(phrase.left);
    std::vector<EntryTest> tests;
    for (const FilterTest& written : phrase.tests) {
      EntryTest test{written.comparison, value_of(written.value)};
      placed(written.value, [&] { require_comparable(list, test); });
      tests.push_back(std::move(test));
    }
    return tests;
  }

  [[nodiscard]] ConditionPointer length(const FilterPhrase& phrase) const {
    const FilterTest& written = phrase.tests.front();
    const PropertyName list = list_of(phrase.left);
    EntryTest test{written.comparison, value_of(written.value)};
    placed(written.value, [&] { require_comparable(PropertyName{&element_count_property()}, test); });
    return length_condition(list, test);
  }

  [[nodiscard]] ConditionPointer constants(const FilterOperand& left, const FilterTest& test) const {
    if (left.kind != FilterOperand::Kind::number || test.value.kind != FilterOperand::Kind::number) {
      fail(left.kind == test.value.kind ? Kind::not_supported : Kind::wrong_type, left,
           "two constants are compared only if both are numbers");
    }
    const double a = number_of(left);
    const double b = number_of(test.value);
    switch (test.comparison) {
      case EntryOperator::equal:
        return constant_condition(a == b);
      case EntryOperator::not_equal:
        return constant_condition(a != b);
      case EntryOperator::less:
        return constant_condition(a < b);
      case EntryOperator::at_most:
        return constant_condition(a <= b);
      case EntryOperator::greater:
        return constant_condition(a > b);
      default:
        return constant_condition(a >= b);
    }
  }

  [[nodiscard]] ConditionPointer comparison(const FilterOperand& left, const FilterTest& test) const {
    if (left.kind != FilterOperand::Kind::property && test.value.kind == FilterOperand::Kind::property) {
      return comparison(test.value, {exchanged(test.comparison), left});
    }
    if (const auto a = boolean_of(left)) return booleans(left, *a, test);
    if (test.value.kind == FilterOperand::Kind::property && boolean_of(test.value)) {
      fail(Kind::wrong_type, left,
           "'" + test.value.text + "' is only compared with TRUE, FALSE and properties that are either");
    }
    if (left.kind != FilterOperand::Kind::property) return constants(left, test);
    if (left.text == cell_name) return cell(left, test);
    if (left.text == type_name) return type(left, test);
    const PropertyName property = property_of(left);
    if (property.is_list()) {
      fail(Kind::wrong_type, left,
           "'" + left.text + "' is a list: expected HAS, LENGTH or IS KNOWN after it");
    }
    const EntryTest checked{test.comparison, value_of(test.value)};
    return placed(test.value, [&] { return checked_condition(property, checked); });
  }

  [[nodiscard]] ConditionPointer booleans(const FilterOperand& left, const ConditionPointer& a,
                                          const FilterTest& test) const {
    const auto b = boolean_of(test.value);
    if (!b || (test.comparison != EntryOperator::equal && test.comparison != EntryOperator::not_equal)) {
      fail(Kind::wrong_type, b ? left : test.value,
           "'" + left.text + "' is TRUE or FALSE, and compared with these by = or !=");
    }
    const bool same = test.comparison == EntryOperator::equal;
    if ((*b)->kind == Condition::Kind::constant) return (*b)->truth == same ? a : negated_condition(a);
    if (a->kind == Condition::Kind::constant) return a->truth == same ? *b : negated_condition(*b);
    const ConditionPointer equal = joined_conditions(
        Condition::Kind::any,
        {joined_conditions(Condition::Kind::all, {a, *b}),
         joined_conditions(Condition::Kind::all, {negated_condition(a), negated_condition(*b)})});
    return same ? equal : negated_condition(equal);
  }

  [[nodiscard]] ConditionPointer cell(const FilterOperand& left, const FilterTest& test) const {
    if (test.value.kind != FilterOperand::Kind::text ||
        (test.comparison != EntryOperator::equal && test.comparison != EntryOperator::not_equal)) {
      fail(Kind::wrong_type, left, "'_dbentry_cell' is only compared with a text, by = or !=");
    }
    const ConditionPointer found = placed(test.value, [&] { return cell_from_text(test.value.text); });
    return test.comparison == EntryOperator::equal ? found : negated_condition(found);
  }

  [[nodiscard]] ConditionPointer type(const FilterOperand& left, const FilterTest& test) const {
    if (test.value.kind != FilterOperand::Kind::text ||
        (test.comparison != EntryOperator::equal && test.comparison != EntryOperator::not_equal)) {
      fail(Kind::wrong_type, left, "'type' is only compared with a text, by = or !=");
    }
    return constant_condition((test.value.text == type_text) == (test.comparison == EntryOperator::equal));
  }

  const std::string& filter_;
};

}  // namespace

ConditionPointer filter_meaning(const std::string& filter) {
  const FilterPhrase phrase = parse_filter(filter);
  return Meaning(filter).of(phrase);
}
