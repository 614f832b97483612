#include "tools/output/pretty_entry.h"

#include <database_entry/entries/components.h>
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <exchange/entry_json.h>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <algorithm>
#include <ostream>
#include <sstream>
#include <utility>
#include <vector>

#include "tools/output/field_values.h"
#include "tools/output/table_output.h"

namespace {

using Json = nlohmann::ordered_json;

// What a new record says of each field: that nothing is known.
const std::map<std::string, Json>& usual_values() {
  static const std::map<std::string, Json> values = [] {
    ComponentHandles components;
    for_each_component([&](auto component) {
      using Component = typename decltype(component)::Type;
      components[component] = THandle<Component>(new Component);
    });
    const auto entry = CrystalStructureImmediateDatabaseEntry::from(DatabaseEntryIdentifier(), components);
    std::map<std::string, Json> result;
    for (const auto& [field, value] : field_values(entry_json(entry))) result[field] = value;
    return result;
  }();
  return values;
}

bool is_nothing(const Json& value) {
  if (value.is_string()) return value.get_ref<const std::string&>().empty();
  return value.is_null() || value == 0 || value == false;
}

bool is_absent(const std::string& field, const Json& value) {
  if (is_nothing(value)) return true;
  // A new publication is of the first journal of the list, which is a journal like any other.
  if (field.find(".journal.") != std::string::npos) return false;
  const auto usual = usual_values().find(field);
  return usual != usual_values().end() && usual->second == value;
}

std::string number_text(double value) {
  return fmt::format("{:.6g}", value);
}

std::string value_text(const Json& value) {
  if (value.is_number_float()) return number_text(value.get<double>());
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_array()) return json_line(value);
  constexpr std::size_t most = 12;
  std::string text;
  for (std::size_t i = 0; i < value.size() && i < most; ++i)
    text += (i == 0 ? "" : "; ") + value_text(value[i]);
  return value.size() <= most ? text : fmt::format("{}; ... ({} in all)", text, value.size());
}

std::string in_words(std::string name) {
  std::replace(name.begin(), name.end(), '_', ' ');
  std::replace(name.begin(), name.end(), '.', ' ');
  return name;
}

bool is_table(const Json& value) {
  return value.is_array() && !value.empty() && value[0].is_object();
}

// Rows of text under a heading, broken at blanks where a line gets too long.
class Section {
 public:
  Section(std::ostream& out, std::size_t columns) : out_(out), columns_(columns) {}

  void add(const std::string& name, const std::string& text) { rows_.emplace_back(name, text); }
  void add_table(const std::string& name, const Json& rows) { tables_.emplace_back(name, &rows); }

  void print(const std::string& heading) const {
    if (rows_.empty() && tables_.empty()) return;
    fmt::print(out_, "{}\n", heading);
    std::size_t widest = 0;
    for (const auto& [name, text] : rows_) widest = std::max(widest, name.size());
    for (const auto& [name, text] : rows_) print_row(name, text, widest);
    for (const auto& [name, rows] : tables_) print_table(name, *rows);
  }

 private:
  void print_row(const std::string& name, const std::string& text, std::size_t widest) const {
    const std::size_t indent = widest + 4;
    std::string line = fmt::format("  {:<{}}  ", name, widest);
    std::size_t used = 0;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
      if (used > 0 && indent + used + 1 + word.size() > columns_) {
        fmt::print(out_, "{}\n", line);
        line.assign(indent, ' ');
        used = 0;
      }
      line += (used == 0 ? "" : " ") + word;
      used += word.size() + (used == 0 ? 0 : 1);
    }
    fmt::print(out_, "{}\n", line);
  }

  void print_table(const std::string& name, const Json& rows) const {
    if (!name.empty()) fmt::print(out_, "  {}\n", name);
    std::vector<TableOutput::Column> columns;
    for (const auto& [key, value] : rows[0].items()) columns.emplace_back(in_words(key), "; ");
    std::ostringstream text;
    TableOutput table(text, OutputFormat::table, columns, columns_ - 4);
    for (const Json& row : rows) {
      std::vector<TableOutput::Cell> cells;
      for (const auto& [key, value] : row.items()) cells.push_back(value);
      cells.resize(columns.size());
      table.add(cells);
    }
    table.finish();
    std::istringstream lines(text.str());
    for (std::string line; std::getline(lines, line);) fmt::print(out_, "    {}\n", line);
  }

  std::ostream& out_;
  std::size_t columns_;
  std::vector<std::pair<std::string, std::string>> rows_;
  std::vector<std::pair<std::string, const Json*>> tables_;
};

void fill(Section& section, const std::string& component, const std::string& name, const Json& value) {
  if (is_table(value)) {
    section.add_table(in_words(name), value);
    return;
  }
  if (value.is_object()) {
    for (const auto& [key, part] : value.items())
      fill(section, component, name.empty() ? key : name + "." + key, part);
    return;
  }
  const std::string field = component + "." + name;
  if (is_absent(field, value) || (value.is_array() && value.empty())) return;
  const auto unit = field_units().find(field);
  section.add(in_words(name), value_text(value) + (unit == field_units().end() ? "" : " " + unit->second));
}

}  // namespace

const std::map<std::string, std::string>& field_units() {
  static const std::map<std::string, std::string> units = {
      {"cell.a", "Å"},
      {"cell.b", "Å"},
      {"cell.c", "Å"},
      {"cell.alpha", "°"},
      {"cell.beta", "°"},
      {"cell.gamma", "°"},
      {"cell.volume", "Å³"},
      {"experimental_info.temperature", "K"},
      {"experimental_info.experimental_density", "g/cm³"},
      {"experimental_info.calculated_density", "g/cm³"},
      {"experimental_info.mean_cc_bond_sigma.lower", "Å"},
      {"experimental_info.mean_cc_bond_sigma.upper", "Å"},
      {"editors_info.bonding_tolerance", "Å"},
  };
  return units;
}

void print_pretty(std::ostream& out, const CrystalStructureDatabaseEntry& entry, std::size_t columns) {
  constexpr std::size_t usual_columns = 80;
  constexpr std::size_t narrowest = 40;
  const std::size_t width = std::max(columns == 0 ? usual_columns : columns, narrowest);
  const Json json = entry_json(entry);
  fmt::print(out, "{}\n", json["identifier"].get<std::string>());
  for_each_component_in_entry_order([&](auto component) {
    const std::string name = component.name;
    if (!json.contains(name)) return;
    Section section(out, width);
    const Json& value = json[name];
    if (value.is_object()) {
      for (const auto& [key, part] : value.items()) {
        // The crystal's cell is a component of its own.
        if (key != name && json.contains(key) && json[key] == part) continue;
        fill(section, name, key, part);
      }
    } else {
      fill(section, name, "", value);
    }
    section.print(component.label);
  });
}
