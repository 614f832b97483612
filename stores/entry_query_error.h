// Why a query was refused, and where.
//
//   try {
//     EntryQuery::from_text("Ti,yaer=1990");
//   } catch (const EntryQueryError& error) {
//     error.what();     // "column 4: there is no property 'yaer'; did you mean 'year'?"
//     error.column();   // 4
//   }
//
// Columns count characters from 1 (a character of UTF-8 is one, whatever its bytes); one after the last
// character means the end. 0 is a query that was put together from objects, where there is no text.
#pragma once

#include <stores/export.h>

#include <cstddef>
#include <stdexcept>
#include <string>

class STORES_EXPORT EntryQueryError : public std::invalid_argument {
 public:
  enum class Kind {
    syntax,         // the text is none of the language
    unknown_name,   // a property or an element that does not exist
    wrong_type,     // a text where a number belongs, a list where one value belongs, a number too large for a
                    // double
    not_supported,  // an optional feature of the filter language that is left out
    too_large       // more conditions, or deeper parentheses, than a query may have
  };

  // `offset` is that of a byte of `query`.
  EntryQueryError(Kind kind, const std::string& query, std::size_t offset, const std::string& problem);
  // Of a query without a text.
  EntryQueryError(Kind kind, const std::string& problem);

  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] int column() const { return column_; }
  // The message without the column.
  [[nodiscard]] const std::string& problem() const& { return problem_; }
  [[nodiscard]] std::string problem() && { return problem_; }

 private:
  Kind kind_;
  int column_;
  std::string problem_;
};
