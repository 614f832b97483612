// Numbers of entries, as a store keeps those that have an element: in blocks, so that what several elements
// have in common is found without looking at each entry. Internal: for the engines that speak SQL.
//
//   NumberBlock block;
//   if (!block.unpack(bytes)) damaged();
//   block.keep_only(other);                      // those that are in both
//   block.for_each([&](int place) { use(block_number * NumberBlock::size + place); });
//
// Bytes: fewer than 512 numbers as two bytes each, ascending and little-endian, from the first number of the
// block; more of them as 1,024 bytes with a bit for each, the lowest bit of the first byte for the first
// number.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class NumberBlock {
 public:
  static constexpr int size = 8192;

  // False for bytes that were never packed; the block is then empty.
  [[nodiscard]] bool unpack(std::string_view bytes);
  [[nodiscard]] std::string packed() const;

  void insert(int place) { word(place) |= bit(place); }
  void erase(int place) { word(place) &= ~bit(place); }
  [[nodiscard]] bool has(int place) const {
    return (words_[static_cast<std::size_t>(place) / 64] & bit(place)) != 0;
  }
  void keep_only(const NumberBlock& other);
  [[nodiscard]] int count() const;

  // In ascending order.
  template <class Visit>
  void for_each(const Visit& visit) const {
    for (std::size_t index = 0; index < words_.size(); ++index) {
      for (std::uint64_t rest = words_[index]; rest != 0; rest &= rest - 1)
        visit(static_cast<int>(index * 64) + std::countr_zero(rest));
    }
  }

 private:
  static std::uint64_t bit(int place) { return std::uint64_t{1} << (static_cast<unsigned int>(place) % 64); }
  std::uint64_t& word(int place) { return words_[static_cast<std::size_t>(place) / 64]; }

  std::array<std::uint64_t, size / 64> words_{};
};
