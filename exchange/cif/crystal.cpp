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

std::string cell_text(const CifColumn& column, std::size_t row) {
  return row < column.count ? one_line(cif_string(column[row])) : std::string();
}

void warn_of_repeated_labels(const CifSource& source, const std::vector<THandle<Atom>>& atoms, int line) {
  std::set<std::string> seen;
  std::set<std::string> repeated;
  for (const auto& atom : atoms) {
    if (!seen.insert(atom->label).second) repeated.insert(atom->label);
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
  const CifColumn symbols = values.column_beside(labels, tag("_atom_site_type_symbol"));
  const std::array places = {values.column_beside(labels, tag("_atom_site_fract_x")),
                             values.column_beside(labels, tag("_atom_site_fract_y")),
                             values.column_beside(labels, tag("_atom_site_fract_z"))};
  const CifColumn occupancies = values.column_beside(labels, tag("_atom_site_occupancy"));
  const std::set<std::string> in_formula = formula_elements(formula);
  std::vector<THandle<Atom>> atoms;
  std::vector<std::string> without_place;
  std::set<std::string> without_element;
  for (std::size_t row = 0; row < labels.count; ++row) {
    const std::string symbol = cell_text(symbols, row);
    const std::string label = has_labels ? values.plain(labels[row], labels.line) : symbol;
    const std::array place = {cif_number(cell_text(places[0], row)), cif_number(cell_text(places[1], row)),
                              cif_number(cell_text(places[2], row))};
    if (!place[0] || !place[1] || !place[2]) {
      if (!label.empty()) without_place.push_back(label);
      continue;
    }
    const THandle<Atom> atom(new Atom);
    atom->label = label;
    atom->element = element_of_atom(symbol, label, in_formula);
    if (atom->element.empty()) without_element.insert(label);
    atom->position = {place[0]->value(), place[1]->value(), place[2]->value()};
    const std::string occupancy = cell_text(occupancies, row);
    const auto share = cif_number(occupancy);
    if (share) atom->occupancy = share->value();
    if (!share && !occupancy.empty()) {
      source.warn(labels.line, "the occupancy of {} is not a number: '{}'", label, occupancy);
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

THandle<PublishedGeometry> published_geometry_of(const CifSource& source,
                                                 const std::vector<THandle<Atom>>& atoms) {
  const CifValues& values = source.values();
  const CifColumn first = values.column(tag("_geom_bond_atom_site_label_1"));
  const CifColumn second = values.column_beside(first, tag("_geom_bond_atom_site_label_2"));
  const CifColumn distances = values.column_beside(first, tag("_geom_bond_distance"));
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
    const std::string distance = cell_text(distances, row);
    const auto length = cif_number(distance);
    if (!length && !distance.empty())
      source.warn(first.line, "the length of a bond is not a number: '{}'", distance);
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
