#include "tools/output/table_output.h"

#include <fmt/ostream.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <ostream>

#include "tools/messages/nearest_name.h"
#include "tools/messages/tool_error.h"

namespace {

using Cell = TableOutput::Cell;

std::string cell_text(const Cell& cell, const std::string& separator) {
  if (cell.is_null()) return "";
  if (cell.is_string()) return cell.get<std::string>();
  if (!cell.is_array()) return json_line(cell);
  std::vector<std::string> parts;
  for (const Cell& part : cell) parts.push_back(cell_text(part, separator));
  return fmt::format("{}", fmt::join(parts, separator));
}

std::string on_one_line(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
  return text;
}

std::string csv_quoted(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

// Characters of UTF-8, each taken as one column wide.
std::size_t width(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// The first characters, and a sign that there were more.
std::string cut(const std::string& text, std::size_t columns) {
  if (width(text) <= columns) return text;
  std::size_t end = 0;
  for (std::size_t taken = 0; end < text.size(); ++end) {
    const bool begins = (static_cast<unsigned char>(text[end]) & 0xC0) != 0x80;
    if (begins && taken++ == columns - 1) break;
  }
  return text.substr(0, end) + "…";
}

// Takes from the widest of the columns that may be cut, until all fit or each is as narrow as is of use.
void fit(std::vector<std::size_t>& widths, const std::vector<bool>& may_be_cut, std::size_t available) {
  constexpr std::size_t narrowest = 8;
  constexpr std::size_t gap = 2;
  std::size_t total = gap * (widths.size() - 1);
  for (const std::size_t one : widths) total += one;
  while (total > available) {
    std::size_t* widest = nullptr;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      if (may_be_cut[i] && widths[i] > narrowest && (widest == nullptr || widths[i] > *widest))
        widest = &widths[i];
    }
    if (widest == nullptr) return;
    --*widest;
    --total;
  }
}

}  // namespace

OutputFormat output_format(const std::string& name, const Terminal& terminal) {
  static const std::map<std::string, OutputFormat> formats = {{"text", OutputFormat::text},
                                                              {"table", OutputFormat::table},
                                                              {"json", OutputFormat::json},
                                                              {"jsonl", OutputFormat::jsonl},
                                                              {"csv", OutputFormat::csv}};
  if (name.empty()) return terminal.out_is_terminal ? OutputFormat::table : OutputFormat::text;
  if (const auto found = formats.find(name); found != formats.end()) return found->second;
  std::vector<std::string> names;
  for (const auto& [known, format] : formats) names.push_back(known);
  throw ToolError(ExitCode::usage, unknown_name("format", name, names));
}

std::string json_line(const nlohmann::ordered_json& value) {
  return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

TableOutput::TableOutput(std::ostream& out, OutputFormat format, std::vector<Column> columns,
                         std::size_t width)
    : out_(out), format_(format), columns_(std::move(columns)), width_(width) {
  if (format_ == OutputFormat::csv) write_line(names(), ",");
}

void TableOutput::add(const std::vector<Cell>& row) {
  if (format_ == OutputFormat::table) {
    held_rows_.push_back(row);
    return;
  }
  if (format_ == OutputFormat::json || format_ == OutputFormat::jsonl) {
    nlohmann::ordered_json object;
    for (std::size_t i = 0; i < columns_.size(); ++i) object[columns_[i].name] = row[i];
    if (format_ == OutputFormat::json) out_ << (row_count_ == 0 ? "[\n" : ",\n");
    out_ << json_line(object) << (format_ == OutputFormat::jsonl ? "\n" : "");
  } else {
    const bool csv = format_ == OutputFormat::csv;
    std::vector<std::string> cells = cell_texts(row);
    for (std::string& cell : cells) cell = csv ? csv_quoted(cell) : on_one_line(cell);
    write_line(cells, csv ? "," : "\t");
  }
  ++row_count_;
}

void TableOutput::finish() {
  if (format_ == OutputFormat::json) out_ << (row_count_ == 0 ? "[]\n" : "\n]\n");
  if (format_ == OutputFormat::table) write_table();
}

std::vector<std::string> TableOutput::names() const {
  std::vector<std::string> names;
  for (const Column& column : columns_) names.push_back(column.name);
  return names;
}

std::vector<std::string> TableOutput::cell_texts(const std::vector<Cell>& row) const {
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < row.size(); ++i) texts.push_back(cell_text(row[i], columns_[i].separator));
  return texts;
}

void TableOutput::write_line(const std::vector<std::string>& cells, const char* separator) {
  fmt::print(out_, "{}\n", fmt::join(cells, separator));
}

void TableOutput::write_table() {
  std::vector<std::vector<std::string>> lines = {names()};
  for (const auto& row : held_rows_) {
    std::vector<std::string> cells = cell_texts(row);
    for (std::string& cell : cells) cell = on_one_line(cell);
    lines.push_back(std::move(cells));
  }
  std::vector<std::size_t> widths(columns_.size(), 0);
  std::vector<bool> to_the_right(columns_.size(), false);
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    for (const auto& line : lines) widths[i] = std::max(widths[i], width(line[i]));
    to_the_right[i] = std::any_of(held_rows_.begin(), held_rows_.end(),
                                  [i](const auto& row) { return row[i].is_number(); });
  }
  if (width_ > 0) {
    std::vector<bool> may_be_cut = to_the_right;
    may_be_cut.flip();
    may_be_cut[0] = false;  // what the row is about
    fit(widths, may_be_cut, width_);
  }
  for (const auto& line : lines) {
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i) {
      const std::string cell = cut(line[i], widths[i]);
      const std::string blanks(widths[i] - width(cell), ' ');
      text += (i == 0 ? "" : "  ") + (to_the_right[i] ? blanks + cell : cell + blanks);
    }
    text.erase(text.find_last_not_of(' ') + 1);
    out_ << text << '\n';
  }
}
