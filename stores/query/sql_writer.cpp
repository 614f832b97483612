// Each condition is written twice over: as the SQL of "this holds" and as that of "this does not hold", both
// of which are wrong for what is not known. NOT is pushed down to the conditions, so nothing hangs on how a
// database counts with NULL.
#include <stores/query/sql_writer.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace {

// The elements of published structures, the most frequent first; all others are rarer. Of several elements
// the rarest is looked up, and the others only for the entries that have it.
constexpr std::array<std::string_view, 20> frequent = {"H",  "C",  "O",  "N",  "S",  "Cl", "F",
                                                       "P",  "Si", "Fe", "Cu", "Na", "Co", "K",
                                                       "Br", "Ni", "Al", "Zn", "Ca", "Mn"};

std::size_t rarity(const std::string& symbol) {
  return static_cast<std::size_t>(std::find(frequent.begin(), frequent.end(), symbol) - frequent.begin());
}

bool holds(double left, EntryOperator comparison, double right) {
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
    default:
      return left >= right;
  }
}

class SqlWriter {
 public:
  SqlWriter(SqlDialect dialect, int first_parameter) : dialect_(dialect), first_(first_parameter) {}

  [[nodiscard]] SqlCondition written(const Condition& condition) {
    result_.where = sql(condition, true, 0);
    result_.elements = only_elements(condition);
    return std::move(result_);
  }

 private:
  [[nodiscard]] std::string parameter(SqlValue value) {
    constexpr std::array<const char*, 3> types = {"::bigint", "::double precision", "::bytea"};
    const char* const type = types[value.index()];
    result_.parameters.push_back(std::move(value));
    const std::string number = std::to_string(first_ + static_cast<int>(result_.parameters.size()) - 1);
    // The server would else guess the type of a parameter.
    return dialect_ == SqlDialect::sqlite ? '?' + number : '$' + number + type;
  }

  // SQLite's parser has room for 100 symbols, of which a parenthesis takes three. What is deeper is left to
  // matches().
  static constexpr std::size_t deepest_parentheses = 22;

  static constexpr const char* always = "1=1";
  static constexpr const char* never = "1=0";

  // A database bounds how deep an expression is: many conditions are joined as a balanced tree.
  [[nodiscard]] static std::string joined(const std::vector<std::string>& parts, const char* word,
                                          std::size_t begin, std::size_t end) {
    if (end - begin == 1) return parts[begin];
    const std::size_t middle = begin + (end - begin) / 2;
    return '(' + joined(parts, word, begin, middle) + word + joined(parts, word, middle, end) + ')';
  }
  [[nodiscard]] static std::string all_of(const std::vector<std::string>& parts) {
    return joined(parts, " AND ", 0, parts.size());
  }
  [[nodiscard]] static std::string any_of(const std::vector<std::string>& parts) {
    return joined(parts, " OR ", 0, parts.size());
  }

  // That it holds, or that it does not; `level` is how many parentheses are around it.
  [[nodiscard]] std::string sql(const Condition& condition, bool positive, std::size_t level) {
    switch (condition.kind) {
      case Condition::Kind::constant:
        return condition.truth == positive ? always : never;
      case Condition::Kind::negation:
        return sql(*condition.children.front(), !positive, level);
      case Condition::Kind::all:
      case Condition::Kind::any:
        return joined_sql(condition.children, positive, (condition.kind == Condition::Kind::all) == positive,
                          level);
      case Condition::Kind::comparison:
        return comparison(condition.left, condition.tests.front(), positive);
      case Condition::Kind::known:
        return known(condition.left, positive);
      case Condition::Kind::has:
        return has(condition, positive);
      case Condition::Kind::length:
        return length(condition, positive);
      case Condition::Kind::cell:
        return cell(*condition.cell, positive);
    }
    return never;
  }

  // Elements that an entry has to have: a symbol and what its count has to be.
  struct Wanted {
    std::string symbol;
    std::optional<EntryTest> count;
  };

