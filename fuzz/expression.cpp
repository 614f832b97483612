// A pattern, a line feed, a text. What is accepted finds what another engine of the same notation finds.
#include <regex/regex.h>

#include <optional>
#include <vector>

#include "entry_point.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

namespace {

// The offsets of the whole match and of each group; empty without a match; none where the other engine, which
// backtracks, gives up or knows other limits.
class Reference {
 public:
  explicit Reference(const std::string& pattern) {
    pcre2_compile_context* const context = pcre2_compile_context_create(nullptr);
    pcre2_set_newline(context, PCRE2_NEWLINE_LF);
    int error = 0;
    std::size_t offset = 0;
    code_ = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), PCRE2_DOLLAR_ENDONLY,
                          &error, &offset, context);
    pcre2_compile_context_free(context);
  }
  ~Reference() { pcre2_code_free(code_); }
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;

  [[nodiscard]] std::optional<std::vector<std::size_t>> search(const std::string& text) const {
    if (code_ == nullptr) return std::nullopt;
    pcre2_match_context* const context = pcre2_match_context_create(nullptr);
    pcre2_set_match_limit(context, 20'000);
    pcre2_match_data* const data = pcre2_match_data_create_from_pattern(code_, nullptr);
    const int count =
        pcre2_match(code_, reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0, 0, data, context);
    std::optional<std::vector<std::size_t>> result;
    if (count > 0) {
      const std::size_t* const offsets = pcre2_get_ovector_pointer(data);
      result.emplace(offsets, offsets + 2 * pcre2_get_ovector_count(data));
    } else if (count == PCRE2_ERROR_NOMATCH) {
      result.emplace();
    }
    pcre2_match_data_free(data);
    pcre2_match_context_free(context);
    return result;
  }

 private:
  pcre2_code* code_;
};

std::vector<std::size_t> offsets_of(const RegexResults& results) {
  std::vector<std::size_t> offsets;
  for (unsigned int index = 0; index < results.size(); ++index) {
    const RegexResults::Match match = results.match(index);
    offsets.push_back(match.matched() ? match.begin_offset() : PCRE2_UNSET);
    offsets.push_back(match.matched() ? match.end_offset() : PCRE2_UNSET);
  }
  return offsets;
}

}  // namespace

void take(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t end = bytes.find('\n');
  if (end == std::string::npos) return;
  const std::string pattern = bytes.substr(0, end);
  const std::string text = bytes.substr(end + 1);
  try {
    const Regex expression(pattern);
    RegexResults results;
    const bool found = expression.search(text, results, 0);
    require(found == (results.size() > 0), "the answer and the results differ");
    const auto expected = Reference(pattern).search(text);
    if (expected) require(offsets_of(results) == *expected, "another engine finds another match");
  } catch (const RegexError& error) {
    require(error.offset() <= pattern.size(), "the error lies outside the pattern");
  }
  try {
    RegexResults results;
    Regex(pattern, Regex::extended_syntax).search(text, results, 0);
  } catch (const RegexError&) {
  }
}
