// JSON as a list of fields and values.
//
//   field_values({{"cell", {{"a", 5.64}}}, {"atoms", {{{"label", "Na1"}}}}})
//     // {"cell.a", 5.64}, {"atoms[1].label", "Na1"}
//
// A list of texts or numbers is one value; an empty list or object is none. Elements of other lists count
// from 1.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

using FieldValue = std::pair<std::string, nlohmann::ordered_json>;

[[nodiscard]] std::vector<FieldValue> field_values(const nlohmann::ordered_json& value);
