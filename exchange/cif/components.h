// The components of an entry from the values of a block, a function each.
// Internal: callers want exchange/cif_reader.h.
#pragma once

#include <chemistry/atom.h>
#include <chemistry/cell.h>
#include <database_entry/entries/crystal_structure_database_entry.h>
#include <database_entry/records/chemical_info.h>
#include <database_entry/records/crystal_info.h>
#include <database_entry/records/editors_info.h>
#include <database_entry/records/experimental_info.h>
#include <database_entry/records/publication.h>
#include <database_entry/records/published_geometry.h>
#include <database_entry/references/deposition_info.h>
#include <exchange/import_result.h>
#include <fmt/format.h>
#include <symmetry/crystal_symmetry_operator.h>
#include <utilities/t_handle.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "exchange/cif/values.h"

// What a component is made from, and where is noted what is missing and what looks wrong.
class CifSource {
 public:
  CifSource(const CifValues& values, ImportResult& result) : values_(values), result_(result) {}

  [[nodiscard]] const CifValues& values() const { return values_; }
  [[nodiscard]] ImportResult& result() const { return result_; }

  template <class... Parts>
  void warn(int line, fmt::format_string<Parts...> format, Parts&&... parts) const {
    result_.warnings.push_back({line, fmt::format(format, std::forward<Parts>(parts)...)});
  }
  void set_absent(const char* name) const { result_.absent.emplace_back(name); }

  // Under `name` it is absent.
  [[nodiscard]] std::string text(const char* name, CifTagRange tags) const;
  // Words without any digit ("not measured") say that there is no number.
  [[nodiscard]] std::optional<double> number(const char* name, CifTagRange tags) const;

 private:
  const CifValues& values_;
  ImportResult& result_;
};

[[nodiscard]] Publication publication_of(const CifSource& source);
[[nodiscard]] ChemicalInfo chemical_info_of(const CifSource& source);
[[nodiscard]] CrystalInfo crystal_info_of(const CifSource& source);
[[nodiscard]] ExperimentalInfo experimental_info_of(const CifSource& source);
[[nodiscard]] EditorsInfo editors_info_of(const CifSource& source);

// Of cod_database_code and amcsd_database_code: seven digits; empty without such a code.
struct DatabaseCodes {
  std::string cod;
  std::string amcsd;
};
[[nodiscard]] DatabaseCodes database_codes_of(const CifSource& source);
[[nodiscard]] DepositionInfo deposition_info_of(const CifSource& source, const DatabaseCodes& codes);

[[nodiscard]] Cell cell_of(const CifSource& source);
using Operators = std::vector<CrystalSymmetryOperator>;
// Those of the file, else of the names of its space group, of which the cell's lengths and angles tell the
// setting.
[[nodiscard]] Operators operators_of(const CifSource& source, const Cell& cell);
[[nodiscard]] std::vector<THandle<Atom>> atoms_of(const CifSource& source, const std::string& formula);
// The alternatives of the crystal's disorder, each with its atoms, in the order of the file; null where all
// is ordered.
[[nodiscard]] THandle<DisorderSelectors> disorder_selectors_of(const CifSource& source,
                                                               const std::vector<THandle<Atom>>& atoms);
[[nodiscard]] THandle<PublishedGeometry> published_geometry_of(const CifSource& source,
                                                               const std::vector<THandle<Atom>>& atoms);
