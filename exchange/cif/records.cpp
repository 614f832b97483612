#include <algorithm>
#include <cctype>
#include <cmath>

#include "exchange/cif/components.h"
#include "exchange/cif/dates.h"
#include "exchange/cif/elements.h"
#include "exchange/cif/letters.h"
#include "exchange/cif/numbers.h"

namespace {

// A text with the unit that CIF defines for it, where it is a number.
std::string with_unit(const std::string& text, const char* unit) {
  return cif_number(text) ? fmt::format("{} {}", text, unit) : text;
}

bool has(const std::string& text, const char* word) {
  return text.find(word) != std::string::npos;
}

std::optional<ExperimentalInfo::RadiationProbe> probe_of(const std::string& text) {
  const std::string words = lower_case(text);
  if (has(words, "neutron")) return ExperimentalInfo::neutron;
  if (has(words, "electron")) return ExperimentalInfo::electron;
  if (has(words, "gamma") || has(words, "γ")) return ExperimentalInfo::gamma;
  if (has(words, "x-ray") || has(words, "xray") || has(words, "x ray") || has(words, "synchrotron"))
    return ExperimentalInfo::x_ray;
  // The line of a tube's anode: "MoKα", "Mo k\a", "Cu K\a1".
  const bool has_two_letters = text.size() > 1 && text[1] >= 'a' && text[1] <= 'z';
  const std::string anode = leading_symbol(text, has_two_letters ? 2 : 1);
  const std::size_t line = text.find_first_not_of(" _-", anode.size());
  if (!is_element(anode) || line == std::string::npos) return std::nullopt;
  const std::string series = lower_case(text.substr(line));
  const bool is_line = series[0] == 'k' || series[0] == 'l';
  return is_line && (series.size() == 1 || !is_letter(series[1]) || has(series, "alpha") ||
                     has(series, "beta") || series.compare(1, 1, "a") == 0 || series.compare(1, 1, "b") == 0)
             ? std::optional(ExperimentalInfo::x_ray)
             : std::nullopt;
}

// Whether two numbers as they are written can be the same value.
bool agree(const std::string& one, const std::string& other) {
  if (one == other) return true;
  const auto a = cif_number(one);
  const auto b = cif_number(other);
  if (!a || !b) return false;
  return std::abs(a->value() - b->value()) <=
         std::max(cif_number_margin(one), cif_number_margin(other)) + 1e-9;
}

void set_temperature(const CifSource& source, ExperimentalInfo& info) {
  const auto ambient = source.values().first(field("ambient_temperature"));
  const auto of_cell = source.values().first(field("cell_temperature"));
  if (ambient && of_cell && !agree(ambient->text, of_cell->text)) {
    source.warn(of_cell->line,
                "two temperatures: the cell was measured at '{}', the intensities at '{}', which is kept",
                of_cell->text, ambient->text);
  }
  info.temperature =
      source.number("temperature", ambient ? field("ambient_temperature") : field("cell_temperature"))
          .value_or(info.temperature);
  if (ambient || of_cell) info.temperature_text = with_unit((ambient ? ambient : of_cell)->text, "K");
}

void set_radiation(const CifSource& source, ExperimentalInfo& info) {
  const CifValues& values = source.values();
  const auto type = values.first(field("radiation_type"));
  auto probe = values.first(field("experimental_info.probe"));
  if (!probe) probe = type;
  if (probe) {
    const auto known = probe_of(probe->text);
    if (!known) source.warn(probe->line, "no known kind of radiation: '{}'", probe->text);
    info.probe = known.value_or(info.probe);
  } else {
    source.set_absent("probe");
  }
  const auto radiation_source = values.first(field("experimental_info.radiation_source"));
  const bool type_says_more =
      type && lower_case(type->text) != ExperimentalInfo::radiation_probe_text()->text(info.probe);
  if (radiation_source) {
    info.radiation_source = radiation_source->text;
  } else if (type_says_more) {
    info.radiation_source = type->text;
  } else {
    source.set_absent("radiation_source");
  }
}

// "> 300 K", "< 400 K" or both, where the melting point itself is not given.
std::string melting_point_limits(const CifSource& source) {
  const auto above = source.values().first(field("melting_point_above"));
  const auto below = source.values().first(field("melting_point_below"));
  std::string text;
  if (above) text = "> " + with_unit(above->text, "K");
  if (above && below) text += ", ";
  if (below) text += "< " + with_unit(below->text, "K");
  return text;
}

// By anomalous dispersion, from a reference of known configuration, or both; "syn" and "unk" are no
// determination.
bool is_determined(const std::string& configuration) {
  const std::string code = lower_case(configuration);
  return code == "ad" || code == "rm" || code == "rmad";
}

std::optional<std::string> code_of_seven_digits(const CifSource& source, CifTagRange tags) {
  const auto value = source.values().first(tags);
  if (!value) return std::nullopt;
  const std::string code = value->text.substr(value->text.find('#') + 1);
  if (code.size() == 7 && code.find_first_not_of("0123456789") == std::string::npos) return code;
  source.warn(value->line, "{} is not a code of seven digits: '{}'", cif_tag_rows[tags.begin].tag,
              value->text);
  return std::nullopt;
}

}  // namespace

