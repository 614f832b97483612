// A question to a store: which entries have this?
//
//   const auto titanates = EntryQuery::from_text("Ti>=1,O,year=1960..1990");
//   const auto same = EntryQuery::from_filter("elements HAS ALL \"Ti\",\"O\" AND _dbentry_year >= 1960");
//   store->select(titanates, {});
//
// A query answers in two ways that always agree: matches() looks at the columns of one entry, sql() says the
// same to a database. Engines ask for both: the second finds candidates, the first judges them where the
// second could not say everything.
#pragma once

#include <stores/entry_columns.h>
#include <stores/export.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

// What is written is no query.
class STORES_EXPORT EntryQueryError : public std::invalid_argument {
 public:
  // `column` counts from 1, in bytes.
  EntryQueryError(const std::string& message, std::size_t column);
  ~EntryQueryError() override;
  [[nodiscard]] std::size_t column() const { return column_; }

 private:
  std::size_t column_;
};

// The databases that a condition is said to. They differ in how a parameter is written (?1, $1), and in the
// name of the function that finds bytes in bytes (instr, position).
enum class SqlDialect { sqlite, postgresql };

// A parameter: an integer, a number, or bytes (BLOB, bytea), which all texts are kept as.
using SqlValue = std::variant<std::int64_t, double, std::string>;

// A condition on the table `entry`, which goes by the name e, as it follows WHERE. Never empty: "1=1" is
// every entry.
//
//   e.number                the key of the entry, an integer
//   e.year, e.a, ...        a column of for_each_entry_column() by its sql_name; NULL is "not known". A text
//   is bytes.
//                           A list cannot be looked at here: it is in one of the two tables below.
//   entry_element           (symbol bytes, entry, count, ratio): one row for each element of an entry
//   entry_text              ("column" integer: the number of the column, hash integer, entry, folded bytes,
//   value bytes):
//                           one row for each text of an entry, of lists and of single texts alike; `folded`
//                           is folded(value), `hash` is text_hash(folded), by which one text is found at
//                           once; value is NULL where it is equal to folded.
//
// Nothing of a query's own text is ever part of `where`: values are parameters, in their order.
struct SqlCondition {
  std::string where = "1=1";
  std::vector<SqlValue> parameters;
  // Whether every entry found has to be judged by matches() as well: what is found may be too much, never too
  // little.
  bool recheck = false;
};

// The hash by which entry_text is indexed.
[[nodiscard]] STORES_EXPORT std::int64_t text_hash(std::string_view folded_text);

class STORES_EXPORT EntryQuery {
 public:
  // Every entry.
  EntryQuery();
  EntryQuery(const EntryQuery&);
  EntryQuery& operator=(const EntryQuery&);
  ~EntryQuery();

  // Both throw EntryQueryError with the column and what was expected there.
  [[nodiscard]] static EntryQuery from_text(const std::string& text);
  [[nodiscard]] static EntryQuery from_filter(const std::string& filter);

  [[nodiscard]] bool matches(const EntryColumns& columns) const;
  // Parameters are numbered from `first_parameter`.
  [[nodiscard]] SqlCondition sql(SqlDialect dialect, int first_parameter = 1) const;

 private:
  struct Condition;
  std::shared_ptr<const Condition> condition_;  // null for every entry
};
