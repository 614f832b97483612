#include <stores/entry_columns.h>
#include <stores/entry_query.h>
#include <xxhash.h>

#include <bit>

namespace {

// The small letter of a character from U+0080 to U+07FF, or the character itself. Small letters are in that
// range too, so that a folded text is as long as the text.
constexpr unsigned small_letter(unsigned c) {
  const auto within = [c](unsigned first, unsigned last) { return c >= first && c <= last; };
  if (within(0xC0, 0xDE)) return c == 0xD7 ? c : c + 0x20;
  if (within(0x100, 0x137) || within(0x14A, 0x177)) return c == 0x130 ? c : c | 1;
  if (within(0x139, 0x148) || within(0x179, 0x17E)) return c + (c & 1);
  if (c == 0x178) return 0xFF;
  if (c == 0x386) return 0x3AC;
  if (within(0x388, 0x38A)) return c + 0x25;
  if (c == 0x38C) return 0x3CC;
  if (within(0x38E, 0x38F)) return c + 0x3F;
  if (within(0x391, 0x3A9)) return c == 0x3A2 ? c : c + 0x20;
  if (within(0x400, 0x40F)) return c + 0x50;
  if (within(0x410, 0x42F)) return c + 0x20;
  return c;
}

}  // namespace

std::string folded(std::string_view text) {
  std::string result(text);
  for (std::size_t at = 0; at < result.size(); ++at) {
    const auto byte = static_cast<unsigned char>(result[at]);
    if (byte >= 'A' && byte <= 'Z') {
      result[at] = static_cast<char>(byte + 0x20);
    } else if (byte >= 0xC2 && byte <= 0xDF && at + 1 < result.size() &&
               (static_cast<unsigned char>(result[at + 1]) & 0xC0) == 0x80) {
      const unsigned c =
          small_letter((byte & 0x1FU) << 6 | (static_cast<unsigned char>(result[at + 1]) & 0x3FU));
      result[at] = static_cast<char>(0xC0 | c >> 6);
      result[++at] = static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return result;
}

std::int64_t text_hash(std::string_view folded_text) {
  return std::bit_cast<std::int64_t>(XXH3_64bits(folded_text.data(), folded_text.size()));
}
