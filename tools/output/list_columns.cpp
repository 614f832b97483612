#include "tools/output/list_columns.h"

#include <algorithm>
#include <array>
#include <functional>
#include <sstream>
#include <type_traits>

#include "tools/files/entry_file.h"
#include "tools/messages/nearest_name.h"
#include "tools/messages/tool_error.h"

namespace {

using TableCell = TableOutput::Cell;
using Entry = CrystalStructureDatabaseEntry;

// A number of 0 is one that is not known.
template <class Value>
TableCell known(const Value& value) {
  if constexpr (std::is_arithmetic_v<Value>) {
    if (value == Value{}) return {};
  }
  return TableCell(value);
}

// What `show` gives of a component; an empty cell where the component is null.
template <auto accessor, auto show>
TableCell of(const Entry& entry) {
  const auto component = (entry.*accessor)();
  if (component.is_null()) return {};
  return known(std::invoke(show, *component));
}

std::string journal_name(const Publication& publication) {
  return publication.journal.name();
}
std::string journal_coden(const Publication& publication) {
  return publication.journal.international_coden();
}
TableCell operator_count(const Cell& cell) {
  const auto operators = cell.symmetry_operators();
  return operators.is_null() ? TableCell() : TableCell(operators->size());
}
TableCell atom_count(const CrystalMaker& crystal_maker) {
  return crystal_maker.atoms().size();
}
TableCell reference_count(const CrossReferenceInfo& references) {
  return references.size();
}

constexpr std::array columns_of_entries = {
    ListColumn{"identifier", [](const Entry& entry) { return TableCell(identifier_of(entry)); }},
    ListColumn{"formula", of<&Entry::chemical_info, &ChemicalInfo::formula>},
    ListColumn{"name", of<&Entry::chemical_info, &ChemicalInfo::name>},
    ListColumn{"synonyms", of<&Entry::chemical_info, &ChemicalInfo::synonyms>},
    ListColumn{"source", of<&Entry::chemical_info, &ChemicalInfo::source>},
    ListColumn{"authors", of<&Entry::publication, &Publication::authors>, "; "},
    ListColumn{"journal", of<&Entry::publication, &journal_name>},
    ListColumn{"coden", of<&Entry::publication, &journal_coden>},
    ListColumn{"volume", of<&Entry::publication, &Publication::volume>},
    ListColumn{"year", of<&Entry::publication, &Publication::year>},
    ListColumn{"page", of<&Entry::publication, &Publication::page>},
    ListColumn{"a", of<&Entry::cell, &Cell::a>},
    ListColumn{"b", of<&Entry::cell, &Cell::b>},
    ListColumn{"c", of<&Entry::cell, &Cell::c>},
    ListColumn{"alpha", of<&Entry::cell, &Cell::alpha>},
    ListColumn{"beta", of<&Entry::cell, &Cell::beta>},
    ListColumn{"gamma", of<&Entry::cell, &Cell::gamma>},
    ListColumn{"operators", of<&Entry::cell, &operator_count>},
    ListColumn{"atoms", of<&Entry::crystal_maker, &atom_count>},
    ListColumn{"z", of<&Entry::crystal_info, &CrystalInfo::z>},
    ListColumn{"color", of<&Entry::crystal_info, &CrystalInfo::color>},
    ListColumn{"habit", of<&Entry::crystal_info, &CrystalInfo::habit>},
    ListColumn{"temperature", of<&Entry::experimental_info, &ExperimentalInfo::temperature>},
    ListColumn{"pressure", of<&Entry::experimental_info, &ExperimentalInfo::pressure>},
    ListColumn{"experimental_density",
               of<&Entry::experimental_info, &ExperimentalInfo::experimental_density>},
    ListColumn{"calculated_density", of<&Entry::experimental_info, &ExperimentalInfo::calculated_density>},
    ListColumn{"r_factor", of<&Entry::experimental_info, &ExperimentalInfo::r_factor>},
    ListColumn{"cross_references", of<&Entry::cross_reference_info, &reference_count>},
};

constexpr const char* usual_columns = "identifier,formula,name,journal,year,atoms";

}  // namespace

std::vector<ListColumn> chosen_columns(const std::string& names) {
  std::vector<ListColumn> chosen;
  std::istringstream list(names.empty() ? usual_columns : names);
  for (std::string name; std::getline(list, name, ',');) {
    const auto found = std::find_if(columns_of_entries.begin(), columns_of_entries.end(),
                                    [&](const ListColumn& column) { return column.name == name; });
    if (found == columns_of_entries.end()) {
      throw ToolError(ExitCode::usage, unknown_name("column", name, list_columns()));
    }
    chosen.push_back(*found);
  }
  return chosen;
}

std::vector<TableOutput::Column> headings(const std::vector<ListColumn>& columns) {
  std::vector<TableOutput::Column> names;
  for (const ListColumn& column : columns) names.emplace_back(column.name, column.separator);
  return names;
}

std::vector<TableCell> row_of(const std::vector<ListColumn>& columns, const Entry& entry) {
  std::vector<TableCell> row;
  for (const ListColumn& column : columns) row.push_back(column.cell(entry));
  return row;
}

std::vector<std::string> list_columns() {
  std::vector<std::string> names;
  for (const ListColumn& column : columns_of_entries) names.emplace_back(column.name);
  return names;
}