ChemicalInfo chemical_info_of(const CifSource& source) {
  ChemicalInfo info;
  info.formula = source.text("formula", field("chemical_info.formula"));
  // The first name there is; the others are synonyms.
  constexpr CifTagRange names = field("chemical_info.name");
  for (std::size_t tag = names.begin; tag < names.end; ++tag) {
    const auto name = source.values().first({tag, tag + 1});
    if (!name || name->text == info.name) continue;
    if (info.name.empty()) {
      info.name = name->text;
    } else if (std::find(info.synonyms.begin(), info.synonyms.end(), name->text) == info.synonyms.end()) {
      info.synonyms.push_back(name->text);
    }
  }
  if (info.name.empty()) source.set_absent("name");
  info.bioactivity = source.text("bioactivity", field("chemical_info.bioactivity"));
  info.source = source.text("source", field("chemical_info.source"));
  return info;
}

CrystalInfo crystal_info_of(const CifSource& source) {
  CrystalInfo info;
  info.z = source.number("z", field("crystal_info.z")).value_or(info.z);
  info.color = source.text("color", field("crystal_info.color"));
  info.habit = source.text("habit", field("crystal_info.habit"));
  const auto melting_point = source.values().first(field("crystal_info.melting_point"));
  info.melting_point = melting_point ? with_unit(melting_point->text, "K") : melting_point_limits(source);
  if (info.melting_point.empty()) source.set_absent("melting_point");
  info.recrystallisation_solvent =
      source.text("recrystallisation_solvent", field("crystal_info.recrystallisation_solvent"));
  return info;
}

ExperimentalInfo experimental_info_of(const CifSource& source) {
  ExperimentalInfo info;
  set_temperature(source, info);
  info.pressure = with_unit(source.text("pressure", field("experimental_info.pressure")), "kPa");
  info.experimental_density =
      source.number("experimental_density", field("experimental_info.experimental_density"))
          .value_or(info.experimental_density);
  info.calculated_density = source.number("calculated_density", field("experimental_info.calculated_density"))
                                .value_or(info.calculated_density);
  info.r_factor = source.number("r_factor", field("experimental_info.r_factor")).value_or(info.r_factor);
  set_radiation(source, info);
  info.absolute_configuration =
      is_determined(source.text("absolute_configuration", field("experimental_info.absolute_configuration")));
  info.diffraction_details =
      source.text("diffraction_details", field("experimental_info.diffraction_details"));
  if (source.values().first(field("experimental_info.powder"))) {
    info.powder = ExperimentalInfo::powder_study;
  } else {
    source.set_absent("powder");
  }
  info.refinement_details = source.text("refinement_details", field("experimental_info.refinement_details"));
  const auto device = source.values().first(field("experimental_info.intensity_method"));
  if (device && has(lower_case(device->text), "diffractometer")) {
    info.intensity_method = ExperimentalInfo::diffractometer;
  } else {
    source.set_absent("intensity_method");
  }
  return info;
}

EditorsInfo editors_info_of(const CifSource& source) {
  EditorsInfo info;
  if (const auto created = source.values().first(field("editors_info.accession_date"))) {
    const auto date = day_of(created->text);
    if (!date) source.warn(created->line, "accession_date is not a day of the calendar: '{}'", created->text);
    info.accession_date = date.value_or(info.accession_date);
  } else {
    source.set_absent("accession_date");
  }
  if (const auto record = source.values().first(field("audit_update_record"))) {
    info.memo = record->text;
    info.modification_date = latest_day_of(record->text).value_or(info.modification_date);
  } else {
    source.set_absent("memo");
  }
  return info;
}

DatabaseCodes database_codes_of(const CifSource& source) {
  return {code_of_seven_digits(source, field("cod_code")).value_or(""),
          code_of_seven_digits(source, field("amcsd_code")).value_or("")};
}

DepositionInfo deposition_info_of(const CifSource& source, const DatabaseCodes& codes) {
  struct Contributor {
    const char* name;
    CifTagRange tags;
  };
  constexpr Contributor contributors[] = {{"ICSD", field("icsd_code")},
                                          {"CSD", field("csd_code")},
                                          {"PDF", field("pdf_code")},
                                          {"MDF", field("mdf_code")},
                                          {"journal", field("journal_depository_code")}};
  std::string contributed;
  const auto add = [&](const std::string& name, const std::string& code) {
    contributed += fmt::format("{}{} {}", contributed.empty() ? "" : ", ", name, code);
  };
  if (!codes.cod.empty()) add("COD", codes.cod);
  if (!codes.amcsd.empty()) add("AMCSD", codes.amcsd);
  for (const Contributor& contributor : contributors) {
    if (const auto code = source.values().first(contributor.tags)) add(contributor.name, code->text);
  }
  DepositionInfo info;
  info.set_text(DepositionInfo::contributor, contributed);
  if (contributed.empty()) source.set_absent("contributor_code");
  const std::string coeditor = source.text("coeditor_code", field("deposition_info.iucr_coeditor_code"));
  if (!coeditor.empty()) info.set_text(DepositionInfo::iucr_coeditor_code, "IUCr " + coeditor);
  info.set_text(DepositionInfo::archive, source.text("archive_code", field("deposition_info.archive")));
  info.set_text(DepositionInfo::fiz, source.text("fiz_code", field("deposition_info.fiz")));
  info.set_text(DepositionInfo::nbs_id, source.text("nbs_id", field("deposition_info.nbs_id")));
  return info;
}
