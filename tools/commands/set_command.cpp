// set: changes fields of an entry, by the records' own lists of fields.
#include <database_entry/entries/components.h>
#include <exchange/entry_json.h>
#include <fmt/format.h>
#include <utilities/fields.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <sstream>
#include <type_traits>
#include <utility>

#include "tools/commands/commands.h"
#include "tools/files/collection.h"
#include "tools/messages/nearest_name.h"
#include "tools/output/field_values.h"
#include "tools/output/table_output.h"

namespace {

struct Assignment {
  std::string field;  // "publication.year", or "year" where one component only has it
  std::string value;
};

Assignment assignment_of(const std::string& text) {
  const std::size_t place = text.find('=');
  if (place == std::string::npos || place == 0)
    throw ToolError(ExitCode::usage, fmt::format("set: '{}' is not FIELD=VALUE", text));
  return {text.substr(0, place), text.substr(place + 1)};
}

[[noreturn]] void refuse(const Assignment& assignment, const std::string& wanted) {
  throw ToolError(ExitCode::usage,
                  fmt::format("set: {}={}: {} is wanted", assignment.field, assignment.value, wanted));
}

// ---- Values of the types that fields have. The empty text is what a new record has.

template <class Number>
void parse_number(Number& value, const Assignment& assignment, const char* wanted) {
  const std::string& text = assignment.value;
  Number parsed = {};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
  if (!text.empty() && (error != std::errc() || end != text.data() + text.size())) refuse(assignment, wanted);
  value = parsed;
}

void parse(std::string& value, const Assignment& assignment) {
  value = assignment.value;
}

void parse(double& value, const Assignment& assignment) {
  parse_number(value, assignment, "a number");
  if (!std::isfinite(value)) refuse(assignment, "a finite number");
}

void parse(int& value, const Assignment& assignment) {
  parse_number(value, assignment, "an integer");
}

void parse(bool& value, const Assignment& assignment) {
  const std::map<std::string, bool> words = {{"", false},   {"no", false},  {"false", false}, {"0", false},
                                             {"yes", true}, {"true", true}, {"1", true}};
  const auto word = words.find(assignment.value);
  if (word == words.end()) refuse(assignment, "yes or no");
  value = word->second;
}

void parse(Date& value, const Assignment& assignment) {
  int year = 0;
  int month = 0;
  int day = 0;
  char first = '-';
  char second = '-';
  std::istringstream text(assignment.value.empty() ? "0-0-0" : assignment.value);
  std::string more;
  text >> year >> first >> month >> second >> day;
  if (text.fail() || text >> more || first != '-' || second != '-')
    refuse(assignment, "a date as 2003-05-17");
  if (year == 0 && month == 0 && day == 0) {
    value = Date();
    return;
  }
  try {
    value = Date(year, month, day);
  } catch (const std::invalid_argument&) {
    refuse(assignment, "a day of the calendar");
  }
}

// Authors and synonyms may have commas in them.
void parse(std::vector<std::string>& value, const Assignment& assignment) {
  value.clear();
  std::size_t begin = 0;
  while (begin < assignment.value.size()) {
    const std::size_t end = std::min(assignment.value.find(';', begin), assignment.value.size());
    const std::string part = assignment.value.substr(begin, end - begin);
    const std::size_t first = part.find_first_not_of(' ');
    if (first != std::string::npos)
      value.push_back(part.substr(first, part.find_last_not_of(' ') - first + 1));
    begin = end + 1;
  }
}

void parse(Journal& value, const Assignment& assignment) {
  for (int number = 1; number <= Journal::max_vorn_coden(); ++number) {
    const Journal journal(number);
    if (assignment.value == std::to_string(number) || assignment.value == journal.international_coden()) {
      value = journal;
      return;
    }
  }
  refuse(assignment, "a journal's number or CODEN, as dbentry journals prints them,");
}

void parse(Range<double, DoubleComparator>& value, const Assignment& assignment) {
  const std::size_t place = assignment.value.find("..");
  if (place == std::string::npos) refuse(assignment, "a range as 0.001..0.005");
  double lower = 0.0;
  double upper = 0.0;
  parse(lower, Assignment{assignment.field, assignment.value.substr(0, place)});
  parse(upper, Assignment{assignment.field, assignment.value.substr(place + 2)});
  value = Range<double, DoubleComparator>(lower, RangeLimit::inclusive, upper, RangeLimit::inclusive,
                                          value.comparator());
}

// The texts of each enumeration.
THandle<EnumTextMapping<ExperimentalInfo::RadiationProbe>> texts(ExperimentalInfo::RadiationProbe) {
  return ExperimentalInfo::radiation_probe_text();
}
THandle<EnumTextMapping<ExperimentalInfo::PowderStudy>> texts(ExperimentalInfo::PowderStudy) {
  return ExperimentalInfo::powder_text();
}
THandle<EnumTextMapping<ExperimentalInfo::IntensityMethod>> texts(ExperimentalInfo::IntensityMethod) {
  return ExperimentalInfo::intensity_method_text();
}
THandle<EnumTextMapping<EditorsInfo::EntryCategory>> texts(EditorsInfo::EntryCategory) {
  return EditorsInfo::category_text();
}
THandle<EnumTextMapping<EditorsInfo::AserMatchFlag>> texts(EditorsInfo::AserMatchFlag) {
  return EditorsInfo::aser_match_flag_text();
}
THandle<EnumTextMapping<EditorsInfo::AuthorCorrespondence>> texts(EditorsInfo::AuthorCorrespondence) {
  return EditorsInfo::author_correspondence_text();
}
THandle<EnumTextMapping<EditorsInfo::IgnoredErrors>> texts(EditorsInfo::IgnoredErrors) {
  return EditorsInfo::ignored_errors_text();
}

template <class Enumeration>
requires std::is_enum_v<Enumeration>
void parse(Enumeration& value, const Assignment& assignment) {
  std::vector<std::string> known;
  const auto mapping = texts(value);
  for (const auto& [member, text] : *mapping) {
    if (text == assignment.value) {
      value = member;
      return;
    }
    known.push_back(text);
  }
  throw ToolError(ExitCode::usage, fmt::format("set: {}: {}", assignment.field,
                                               unknown_name("value", assignment.value, known)));
}

template <class Value>
concept CanBeSet = requires(Value& value, const Assignment& assignment) {
  parse(value, assignment);
};

// ---- Fields

// Calls `visit(component row, "component.field", value)` for each field that can be set in a record of each
// component that can be set.
template <class Component, class Visit>
void for_each_settable(Component component, typename Component::Type& record, const Visit& visit) {
  using Record = typename Component::Type;
  if constexpr (Component::has_setter && requires { Record::fields(); }) {
    for_each_field(record, [&]<class Value>(const char* name, Value& value) {
      if constexpr (!std::is_const_v<Value> && CanBeSet<Value>)
        visit(fmt::format("{}.{}", component.name, name), value);
    });
  }
}

std::vector<std::string> settable_fields() {
  std::vector<std::string> names;
  for_each_component([&](auto component) {
    typename decltype(component)::Type record;
    for_each_settable(component, record, [&](const std::string& name, auto&) { names.push_back(name); });
  });
  return names;
}

// The whole name of a field: "year" is "publication.year".
std::string whole_name(const std::string& name) {
  std::vector<std::string> matches;
  const std::vector<std::string> known = settable_fields();
  for (const std::string& field : known) {
    if (field == name) return field;
    if (field.substr(field.find('.') + 1) == name) matches.push_back(field);
  }
  if (matches.size() == 1) return matches.front();
  if (matches.empty()) {
    // Without the component the nearest name is found sooner.
    std::vector<std::string> candidates = known;
    for (const std::string& field : known) candidates.push_back(field.substr(field.find('.') + 1));
    throw ToolError(ExitCode::usage, "set: " + unknown_name("field", name, candidates));
  }
  throw ToolError(ExitCode::usage, fmt::format("set: '{}' may be {} or {}", name, matches[0], matches[1]));
}

// A component that is shared with the old entry is copied before it is changed.
void assign(StoredEntry& entry, const Assignment& assignment) {
  for_each_component([&](auto component) {
    if constexpr (component.has_setter) {
      using Record = typename decltype(component)::Type;
      if (assignment.field.substr(0, assignment.field.find('.')) != component.name) return;
      const auto old = component.get(entry);
      const THandle<Record> changed(old.is_null() ? new Record : new Record(*old));
      for_each_settable(component, *changed, [&](const std::string& name, auto& value) {
        if (name == assignment.field) parse(value, assignment);
      });
      component.set(entry, changed);
    }
  });
}

std::map<std::string, nlohmann::ordered_json> values_of(const StoredEntry& entry) {
  std::map<std::string, nlohmann::ordered_json> values;
  for (const auto& [field, value] : field_values(entry_json(entry))) values[field] = value;
  return values;
}

}  // namespace

