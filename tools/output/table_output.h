// Rows of named cells, written in the form the caller asked for.
//
//   TableOutput table(terminal.out, output_format("csv", terminal), {"identifier", "formula"});
//   table.add({"C1010588", "Al Cl3"});
//   table.finish();
//
//   text    one line a row, cells separated by tabs, no heading; a tab or line end in a cell becomes a blank
//   table   columns under a heading, numbers to the right; held back until finish(). Where the width of the
//           terminal is known, the widest columns of text are cut ("…") until the lines fit
//   json    one array of objects          jsonl   one object a line
//   csv     a heading, then one line a row; quoted where needed (RFC 4180, but lines end with a line feed)
//
// A cell is a text, a number, a list of them (joined outside JSON, by ", " unless the column has another
// separator) or null (empty outside JSON).
#pragma once

#include <cstddef>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "tools/output/terminal.h"

enum class OutputFormat { text, table, json, jsonl, csv };

// The format of that name. The empty name means a table where a person watches, text otherwise.
// Throws ToolError (usage) for another name.
[[nodiscard]] OutputFormat output_format(const std::string& name, const Terminal& terminal);

// JSON on one line; bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] std::string json_line(const nlohmann::ordered_json& value);

class TableOutput {
 public:
  using Cell = nlohmann::ordered_json;

  struct Column {
    Column(std::string column_name, std::string list_separator = ", ")  // a name is a column
        : name(std::move(column_name)), separator(std::move(list_separator)) {}
    Column(const char* column_name) : Column(std::string(column_name)) {}

    std::string name;
    std::string separator;  // of the parts of a list
  };

  // A width of 0 is as wide as it gets.
  TableOutput(std::ostream& out, OutputFormat format, std::vector<Column> columns, std::size_t width = 0);
  // On the terminal, which knows its width.
  TableOutput(Terminal& terminal, OutputFormat format, std::vector<Column> columns)
      : TableOutput(terminal.out, format, std::move(columns), terminal.columns) {}

  // One cell a column.
  void add(const std::vector<Cell>& row);
  // Once, after the last row.
  void finish();

 private:
  void write_line(const std::vector<std::string>& cells, const char* separator);
  [[nodiscard]] std::vector<std::string> names() const;
  [[nodiscard]] std::vector<std::string> cell_texts(const std::vector<Cell>& row) const;
  void write_table();

  std::ostream& out_;
  OutputFormat format_;
  std::vector<Column> columns_;
  std::size_t width_;
  std::vector<std::vector<Cell>> held_rows_;
  std::size_t row_count_ = 0;
};
