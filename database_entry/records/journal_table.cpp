#include <database_entry/records/journal_table.h>

#include <charconv>
#include <stdexcept>
#include <string>

namespace journal_table {
namespace {

bool is_blank(char character) {
  return character == ' ' || character == '\t';
}

// As trim() of the utilities, without its copies: a state is asked for by the million.
std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view cut(std::string_view line, std::size_t first, std::size_t width = std::string_view::npos) {
  if (first > line.size()) {
    throw std::out_of_range("basic_string::substr: a journal line of " + std::to_string(line.size()) +
                            " characters has no column " + std::to_string(first));
  }
  return trimmed(line.substr(first, width));
}

}  // namespace

std::string_view international_coden(std::string_view line) {
  return cut(line, 5, 6);
}

std::string_view title(std::string_view line) {
  return cut(line, 33);
}

int status_flag(std::string_view line) {
  const std::string_view digits = cut(line, 29, 4);
  int flag = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), flag);
  return flag;
}

}  // namespace journal_table
