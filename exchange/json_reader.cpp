#include <exchange/entry_json.h>
#include <exchange/json_reader.h>

#include <algorithm>

namespace {

using Json = nlohmann::ordered_json;

bool is_blank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// "[json.exception.parse_error.101] parse error at line 1, column 3: syntax error ..." without its place,
// which counts from the start of the value.
std::string reason_of(const Json::parse_error& error) {
  const std::string text = error.what();
  const std::size_t place = text.find(": ");
  return "no JSON: " + (place == std::string::npos ? text : text.substr(place + 2));
}

}  // namespace

JsonReader::JsonReader(std::string_view text, const ReaderOptions& options) : text_(text), options_(options) {
  constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
  if (text_.substr(0, byte_order_mark.size()) == byte_order_mark) text_.remove_prefix(byte_order_mark.size());
}

JsonReader::~JsonReader() = default;

// Goes to the next value, over what is between values; false at the end of the text or of the list.
bool JsonReader::skip_separators() {
  for (; place_ < text_.size(); ++place_) {
    const char c = text_[place_];
    if (c == '\n') {
      ++line_;
      line_begin_ = place_ + 1;
    } else if (c == '[' && !has_begun_) {
      has_begun_ = in_list_ = true;
    } else if (in_list_ && c == ']') {
      in_list_ = false;
    } else if (!is_blank(c) && !(in_list_ && c == ',')) {
      has_begun_ = true;
      return true;
    }
  }
  return false;
}

// Where the value that begins here ends: after the bracket that closes it, or before what ends a bare word.
std::size_t JsonReader::end_of_value() const {
  int depth = 0;
  bool in_text = false;
  for (std::size_t i = place_; i < text_.size(); ++i) {
    const char c = text_[i];
    if (in_text) {
      if (c == '\\') ++i;
      in_text = c != '"';
    } else if (c == '"') {
      in_text = true;
    } else if (c == '{' || c == '[') {
      ++depth;
    } else if (c == '}' || c == ']') {
      if (depth <= 1) return depth == 1 ? i + 1 : std::max(i, place_ + 1);
      --depth;
    } else if (depth == 0 && (is_blank(c) || c == ',')) {
      return std::max(i, place_ + 1);
    }
  }
  return text_.size();
}

std::optional<ImportResult> JsonReader::next() {
  if (!skip_separators()) {
    if (has_begun_ && !in_list_) return std::nullopt;
    const std::string reason = in_list_ ? "the list does not end" : "the file is empty";
    has_begun_ = true;
    in_list_ = false;
    return fault(place_, reason);
  }
  const std::size_t end = end_of_value();
  const std::string_view value = text_.substr(place_, end - place_);
  ImportResult result = result_of(value);
  const std::size_t lines = static_cast<std::size_t>(std::count(value.begin(), value.end(), '\n'));
  if (lines != 0) {
    line_ += static_cast<int>(lines);
    line_begin_ = place_ + value.rfind('\n') + 1;
  }
  place_ = end;
  if (result.status == ImportResult::error && result.column != 0) {
    place_ = text_.size();
    in_list_ = false;
  }
  return result;
}

ImportResult JsonReader::result_of(std::string_view value) const {
  ImportResult result;
  result.line = line_;
  try {
    const Json json = Json::parse(value);
    JsonEntry read = entry_from_json(json);
    result.entry = read.entry;
    result.absent = std::move(read.absent);
    for (const std::string& name : read.unknown) result.warnings.push_back({line_, "unknown name " + name});
    const DatabaseEntryIdentifier identifier = result.entry->identifier();
    result.identifier = identifier.text();
    // An archive may hold an entry whose name is empty.
    const bool has_name =
        std::find(result.absent.begin(), result.absent.end(), "identifier") == result.absent.end();
    if (!has_name || options_.identifier_from == ReaderOptions::file) {
      result.identifier = options_.file_stem;
      result.entry->set_identifier(DatabaseEntryIdentifier(result.identifier));
    }
    result.block = result.identifier;
  } catch (const Json::parse_error& error) {
    const std::size_t place = std::min(error.byte == 0 ? 0 : error.byte - 1, value.size());
    const std::string_view before = value.substr(0, place);
    const std::size_t feed = before.rfind('\n');
    result.status = ImportResult::error;
    result.line += static_cast<int>(std::count(before.begin(), before.end(), '\n'));
    const std::size_t begin =
        feed == std::string_view::npos ? place_ - line_begin_ + place : place - feed - 1;
    result.column = static_cast<int>(begin + 1);
    result.reason = reason_of(error);
  } catch (const Json::out_of_range&) {  // the parser's, for a number that is no double
    result.status = ImportResult::error;
    result.reason = "a number is too large";
    result.hint = "numbers go up to 1.8e308; infinity is \"inf\"";
  } catch (const JsonEntryError& error) {
    result.status = ImportResult::error;
    result.reason = error.what();
  }
  return result;
}

ImportResult JsonReader::fault(std::size_t place, const std::string& reason) {
  ImportResult result;
  result.status = ImportResult::error;
  result.line = line_;
  result.column = static_cast<int>(place - line_begin_ + 1);
  result.reason = reason;
  return result;
}
