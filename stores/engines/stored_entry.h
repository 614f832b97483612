// An entry as an engine keeps it: its head, the bytes of its components, its columns and its origin.
// Internal: for the engines.
#pragma once

#include <stores/codec/entry_encoding.h>
#include <stores/entry_columns.h>
#include <stores/entry_origin.h>
#include <stores/entry_query.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The longest identifier that a store takes, in bytes.
inline constexpr std::size_t longest_identifier = 10'000;

// Over the archive bytes of a component.
[[nodiscard]] std::uint64_t component_hash(ComponentKind kind, std::string_view bytes);

// What tells an entry from all others, and from what it was before.
struct EntryHead {
  std::int64_t number = 0;  // the engine's key
  std::string identifier;
  std::uint32_t components = 0;  // the bit of its kind for each component that is not null
  std::array<std::uint64_t, component_count> hashes{};

  [[nodiscard]] bool has(ComponentKind kind) const {
    return (components >> static_cast<int>(kind) & 1U) != 0;
  }
  // The same contents under the same identifier.
  [[nodiscard]] bool is_like(const EntryHead& other) const {
    return identifier == other.identifier && components == other.components && hashes == other.hashes;
  }
};

// Over what a head and an origin say, so that a change to either is seen.
[[nodiscard]] std::uint64_t row_digest(const EntryHead& head, const EntryOrigin& origin);

// What is kept of a head beside its number and identifier: the components as four bytes, the hash of each
// that is there in the order of their kinds, and the digest, eight bytes each, all little-endian. Reading
// gives the digest; nothing for bytes that are no head.
[[nodiscard]] std::string packed_head(const EntryHead& head, const EntryOrigin& origin);
[[nodiscard]] std::optional<std::uint64_t> unpack_head(std::string_view packed, EntryHead& head);

struct StoredEntry {
  EntryHead head;
  EntryBytes bytes;
  EntryColumns columns;
  EntryOrigin origin;
};

// An entry that is about to be stored. It is read back first: what could not be read back is refused, and
// what an archive would not give back (the end of a text after a NUL) is not kept. `now` is for an origin
// without a time. Throws EntryStoreError with the place.
[[nodiscard]] StoredEntry prepare(const CrystalStructureDatabaseEntry& entry, const EntryOrigin& origin,
                                  const std::string& place, std::int64_t now, ByteStreams& streams);

// Seconds since 1970.
[[nodiscard]] std::int64_t current_time();

// The bytes of a component as an engine keeps them: how they are packed, one byte (0 as they are, 1 with
// zstd), then that. Unpacking gives nothing for what was never packed.
[[nodiscard]] std::string packed(std::string_view bytes, bool compress);
[[nodiscard]] std::optional<std::string> unpacked(std::string_view packed_bytes);

// The texts or elements of a list column in one piece: each with its length before it; an element's count
// follows it.
[[nodiscard]] std::string packed_list(const std::vector<std::string>& texts);
[[nodiscard]] std::string packed_list(const std::vector<ElementCount>& elements);
[[nodiscard]] bool unpack_list(std::string_view bytes, std::vector<std::string>& texts);
[[nodiscard]] bool unpack_list(std::string_view bytes, std::vector<ElementCount>& elements);

// One row of the table entry_text.
struct TextRow {
  int column = 0;
  std::int64_t hash = 0;
  int position = 0;  // in the list
  std::string folded;
  std::optional<std::string> value;  // where it is not `folded`
};

// Calls `visit(row)` for each text by which the entry is found.
template <class Visit>
void for_each_text_row(const EntryColumns& columns, const Visit& visit) {
  for_each_entry_column([&](const auto& column) {
    using Column = std::remove_cvref_t<decltype(column)>;
    if constexpr (Column::is_text) {
      int position = 0;
      const auto add = [&](const std::string& value) {
        TextRow row;
        row.column = column.number;
        row.folded = folded(value);
        row.hash = text_hash(row.folded);
        row.position = position++;
        if (row.folded != value) row.value = value;
        visit(row);
      };
      const auto& member = columns.*column.member;
      if constexpr (Column::is_list) {
        for (const std::string& value : member) add(value);
      } else if constexpr (std::is_same_v<typename Column::Type, std::string>) {
        add(member);
      } else {
        if (member) add(*member);
      }
    }
  });
}

// The share of an element among all atoms.
[[nodiscard]] double element_ratio(const EntryColumns& columns, const ElementCount& element);

// A number for one row of the tables entry_text and entry_element. The sum over all rows of a store tells
// whether they are what the columns of its entries say.
[[nodiscard]] std::uint64_t row_sum(std::int64_t entry, const TextRow& row);
[[nodiscard]] std::uint64_t row_sum(std::int64_t entry, std::string_view symbol, double count, double ratio);
