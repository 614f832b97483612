// An entry as plain values: what the other libraries of the benchmark store.
//
// The fields and their order are those of the archive. Atoms and operators are held by value.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace plain {

struct Operator {
  std::array<std::int32_t, 9> rotation{};
  std::array<double, 3> translation{};
};

struct Cell {
  double a = 0, b = 0, c = 0, alpha = 0, beta = 0, gamma = 0;
  std::vector<Operator> operators;
};

struct Atom {
  std::string label, element;
  double x = 0, y = 0, z = 0, occupancy = 0;
};

struct CrystalMaker {
  Cell cell;
  std::vector<Atom> atoms;
};

struct Journal {
  std::string name;
  std::int32_t coden = 0;
  std::string international_coden;
};

struct Publication {
  Journal journal;
  std::vector<std::string> authors;
  std::string volume;
  std::int32_t year = 0;
  std::string page;
};

struct Range {
  std::int32_t lower_condition = 0, upper_condition = 0;
  double lower = 0, upper = 0;
};

struct ExperimentalInfo {
  double temperature = 0;
  std::string temperature_text, pressure;
  double experimental_density = 0, calculated_density = 0, r_factor = 0;
  Range mean_cc_bond_sigma;
  std::int32_t probe = 0;
  std::string radiation_source;
  bool absolute_configuration = false;
  std::string diffraction_details;
  std::int32_t powder = 0;
  std::string refinement_details;
  std::int32_t intensity_method = 0;
};

struct Date {
  std::int32_t year = 0, month = 0, day = 0;
};

struct EditorsInfo {
  Date accession_date, modification_date;
  std::int32_t category = 0;
  double bonding_tolerance = 0;
  std::string previous_refcode;
  std::int32_t aser_match_flag = 0;
  std::string connectivity_comment;
  std::int32_t batch = 0;
  std::string memo, remarks;
  std::int32_t author_correspondence = 0, ignored_errors = 0;
};

struct ChemicalInfo {
  std::string formula, name, bioactivity, conformer, source, peptide_sequence, isomer;
  std::vector<std::int32_t> classifiers;
  std::vector<std::string> synonyms;
};

struct CrystalInfo {
  double z = 0, z_prime = 0;
  std::string color, habit, analogues, melting_point, notes, phase_transitions, polymorph, sensitivity,
      recrystallisation_solvent, disorder_details, other_cell_details;
};

struct ConnectivityAtom {
  std::string element, label;
  std::int32_t charge = 0, hydrogen_count = 0;
};

struct ConnectivityBond {
  std::int32_t first = 0, second = 0, type = 0;
};

struct Connectivity {
  std::vector<ConnectivityAtom> atoms;
  std::vector<ConnectivityBond> bonds;
};

// A cross-reference or a deposition.
struct TypedText {
  std::int32_t type = 0;
  std::string text;
};

struct Entry {
  std::string identifier;
  CrystalMaker crystal_maker;
  Cell cell;
  Publication publication;
  ExperimentalInfo experimental_info;
  EditorsInfo editors_info;
  ChemicalInfo chemical_info;
  CrystalInfo crystal_info;
  Connectivity connectivity;
  std::vector<TypedText> cross_references;
  std::vector<TypedText> depositions;
};

// The fields of each struct, in archive order, for whoever walks them all.
// clang-format off
auto fields(auto& v, const Operator*) { return std::tie(v.rotation, v.translation); }
auto fields(auto& v, const Cell*) { return std::tie(v.a, v.b, v.c, v.alpha, v.beta, v.gamma, v.operators); }
auto fields(auto& v, const Atom*) { return std::tie(v.label, v.element, v.x, v.y, v.z, v.occupancy); }
auto fields(auto& v, const CrystalMaker*) { return std::tie(v.cell, v.atoms); }
auto fields(auto& v, const Journal*) { return std::tie(v.name, v.coden, v.international_coden); }
auto fields(auto& v, const Publication*) { return std::tie(v.journal, v.authors, v.volume, v.year, v.page); }
auto fields(auto& v, const Range*) { return std::tie(v.lower_condition, v.upper_condition, v.lower, v.upper); }
auto fields(auto& v, const ExperimentalInfo*) {
  return std::tie(v.temperature, v.temperature_text, v.pressure, v.experimental_density, v.calculated_density,
                  v.r_factor, v.mean_cc_bond_sigma, v.probe, v.radiation_source, v.absolute_configuration,
                  v.diffraction_details, v.powder, v.refinement_details, v.intensity_method);
}
auto fields(auto& v, const Date*) { return std::tie(v.year, v.month, v.day); }
auto fields(auto& v, const EditorsInfo*) {
  return std::tie(v.accession_date, v.modification_date, v.category, v.bonding_tolerance, v.previous_refcode,
                  v.aser_match_flag, v.connectivity_comment, v.batch, v.memo, v.remarks, v.author_correspondence,
                  v.ignored_errors);
}
auto fields(auto& v, const ChemicalInfo*) {
  return std::tie(v.formula, v.name, v.bioactivity, v.conformer, v.source, v.peptide_sequence, v.isomer,
                  v.classifiers, v.synonyms);
}
auto fields(auto& v, const CrystalInfo*) {
  return std::tie(v.z, v.z_prime, v.color, v.habit, v.analogues, v.melting_point, v.notes, v.phase_transitions,
                  v.polymorph, v.sensitivity, v.recrystallisation_solvent, v.disorder_details,
                  v.other_cell_details);
}
auto fields(auto& v, const ConnectivityAtom*) { return std::tie(v.element, v.label, v.charge, v.hydrogen_count); }
auto fields(auto& v, const ConnectivityBond*) { return std::tie(v.first, v.second, v.type); }
auto fields(auto& v, const Connectivity*) { return std::tie(v.atoms, v.bonds); }
auto fields(auto& v, const TypedText*) { return std::tie(v.type, v.text); }
auto fields(auto& v, const Entry*) {
  return std::tie(v.identifier, v.crystal_maker, v.cell, v.publication, v.experimental_info, v.editors_info,
                  v.chemical_info, v.crystal_info, v.connectivity, v.cross_references, v.depositions);
}
// clang-format on

template <class T>
concept Record = requires(T& value) {
  fields(value, &value);
};

}  // namespace plain
