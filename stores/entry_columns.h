// What an entry can be found by: its derived columns.
//
//   const EntryColumns columns = entry_columns(entry, origin);
//   if (columns.year) std::cout << *columns.year;
//   for_each_entry_column([&](const auto& column) { std::cout << column.short_name << '\n'; });
//
// Everything here is made from the components and the origin of an entry, and can be made anew at any time.
// "Not known" is an empty optional or an empty list, never 0.0 and never an empty text; a number is always
// finite. Texts are bytes, mostly UTF-8, and are ordered as bytes whatever the locale.
//
// One table, for_each_entry_column(), names every column in the short form of queries, in filters and in SQL.
// Stores keep the columns in that order, so a new one goes to the end and needs a new version of the schema.
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>
#include <stores/entry_origin.h>
#include <stores/export.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// How often an element occurs in the formula of an entry.
struct ElementCount {
  std::string symbol;  // "Ti"; deuterium is "D"
  double count = 0.0;  // greater than zero

  friend bool operator==(const ElementCount&, const ElementCount&) = default;
};

struct EntryColumns {
  std::string identifier;

  // Of the formula; of the atoms of the unit cell, over Z where that is known, where there is no formula that
  // can be read. In the order of their symbols; empty when not known.
  std::vector<ElementCount> elements;
  std::optional<std::int64_t> element_count;  // how many different elements
  std::optional<std::string> formula;         // in Hill order with blanks: "C10 H8", "O2 Ti"
  std::optional<std::string>
      reduced_formula;  // "O2Ti": integers without a common divisor, in alphabetical order
  std::optional<std::string> anonymous_formula;    // "A2B"
  std::optional<std::string> hill_formula;         // "C10H8"; only where all counts are integers
  std::optional<std::string> descriptive_formula;  // as the entry has it
  std::optional<std::int64_t> atom_count;          // sites of the asymmetric unit

  std::vector<std::string> names;     // the name, then the synonyms
  std::vector<std::string> authors;   // as published: "R.W.G.Wyckoff"
  std::vector<std::string> surnames;  // of the same authors: "Wyckoff"
  std::vector<std::string> journals;  // title and CODEN
  std::optional<std::int64_t> coden;  // the journal's number in the list
  std::optional<std::int64_t> year;
  std::optional<std::string> volume_number;
  std::optional<std::string> page;

  // Of the cell: ångström, degrees, cubic ångström.
  std::optional<double> a, b, c, alpha, beta, gamma, volume;
  // Of the Niggli reduced cell of the primitive cell.
  std::optional<double> reduced_a, reduced_b, reduced_c, reduced_alpha, reduced_beta, reduced_gamma,
      reduced_volume;
  std::optional<std::int64_t> space_group;  // its number, from the operators

  std::optional<double> density;  // measured, else calculated; grams per cubic centimetre
  std::optional<double> measured_density;
  std::optional<double> calculated_density;
  std::optional<double> r_factor;
  std::optional<double> temperature;  // kelvin

  std::vector<std::string> depositions;  // each text, and the numbers in it
  std::vector<std::string> related;      // identifiers of the entries that this one refers to

  std::optional<std::string> source;  // the file that it came from
  std::optional<std::string> block;
  std::optional<std::string> sha256;
  std::optional<std::string> stored_at;  // "2007-04-05T14:30:20Z"

  friend bool operator==(const EntryColumns&, const EntryColumns&) = default;
};

// One row of the table of columns.
template <class T>
struct EntryColumn {
  using Type = T;
  // A list of texts, or of elements.
  static constexpr bool is_list =
      std::is_same_v<T, std::vector<std::string>> || std::is_same_v<T, std::vector<ElementCount>>;
  static constexpr bool is_text = std::is_same_v<T, std::string> ||
                                  std::is_same_v<T, std::optional<std::string>> ||
                                  std::is_same_v<T, std::vector<std::string>>;
  static constexpr bool is_elements = std::is_same_v<T, std::vector<ElementCount>>;
  static constexpr bool is_integer = std::is_same_v<T, std::optional<std::int64_t>>;
  static constexpr bool is_number = std::is_same_v<T, std::optional<double>>;

  const char* short_name;   // in the short form of queries; empty for a column that has none there
  const char* filter_name;  // the standard's name of the property, or ours with its prefix
  const char* sql_name;     // the name of its column in the table `entry`
  int number;               // of the column; never changes
  T EntryColumns::*member;
};

// Calls `visit(column)` for each column, in the order of their numbers.
template <class Visit>
constexpr void for_each_entry_column(Visit&& visit);

