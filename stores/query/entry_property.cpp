#include <stores/query/entry_property.h>
#include <stores/query/nearest_word.h>

#include <algorithm>
#include <array>
#include <type_traits>

namespace {

constexpr std::string_view folded_suffix = "_folded";
constexpr std::string_view count_prefix = "_dbentry_count_";
constexpr std::string_view own_prefix = "_dbentry_";

// Of the standard's properties of structures, those that are not kept here.
constexpr std::array<std::string_view, 22> not_kept = {
    "immutable_id",
    "dimension_types",
    "nperiodic_dimensions",
    "lattice_vectors",
    "space_group_symmetry_operations_xyz",
    "space_group_symbol_hall",
    "space_group_symbol_hermann_mauguin",
    "space_group_symbol_hermann_mauguin_extended",
    "cartesian_site_positions",
    "fractional_site_positions",
    "site_coordinate_span",
    "site_coordinate_span_description",
    "nsites",
    "species_at_sites",
    "species",
    "assemblies",
    "wyckoff_positions",
    "structure_features",
    "optimization_type",
    "nframes",
    "reference_frames",
    "relationships",
};

template <class T>
EntryProperty::Type type_of(std::string_view filter_name) {
  using Column = EntryColumn<T>;
  if (Column::is_elements) return EntryProperty::Type::elements;
  if (Column::is_list) return EntryProperty::Type::texts;
  if (filter_name == "last_modified") return EntryProperty::Type::time;
  if (Column::is_text) return EntryProperty::Type::text;
  return Column::is_integer ? EntryProperty::Type::integer : EntryProperty::Type::number;
}

std::vector<EntryProperty> make_properties() {
  std::vector<EntryProperty> properties;
  for_each_entry_column([&]<class T>(const EntryColumn<T>& column) {
    properties.push_back({type_of<T>(column.filter_name), column.short_name, column.filter_name,
                          column.sql_name, column.number, column.member});
  });
  properties.push_back({EntryProperty::Type::ratios, "", "elements_ratios", "", 0, &EntryColumns::elements});
  return properties;
}

std::vector<std::string> make_symbols() {
  constexpr std::string_view symbols =
      "H He Li Be B C N O F Ne Na Mg Al Si P S Cl Ar K Ca Sc Ti V Cr Mn Fe Co Ni Cu Zn Ga Ge As Se Br Kr Rb "
      "Sr Y Zr "
      "Nb Mo Tc Ru Rh Pd Ag Cd In Sn Sb Te I Xe Cs Ba La Ce Pr Nd Pm Sm Eu Gd Tb Dy Ho Er Tm Yb Lu Hf Ta W "
      "Re Os Ir "
      "Pt Au Hg Tl Pb Bi Po At Rn Fr Ra Ac Th Pa U Np Pu Am Cm Bk Cf Es Fm Md No Lr Rf Db Sg Bh Hs Mt Ds Rg "
      "Cn Nh "
      "Fl Mc Lv Ts Og D T";
  std::vector<std::string> result(1);
  for (const char letter : symbols) {
    if (letter == ' ') {
      result.emplace_back();
    } else {
      result.back() += letter;
    }
  }
  return result;
}

const EntryProperty& named(std::string_view filter_name) {
  return *std::find_if(entry_properties().begin(), entry_properties().end(),
                       [&](const EntryProperty& property) { return property.filter_name == filter_name; });
}

std::string small(std::string text) {
  text[0] = static_cast<char>(text[0] - 'A' + 'a');
  return text;
}

std::string unknown_name(const std::string& name, const std::vector<std::string>& known) {
  // What is no name is not repeated at length.
  constexpr std::size_t longest_shown = 60;
  std::string result =
      "there is no property '" + name.substr(0, longest_shown) + (name.size() > longest_shown ? "...'" : "'");
  if (const auto nearest = nearest_word(name, known)) result += "; did you mean '" + *nearest + "'?";
  return result;
}

}  // namespace

const std::vector<EntryProperty>& entry_properties() {
  static const std::vector<EntryProperty> properties = make_properties();
  return properties;
}

const EntryProperty& elements_property() {
  static const EntryProperty& property = named("elements");
  return property;
}

const EntryProperty& element_count_property() {
  static const EntryProperty& property = named("nelements");
  return property;
}

const std::vector<std::string>& element_symbols() {
  static const std::vector<std::string> symbols = make_symbols();
  return symbols;
}

std::optional<PropertyName> property_of_filter(std::string_view name) {
  for (const EntryProperty& property : entry_properties()) {
    const std::string_view own = property.filter_name;
    if (name == own) return PropertyName{&property};
    if (property.holds_texts() && name.size() == own.size() + folded_suffix.size() && name.starts_with(own) &&
        name.ends_with(folded_suffix)) {
      return PropertyName{&property, true};
    }
  }
  if (name.starts_with(count_prefix)) {
    for (const std::string& symbol : element_symbols()) {
      if (name.substr(count_prefix.size()) == small(symbol))
        return PropertyName{&elements_property(), false, symbol};
    }
  }
  return std::nullopt;
}

std::optional<PropertyName> property_of_text(std::string_view name) {
  if (name.empty()) return std::nullopt;
  for (const EntryProperty& property : entry_properties()) {
    if (name == property.short_name) return PropertyName{&property, property.holds_texts()};
  }
  return std::nullopt;
}

std::string filter_name(const PropertyName& name) {
  if (!name.element.empty()) return std::string(count_prefix) + small(name.element);
  return name.property->filter_name + std::string(name.folded ? folded_suffix : "");
}

std::string short_name(const PropertyName& name) {
  if (!name.element.empty()) return name.element;
  if (name.property->holds_texts() != name.folded) return "";
  return name.property->short_name;
}

std::string unknown_in_filter(const std::string& name) {
  const std::string first = name.substr(0, name.find('.'));
  for (const std::string_view type : {"structures", "references", "calculations", "trajectories", "files"}) {
    if (first == type) return "relationships with other entries ('" + name + "') are not supported";
  }
  if (std::find(not_kept.begin(), not_kept.end(), first) != not_kept.end()) {
    return "the standard's property '" + name + "' is not kept here";
  }
  std::vector<std::string> known;
  for (const EntryProperty& property : entry_properties()) {
    known.emplace_back(property.filter_name);
    // A name of the short form is near to the same name with its prefix.
    if (name == property.short_name || std::string(own_prefix) + name == property.filter_name) {
      return "there is no property '" + name + "'; did you mean '" + property.filter_name + "'?";
    }
  }
  return unknown_name(name, known);
}

std::string unknown_in_text(const std::string& name) {
  std::vector<std::string> known;
  for (const EntryProperty& property : entry_properties()) {
    if (name == property.filter_name && *property.short_name != '\0') {
      return "there is no property '" + name + "' in the short form; did you mean '" + property.short_name +
             "'?";
    }
    if (*property.short_name != '\0') known.emplace_back(property.short_name);
  }
  known.emplace_back("cell");
  known.insert(known.end(), element_symbols().begin(), element_symbols().end());
  return unknown_name(name, known);
}
