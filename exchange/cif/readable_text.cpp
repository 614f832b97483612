#include "exchange/cif/readable_text.h"

#include <array>
#include <cstdint>

#include "exchange/cif/markup.h"

namespace {

bool is_blank(char c) {
  return static_cast<unsigned char>(c) <= ' ' || c == 0x7F;
}

bool is_placeholder(std::string_view text) {
  return text == "?" || text == ".";
}

std::string_view without_blanks_at_the_end(std::string_view line) {
  while (!line.empty() && (line.back() == ' ' || line.back() == '\t')) line.remove_suffix(1);
  return line;
}

// Takes the first line, without its line end, off the text.
std::string_view take_line(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

bool every_line_begins_with(std::string_view prefix, std::string_view lines) {
  while (!lines.empty()) {
    if (!take_line(lines).starts_with(prefix)) return false;
  }
  return true;
}

// The first line of a text field names a prefix of all its lines, folding, or both: "CIF>\", "\", "CIF>\\".
// Where a line does not have the prefix, the first line is text like the others.
std::string unfolded(std::string_view field) {
  std::string_view rest = field;
  const std::string_view first = without_blanks_at_the_end(take_line(rest));
  const std::size_t slash = first.find('\\');
  const std::string_view slashes = slash == first.npos ? "" : first.substr(slash);
  const std::string_view prefix = first.substr(0, slash);
  const bool has_prefix = slash > 0 && (slashes == "\\" || slashes == "\\\\") && !rest.empty() &&
                          every_line_begins_with(prefix, rest);
  const bool is_folded = (slash == 0 && slashes == "\\") || (has_prefix && slashes == "\\\\");
  if (!has_prefix && !is_folded) return std::string(field);
  std::string text;
  while (!rest.empty()) {
    std::string_view line = take_line(rest);
    if (has_prefix) line.remove_prefix(prefix.size());
    const std::string_view trimmed = without_blanks_at_the_end(line);
    if (is_folded && !trimmed.empty() && trimmed.back() == '\\') {
      text += trimmed.substr(0, trimmed.size() - 1);
    } else {
      text += line;
      if (!rest.empty()) text += '\n';
    }
  }
  return text;
}

// What has to be looked at: blanks by what is beside them, bytes that no plain text holds, signs by their
// neighbours.
enum ByteClass : std::uint8_t { plain, blank, other, sign };

constexpr std::array<ByteClass, 256> made_classes() {
  std::array<ByteClass, 256> classes = {};
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    ByteClass& of_byte = classes[static_cast<std::size_t>(byte)];
    of_byte = plain;
    if (byte < ' ' || byte >= 0x7F || begins_markup(c)) of_byte = other;
    if (c == ' ') of_byte = blank;
    if (c == '-' || c == '+') of_byte = sign;
  }
  return classes;
}
constexpr std::array<ByteClass, 256> classes = made_classes();

// Most values are printable ASCII with single blanks and without a character that markup begins with.
bool is_plain(std::string_view text) {
  ByteClass last = blank;
  for (const char c : text) {
    const ByteClass of_byte = classes[static_cast<unsigned char>(c)];
    if (of_byte == other || (of_byte != plain && of_byte == last)) return false;
    last = of_byte;
  }
  return last != blank || text.empty();
}

}  // namespace

std::string cif_string(std::string_view raw) {
  if (raw.empty() || is_placeholder(raw)) return "";
  if (raw.size() >= 2 && (raw.front() == '\'' || raw.front() == '"')) {
    const std::string_view text = raw.substr(1, raw.size() - 2);
    return is_placeholder(text) ? "" : std::string(text);
  }
  if (raw.size() >= 2 && raw.front() == ';' && raw.back() == ';' && raw[raw.size() - 2] == '\n') {
    std::string_view text = raw.substr(1, raw.size() - 2);
    text.remove_suffix(1);
    return is_placeholder(one_line(text)) ? "" : unfolded(text);
  }
  return std::string(raw);
}

std::optional<std::string_view> plain_cif_text(std::string_view raw) {
  if (raw.empty() || raw[0] == ';') return std::nullopt;
  if (raw.size() >= 2 && (raw[0] == '\'' || raw[0] == '"')) raw = raw.substr(1, raw.size() - 2);
  if (is_placeholder(raw)) return "";
  return is_plain(raw) ? std::optional(raw) : std::nullopt;
}

std::string one_line(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    if (!is_blank(c)) {
      result += c;
    } else if (!result.empty() && result.back() != ' ') {
      result += ' ';
    }
  }
  if (!result.empty() && result.back() == ' ') result.pop_back();
  return result;
}

std::string readable_text(std::string_view text) {
  if (is_plain(text)) return std::string(text);
  if (!is_utf8(text)) return one_line(without_markup(from_latin_1(text)));
  return one_line(without_markup(text));
}

bool is_utf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) {
      ++i;
      continue;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || i + length > text.size()) return false;
    for (std::size_t k = 1; k < length; ++k) {
      if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80) return false;
    }
    const auto second = static_cast<unsigned char>(text[i + 1]);
    // Forms that are too long, surrogates, and what is beyond U+10FFFF.
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second >= 0xA0)) return false;
    if ((lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second >= 0x90)) return false;
    i += length;
  }
  return true;
}

std::string from_latin_1(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      result += c;
    } else {
      result += static_cast<char>(0xC0 | byte >> 6);
      result += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return result;
}