  [[nodiscard]] static std::optional<Wanted> wanted(const Condition& condition, bool positive) {
    if (condition.kind == Condition::Kind::negation) return wanted(*condition.children.front(), !positive);
    const auto& tests = condition.tests;
    if (condition.kind == Condition::Kind::has && positive && !condition.inverted &&
        condition.left.elements() && condition.left.element.empty() && tests.size() == 1 &&
        tests.front().comparison == EntryOperator::equal) {
      if (const auto* const symbol = std::get_if<std::string>(&tests.front().value))
        return Wanted{*symbol, {}};
    }
    if (condition.kind == Condition::Kind::comparison && !condition.left.element.empty()) {
      const auto* const number = std::get_if<double>(&tests.front().value);
      const EntryOperator comparison =
          positive ? tests.front().comparison : contrary(tests.front().comparison);
      if (number != nullptr && !holds(0.0, comparison, *number)) {
        return Wanted{condition.left.element, EntryTest{comparison, *number}};
      }
    }
    return std::nullopt;
  }

  // Nothing where something else is asked too.
  [[nodiscard]] static std::vector<std::string> only_elements(const Condition& condition) {
    if (condition.kind == Condition::Kind::all) {
      std::vector<std::string> symbols;
      for (const ConditionPointer& child : condition.children) {
        const std::vector<std::string> more = only_elements(*child);
        if (more.empty()) return {};
        symbols.insert(symbols.end(), more.begin(), more.end());
      }
      return symbols;
    }
    const auto element = wanted(condition, true);
    // No element that is there counts 0.
    const auto is_any = [](const EntryTest& test) {
      const auto* const number = std::get_if<double>(&test.value);
      return test.comparison == EntryOperator::greater && number != nullptr && *number == 0.0;
    };
    if (!element || (element->count && !is_any(*element->count))) return {};
    return {element->symbol};
  }

  [[nodiscard]] std::string element_test(const char* table, const Wanted& element) {
    std::string sql = std::string(table) + ".symbol = " + parameter(element.symbol);
    if (element.count) {
      sql += std::string(" AND ") + table + ".count " + sign(element.count->comparison) + ' ' +
             parameter(std::get<double>(element.count->value));
    }
    return sql;
  }

  [[nodiscard]] std::string elements_sql(std::vector<Wanted> elements) {
    std::stable_sort(elements.begin(), elements.end(),
                     [](const Wanted& a, const Wanted& b) { return rarity(a.symbol) > rarity(b.symbol); });
    if (by_cell_) {
      std::vector<std::string> tests;
      for (const Wanted& element : elements) {
        tests.push_back("EXISTS (SELECT 1 FROM entry_element y WHERE y.entry = e.number AND " +
                        element_test("y", element) + ')');
      }
      return all_of(tests);
    }
    std::string sql =
        "e.number IN (SELECT x.entry FROM entry_element x WHERE " + element_test("x", elements.front());
    for (std::size_t index = 1; index < elements.size(); ++index) {
      sql += " AND EXISTS (SELECT 1 FROM entry_element y WHERE y.entry = x.entry AND " +
             element_test("y", elements[index]) + ')';
    }
    return sql + ')';
  }

  [[nodiscard]] std::string joined_sql(const std::vector<ConditionPointer>& children, bool positive, bool all,
                                       std::size_t level) {
    level += static_cast<std::size_t>(std::bit_width(children.size()));
    if (level > deepest_parentheses) {
      result_.recheck = true;
      return always;
    }
    const bool by_cell_outside = by_cell_;
    by_cell_ = by_cell_ || (all && std::any_of(children.begin(), children.end(), [&](const auto& child) {
                              return positive && child->kind == Condition::Kind::cell;
                            }));
    std::vector<Wanted> elements;
    std::vector<const Condition*> others;
    for (const ConditionPointer& child : children) {
      const auto element = all ? wanted(*child, positive) : std::nullopt;
      // More in one chain are no question about a structure; a database bounds how long a chain may be.
      if (element && elements.size() < 100) {
        elements.push_back(*element);
      } else {
        others.push_back(child.get());
      }
    }
    std::vector<std::string> parts;
    if (!elements.empty()) parts.push_back(elements_sql(std::move(elements)));
    for (const Condition* const other : others) parts.push_back(sql(*other, positive, level));
    by_cell_ = by_cell_outside;
    return all ? all_of(parts) : any_of(parts);
  }

