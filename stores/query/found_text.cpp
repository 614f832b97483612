#include <stores/query/found_text.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr std::size_t longest_found = 24;

constexpr std::array<std::string_view, 17> keywords = {
    "AND", "OR",  "NOT",  "IS",   "KNOWN",  "UNKNOWN", "TRUE", "FALSE",   "HAS",
    "ALL", "ANY", "ONLY", "WITH", "LENGTH", "STARTS",  "ENDS", "CONTAINS"};

bool is_word(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
         (letter >= '0' && letter <= '9') || letter == '_' ||
         (static_cast<unsigned char>(letter) & 0x80U) != 0;
}

bool is_keyword(std::string word) {
  for (char& letter : word) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  return std::find(keywords.begin(), keywords.end(), word) != keywords.end();
}

}  // namespace

std::string found_text(const std::string& query, std::size_t offset) {
  if (offset >= query.size()) return "the end";
  std::size_t end = offset;
  while (end < query.size() && is_word(query[end])) ++end;
  if (end == offset) ++end;
  const bool shortened = end - offset > longest_found;
  if (shortened) {
    end = offset + longest_found;
    // No character of UTF-8 is cut.
    while (end > offset + 1 && (static_cast<unsigned char>(query[end]) & 0xC0U) == 0x80U) --end;
  }
  const std::string word = query.substr(offset, end - offset);
  if (word.size() == 1 && (word[0] < ' ' || word[0] == '\x7F')) {
    return "the byte " + std::to_string(static_cast<int>(word[0]));
  }
  const bool miswritten =
      is_keyword(word) && std::any_of(word.begin(), word.end(), [](char letter) { return letter >= 'a'; });
  return "'" + word + (shortened ? "...'" : "'") + (miswritten ? " (keywords are in capitals)" : "");
}
