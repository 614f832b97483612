// A pattern, a line feed, a text that is walked match by match; and the library's own walks over the text.
#include <database_entry/database_entry.h>

#include "entry_point.h"

namespace {

// Every match starts where the last one ended or later, within the text.
class CheckOrder {
 public:
  explicit CheckOrder(std::size_t size) : size_(size) {}

  void operator()(const RegexResults& results) {
    const RegexResults::Match match = results.match(0);
    require(match.begin_offset() >= last_end_, "a match starts before the end of the last one");
    require(match.end_offset() <= size_, "a match ends after the text");
    last_end_ = results.empty_match() ? last_end_ : match.end_offset();
    ++matches_;
  }
  [[nodiscard]] std::size_t matches() const { return matches_; }

 private:
  std::size_t size_;
  std::size_t last_end_ = 0;
  std::size_t matches_ = 0;
};

void walk(const std::string& pattern, const std::string& text) {
  try {
    const CheckOrder walked = regex_grep(Regex(pattern), text, CheckOrder(text.size()), 0);
    require(walked.matches() <= text.size(), "more matches than places");
  } catch (const RegexError&) {
  }
}

void find_identifiers(const std::string& text) {
  std::vector<DatabaseEntryIdentifier> identifiers;
  DatabaseCrossReference(DatabaseCrossReference::isomer, text).identifiers(identifiers);
  for (const DatabaseEntryIdentifier& identifier : identifiers) {
    require(text.find("[" + identifier.text() + "]") != std::string::npos, "an identifier that is not there");
  }
}

void find_numbers(const std::string& text) {
  for (int value = 0; value <= 11; ++value) {
    const auto type = static_cast<DepositionInfo::DepositionType>(value);
    DepositionInfo info;
    info.set_text(type, text);
    std::vector<std::string> numbers;
    info.deposition_numbers(type, numbers);
    for (const std::string& number : numbers) {
      require(!number.empty() && text.find(number) != std::string::npos, "a number that is not there");
    }
    const bool valid = DepositionInfo::validate_deposition_code(type, info.text(type));
    const bool has_form = type == DepositionInfo::contributor || !numbers.empty();
    require(valid == has_form, "a code has a form but no number, or a number but no form");
  }
}

}  // namespace

void take(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t end = bytes.find('\n');
  if (end == std::string::npos) return;
  const std::string text = bytes.substr(end + 1);
  walk(bytes.substr(0, end), text);
  find_identifiers(text);
  find_numbers(text);
}