  // Texts and numbers.

  [[nodiscard]] static const char* sign(EntryOperator comparison) {
    return comparison == EntryOperator::not_equal ? "<>" : text_of(comparison);
  }

  [[nodiscard]] static std::string column(const EntryProperty& property) {
    return std::string("e.") + property.sql_name;
  }

  [[nodiscard]] std::string text_test(const std::string& text, EntryOperator comparison,
                                      const std::string& value) {
    const std::string size = std::to_string(value.size());
    const bool sqlite = dialect_ == SqlDialect::sqlite;
    if (value.empty() && is_fuzzy(comparison)) return text + " IS NOT NULL";
    switch (comparison) {
      case EntryOperator::contains:
        if (sqlite) return "instr(" + text + ", " + parameter(value) + ") > 0";
        return "position(" + parameter(value) + " IN " + text + ") > 0";
      case EntryOperator::starts_with:
        return "substr(" + text + ", 1, " + size + ") = " + parameter(value);
      case EntryOperator::ends_with:
        if (sqlite) return "substr(" + text + ", -" + size + ") = " + parameter(value);
        return "substr(" + text + ", greatest(length(" + text + ") - " + size +
               " + 1, 1)) = " + parameter(value);
      default:
        return text + ' ' + sign(comparison) + ' ' + parameter(value);
    }
  }

  // Of a row t of entry_text. A text that is looked for as a whole is found by its hash.
  [[nodiscard]] std::string row_test(bool is_folded, const EntryTest& test) {
    const std::string& value = std::get<std::string>(test.value);
    if (test.comparison == EntryOperator::equal) {
      const std::string small = folded(value);
      std::string sql = "(t.hash = " + parameter(text_hash(small));
      sql += " AND t.folded = " + parameter(small);
      if (!is_folded) sql += " AND coalesce(t.value, t.folded) = " + parameter(value);
      return sql + ')';
    }
    return text_test(is_folded ? "t.folded" : "coalesce(t.value, t.folded)", test.comparison, value);
  }

  [[nodiscard]] static std::string rows_of(const EntryProperty& property, const std::string& test) {
    return "(SELECT t.entry FROM entry_text t WHERE t.\"column\" = " + std::to_string(property.number) +
           (test.empty() ? "" : " AND " + test) + ')';
  }

  [[nodiscard]] std::string text_comparison(const PropertyName& left, const EntryTest& test, bool positive) {
    const EntryProperty& property = *left.property;
    const std::string& value = std::get<std::string>(test.value);
    EntryTest tested = test;
    if (!positive && !is_fuzzy(test.comparison)) {
      tested.comparison = contrary(test.comparison);
      positive = true;
    }
    if (tested.comparison == EntryOperator::not_equal) {
      tested.comparison = EntryOperator::equal;
      positive = !positive;
    }
    const bool by_rows = left.folded || (tested.comparison == EntryOperator::equal &&
                                         property.type == EntryProperty::Type::text);
    if (!by_rows) {
      const std::string sql = text_test(column(property), tested.comparison, value);
      return positive ? sql : '(' + column(property) + " IS NOT NULL AND NOT (" + sql + "))";
    }
    const std::string rows = rows_of(property, row_test(left.folded, tested));
    return positive ? "e.number IN " + rows : '(' + known(left, true) + " AND e.number NOT IN " + rows + ')';
  }

