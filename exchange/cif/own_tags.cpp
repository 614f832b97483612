#include "exchange/cif/own_tags.h"

#include <database_entry/entries/components.h>

#include <algorithm>

#include "exchange/cif/letters.h"

namespace {

using Json = nlohmann::ordered_json;

bool is_plain(const std::string& text) {
  const bool is_printable =
      std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
  return is_printable && !text.empty() && text.front() != ' ' && text.back() != ' ' && text != "?" &&
         text != ".";
}

}  // namespace

bool is_own_tag(std::string_view tag) {
  const std::string_view prefix = own_tag_prefix;
  return lower_case(tag.substr(0, prefix.size())) == prefix;
}

std::string own_tag_text(const Json& value) {
  constexpr bool ascii_only = true;
  if (value.is_string()) {
    const std::string& text = value.get_ref<const std::string&>();
    if (is_plain(text) && !Json::accept(text)) return text;
  }
  // One line for what is short.
  std::string line = value.dump(-1, ' ', ascii_only);
  constexpr std::size_t longest = 100;
  return line.size() <= longest || !value.is_structured() ? line : value.dump(1, ' ', ascii_only);
}

Json own_tag_value(const std::string& text) {
  return Json::accept(text) ? Json::parse(text) : Json(text);
}

bool put_own_tag(const std::string& tag, const Json& value, Json& entry) {
  const std::string name = lower_case(tag).substr(std::string(own_tag_prefix).size());
  bool is_known = name == "identifier";
  if (is_known) entry[name] = value;
  for_each_component([&](auto component) {
    const std::string component_name = component.name;
    if (name == component_name) {
      entry[name] = value;
      is_known = true;
    } else if (name.compare(0, component_name.size() + 1, component_name + "_") == 0 &&
               entry[component_name].is_object()) {
      entry[component_name][name.substr(component_name.size() + 1)] = value;
      is_known = true;
    }
  });
  return is_known;
}
