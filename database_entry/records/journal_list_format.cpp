#include <database_entry/records/journal_columns.h>
#include <database_entry/records/journal_list_format.h>

#include <algorithm>

namespace journal_list_format {
namespace {

using journal_columns::Column;

// Plain ASCII, whatever the locale of the build.
bool is_digit(char character) {
  return character >= '0' && character <= '9';
}

bool is_letter(char character) {
  return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

bool is_control(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

std::string zero_padded(int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

// One line under examination, with what an error message needs.
class Line {
 public:
  Line(const std::string& file_name, int number, std::string_view text)
      : file_name_(file_name), number_(number), text_(text) {}

  void check() const {
    check_characters();
    if (text_.size() < journal_columns::title) {
      fail(text_.size(), "the line ends here; it needs at least " + std::to_string(journal_columns::title) +
                             " characters, up to its status flag");
    }
    check_coden();
    if (cut(journal_columns::separator) != " ") fail(journal_columns::separator.first, "expected a blank");
    check_international_coden();
    check_integer(journal_columns::year, "the year", false);
    for (const Column& column : journal_columns::unread) check_integer(column, "the number", true);
    check_status_flag();
    if (text_.back() == ' ') fail(text_.size() - 1, "the line ends with a blank");
  }

  [[noreturn]] void fail(std::size_t column, const std::string& reason) const {
    throw BadJournalList(file_name_ + ":" + std::to_string(number_) + ":" + std::to_string(column + 1) +
                         ": error: " + reason);
  }

 private:
  [[nodiscard]] std::string_view cut(const Column& column) const {
    return text_.substr(column.first, column.width);
  }

  void check_characters() const {
    const auto control = std::find_if(text_.begin(), text_.end(), is_control);
    if (control == text_.end()) return;
    const auto column = static_cast<std::size_t>(control - text_.begin());
    if (*control == '\r') {
      fail(column, "a carriage return; lines end with a line feed alone (try: dos2unix FILE)");
    }
    fail(column, *control == '\t' ? "a tab; columns are filled with blanks" : "a control character");
  }

  void check_coden() const {
    const std::string expected = zero_padded(number_, journal_columns::coden.width);
    if (cut(journal_columns::coden) != expected) {
      fail(journal_columns::coden.first, "expected " + expected + ", the position of the line in the list");
    }
  }

  void check_international_coden() const {
    const Column column = journal_columns::international_coden;
    const std::string_view coden = cut(column);
    const auto bad = std::find_if_not(coden.begin(), coden.end(), [](char character) {
      return is_letter(character) || is_digit(character);
    });
    if (bad != coden.end()) {
      fail(column.first + static_cast<std::size_t>(bad - coden.begin()), "a CODEN is six letters and digits");
    }
    const std::string stand_in = zero_padded(number_, column.width);
    if (std::all_of(coden.begin(), coden.end(), is_digit) && coden != stand_in) {
      fail(column.first, "expected " + stand_in + ", the number of the line, where there is no CODEN");
    }
  }

  // Blanks, then a number that ends with the column.
  void check_integer(const Column& column, const std::string& name, bool may_be_negative) const {
    const std::string_view text = cut(column);
    std::size_t position = std::min(text.find_first_not_of(' '), text.size());
    if (may_be_negative && position < text.size() && text[position] == '-') ++position;
    const auto digits = text.substr(position);
    const auto bad = std::find_if_not(digits.begin(), digits.end(), is_digit);
    if (digits.empty() || bad != digits.end()) {
      const std::size_t place = position + static_cast<std::size_t>(bad - digits.begin());
      fail(column.first + std::min(place, column.width - 1), name + " has to end in column " +
                                                                 std::to_string(column.first + column.width) +
                                                                 ", with nothing but blanks before it");
    }
  }

  void check_status_flag() const {
    const Column column = journal_columns::status_flag;
    const std::string_view flag = cut(column);
    if (flag != "   1" && flag != "  -1") {
      fail(column.first,
           "the status flag is 1 or -1, and ends in column " + std::to_string(column.first + column.width));
    }
  }

  const std::string& file_name_;
  int number_;
  std::string_view text_;
};

// Printable ASCII stands for itself; what would end or change a string literal is an octal escape of three
// digits, which no following digit can lengthen.
std::string string_literal(std::string_view text) {
  std::string literal = "\"";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (is_letter(character) || is_digit(character) || character == ' ' || character == '.' ||
        character == '-') {
      literal += character;
    } else {
      literal += '\\';
      for (const int shift : {6, 3, 0}) literal += static_cast<char>('0' + (byte >> shift & 7));
    }
  }
  return literal + "\"";
}

}  // namespace

std::vector<std::string_view> lines_of(std::string_view contents, const std::string& file_name) {
  const std::string all_lines =
      "a journal list has " + std::to_string(journal_columns::line_count) + " lines";
  std::vector<std::string_view> lines;
  int number = 1;
  for (; number <= journal_columns::line_count; ++number) {
    if (contents.empty()) Line(file_name, number, "").fail(0, "the list ends here; " + all_lines);
    const std::size_t end = std::min(contents.find('\n'), contents.size());
    const Line line(file_name, number, contents.substr(0, end));
    line.check();
    if (end == contents.size()) line.fail(end, "the last line has no line feed");
    lines.push_back(contents.substr(0, end));
    contents.remove_prefix(end + 1);
  }
  if (!contents.empty()) Line(file_name, number, "").fail(0, "one line too many; " + all_lines);
  return lines;
}

std::string table_source(const std::vector<std::string_view>& lines) {
  std::string source =
      "// Made by the build from the journal list.\n"
      "#include <database_entry/records/journal_table.h>\n\n"
      "constinit const std::array<std::string_view, journal_table::line_count> journal_table::lines = {\n";
  for (const std::string_view line : lines) {
    source += "    std::string_view(" + string_literal(line) + ", " + std::to_string(line.size()) + "),\n";
  }
  return source + "};\n";
}

}  // namespace journal_list_format
