// What conditions can be about: the derived columns, and what follows from them.
// Internal: callers want stores/entry_query.h.
//
// Beside the rows of for_each_entry_column() there are
//   _dbentry_count_ti and so on   how many atoms of an element the formula has; 0 of an element that it does
//   not have elements_ratios               each element's share of the atoms P_folded for each text P: what
//   folded() makes of it
#pragma once

#include <stores/entry_columns.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// One row of the table of columns, whatever its type.
struct EntryProperty {
  enum class Type { text, time, integer, number, texts, elements, ratios };
  using Member =
      std::variant<std::string EntryColumns::*, std::optional<std::string> EntryColumns::*,
                   std::optional<std::int64_t> EntryColumns::*, std::optional<double> EntryColumns::*,
                   std::vector<std::string> EntryColumns::*, std::vector<ElementCount> EntryColumns::*>;
  Type type;
  const char* short_name;
  const char* filter_name;
  const char* sql_name;
  int number;
  Member member;

  [[nodiscard]] bool is_list() const {
    return type == Type::texts || type == Type::elements || type == Type::ratios;
  }
  [[nodiscard]] bool is_text() const { return type == Type::text || type == Type::time; }
  [[nodiscard]] bool is_number() const { return type == Type::integer || type == Type::number; }
  // Of itself or of its members.
  [[nodiscard]] bool holds_texts() const { return type == Type::text || type == Type::texts; }
};

// A property as a condition names it.
struct PropertyName {
  const EntryProperty* property = nullptr;
  bool folded = false;
  std::string element = {};  // whose atoms are counted; the property is then that of the elements

  [[nodiscard]] bool is_list() const { return element.empty() && property->is_list(); }
  [[nodiscard]] bool is_text() const { return property->is_text(); }
  [[nodiscard]] bool is_number() const { return !element.empty() || property->is_number(); }
  [[nodiscard]] bool holds_texts() const {
    return element.empty() && (property->holds_texts() || elements());
  }
  [[nodiscard]] bool elements() const { return property->type == EntryProperty::Type::elements; }

  friend bool operator==(const PropertyName&, const PropertyName&) = default;
};

[[nodiscard]] const std::vector<EntryProperty>& entry_properties();
[[nodiscard]] const EntryProperty& elements_property();
[[nodiscard]] const EntryProperty& element_count_property();

// None for a name that does not exist.
[[nodiscard]] std::optional<PropertyName> property_of_filter(std::string_view name);
[[nodiscard]] std::optional<PropertyName> property_of_text(std::string_view name);

[[nodiscard]] std::string filter_name(const PropertyName& name);
// Empty where the short form has none.
[[nodiscard]] std::string short_name(const PropertyName& name);

// The symbols of the elements, D and T included.
[[nodiscard]] const std::vector<std::string>& element_symbols();

// "there is no property 'yaer'; did you mean 'year'?"
[[nodiscard]] std::string unknown_in_filter(const std::string& name);
[[nodiscard]] std::string unknown_in_text(const std::string& name);
