// Short texts, copied without a call and without a branch for each length.
// Internal: callers want utilities/archive.h.
//
// Most texts of an entry are shorter than sixteen bytes. Where sixteen bytes may be looked at, all of them
// are copied at once, and the text is cut to its length afterwards.
#pragma once

#include <utilities/archiving/wire.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#ifdef DATABASE_ENTRY_SSE2
#include <emmintrin.h>
#endif

namespace archiving {

inline constexpr std::size_t short_text = 16;

// Whether any string has sixteen bytes from data() on, and holds a text of fifteen in itself. The build
// probes for it; no standard promises it.
#ifdef DATABASE_ENTRY_STRING_LAYOUT
inline constexpr bool strings_hold_short_texts = true;
static_assert(sizeof(std::string) == sizeof(char*) + sizeof(std::size_t) + short_text,
              "a string is a pointer, a length, and sixteen bytes of its own");
#else
inline constexpr bool strings_hold_short_texts = false;
#endif

// The length of a text of `length` bytes, sixteen at most, up to its first NUL. Sixteen bytes can be looked
// at; all are compared at once instead of calling strnlen.
#ifdef DATABASE_ENTRY_SSE2

inline std::size_t length_to_nul(const char* sixteen_bytes, std::size_t length) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(sixteen_bytes));
  const int nuls = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_setzero_si128()));  // a bit for each byte
  return static_cast<std::size_t>(std::countr_zero(static_cast<unsigned int>(nuls) | 1U << length));
}

#else

inline std::size_t length_to_nul(const char* sixteen_bytes, std::size_t length) {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  constexpr std::uint64_t tops = 0x8080808080808080U;
  std::uint64_t words[2];
  std::memcpy(words, sixteen_bytes, sizeof words);
  for (std::size_t word = 0; word < 2; ++word) {
    const std::uint64_t value = little_endian(words[word]);
    const std::uint64_t nuls = (value - ones) & ~value & tops;  // its lowest bit marks the first NUL
    if (nuls != 0) return std::min(length, 8 * word + static_cast<std::size_t>(std::countr_zero(nuls)) / 8);
  }
  return length;
}

#endif

// The text of `length` bytes, fewer than sixteen, up to its first NUL. Sixteen bytes can be looked at.
inline void assign_short(std::string& text, const char* sixteen_bytes, std::size_t length) {
  if constexpr (strings_hold_short_texts) {
    std::destroy_at(&text);
    std::construct_at(&text, sixteen_bytes, short_text - 1);  // in the string itself: cannot throw
    text.erase(length_to_nul(sixteen_bytes, length));
  } else {
    text.assign(sixteen_bytes, length_to_nul(sixteen_bytes, length));  // uncovered: for other layouts
  }
}

// The length of a text of `length` bytes up to its first NUL.
inline std::size_t length_to_nul_anywhere(const char* bytes, std::size_t length) {
  const void* const nul = length == 0 ? nullptr : std::memchr(bytes, 0, length);
  return nul == nullptr ? length : static_cast<std::size_t>(static_cast<const char*>(nul) - bytes);
}

// memcpy for a text, without a call where it is short; never a byte more than `size`.
inline void copy_text(char* to, const char* from, std::size_t size) {
  if (size > short_text) {
    std::memcpy(to, from, size);
  } else if (size >= 8) {
    std::uint64_t head, tail;
    std::memcpy(&head, from, 8);
    std::memcpy(&tail, from + size - 8, 8);
    std::memcpy(to, &head, 8);
    std::memcpy(to + size - 8, &tail, 8);
  } else if (size >= 4) {
    std::uint32_t head, tail;
    std::memcpy(&head, from, 4);
    std::memcpy(&tail, from + size - 4, 4);
    std::memcpy(to, &head, 4);
    std::memcpy(to + size - 4, &tail, 4);
  } else if (size > 0) {
    to[0] = from[0];
    to[size / 2] = from[size / 2];
    to[size - 1] = from[size - 1];
  }
}

}  // namespace archiving
