// How the structure was determined: conditions, densities, radiation, intensities, refinement.
//
//   ExperimentalInfo experiment;
//   experiment.temperature = 295.0;                        // kelvin
//   experiment.probe = ExperimentalInfo::x_ray;
//   experiment.powder = ExperimentalInfo::single_crystal_study;
//
// 0.0, an empty text and the members "unknown" mean "not known". Numbers are compared within 1e-7, and a NaN
// is equal to everything. Threads: as every record, one at a time.
#pragma once

#include <database_entry/export.h>
#include <database_entry/foundations/archive_encodings.h>
#include <database_entry/foundations/component_text.h>
#include <database_entry/foundations/enum_text_mapping.h>
#include <database_entry/records/double_comparator.h>
#include <database_entry/records/range.h>
#include <utilities/fields.h>

#include <cstdint>
#include <string>
#include <tuple>

class DATABASE_ENTRY_EXPORT ExperimentalInfo {
 public:
  // Each kind of "not known" has a name of its own, so that all members can be named without their
  // enumeration.
// The C library has a function gamma(), and clang++ -Wshadow takes the member for its shadow.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wshadow"
#endif
  enum RadiationProbe : std::int32_t { unknown_probe = 0, x_ray = 1, neutron = 2, electron = 3, gamma = 4 };
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
  enum PowderStudy : std::int32_t { unknown_study = 0, single_crystal_study = 1, powder_study = 2 };
  enum IntensityMethod : std::int32_t {
    unknown_method = 0,
    photographic_visual = 1,
    photographic_densitometer = 2,
    diffractometer = 3
  };

  ExperimentalInfo() = default;
  // Throws std::invalid_argument for a probe and for an intensity method that is no member. The powder study
  // is taken as it is given; read() refuses one that is no member.
  ExperimentalInfo(double temperature, const std::string& temperature_text, const std::string& pressure,
                   double experimental_density, double calculated_density, double r_factor,
                   const Range<double, DoubleComparator>& mean_cc_bond_sigma, RadiationProbe probe,
                   const std::string& radiation_source, bool absolute_configuration,
                   const std::string& diffraction_details, PowderStudy powder,
                   const std::string& refinement_details, IntensityMethod intensity_method);

  // Each throws std::invalid_argument, "Invalid ExperimentalInfo::RadiationProbe" and so on, for a value that
  // is no member.
  static void validate_radiation_probe(RadiationProbe probe);
  static void validate_powder_study(PowderStudy powder);
  static void validate_intensity_method(IntensityMethod intensity_method);

  // The texts of the members, made anew by each call.
  [[nodiscard]] static THandle<EnumTextMapping<RadiationProbe>> radiation_probe_text();
  [[nodiscard]] static THandle<EnumTextMapping<PowderStudy>> powder_text();
  [[nodiscard]] static THandle<EnumTextMapping<IntensityMethod>> intensity_method_text();

  void write(Archive& archive) const;
  // The enumerations are stored last, each before its check: probe, intensity method, powder. One that is no
  // member throws std::invalid_argument; the record then holds it, and the later ones are the old ones.
  // ArchiveError where the stream ends; fields read before it keep their new values, the enumerations their
  // old ones.
  void read(Archive& archive);
  // Labels and values, without a line end; enumerations as integers.
  void print(std::ostream& os) const;

  bool operator==(const ExperimentalInfo& other) const;

  double temperature = 0.0;  // kelvin
  std::string temperature_text;
  std::string pressure;
  double experimental_density = 0.0;
  double calculated_density = 0.0;
  double r_factor = 0.0;
  // The range of the mean standard uncertainty of the carbon-carbon bond lengths.
  Range<double, DoubleComparator> mean_cc_bond_sigma;
  RadiationProbe probe = unknown_probe;
  std::string radiation_source;
  bool absolute_configuration = false;  // whether it was determined
  std::string diffraction_details;
  PowderStudy powder = unknown_study;
  std::string refinement_details;
  IntensityMethod intensity_method = unknown_method;

  // In archive order, which is the order of comparison and of the summary too.
  static constexpr auto fields() {
    return std::tuple{
        Field{"temperature", &ExperimentalInfo::temperature, "temperature (K)"},
        Field{"temperature_text", &ExperimentalInfo::temperature_text, "temperature text"},
        Field{"pressure", &ExperimentalInfo::pressure},
        Field{"experimental_density", &ExperimentalInfo::experimental_density, "experimental density"},
        Field{"calculated_density", &ExperimentalInfo::calculated_density, "calculated density"},
        Field{"r_factor", &ExperimentalInfo::r_factor, "R-factor"},
        Field{"mean_cc_bond_sigma", &ExperimentalInfo::mean_cc_bond_sigma},
        Field{"probe", &ExperimentalInfo::probe},
        Field{"radiation_source", &ExperimentalInfo::radiation_source, "radiation source"},
        Field{"absolute_configuration", &ExperimentalInfo::absolute_configuration, "absolute configuration"},
        Field{"diffraction_details", &ExperimentalInfo::diffraction_details, "diffraction details"},
        Field{"powder", &ExperimentalInfo::powder},
        Field{"refinement_details", &ExperimentalInfo::refinement_details, "refinement details"},
        Field{"intensity_method", &ExperimentalInfo::intensity_method, "intensity method"}};
  }
};

template <>
inline constexpr bool is_archived_component<ExperimentalInfo> = true;
template <>
inline constexpr bool is_printed_component<ExperimentalInfo> = true;

template <>
inline constexpr auto enum_texts<ExperimentalInfo::RadiationProbe> = &ExperimentalInfo::radiation_probe_text;
template <>
inline constexpr auto enum_texts<ExperimentalInfo::PowderStudy> = &ExperimentalInfo::powder_text;
template <>
inline constexpr auto enum_texts<ExperimentalInfo::IntensityMethod> =
    &ExperimentalInfo::intensity_method_text;
