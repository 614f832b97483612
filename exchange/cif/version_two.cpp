#include "exchange/cif/version_two.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <string>

namespace {

constexpr std::string_view code = "#\\#CIF_2.0";

bool is_blank(char c) {
  return c == ' ' || c == '\t' || c == '\n';
}

// What a value that begins with this word is; empty for what CIF 1.1 has as well.
std::string_view kind_of(std::string_view word) {
  const std::string_view three = word.substr(0, 3);
  if (three == "'''" || three == R"(""")") return "a text in triple quotes";
  if (word.front() == '[') return "a list";
  if (word.front() == '{') return "a table";
  return "";
}

// Where the quoted text or the word ends that begins at `place`.
std::size_t end_of_word(std::string_view text, std::size_t place) {
  const char quote = text[place];
  const bool is_quoted = quote == '\'' || quote == '"';
  for (std::size_t i = place + 1; i < text.size(); ++i) {
    if (text[i] == '\n') return i;
    if (is_blank(text[i]) && (!is_quoted || (text[i - 1] == quote && i - 1 > place))) return i;
  }
  return text.size();
}

CifFault fault_at(std::string_view text, std::size_t place, std::string_view kind) {
  const std::string_view before = text.substr(0, place);
  const std::size_t feed = before.rfind('\n');
  CifFault fault;
  fault.line = static_cast<int>(1 + std::count(before.begin(), before.end(), '\n'));
  fault.column = static_cast<int>(place - (feed == before.npos ? 0 : feed + 1) + 1);
  fault.reason =
      fmt::format("the file is CIF 2.0 with {} at line {}, and such values are not read", kind, fault.line);
  fault.hint = "save it as CIF 1.1, without lists, tables and triple quotes";
  return fault;
}

}  // namespace

std::optional<CifFault> value_of_cif_2(std::string_view text) {
  const bool has_code =
      text.substr(0, code.size()) == code && (text.size() == code.size() || is_blank(text[code.size()]));
  if (!has_code) return std::nullopt;
  for (std::size_t place = 0; place < text.size();) {
    if (is_blank(text[place])) {
      ++place;
    } else if (text[place] == '#') {
      place = std::min(text.find('\n', place), text.size());
    } else if (text[place] == ';' && text[place - 1] == '\n') {
      const std::size_t end = text.find("\n;", place);
      place = end == text.npos ? text.size() : end + 2;
    } else {
      const std::string_view kind = kind_of(text.substr(place));
      if (!kind.empty()) return fault_at(text, place, kind);
      place = end_of_word(text, place);
    }
  }
  return std::nullopt;
}