ExitCode set_command(const SetOptions& options, Terminal& terminal) {
  if (options.identifier.empty() || options.assignments.empty())
    throw ToolError(ExitCode::usage, "set: an entry and at least one FIELD=VALUE are wanted");
  std::vector<Assignment> assignments;
  for (const std::string& text : options.assignments) {
    Assignment assignment = assignment_of(text);
    assignment.field = whole_name(assignment.field);
    assignments.push_back(std::move(assignment));
  }
  TableOutput table(terminal, output_format(options.format, terminal), {"field", "old", "new"});
  std::size_t met = 0;
  const auto change = [&](const THandle<StoredEntry>& entry) {
    if (++met > 1) {
      throw ToolError(ExitCode::problems,
                      fmt::format("{}: more than one entry is called {}: nothing is changed",
                                  options.collection, options.identifier));
    }
    const THandle<StoredEntry> changed(new StoredEntry(*entry));
    for (const Assignment& assignment : assignments) assign(*changed, assignment);
    const auto before = values_of(*entry);
    const auto after = values_of(*changed);
    std::map<std::string, bool> fields;
    for (const auto& [field, value] : before) fields[field] = true;
    for (const auto& [field, value] : after) fields[field] = true;
    bool differs = false;
    for (const auto& [field, is_there] : fields) {
      const auto old_value = before.find(field);
      const auto new_value = after.find(field);
      const nlohmann::ordered_json none;
      const auto& first = old_value == before.end() ? none : old_value->second;
      const auto& second = new_value == after.end() ? none : new_value->second;
      if (first == second) continue;
      differs = true;
      table.add({field, first, second});
    }
    return differs ? changed : entry;
  };
  if (options.dry_run) {
    for_each_entry_and_origin(
        options.collection, {options.identifier},
        [&](const THandle<StoredEntry>& entry, const EntryOrigin&) { (void)change(entry); });
  } else {
    change_entries(options.collection, {options.identifier}, change);
  }
  table.finish();
  return ExitCode::done;
}
