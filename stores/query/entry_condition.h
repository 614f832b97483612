// One node of a query's tree.
// Internal: callers want stores/entry_query.h.
//
// Nodes are made by the functions below, which keep the tree in one form: what is joined by AND has no child
// that is joined by AND itself, a double negation is none, a property is on the left. So the same question
// asked in two languages gives equal trees.
#pragma once

#include <lattice/lattice_error.h>
#include <lattice/lattice_search.h>
#include <stores/entry_query.h>
#include <stores/query/entry_condition_limits.h>
#include <stores/query/entry_operator.h>
#include <stores/query/entry_property.h>

#include <array>
#include <memory>
#include <string>
#include <variant>
#include <vector>

using Condition = EntryQuery::Condition;
using ConditionPointer = std::shared_ptr<const Condition>;

using EntryOperand = std::variant<double, std::string, PropertyName>;

struct EntryTest {
  EntryOperator comparison;
  EntryOperand value;

  friend bool operator==(const EntryTest&, const EntryTest&) = default;
};

struct CellQuestion {
  std::array<double, 6> parameters;
  double percent;
  char centring;
  LatticeSearch search;
};

// The columns of a reduced cell were rounded on another way than the bounds of a search: a part of them.
constexpr double bounds_slack = 1e-9;

struct EntryQuery::Condition {
  enum class Kind {
    constant,    // truth
    all,         // children
    any,         // children
    negation,    // its only child
    comparison,  // of `left`, a single value, with the only test
    known,       // left
    has,         // a member of the list `left` passes one of the tests, or none of them if inverted
    length,      // of the list of texts `left`, with the only test
    cell
  };
  Kind kind = Kind::constant;
  bool truth = true;
  bool inverted = false;
  std::vector<ConditionPointer> children = {};
  PropertyName left = {};
  std::vector<EntryTest> tests = {};
  std::shared_ptr<const CellQuestion> cell = {};
  // Of the tree below and with this node.
  std::size_t depth = 1;
  std::size_t size = 1;

  [[nodiscard]] bool operator==(const Condition& other) const;
};

// All throw EntryQueryError, too_large.
[[nodiscard]] ConditionPointer constant_condition(bool truth);
[[nodiscard]] ConditionPointer joined_conditions(Condition::Kind kind,
                                                 const std::vector<ConditionPointer>& children);
[[nodiscard]] ConditionPointer negated_condition(const ConditionPointer& child);
[[nodiscard]] ConditionPointer comparison_condition(const PropertyName& left, const EntryTest& test);
[[nodiscard]] ConditionPointer known_condition(const PropertyName& property);
[[nodiscard]] ConditionPointer has_condition(const PropertyName& list, const std::vector<EntryTest>& tests,
                                             bool inverted = false);
[[nodiscard]] ConditionPointer length_condition(const PropertyName& list, const EntryTest& test);
// Throws EntryQueryError, wrong_type, for what is no cell or no tolerance.
[[nodiscard]] ConditionPointer cell_condition(const std::array<double, 6>& parameters, double percent,
                                              char centring);

// Adds to the trees what a property, an operator and a value say: of a list that a member agrees. The texts
// of a folded property are folded. Throws EntryQueryError, wrong_type, without a column.
[[nodiscard]] ConditionPointer checked_condition(const PropertyName& left, const EntryTest& test);
// The same check alone, of a property or of the members of a list.
void require_comparable(const PropertyName& left, EntryTest& test);

// "C 5.1 5.1 7.2 90 90 90 ~ 1.5 %", the centring P and the tolerance of 1 percent where they are left out.
[[nodiscard]] ConditionPointer cell_from_text(const std::string& text);
[[nodiscard]] std::string cell_text(const CellQuestion& cell);

enum class Truth { no, unknown, yes };
[[nodiscard]] Truth truth_of(const Condition& condition, const EntryColumns& columns);

// The operator that says the same with the sides exchanged, or the contrary; only of = != < <= > >=.
[[nodiscard]] EntryOperator exchanged(EntryOperator comparison);
[[nodiscard]] EntryOperator contrary(EntryOperator comparison);
[[nodiscard]] bool is_fuzzy(EntryOperator comparison);

// The shortest text that reads back as the same number.
[[nodiscard]] std::string number_text(double number);
