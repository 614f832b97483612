#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "exchange/cif/components.h"
#include "exchange/cif/elements.h"
#include "exchange/cif/numbers.h"
#include "exchange/cif/readable_text.h"

namespace {

// No crystal has three sharp angles below this and three edges as long as right angles are wide.
bool looks_swapped(const Cell& cell) {
  return std::max({cell.alpha(), cell.beta(), cell.gamma()}) < 30.0 &&
         std::min({cell.a(), cell.b(), cell.c()}) >= 60.0;
}

// What a column says in a row; empty where there is no such column.
class Column {
 public:
  Column(const CifValues& values, const CifColumn& column) : values_(values), column_(column) {}

  [[nodiscard]] std::string text(std::size_t row) const {
    return row < column_.count ? values_.plain(column_[row], column_.line) : std::string();
  }
  [[nodiscard]] std::optional<UncertainValue> number(std::size_t row) const {
    if (row >= column_.count) return std::nullopt;
    const auto text = plain_cif_text(column_[row]);
    return text ? cif_number(*text) : cif_number(values_.plain(column_[row], column_.line));
  }

 private:
  const CifValues& values_;
  CifColumn column_;
};

void warn_of_repeated_labels(const CifSource& source, const std::vector<THandle<Atom>>& atoms, int line) {
  std::vector<std::string_view> labels;
  labels.reserve(atoms.size());
  for (const auto& atom : atoms) labels.push_back(atom->label);
  std::sort(labels.begin(), labels.end());
  std::vector<std::string_view> repeated;
  for (std::size_t i = 1; i < labels.size(); ++i) {
    if (labels[i] == labels[i - 1] && (repeated.empty() || repeated.back() != labels[i]))
      repeated.push_back(labels[i]);
  }
  if (!repeated.empty()) source.warn(line, "repeated atom labels: {}", fmt::join(repeated, ", "));
}

}  // namespace

Cell cell_of(const CifSource& source) {
  const Cell unknown;
  const double a = source.number("a", field("cell.a")).value_or(unknown.a());
  const double b = source.number("b", field("cell.b")).value_or(unknown.b());
  const double c = source.number("c", field("cell.c")).value_or(unknown.c());
  const double alpha = source.number("alpha", field("cell.alpha")).value_or(unknown.alpha());
  const double beta = source.number("beta", field("cell.beta")).value_or(unknown.beta());
  const double gamma = source.number("gamma", field("cell.gamma")).value_or(unknown.gamma());
  const Cell without_operators(a, b, c, alpha, beta, gamma, THandle<Operators>(new Operators));
  const THandle<Operators> operators(new Operators(operators_of(source, without_operators)));
  const Cell cell(a, b, c, alpha, beta, gamma, operators);
  if (looks_swapped(cell)) {
    const int line = source.values().first(field("cell.a")).value_or(CifText()).line;
    source.warn(line, "the lengths of the cell look like angles, and its angles like lengths");
  }
  return cell;
}

std::vector<THandle<Atom>> atoms_of(const CifSource& source, const std::string& formula) {
  const CifValues& values = source.values();
  CifColumn labels = values.column(tag("_atom_site_label"));
  if (!labels) labels = values.column(tag("_atom_site_fract_x"));
  const bool has_labels = labels.count != 0 && values.column(tag("_atom_site_label")).count != 0;
  const auto beside = [&](CifTag tag) { return Column(values, values.column_beside(labels, tag)); };
  const Column symbols = beside(tag("_atom_site_type_symbol"));
  const std::array places = {beside(tag("_atom_site_fract_x")), beside(tag("_atom_site_fract_y")),
                             beside(tag("_atom_site_fract_z"))};
  const Column occupancies = beside(tag("_atom_site_occupancy"));
  const std::set<std::string> in_formula = formula_elements(formula);
  std::vector<THandle<Atom>> atoms;
  atoms.reserve(labels.count);
  std::vector<std::string> without_place;
  std::set<std::string> without_element;
  for (std::size_t row = 0; row < labels.count; ++row) {
    const std::string symbol = symbols.text(row);
    std::string label = has_labels ? values.plain(labels[row], labels.line) : symbol;
    const std::array place = {places[0].number(row), places[1].number(row), places[2].number(row)};
    if (!place[0] || !place[1] || !place[2]) {
      if (!label.empty()) without_place.push_back(label);
      continue;
    }
    const THandle<Atom> atom(new Atom);
    atom->element = element_of_atom(symbol, label, in_formula);
    atom->label = std::move(label);
    if (atom->element.empty()) without_element.insert(atom->label);
    atom->position = {place[0]->value(), place[1]->value(), place[2]->value()};
    if (const auto share = occupancies.number(row)) {
      atom->occupancy = share->value();
    } else if (const std::string occupancy = occupancies.text(row); !occupancy.empty()) {
      source.warn(labels.line, "the occupancy of {} is not a number: '{}'", atom->label, occupancy);
    }
    atoms.push_back(atom);
  }
  if (atoms.empty()) source.set_absent("atoms");
  if (!without_place.empty()) {
    source.warn(labels.line, "atoms without a place are left out: {}", fmt::join(without_place, ", "));
  }
  if (!without_element.empty()) {
    source.warn(labels.line, "atoms of no known element: {}", fmt::join(without_element, ", "));
  }
  warn_of_repeated_labels(source, atoms, labels.line);
  return atoms;
}

