#include <chemistry/atom.h>
#include <exchange/cif_import.h>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <symmetry/crystal_symmetry_operator.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <gemmi/elem.hpp>
#include <gemmi/symmetry.hpp>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "exchange/cif/document.h"
#include "exchange/cif/text.h"

namespace {

using StoredEntry = CrystalStructureImmediateDatabaseEntry;
using Operators = std::vector<CrystalSymmetryOperator>;
using Tags = std::initializer_list<const char*>;

std::string lower_case(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

bool is_letter(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

bool is_shared(const CifBlock& block, const CifDocument& document) {
  if (block.name().empty()) return true;  // global_
  return lower_case(block.name()) == "global" && document.blocks().size() > 1 &&
         !block.has_any_value("_cell_length_a");
}

// ---- Values of a block and of those it inherits from

struct Value {
  std::string text;
  int line = 0;
};

class Values {
 public:
  // The block itself first, then those it inherits from, the nearest first.
  explicit Values(std::vector<CifBlock> blocks) : blocks_(std::move(blocks)) {}

  // The first value there is, tag by tag, block by block.
  [[nodiscard]] std::optional<Value> first(const Tags& tags) const {
    for (const CifBlock& block : blocks_) {
      for (const char* const tag : tags) {
        const std::vector<Value> values = all(block, tag);
        if (!values.empty()) return values.front();
      }
    }
    return std::nullopt;
  }

  // All values of the tag in the first block that has any.
  [[nodiscard]] std::vector<Value> all(const char* tag) const {
    for (const CifBlock& block : blocks_) {
      std::vector<Value> values = all(block, tag);
      if (!values.empty()) return values;
    }
    return {};
  }

  // Rows of these columns, of which those that begin with '?' may lack.
  [[nodiscard]] CifTable table(const char* prefix, const std::vector<std::string>& columns) const {
    for (const CifBlock& block : blocks_) {
      if (std::optional<CifTable> table = block.table(prefix, columns)) return *table;
    }
    return {};
  }

 private:
  static std::vector<Value> all(const CifBlock& block, const char* tag) {
    std::vector<Value> values;
    for (const CifValue& value : block.values(tag)) {
      std::string text = readable_text(cif_string(value.raw));
      if (!text.empty()) values.push_back({std::move(text), value.line});
    }
    return values;
  }

  std::vector<CifBlock> blocks_;
};

// ---- Chemistry of symbols

bool is_element(const std::string& symbol) {
  return gemmi::Element(symbol.c_str()) != gemmi::El::X && symbol != "X";
}

// The letters at the start, the first in upper case and the others in lower case.
std::string leading_symbol(const std::string& text, std::size_t longest) {
  std::string symbol;
  while (symbol.size() < std::min(longest, text.size()) && is_letter(text[symbol.size()])) {
    const auto c = static_cast<unsigned char>(text[symbol.size()]);
    symbol += static_cast<char>(symbol.empty() ? std::toupper(c) : std::tolower(c));
  }
  return symbol;
}

// The symbols in a formula such as "Mg2 Al2 Si O9 H4" or "(K.88 Na.06)".
std::set<std::string> formula_elements(const std::string& formula) {
  std::set<std::string> elements;
  for (std::size_t i = 0; i < formula.size(); ++i) {
    if (std::isupper(static_cast<unsigned char>(formula[i])) == 0) continue;
    std::string symbol(1, formula[i]);
    if (i + 1 < formula.size() && std::islower(static_cast<unsigned char>(formula[i + 1])) != 0) {
      symbol += formula[i + 1];
    }
    elements.insert(symbol);
  }
  return elements;
}

// A label begins with its element, but "Os1" may be the first oxygen of a silicate group and "CA1" calcium.
// Empty when no reading is an element.
std::string element_of_label(const std::string& label, const std::set<std::string>& in_formula) {
  const std::string two = leading_symbol(label, 2);
  const std::string one = leading_symbol(label, 1);
  // The way mineral files write a water molecule by its oxygen atom: "Wat1".
  if (lower_case(label.substr(0, 3)) == "wat" && in_formula.count("W") == 0) return "O";
  const bool as_written = label.compare(0, two.size(), two) == 0;
  std::vector<std::string> readings = {two, one};
  if (!as_written) std::reverse(readings.begin(), readings.end());
  for (const std::string& reading : readings) {
    if (is_element(reading) && in_formula.count(reading) != 0) return reading;
  }
  for (const std::string& reading : readings) {
    if (is_element(reading)) return reading;
  }
  return "";
}

// ---- One block

std::optional<ExperimentalInfo::RadiationProbe> probe_of(const std::string& text) {
  const std::string words = lower_case(text);
  const auto has = [&](const char* word) { return words.find(word) != std::string::npos; };
  if (has("neutron")) return ExperimentalInfo::neutron;
  if (has("electron")) return ExperimentalInfo::electron;
  if (has("gamma") || has("γ")) return ExperimentalInfo::gamma;
  if (has("x-ray") || has("xray") || has("x ray") || has("synchrotron")) return ExperimentalInfo::x_ray;
  // The line of a tube's anode: "MoKα", "Cu K\a1".
  const std::string anode = leading_symbol(text, text.size() > 1 && std::islower(text[1]) != 0 ? 2 : 1);
  const std::size_t line = text.find_first_not_of(" _-", anode.size());
  if (is_element(anode) && line != std::string::npos && (text[line] == 'K' || text[line] == 'L')) {
    return ExperimentalInfo::x_ray;
  }
  return std::nullopt;
}

class EntryMapper {
 public:
  EntryMapper(const std::vector<CifBlock>& blocks, const std::string& unnamed, const JournalFinder& journals)
      : values_(blocks), unnamed_(unnamed), journals_(journals) {
    result_.block = blocks.front().name();
    result_.line = blocks.front().first_line();
  }

  ImportedEntry mapped() {
    const DatabaseEntryIdentifier name(identifier());
    const THandle<Publication> publication(new Publication(this->publication()));
    const THandle<ChemicalInfo> chemical_info(new ChemicalInfo(this->chemical_info()));
    const THandle<CrystalInfo> crystal_info(new CrystalInfo(this->crystal_info()));
    const THandle<ExperimentalInfo> experimental_info(new ExperimentalInfo(this->experimental_info()));
    const THandle<EditorsInfo> editors_info(new EditorsInfo(this->editors_info()));
    const THandle<DepositionInfo> deposition_info(new DepositionInfo(this->deposition_info()));
    const THandle<Cell> cell(new Cell(this->cell()));
    const std::vector<THandle<Atom>> atoms = this->atoms(formula_elements(chemical_info->formula));
    const THandle<CrystalMaker> crystal_maker(new CrystalMaker(cell, atoms));
    result_.entry = THandle<StoredEntry>(new StoredEntry(
        name, crystal_maker, cell, publication, experimental_info, editors_info, chemical_info, crystal_info,
        THandle<ChemicalDiagram>(), THandle<ConnectivityInfo>(new ConnectivityInfo),
        THandle<CrystalDiagramMatch>(), THandle<ConnectivityDiagramMatch>(),
        THandle<CrystalConnectivityMatch>(), THandle<CrossReferenceInfo>(new CrossReferenceInfo),
        deposition_info, THandle<DisorderSelectors>(), published_geometry(atoms)));
    return std::move(result_);
  }

 private:
  template <class... Parts>
  void warn(int line, fmt::format_string<Parts...> format, Parts&&... parts) {
    result_.warnings.push_back({line, fmt::format(format, std::forward<Parts>(parts)...)});
  }

  void set_absent(const char* field) { result_.absent.emplace_back(field); }

  std::string text(const char* field, const Tags& tags) {
    const auto value = values_.first(tags);
    if (!value) set_absent(field);
    return value ? value->text : "";
  }

  std::optional<double> number(const char* field, const Tags& tags) {
    const auto value = values_.first(tags);
    if (!value) {
      set_absent(field);
      return std::nullopt;
    }
    const auto number = cif_number(value->text);
    if (!number) {
      warn(value->line, "{} is not a number: '{}'", field, value->text);
      return std::nullopt;
    }
    return number->value();
  }

  // Seven digits, behind whatever name of the database stands before them; empty without such a code.
  std::string database_code(const Tags& tags) {
    const auto value = values_.first(tags);
    if (!value) return "";
    const std::string code = value->text.substr(value->text.find('#') + 1);
    if (code.size() == 7 && code.find_first_not_of("0123456789") == std::string::npos) return code;
    warn(value->line, "{} is not a code of seven digits: '{}'", *tags.begin(), value->text);
    return "";
  }
  std::string cod_code() { return database_code({"_cod_database_code"}); }
  std::string amcsd_code() { return database_code({"_amcsd_database_code", "_database_code_amcsd"}); }

  std::string identifier() {
    cod_code_ = cod_code();
    amcsd_code_ = amcsd_code();
    if (!cod_code_.empty()) return "C" + cod_code_;
    if (!amcsd_code_.empty()) return "A" + amcsd_code_;
    const bool named = result_.block != "#";  // the parser's name for a bare "data_"
    return named ? result_.block : unnamed_;
  }

  Publication publication() {
    Publication publication;
    for (const Value& author : values_.all("_publ_author_name")) publication.authors.push_back(author.text);
    if (publication.authors.empty()) set_absent("authors");
    const auto coden = values_.first({"_journal_coden_ASTM"});
    const auto title = values_.first({"_journal_name_full"});
    if (!coden && !title) set_absent("journal");
    publication.journal = journals_.find(coden ? coden->text : "", title ? title->text : "");
    publication.volume = text("volume", {"_journal_volume"});
    if (const auto year = values_.first({"_journal_year"})) {
      const auto number = cif_integer(year->text);
      if (!number) warn(year->line, "year is not a number: '{}'", year->text);
      publication.year = number.value_or(publication.year);
    } else {
      set_absent("year");
    }
    publication.page = text("page", {"_journal_page_first"});
    return publication;
  }

  ChemicalInfo chemical_info() {
    ChemicalInfo info;
    info.formula = text(
        "formula", {"_chemical_formula_sum", "_chemical_formula_moiety", "_chemical_formula_structural"});
    for (const char* tag : {"_chemical_name_systematic", "_chemical_name_common", "_chemical_name_mineral"}) {
      const auto name = values_.first({tag});
      if (!name || name->text == info.name) continue;
      if (info.name.empty()) {
        info.name = name->text;
      } else if (std::find(info.synonyms.begin(), info.synonyms.end(), name->text) == info.synonyms.end()) {
        info.synonyms.push_back(name->text);
      }
    }
    if (info.name.empty()) set_absent("name");
    info.source = text("source", {"_chemical_compound_source"});
    return info;
  }

  CrystalInfo crystal_info() {
    CrystalInfo info;
    info.z = number("z", {"_cell_formula_units_Z"}).value_or(info.z);
    info.color = text("color", {"_exptl_crystal_colour"});
    info.habit = text("habit", {"_exptl_crystal_description"});
    return info;
  }

  // A text with the unit that CIF defines for it, where it is a number.
  static std::string with_unit(const std::string& text, const char* unit) {
    return cif_number(text) ? fmt::format("{} {}", text, unit) : text;
  }

  ExperimentalInfo experimental_info() {
    ExperimentalInfo info;
    set_temperature(info);
    info.pressure = with_unit(text("pressure", {"_diffrn_ambient_pressure"}), "kPa");
    info.experimental_density =
        number("experimental_density", {"_exptl_crystal_density_meas"}).value_or(info.experimental_density);
    info.calculated_density =
        number("calculated_density", {"_exptl_crystal_density_diffrn"}).value_or(info.calculated_density);
    info.r_factor =
        number("r_factor", {"_refine_ls_R_factor_gt", "_refine_ls_R_factor_obs", "_refine_ls_R_factor_all"})
            .value_or(info.r_factor);
    set_radiation(info);
    return info;
  }

  void set_temperature(ExperimentalInfo& info) {
    const auto ambient = values_.first({"_diffrn_ambient_temperature"});
    const auto of_cell = values_.first({"_cell_measurement_temperature"});
    if (ambient && of_cell && ambient->text != of_cell->text) {
      warn(of_cell->line,
           "two temperatures: the cell was measured at '{}', the intensities at '{}', which is kept",
           of_cell->text, ambient->text);
    }
    info.temperature = number("temperature", {"_diffrn_ambient_temperature", "_cell_measurement_temperature"})
                           .value_or(info.temperature);
    if (ambient || of_cell) info.temperature_text = with_unit((ambient ? ambient : of_cell)->text, "K");
  }

  void set_radiation(ExperimentalInfo& info) {
    const auto type = values_.first({"_diffrn_radiation_type"});
    if (const auto probe = values_.first({"_diffrn_radiation_probe", "_diffrn_radiation_type"})) {
      const auto known = probe_of(probe->text);
      if (!known) warn(probe->line, "no known kind of radiation: '{}'", probe->text);
      info.probe = known.value_or(info.probe);
    } else {
      set_absent("probe");
    }
    const auto source = values_.first({"_diffrn_source", "_diffrn_radiation_source"});
    const bool type_says_more =
        type && lower_case(type->text) != ExperimentalInfo::radiation_probe_text()->text(info.probe);
    if (source) {
      info.radiation_source = source->text;
    } else if (type_says_more) {
      info.radiation_source = type->text;
    } else {
      set_absent("radiation_source");
    }
  }

  EditorsInfo editors_info() {
    EditorsInfo info;
    const auto created = values_.first({"_audit_creation_date"});
    if (!created) {
      set_absent("accession_date");
    } else if (const auto date = day(created->text)) {
      info.accession_date = *date;
    } else {
      warn(created->line, "accession_date is not a day written year-month-day: '{}'", created->text);
    }
    return info;
  }

  static std::optional<Date> day(const std::string& text) {
    const bool has_form = text.size() == 10 && text[4] == '-' && text[7] == '-';
    const auto year = cif_integer(text.substr(0, 4));
    if (!has_form || !year) return std::nullopt;
    const auto month = cif_integer(text.substr(5, 2));
    const auto day = cif_integer(text.substr(8, 2));
    if (!month || !day) return std::nullopt;
    try {
      return Date(*year, *month, *day);
    } catch (const std::invalid_argument&) {
      return std::nullopt;
    }
  }

  DepositionInfo deposition_info() {
    DepositionInfo info;
    std::vector<std::string> codes;
    if (!cod_code_.empty()) codes.push_back("COD " + cod_code_);
    if (!amcsd_code_.empty()) codes.push_back("AMCSD " + amcsd_code_);
    info.set_text(DepositionInfo::contributor, fmt::format("{}", fmt::join(codes, ", ")));
    if (codes.empty()) set_absent("contributor_code");
    const std::string coeditor = text("coeditor_code", {"_journal_coeditor_code"});
    if (!coeditor.empty()) info.set_text(DepositionInfo::iucr_coeditor_code, "IUCr " + coeditor);
    return info;
  }

  Cell cell() {
    const Cell unknown;
    const std::array<std::optional<double>, 6> given = {
        number("a", {"_cell_length_a"}),      number("b", {"_cell_length_b"}),
        number("c", {"_cell_length_c"}),      number("alpha", {"_cell_angle_alpha"}),
        number("beta", {"_cell_angle_beta"}), number("gamma", {"_cell_angle_gamma"})};
    const double alpha = given[3].value_or(unknown.alpha());
    const double gamma = given[5].value_or(unknown.gamma());
    const Cell cell(given[0].value_or(unknown.a()), given[1].value_or(unknown.b()),
                    given[2].value_or(unknown.c()), alpha, given[4].value_or(unknown.beta()), gamma,
                    THandle<Operators>(new Operators(operators(alpha, gamma))));
    const int line = values_.first({"_cell_length_a"}).value_or(Value()).line;
    if (looks_swapped(cell))
      warn(line, "the lengths of the cell look like angles, and its angles like lengths");
    return cell;
  }

  // No crystal has three sharp angles below this and three edges as long as right angles are wide.
  static bool looks_swapped(const Cell& cell) {
    return std::max({cell.alpha(), cell.beta(), cell.gamma()}) < 30.0 &&
           std::min({cell.a(), cell.b(), cell.c()}) >= 60.0;
  }

  Operators operators(double alpha, double gamma) {
    for (const char* tag : {"_space_group_symop_operation_xyz", "_symmetry_equiv_pos_as_xyz"}) {
      const std::vector<Value> triplets = values_.all(tag);
      if (triplets.empty()) continue;
      if (auto operators = operators_of(triplets); !operators.empty()) {
        result_.operators_from = "operators";
        return operators;
      }
    }
    set_absent("symmetry_operators");
    const auto hall = values_.first({"_space_group_name_Hall", "_symmetry_space_group_name_Hall"});
    if (hall) {
      if (const gemmi::SpaceGroup* group = group_of_hall_name(hall->text)) {
        result_.operators_from = "Hall name";
        return operators_of(group->operations());
      }
      warn(hall->line, "unknown Hall name '{}'", hall->text);
    }
    const auto name = values_.first({"_space_group_name_H-M_alt", "_symmetry_space_group_name_H-M"});
    if (name) {
      // "R 3 c {rhombohedral axes}": the angles tell the axes.
      const std::string symbol = name->text.substr(0, name->text.find(" {"));
      if (const gemmi::SpaceGroup* group = gemmi::find_spacegroup_by_name(symbol, alpha, gamma)) {
        result_.operators_from = "Hermann-Mauguin name";
        return operators_of(group->operations());
      }
      warn(name->line, "unknown Hermann-Mauguin name '{}'", name->text);
    }
    warn(0, "no symmetry operators, and no known name of a space group to take them from");
    return {};
  }

  // None at all when one cannot be read: half a group is no group.
  Operators operators_of(const std::vector<Value>& triplets) {
    Operators operators;
    for (const Value& triplet : triplets) {
      try {
        operators.push_back(CrystalSymmetryOperator(triplet.text));
      } catch (const std::invalid_argument& error) {
        warn(triplet.line, "not a symmetry operator: {}", error.what());
        return {};
      }
    }
    return operators;
  }

  // The names of the tables only: any other text can make the reader of Hall names write outside its
  // variables ("P 3 21") or take memory without bound ("P 1 (x/24,y/24,z/24)").
  static const gemmi::SpaceGroup* group_of_hall_name(std::string name) {
    std::replace(name.begin(), name.end(), '_', ' ');
    for (const gemmi::SpaceGroup& group : gemmi::spacegroup_tables::main)
      if (name == group.hall) return &group;
    return nullptr;
  }

  static Operators operators_of(const gemmi::GroupOps& group) {
    Operators operators;
    for (const gemmi::Op& op : group) operators.push_back(CrystalSymmetryOperator(op.triplet()));
    return operators;
  }

  std::vector<THandle<Atom>> atoms(const std::set<std::string>& in_formula) {
    enum Column : std::size_t { label, type_symbol, x, y, z, occupancy };
    const CifTable table = values_.table(
        "_atom_site_", {"label", "?type_symbol", "?fract_x", "?fract_y", "?fract_z", "?occupancy"});
    std::vector<THandle<Atom>> atoms;
    std::vector<std::string> without_place;
    std::set<std::string> without_element;
    for (const std::vector<std::string>& row : table.rows) {
      const auto cell = [&row](std::size_t column) { return readable_text(cif_string(row[column])); };
      const std::array place = {cif_number(cell(x)), cif_number(cell(y)), cif_number(cell(z))};
      if (!place[0] || !place[1] || !place[2]) {
        without_place.push_back(cell(label).empty() ? "?" : cell(label));
        continue;
      }
      const THandle<Atom> atom(new Atom);
      atom->label = cell(label);
      atom->element = element(cell(type_symbol), atom->label, in_formula);
      if (atom->element.empty()) without_element.insert(atom->label);
      atom->position = {place[0]->value(), place[1]->value(), place[2]->value()};
      const auto share = cif_number(cell(occupancy));
      if (share) atom->occupancy = share->value();
      if (!share && !cell(occupancy).empty()) {
        warn(table.line, "the occupancy of {} is not a number: '{}'", atom->label, cell(occupancy));
      }
      atoms.push_back(atom);
    }
    if (atoms.empty()) set_absent("atoms");
    if (!without_place.empty()) {
      warn(table.line, "atoms without a place are left out: {}", fmt::join(without_place, ", "));
    }
    if (!without_element.empty()) {
      warn(table.line, "atoms of no known element: {}", fmt::join(without_element, ", "));
    }
    warn_of_repeated_labels(atoms, table.line);
    return atoms;
  }

  // "Fe3+" and "O-2" are iron and oxygen; "pb" is lead. Without a known type symbol the label tells.
  static std::string element(const std::string& type_symbol, const std::string& label,
                             const std::set<std::string>& in_formula) {
    const std::string symbol = leading_symbol(type_symbol, type_symbol.size());
    return is_element(symbol) ? symbol : element_of_label(label, in_formula);
  }

  void warn_of_repeated_labels(const std::vector<THandle<Atom>>& atoms, int line) {
    std::set<std::string> seen;
    std::set<std::string> repeated;
    for (const auto& atom : atoms) {
      if (!seen.insert(atom->label).second) repeated.insert(atom->label);
    }
    if (!repeated.empty()) warn(line, "repeated atom labels: {}", fmt::join(repeated, ", "));
  }

  THandle<PublishedGeometry> published_geometry(const std::vector<THandle<Atom>>& atoms) {
    enum Column : std::size_t { first, second, distance };
    // The first atom of a repeated label.
    std::map<std::string, THandle<Atom>> by_label;
    for (const auto& atom : atoms) by_label.emplace(atom->label, atom);
    const CifTable table =
        values_.table("_geom_bond_", {"atom_site_label_1", "atom_site_label_2", "distance"});
    using Bonds = std::vector<THandle<PublishedBond>>;
    const THandle<Bonds> bonds(new Bonds);
    std::set<std::string> unknown;
    for (const std::vector<std::string>& row : table.rows) {
      const auto one = by_label.find(readable_text(cif_string(row[first])));
      const auto other = by_label.find(readable_text(cif_string(row[second])));
      const auto length = cif_number(cif_string(row[distance]));
      if (one == by_label.end()) unknown.insert(cif_string(row[first]));
      if (other == by_label.end()) unknown.insert(cif_string(row[second]));
      if (!length) warn(table.line, "the length of a bond is not a number: '{}'", row[distance]);
      if (one == by_label.end() || other == by_label.end() || !length) continue;
      bonds->push_back(
          THandle<PublishedBond>(new PublishedBond(one->second, other->second, *length, false, false)));
    }
    if (!unknown.empty()) {
      warn(table.line, "bonds to unknown atoms are left out: {}", fmt::join(unknown, ", "));
    }
    if (!bonds->empty()) return THandle<PublishedGeometry>(new PublishedGeometry(bonds, false));
    set_absent("published_geometry");
    return THandle<PublishedGeometry>();
  }

  Values values_;
  std::string unnamed_;
  const JournalFinder& journals_;
  std::string cod_code_;
  std::string amcsd_code_;
  ImportedEntry result_;
};

}  // namespace

std::vector<ImportedEntry> import_cif(const std::string& text, const std::string& unnamed,
                                      const JournalFinder& journals) {
  const CifDocument document(text);
  std::vector<CifBlock> inherited;  // the nearest first
  std::vector<ImportedEntry> entries;
  for (const CifBlock& block : document.blocks()) {
    if (is_shared(block, document)) {
      inherited.insert(inherited.begin(), block);
      continue;
    }
    std::vector<CifBlock> blocks = {block};
    blocks.insert(blocks.end(), inherited.begin(), inherited.end());
    entries.push_back(EntryMapper(blocks, unnamed, journals).mapped());
  }
  if (entries.empty()) throw CifError({1, 1, "", "no data block", "values of global_ alone make no entry"});
  return entries;
}
