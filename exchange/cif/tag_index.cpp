#include "exchange/cif/tag_index.h"

#include <array>

#include "exchange/cif/tags.h"

namespace {

constexpr char plain(char c) {
  if (c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
  return c == '.' ? '_' : c;
}

// FNV-1a (Fowler, Noll and Vo).
constexpr std::uint64_t hash(std::string_view tag) {
  std::uint64_t value = 14695981039346656037U;
  for (const char c : tag) {
    value = (value ^ static_cast<unsigned char>(plain(c))) * 1099511628211U;
  }
  return value;
}

constexpr bool same(std::string_view one, std::string_view other) {
  if (one.size() != other.size()) return false;
  for (std::size_t i = 0; i < one.size(); ++i) {
    if (plain(one[i]) != plain(other[i])) return false;
  }
  return true;
}

// Open addressing; a free slot holds 0, another one the position of its tag counted from 1.
constexpr std::size_t slot_count = 1024;
static_assert(cif_tag_count < slot_count / 4);

constexpr std::array<std::uint16_t, slot_count> made_slots() {
  std::array<std::uint16_t, slot_count> slots = {};
  for (std::size_t position = 0; position < cif_tag_count; ++position) {
    std::size_t slot = hash(cif_tag_rows[position].tag) % slot_count;
    while (slots[slot] != 0) slot = (slot + 1) % slot_count;
    slots[slot] = static_cast<std::uint16_t>(position + 1);
  }
  return slots;
}
constexpr std::array<std::uint16_t, slot_count> slots = made_slots();

constexpr bool no_tag_is_twice_in_the_table() {
  for (std::size_t one = 0; one < cif_tag_count; ++one) {
    for (std::size_t other = 0; other < one; ++other) {
      if (same(cif_tag_rows[one].tag, cif_tag_rows[other].tag)) return false;
    }
  }
  return true;
}
static_assert(no_tag_is_twice_in_the_table());

}  // namespace

std::uint64_t cif_tag_hash(std::string_view tag) {
  return hash(tag);
}

std::size_t cif_tag_index(std::uint64_t hash, std::string_view tag) {
  for (std::size_t slot = hash % slot_count; slots[slot] != 0; slot = (slot + 1) % slot_count) {
    const std::size_t position = slots[slot] - 1U;
    if (same(cif_tag_rows[position].tag, tag)) return position;
  }
  return no_cif_tag;
}

bool same_cif_tag(std::string_view one, std::string_view other) {
  return same(one, other);
}

std::size_t cif_tag_table_size() {
  return cif_tag_count;
}

std::vector<CifTagRow> cif_tags() {
  return {std::begin(cif_tag_rows), std::end(cif_tag_rows)};
}
