// A question to a store: which entries have this?
//
//   const auto titanates = EntryQuery::from_text("Ti>=1,O,year=1960..1990");
//   const auto same = EntryQuery::from_filter("elements HAS ALL \"Ti\",\"O\" AND _dbentry_year >= 1960");
//   const auto third = EntryQuery::element("Ti") && EntryQuery::compare("year",
//   EntryQuery::Operator::at_least, 1960); store->select(titanates, {});
//
// One tree of conditions, written in three ways: as objects, in the short form, and in the filter language of
// the OPTIMADE standard. Both languages, and every name in them, are in docs/queries.md.
//
// What is not known matches nothing but the question whether it is known: a condition on it is neither true
// nor false, and neither is its negation. Texts are compared as bytes; the short form compares them as
// folded() makes them, where letters of either case are equal.
//
// A query answers in two ways that always agree: matches() looks at the columns of one entry, sql() says the
// same to a database. Engines ask for both: the second finds candidates, the first judges them where the
// second could not say everything. Fails: EntryQueryError, also for more than 2,000 conditions and for
// parentheses more than 100 deep. Threads: a value that does not change.
#pragma once

#include <stores/entry_columns.h>
#include <stores/entry_query_error.h>
#include <stores/export.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// The databases that a condition is said to. They differ in how a parameter is written (?1, $1), and in the
// name of the function that finds bytes in bytes (instr, position).
enum class SqlDialect { sqlite, postgresql };

// A parameter: an integer, a number, or bytes (BLOB, bytea), which all texts are kept as.
using SqlValue = std::variant<std::int64_t, double, std::string>;

// A condition on the table `entry`, which goes by the name e, as it follows WHERE; "1=1" is every entry.
//
//   e.number         the key of the entry, an integer
//   e.year, e.a, ... a column of for_each_entry_column() by its sql_name, a text as bytes; NULL is "not
//                    known". A list cannot be looked at here: it is in one of the two tables below.
//   entry_element    (symbol bytes, entry, count, ratio): one row for each element of an entry
//   entry_text       ("column" integer: the number of the column, hash integer, entry, folded bytes, value
//                    bytes): one row for each text of an entry, of lists (equal ones too) and of single
//                    texts. `folded` is folded(value), `hash` is text_hash(folded), by which one text is
//                    found at once; value is NULL where it is equal to folded.
//
// Nothing of a query's own text is ever part of `where`: values are parameters, in their order.
struct SqlCondition {
  std::string where = "1=1";
  std::vector<SqlValue> parameters;
  // Whether every entry found has to be judged by matches() as well: what is found may be too much, never too
  // little.
  bool recheck = false;
  // Where it says that an entry has each of some elements, and nothing else: their symbols.
  std::vector<std::string> elements = {};
};

// The hash by which entry_text is indexed.
[[nodiscard]] STORES_EXPORT std::int64_t text_hash(std::string_view folded_text);

class STORES_EXPORT EntryQuery {
 public:
  enum class Operator {
    equal,
    not_equal,
    less,
    at_most,
    greater,
    at_least,
    contains,     // texts only, as the next two
    starts_with,  //
    ends_with
  };
  // Every entry.
  EntryQuery();
  EntryQuery(const EntryQuery&);
  EntryQuery& operator=(const EntryQuery&);
  ~EntryQuery();

  // "Ti>=1,O,!Si,year=1960..1990,a=4.5~0.02,author=wyckoff,name~rutile". Throws EntryQueryError.
  [[nodiscard]] static EntryQuery from_text(const std::string& text);
  // "elements HAS \"Ti\" AND NOT nelements>3". Throws EntryQueryError.
  [[nodiscard]] static EntryQuery from_filter(const std::string& filter);

  // Conditions on a property, by its name in the short form or in filters. `_folded` after the filter's name
  // of a text compares it as folded() makes it. Of a list one member has to agree. All throw EntryQueryError
  // for a name that does not exist and for a value of another type.
  [[nodiscard]] static EntryQuery compare(const std::string& property, Operator comparison, double number);
  [[nodiscard]] static EntryQuery compare(const std::string& property, Operator comparison,
                                          const std::string& text);
  [[nodiscard]] static EntryQuery between(const std::string& property, double lower,
                                          double upper);  // both included
  [[nodiscard]] static EntryQuery known(const std::string& property);
  // At least so many atoms of it in the formula; 0 < count.
  [[nodiscard]] static EntryQuery element(const std::string& symbol);
  [[nodiscard]] static EntryQuery element(const std::string& symbol, Operator comparison, double count);
  // The lattice agrees with the cell (a, b, c in ångström, alpha, beta, gamma in degrees) within a tolerance
  // in percent from 0 to 30, whatever the setting: some basis of it agrees in each length within so many
  // percent, and in each angle within so many percent of 90 degrees. The centring is one of P, A, B, C, I, F,
  // R, H.
  [[nodiscard]] static EntryQuery cell(const std::array<double, 6>& parameters, double percent,
                                       char centring = 'P');

  friend STORES_EXPORT EntryQuery operator&&(const EntryQuery& left, const EntryQuery& right);
  friend STORES_EXPORT EntryQuery operator||(const EntryQuery& left, const EntryQuery& right);
  friend STORES_EXPORT EntryQuery operator!(const EntryQuery& query);
  // The same conditions in the same order.
  friend STORES_EXPORT bool operator==(const EntryQuery& left, const EntryQuery& right);

  // The query in either language; reading it back gives an equal query. Nothing where the language has no
  // words for it: the short form for OR, for properties compared with properties and for exact texts, the
  // filter language for a text with a control character in it.
  [[nodiscard]] std::optional<std::string> text() const;
  [[nodiscard]] std::optional<std::string> filter() const;

  [[nodiscard]] bool matches(const EntryColumns& columns) const;
  // Parameters are numbered from `first_parameter`.
  [[nodiscard]] SqlCondition sql(SqlDialect dialect, int first_parameter = 1) const;

  // Inside, one node of the tree.
  struct Condition;

 private:
  explicit EntryQuery(std::shared_ptr<const Condition> condition);

  std::shared_ptr<const Condition> condition_;
};
