#include "exchange/cif/standard_tags.h"

#include <lattice/space_group.h>

#include <array>
#include <charconv>
#include <cmath>
#include <map>
#include <sstream>
#include <utility>
#include <vector>

#include "exchange/cif/dates.h"
#include "exchange/cif/letters.h"
#include "exchange/cif/numbers.h"
#include "exchange/cif/readable_text.h"
#include "exchange/cif/tags.h"

namespace {

// The tag that is written for a field: the one that is read first.
consteval std::string_view tag_of(std::string_view name) {
  return cif_tag_rows[field(name).begin].tag;
}

// The shortest number that reads back; empty for what is no number in CIF.
std::string number_text(double value) {
  if (!std::isfinite(value)) return "";
  std::array<char, 32> text = {};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

// "1.234(5)" where the uncertainty is a whole number of last digits, else the value alone.
std::string uncertain_text(const UncertainValue& value) {
  std::string text = number_text(value.value());
  if (text.empty() || text.find('e') != std::string::npos || value.standard_uncertainty() == 0.0) return text;
  const std::size_t point = text.find('.');
  std::size_t decimals = point == std::string::npos ? 0 : text.size() - point - 1;
  if (point == std::string::npos) text += '.';
  // Digits are added until those of the uncertainty are whole.
  constexpr std::size_t most_decimals = 9;
  for (; decimals <= most_decimals; ++decimals) {
    const double units = value.standard_uncertainty() * std::pow(10.0, static_cast<double>(decimals));
    const double whole = std::round(units);
    if (whole >= 1.0 && whole < 1e6 && std::abs(units - whole) < 1e-6 * whole) {
      if (text.back() == '.') text.pop_back();
      return text + "(" + number_text(whole) + ")";
    }
    text += '0';
  }
  return number_text(value.value());
}

// A text without the unit that CIF defines, where it is a number with it: "293(2) K".
std::string without_unit(const std::string& text, const std::string& unit) {
  const std::string end = " " + unit;
  if (text.size() <= end.size() || text.compare(text.size() - end.size(), end.size(), end) != 0) return text;
  const std::string number = text.substr(0, text.size() - end.size());
  return cif_number(number) ? number : text;
}

class Writer {
 public:
  explicit Writer(CifOutput& output) : output_(output) {}

  void write(const DepositionInfo& info) {
    static const std::map<std::string, std::string_view> contributors = {
        {"COD", tag_of("cod_code")},
        {"AMCSD", tag_of("amcsd_code")},
        {"ICSD", tag_of("icsd_code")},
        {"CSD", tag_of("csd_code")},
        {"PDF", tag_of("pdf_code")},
        {"MDF", tag_of("mdf_code")},
        {"journal", tag_of("journal_depository_code")}};
    std::string rest = info.text(DepositionInfo::contributor);
    while (!rest.empty()) {
      const std::size_t end = std::min(rest.find(", "), rest.size());
      const std::string code = rest.substr(0, end);
      rest.erase(0, end + 2);
      const std::size_t blank = code.find(' ');
      const auto contributor = contributors.find(code.substr(0, blank));
      if (blank != code.npos && contributor != contributors.end()) {
        text(contributor->second, code.substr(blank + 1));
      }
    }
    std::string coeditor = info.text(DepositionInfo::iucr_coeditor_code);
    if (coeditor.compare(0, 5, "IUCr ") == 0) coeditor.erase(0, 5);
    text(tag_of("deposition_info.iucr_coeditor_code"), coeditor);
    text(tag_of("deposition_info.archive"), info.text(DepositionInfo::archive));
    text(tag_of("deposition_info.fiz"), info.text(DepositionInfo::fiz));
    text(tag_of("deposition_info.nbs_id"), info.text(DepositionInfo::nbs_id));
  }

  void write(const Publication& publication) {
    std::vector<std::vector<std::string>> authors;
    for (const std::string& author : publication.authors) authors.push_back({cif_markup(one_line(author))});
    if (!authors.empty()) output_.loop({tag_of("publication.authors")}, authors);
    const Journal unknown(Journal::max_vorn_coden() + 1);
    if (publication.journal.international_coden() != unknown.international_coden())
      text(tag_of("journal_coden"), publication.journal.international_coden());
    if (publication.journal.name() != unknown.name())
      text(tag_of("journal_name"), publication.journal.name());
    text(tag_of("publication.volume"), publication.volume);
    if (publication.year != 0) output_.number(tag_of("publication.year"), std::to_string(publication.year));
    text(tag_of("publication.page"), publication.page);
  }

  void write(const ChemicalInfo& info) {
    text(tag_of("chemical_info.formula"), info.formula);
    constexpr CifTagRange names = field("chemical_info.name");
    text(cif_tag_rows[names.begin].tag, info.name);
    for (std::size_t i = 0; i < info.synonyms.size() && names.begin + 1 + i < names.end; ++i)
      text(cif_tag_rows[names.begin + 1 + i].tag, info.synonyms[i]);
    text(tag_of("chemical_info.bioactivity"), info.bioactivity);
    text(tag_of("chemical_info.source"), info.source);
  }

  void write(const CrystalInfo& info) {
    number(tag_of("crystal_info.z"), info.z);
    text(tag_of("crystal_info.color"), info.color);
    text(tag_of("crystal_info.habit"), info.habit);
    write_melting_point(info.melting_point);
    text(tag_of("crystal_info.recrystallisation_solvent"), info.recrystallisation_solvent);
  }

  void write(const ExperimentalInfo& info) {
    if (!info.temperature_text.empty()) {
      text(tag_of("ambient_temperature"), without_unit(info.temperature_text, "K"));
    } else {
      number(tag_of("ambient_temperature"), info.temperature);
    }
    text(tag_of("experimental_info.pressure"), without_unit(info.pressure, "kPa"));
    number(tag_of("experimental_info.experimental_density"), info.experimental_density);
    number(tag_of("experimental_info.calculated_density"), info.calculated_density);
    number(tag_of("experimental_info.r_factor"), info.r_factor);
    if (info.probe != ExperimentalInfo::unknown_probe) {
      const auto texts = ExperimentalInfo::radiation_probe_text();
      for (const auto& [probe, name] : *texts) {
        if (probe == info.probe) text(tag_of("experimental_info.probe"), name);
      }
    }
    text(tag_of("experimental_info.radiation_source"), info.radiation_source);
    text(tag_of("experimental_info.diffraction_details"), info.diffraction_details);
    text(tag_of("experimental_info.refinement_details"), info.refinement_details);
    if (info.intensity_method == ExperimentalInfo::diffractometer)
      text("_diffrn_measurement_device", "diffractometer");
  }

  void write(const EditorsInfo& info) {
    if (!(info.accession_date == Date())) {
      std::ostringstream date;
      info.accession_date.print(date);
      if (day_of(date.str())) text(tag_of("editors_info.accession_date"), date.str());
    }
    text(tag_of("audit_update_record"), info.memo);
  }

  void write(const Cell& cell) {
    number(tag_of("cell.a"), cell.a());
    number(tag_of("cell.b"), cell.b());
    number(tag_of("cell.c"), cell.c());
    number(tag_of("cell.alpha"), cell.alpha());
    number(tag_of("cell.beta"), cell.beta());
    number(tag_of("cell.gamma"), cell.gamma());
    number("_cell_volume", cell.volume());
    const auto operators = cell.symmetry_operators();
    if (operators.is_null() || operators->empty()) return;
    const SpaceGroup group(*operators);
    if (group.is_known() && group.is_tabulated()) {
      text("_space_group_name_H-M_alt", group.hermann_mauguin());
      text(tag_of("hall_name"), group.hall());
    }
    if (group.is_known()) output_.number(tag_of("group_number"), std::to_string(group.number()));
    std::vector<std::vector<std::string>> rows;
    for (const CrystalSymmetryOperator& symmetry_operator : *operators)
      rows.push_back({symmetry_operator.xyz()});
    output_.loop({tag_of("cell.symmetry_operators")}, rows);
  }

  void write(const std::vector<THandle<Atom>>& atoms, const THandle<DisorderSelectors>& selectors) {
    std::map<const Atom*, const DisorderSelector*> alternatives;
    if (!selectors.is_null()) {
      for (const auto& selector : *selectors) {
        if (selector.is_null()) continue;
        for (const auto& atom : selector->atoms) alternatives.emplace(atom.get(), selector.get());
      }
    }
    std::vector<std::string_view> tags = {tag_of("crystal_maker.label"), tag_of("crystal_maker.element"),
                                          tag_of("crystal_maker.x"),     tag_of("crystal_maker.y"),
                                          tag_of("crystal_maker.z"),     tag_of("crystal_maker.occupancy")};
    if (!alternatives.empty()) {
      tags.emplace_back("_atom_site_disorder_assembly");
      tags.emplace_back("_atom_site_disorder_group");
    }
    std::vector<std::vector<std::string>> rows;
    for (const auto& atom : atoms) {
      if (atom.is_null()) continue;
      std::vector<std::string>& row = rows.emplace_back();
      row = {label(atom->label),
             label(atom->element),
             number_text(atom->position.x),
             number_text(atom->position.y),
             number_text(atom->position.z),
             number_text(atom->occupancy)};
      if (alternatives.empty()) continue;
      const auto selector = alternatives.find(atom.get());
      row.push_back(selector == alternatives.end() ? "" : label(selector->second->assembly));
      row.push_back(selector == alternatives.end() ? "" : label(selector->second->group));
    }
    if (!rows.empty()) output_.loop(tags, rows);
  }

  void write(const PublishedGeometry& geometry) {
    if (geometry.bonds.is_null()) return;
    std::vector<std::vector<std::string>> rows;
    for (const auto& bond : *geometry.bonds) {
      if (bond.is_null() || bond->first_atom.is_null() || bond->second_atom.is_null()) continue;
      rows.push_back(
          {label(bond->first_atom->label), label(bond->second_atom->label), uncertain_text(bond->length)});
    }
    const std::vector<std::string_view> tags = {tag_of("published_geometry.first"),
                                                tag_of("published_geometry.second"),
                                                tag_of("published_geometry.length")};
    if (!rows.empty()) output_.loop(tags, rows);
  }

 private:
  void text(std::string_view tag, const std::string& value) {
    const std::string line = cif_markup(one_line(value));
    if (!line.empty()) output_.pair(tag, line);
  }

  // 0 is "not known".
  void number(std::string_view tag, double value) {
    const std::string digits = number_text(value);
    if (value != 0.0 && !digits.empty()) output_.number(tag, digits);
  }

  // Without markup, which labels do not have.
  static std::string label(const std::string& text) { return is_utf8(text) ? one_line(text) : ""; }

  // "> 300 K, < 400 K" has tags of its own.
  void write_melting_point(const std::string& point) {
    std::string_view rest = point;
    std::vector<std::pair<std::string_view, std::string>> limits;
    while (rest.size() > 2 && (rest[0] == '>' || rest[0] == '<') && rest[1] == ' ') {
      const std::string_view tag =
          rest[0] == '>' ? tag_of("melting_point_above") : tag_of("melting_point_below");
      const std::size_t end = std::min(rest.find(", "), rest.size());
      limits.emplace_back(tag, without_unit(std::string(rest.substr(2, end - 2)), "K"));
      rest.remove_prefix(std::min(end + 2, rest.size()));
    }
    if (!limits.empty() && rest.empty()) {
      for (const auto& [tag, limit] : limits) text(tag, limit);
    } else {
      text(tag_of("crystal_info.melting_point"), without_unit(point, "K"));
    }
  }

  CifOutput& output_;
};

template <class Component>
void write_component(Writer& writer, const THandle<Component>& component) {
  if (!component.is_null()) writer.write(*component);
}

}  // namespace

void write_standard_tags(const CrystalStructureDatabaseEntry& entry, CifOutput& output) {
  Writer writer(output);
  write_component(writer, entry.deposition_info());
  write_component(writer, entry.publication());
  write_component(writer, entry.chemical_info());
  write_component(writer, entry.crystal_info());
  write_component(writer, entry.experimental_info());
  write_component(writer, entry.editors_info());
  const THandle<CrystalMaker> crystal = entry.crystal_maker();
  const THandle<Cell> cell = entry.cell().is_null() && !crystal.is_null() ? crystal->cell() : entry.cell();
  write_component(writer, cell);
  if (!crystal.is_null()) {
    const std::vector<THandle<Atom>>& atoms = crystal->atoms();
    writer.write(atoms, entry.disorder_selector());
  }
  write_component(writer, entry.published_geometry());
}