  // Of integers, with a limit that is an integer too, so that an index of integers serves.
  [[nodiscard]] std::string integer_comparison(const std::string& name, EntryOperator comparison,
                                               double value) {
    constexpr double most = 9.2e18;
    const std::string known = name + " IS NOT NULL";
    if (value > most) {
      return comparison == EntryOperator::less || comparison == EntryOperator::at_most ||
                     comparison == EntryOperator::not_equal
                 ? known
                 : never;
    }
    if (value < -most) {
      return comparison == EntryOperator::greater || comparison == EntryOperator::at_least ||
                     comparison == EntryOperator::not_equal
                 ? known
                 : never;
    }
    const bool whole = value == std::floor(value);
    if (!whole) {
      if (comparison == EntryOperator::equal) return never;
      if (comparison == EntryOperator::not_equal) return known;
      if (comparison == EntryOperator::less) comparison = EntryOperator::at_most;
      if (comparison == EntryOperator::at_least) comparison = EntryOperator::greater;
    }
    return name + ' ' + sign(comparison) + ' ' + parameter(static_cast<std::int64_t>(std::floor(value)));
  }

  [[nodiscard]] std::string comparison(const PropertyName& left, const EntryTest& test, bool positive) {
    if (const auto* const right = std::get_if<PropertyName>(&test.value)) {
      const bool plain = !left.folded && !right->folded && left.element.empty() && right->element.empty();
      if (!plain || is_fuzzy(test.comparison)) {
        result_.recheck = true;
        return '(' + known(left, true) + " AND " + known(*right, true) + ')';
      }
      return column(*left.property) + ' ' + sign(positive ? test.comparison : contrary(test.comparison)) +
             ' ' + column(*right->property);
    }
    if (!left.element.empty()) return count_comparison(left, test, positive);
    if (left.is_text()) return text_comparison(left, test, positive);
    const double value = std::get<double>(test.value);
    const EntryOperator comparison = positive ? test.comparison : contrary(test.comparison);
    // A plus keeps SQLite from looking up the column in its index.
    const bool by_another_index = by_cell_ && dialect_ == SqlDialect::sqlite;
    const std::string name = (by_another_index ? "+" : "") + column(*left.property);
    if (left.property->type == EntryProperty::Type::integer)
      return integer_comparison(name, comparison, value);
    return name + ' ' + sign(comparison) + ' ' + parameter(value);
  }

  [[nodiscard]] std::string count_comparison(const PropertyName& left, const EntryTest& test, bool positive) {
    const double value = std::get<double>(test.value);
    const EntryOperator comparison = positive ? test.comparison : contrary(test.comparison);
    if (!holds(0.0, comparison, value))
      return elements_sql({Wanted{left.element, EntryTest{comparison, value}}});
    // It holds for none at all: whoever has the element has to have another count.
    return "(e.element_count IS NOT NULL AND NOT EXISTS (SELECT 1 FROM entry_element y WHERE y.entry = "
           "e.number AND " +
           element_test("y", {left.element, EntryTest{contrary(comparison), value}}) + "))";
  }

  [[nodiscard]] std::string known(const PropertyName& name, bool positive) {
    const EntryProperty& property = *name.property;
    if (property.type == EntryProperty::Type::texts) {
      return std::string(positive ? "e.number IN " : "e.number NOT IN ") + rows_of(property, "");
    }
    const EntryProperty& single = property.is_list() ? element_count_property() : property;
    return column(single) + (positive ? " IS NOT NULL" : " IS NULL");
  }

  // Lists.