THandle<DisorderSelectors> disorder_selectors_of(const CifSource& source,
                                                 const std::vector<THandle<Atom>>& atoms) {
  const CifValues& values = source.values();
  const CifColumn group_column = values.column(tag("_atom_site_disorder_group"));
  const auto beside = [&](CifTag tag) { return Column(values, values.column_beside(group_column, tag)); };
  const Column groups(values, group_column);
  const Column assemblies = beside(tag("_atom_site_disorder_assembly"));
  const std::array places = {beside(tag("_atom_site_fract_x")), beside(tag("_atom_site_fract_y")),
                             beside(tag("_atom_site_fract_z"))};
  const THandle<DisorderSelectors> selectors(new DisorderSelectors);
  std::map<std::pair<std::string, std::string>, THandle<DisorderSelector>> known;
  std::size_t next = 0;
  for (std::size_t row = 0; row < group_column.count && next < atoms.size(); ++row) {
    // Rows without a place gave no atom.
    if (!places[0].number(row) || !places[1].number(row) || !places[2].number(row)) continue;
    const THandle<Atom>& atom = atoms[next++];
    const std::string group = groups.text(row);
    if (group.empty()) continue;
    THandle<DisorderSelector>& selector = known[{assemblies.text(row), group}];
    if (selector.is_null()) {
      selector = THandle<DisorderSelector>(new DisorderSelector{assemblies.text(row), group, {}});
      selectors->push_back(selector);
    }
    selector->atoms.push_back(atom);
  }
  return selectors->empty() ? THandle<DisorderSelectors>() : selectors;
}

THandle<PublishedGeometry> published_geometry_of(const CifSource& source,
                                                 const std::vector<THandle<Atom>>& atoms) {
  const CifValues& values = source.values();
  const CifColumn first = values.column(tag("_geom_bond_atom_site_label_1"));
  const CifColumn second = values.column_beside(first, tag("_geom_bond_atom_site_label_2"));
  const CifColumn distances = values.column_beside(first, tag("_geom_bond_distance"));
  const Column lengths(values, distances);
  // The first atom of a repeated label.
  std::map<std::string, THandle<Atom>> by_label;
  if (second && distances) {
    for (const auto& atom : atoms) by_label.emplace(atom->label, atom);
  }
  using Bonds = std::vector<THandle<PublishedBond>>;
  const THandle<Bonds> bonds(new Bonds);
  std::set<std::string> unknown;
  for (std::size_t row = 0; second && distances && row < first.count; ++row) {
    const std::string labels[] = {values.plain(first[row], first.line),
                                  values.plain(second[row], first.line)};
    const auto one = by_label.find(labels[0]);
    const auto other = by_label.find(labels[1]);
    if (one == by_label.end()) unknown.insert(labels[0]);
    if (other == by_label.end()) unknown.insert(labels[1]);
    const auto length = lengths.number(row);
    if (const std::string text = length ? "" : lengths.text(row); !text.empty())
      source.warn(first.line, "the length of a bond is not a number: '{}'", text);
    if (one == by_label.end() || other == by_label.end() || !length) continue;
    bonds->push_back(
        THandle<PublishedBond>(new PublishedBond(one->second, other->second, *length, false, false)));
  }
  if (!unknown.empty()) {
    source.warn(first.line, "bonds to unknown atoms are left out: {}", fmt::join(unknown, ", "));
  }
  if (!bonds->empty()) return THandle<PublishedGeometry>(new PublishedGeometry(bonds, false));
  source.set_absent("published_geometry");
  return THandle<PublishedGeometry>();
}
