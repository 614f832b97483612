// The tags of our own prefix, which hold what has no tag in CIF.
// Internal: callers want exchange/cif_writer.h.
//
//   _dbentry_identifier            "ABCDEF 01"
//   _dbentry_editors_info_batch    7               one field of a component
//   _dbentry_chemical_diagram      null            a whole component
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

inline constexpr const char* own_tag_prefix = "_dbentry_";
inline constexpr const char* own_identifier_tag = "_dbentry_identifier";

[[nodiscard]] bool is_own_tag(std::string_view tag);

// A text as it is where it is plain and no JSON, anything else as JSON.
[[nodiscard]] std::string own_tag_text(const nlohmann::ordered_json& value);
[[nodiscard]] nlohmann::ordered_json own_tag_value(const std::string& text);

// Puts the value of a tag into the JSON of an entry. False where the tag names no component.
[[nodiscard]] bool put_own_tag(const std::string& tag, const nlohmann::ordered_json& value,
                               nlohmann::ordered_json& entry);
