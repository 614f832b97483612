// The position of a tag in the table of tags. Internal: see exchange/cif/tags.h.
//
// Also for the source that is C++17 (see exchange/cif/document.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

inline constexpr std::size_t no_cif_tag = static_cast<std::size_t>(-1);

// A tag without regard to case and to the difference between '.' and '_', as a number: equal tags have equal
// ones, and others differ but for chance.
[[nodiscard]] std::uint64_t cif_tag_hash(std::string_view tag);

// no_cif_tag for a tag that is not in the table.
[[nodiscard]] std::size_t cif_tag_index(std::uint64_t hash, std::string_view tag);

// Whether they are the same tag in that sense.
[[nodiscard]] bool same_cif_tag(std::string_view one, std::string_view other);

// The number of tags in the table.
[[nodiscard]] std::size_t cif_tag_table_size();
