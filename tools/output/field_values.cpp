#include "tools/output/field_values.h"

#include <fmt/format.h>

#include <algorithm>

namespace {

using Json = nlohmann::ordered_json;

bool is_one_value(const Json& value) {
  if (!value.is_structured()) return true;
  return value.is_array() && !value.empty() &&
         std::none_of(value.begin(), value.end(), [](const Json& part) { return part.is_structured(); });
}

void add(const std::string& name, const Json& value, std::vector<FieldValue>& values) {
  if (is_one_value(value)) {
    values.emplace_back(name, value);
  } else if (value.is_array()) {
    for (std::size_t i = 0; i < value.size(); ++i) add(fmt::format("{}[{}]", name, i + 1), value[i], values);
  } else {
    for (const auto& [key, part] : value.items()) {
      add(name.empty() ? key : fmt::format("{}.{}", name, key), part, values);
    }
  }
}

}  // namespace

std::vector<FieldValue> field_values(const Json& value) {
  std::vector<FieldValue> values;
  add("", value, values);
  return values;
}
