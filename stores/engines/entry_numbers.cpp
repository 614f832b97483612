#include <stores/engines/entry_numbers.h>

namespace {

constexpr std::size_t bitmap_bytes = NumberBlock::size / 8;

unsigned int byte_of(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

}  // namespace

bool NumberBlock::unpack(std::string_view bytes) {
  words_.fill(0);
  if (bytes.size() == bitmap_bytes) {
    for (std::size_t index = 0; index < bytes.size(); ++index)
      words_[index / 8] |= std::uint64_t{byte_of(bytes, index)} << (index % 8 * 8);
    return true;
  }
  if (bytes.size() > bitmap_bytes || bytes.size() % 2 != 0) return false;
  int last = -1;
  for (std::size_t index = 0; index < bytes.size(); index += 2) {
    const int place = static_cast<int>(byte_of(bytes, index) | byte_of(bytes, index + 1) << 8U);
    if (place <= last || place >= size) {
      words_.fill(0);
      return false;
    }
    insert(last = place);
  }
  return true;
}

std::string NumberBlock::packed() const {
  std::string bytes;
  if (static_cast<std::size_t>(count()) * 2 < bitmap_bytes) {
    for_each([&](int place) {
      bytes += static_cast<char>(place & 0xFF);
      bytes += static_cast<char>(place >> 8);
    });
    return bytes;
  }
  for (const std::uint64_t word : words_) {
    for (unsigned int shift = 0; shift < 64; shift += 8) bytes += static_cast<char>(word >> shift & 0xFF);
  }
  return bytes;
}

void NumberBlock::keep_only(const NumberBlock& other) {
  for (std::size_t index = 0; index < words_.size(); ++index) words_[index] &= other.words_[index];
}

int NumberBlock::count() const {
  int total = 0;
  for (const std::uint64_t word : words_) total += std::popcount(word);
  return total;
}