  [[nodiscard]] std::string has(const Condition& condition, bool positive) {
    const PropertyName& list = condition.left;
    const bool constant =
        std::all_of(condition.tests.begin(), condition.tests.end(),
                    [](const EntryTest& test) { return !std::holds_alternative<PropertyName>(test.value); });
    if (!constant) {
      result_.recheck = true;
      return known(list, true);
    }
    if (list.elements()) {
      if (const auto sql = symbols_sql(condition, positive)) return *sql;
    }
    std::vector<std::string> tests;
    for (const EntryTest& test : condition.tests) {
      if (list.property->type == EntryProperty::Type::texts) {
        tests.push_back(row_test(list.folded, test));
      } else if (list.elements()) {
        tests.push_back(text_test("x.symbol", test.comparison, std::get<std::string>(test.value)));
      } else {
        tests.push_back(std::string("x.ratio ") + sign(test.comparison) + ' ' +
                        parameter(std::get<double>(test.value)));
      }
    }
    std::string test = any_of(tests);
    if (condition.inverted) test = "NOT (" + test + ')';
    const std::string rows = list.property->type == EntryProperty::Type::texts
                                 ? rows_of(*list.property, test)
                                 : "(SELECT x.entry FROM entry_element x WHERE " + test + ')';
    return positive ? "e.number IN " + rows : '(' + known(list, true) + " AND e.number NOT IN " + rows + ')';
  }

  // Elements by their symbols: each is found at once, and what else an entry has follows from their number.
  [[nodiscard]] std::optional<std::string> symbols_sql(const Condition& condition, bool positive) {
    for (const EntryTest& test : condition.tests) {
      if (test.comparison != EntryOperator::equal) return std::nullopt;
    }
    std::string symbols;
    for (const EntryTest& test : condition.tests) {
      symbols += (symbols.empty() ? "" : ", ") + parameter(std::get<std::string>(test.value));
    }
    const std::string one_of = "symbol IN (" + symbols + ')';
    if (!condition.inverted) {
      if (positive) return "e.number IN (SELECT x.entry FROM entry_element x WHERE x." + one_of + ')';
      return "(e.element_count IS NOT NULL AND NOT EXISTS (SELECT 1 FROM entry_element y WHERE y.entry = "
             "e.number AND y." +
             one_of + "))";
    }
    return std::string("e.element_count ") + (positive ? ">" : "=") +
           " (SELECT count(*) FROM entry_element y WHERE y.entry = e.number AND y." + one_of + ')';
  }

  [[nodiscard]] std::string length(const Condition& condition, bool positive) {
    const EntryTest& test = condition.tests.front();
    const auto* const number = std::get_if<double>(&test.value);
    if (number == nullptr) {
      result_.recheck = true;
      return known(condition.left, true);
    }
    const EntryOperator comparison = positive ? test.comparison : contrary(test.comparison);
    return "e.number IN (SELECT t.entry FROM entry_text t WHERE t.\"column\" = " +
           std::to_string(condition.left.property->number) + " GROUP BY t.entry HAVING count(*) " +
           sign(comparison) + ' ' + parameter(*number) + ')';
  }

  [[nodiscard]] std::string cell(const CellQuestion& cell, bool positive) {
    result_.recheck = true;
    if (!positive) return "e.reduced_volume IS NOT NULL";
    const LatticeBounds& bounds = cell.search.bounds();
    std::vector<std::string> parts;
    const auto within = [&](const char* name, double least, double most) {
      std::string sql = std::string(name) + " BETWEEN " + parameter(least * (1 - bounds_slack));
      sql += " AND " + parameter(most * (1 + bounds_slack));
      parts.push_back(sql);
    };
    within("e.reduced_volume", bounds.least_volume, bounds.most_volume);
    within("e.reduced_a", bounds.least_lengths[0], bounds.most_lengths[0]);
    within("e.reduced_b", bounds.least_lengths[1], bounds.most_lengths[1]);
    within("e.reduced_c", bounds.least_lengths[2], bounds.most_lengths[2]);
    return all_of(parts);
  }

  SqlDialect dialect_;
  int first_;
  // Whether a cell is asked for too. Few entries have one like it, so all else is asked of these.
  bool by_cell_ = false;
  SqlCondition result_;
};

}  // namespace

SqlCondition sql_condition(const Condition& condition, SqlDialect dialect, int first_parameter) {
  return SqlWriter(dialect, first_parameter).written(condition);
}