// The columns of an entry. What an accessor of the entry throws passes through.
[[nodiscard]] STORES_EXPORT EntryColumns entry_columns(const CrystalStructureDatabaseEntry& entry,
                                                       const EntryOrigin& origin);

// A text as it is compared where letters of either case are equal: A to Z, and the capital letters of Latin,
// Greek and Cyrillic in UTF-8, become small. Other bytes stay. Does not depend on the locale.
[[nodiscard]] STORES_EXPORT std::string folded(std::string_view text);

template <class Visit>
constexpr void for_each_entry_column(Visit&& visit) {
  int number = 0;
  const auto row = [&]<class T>(const char* short_name, const char* filter_name, const char* sql_name,
                                T EntryColumns::*member) {
    visit(EntryColumn<T>{short_name, filter_name, sql_name, ++number, member});
  };
  row("id", "id", "identifier", &EntryColumns::identifier);
  row("", "elements", "elements", &EntryColumns::elements);
  row("nelements", "nelements", "element_count", &EntryColumns::element_count);
  row("formula", "_dbentry_formula", "formula", &EntryColumns::formula);
  row("reduced", "chemical_formula_reduced", "reduced_formula", &EntryColumns::reduced_formula);
  row("", "chemical_formula_anonymous", "anonymous_formula", &EntryColumns::anonymous_formula);
  row("", "chemical_formula_hill", "hill_formula", &EntryColumns::hill_formula);
  row("", "chemical_formula_descriptive", "descriptive_formula", &EntryColumns::descriptive_formula);
  row("natoms", "_dbentry_natoms", "atom_count", &EntryColumns::atom_count);
  row("name", "_dbentry_name", "names", &EntryColumns::names);
  row("", "_dbentry_published_author", "authors", &EntryColumns::authors);
  row("author", "_dbentry_author", "surnames", &EntryColumns::surnames);
  row("journal", "_dbentry_journal", "journals", &EntryColumns::journals);
  row("coden", "_dbentry_coden", "coden", &EntryColumns::coden);
  row("year", "_dbentry_year", "year", &EntryColumns::year);
  row("volume_number", "_dbentry_volume_number", "volume_number", &EntryColumns::volume_number);
  row("page", "_dbentry_page", "page", &EntryColumns::page);
  row("a", "_dbentry_a", "a", &EntryColumns::a);
  row("b", "_dbentry_b", "b", &EntryColumns::b);
  row("c", "_dbentry_c", "c", &EntryColumns::c);
  row("alpha", "_dbentry_alpha", "alpha", &EntryColumns::alpha);
  row("beta", "_dbentry_beta", "beta", &EntryColumns::beta);
  row("gamma", "_dbentry_gamma", "gamma", &EntryColumns::gamma);
  row("volume", "_dbentry_volume", "volume", &EntryColumns::volume);
  row("", "_dbentry_reduced_a", "reduced_a", &EntryColumns::reduced_a);
  row("", "_dbentry_reduced_b", "reduced_b", &EntryColumns::reduced_b);
  row("", "_dbentry_reduced_c", "reduced_c", &EntryColumns::reduced_c);
  row("", "_dbentry_reduced_alpha", "reduced_alpha", &EntryColumns::reduced_alpha);
  row("", "_dbentry_reduced_beta", "reduced_beta", &EntryColumns::reduced_beta);
  row("", "_dbentry_reduced_gamma", "reduced_gamma", &EntryColumns::reduced_gamma);
  row("", "_dbentry_reduced_volume", "reduced_volume", &EntryColumns::reduced_volume);
  row("sg", "space_group_it_number", "space_group", &EntryColumns::space_group);
  row("density", "_dbentry_density", "density", &EntryColumns::density);
  row("", "_dbentry_measured_density", "measured_density", &EntryColumns::measured_density);
  row("", "_dbentry_calculated_density", "calculated_density", &EntryColumns::calculated_density);
  row("r_factor", "_dbentry_r_factor", "r_factor", &EntryColumns::r_factor);
  row("temperature", "_dbentry_temperature", "temperature", &EntryColumns::temperature);
  row("deposition", "_dbentry_deposition", "depositions", &EntryColumns::depositions);
  row("refers_to", "_dbentry_refers_to", "related", &EntryColumns::related);
  row("source", "_dbentry_source", "source", &EntryColumns::source);
  row("", "_dbentry_block", "block", &EntryColumns::block);
  row("", "_dbentry_sha256", "sha256", &EntryColumns::sha256);
  row("", "last_modified", "stored_at", &EntryColumns::stored_at);
}
