#include <database_entry/foundations/enum_range.h>
#include <database_entry/foundations/enum_text_table.h>
#include <database_entry/foundations/field_text.h>
#include <database_entry/records/experimental_info.h>
#include <utilities/archiving/field_list.h>

#include <ostream>
#include <tuple>

namespace {

constexpr EnumTextMapping<ExperimentalInfo::RadiationProbe>::Initialiser radiation_probes[] = {
    {ExperimentalInfo::unknown_probe, "unknown"},
    {ExperimentalInfo::x_ray, "x-ray"},
    {ExperimentalInfo::neutron, "neutron"},
    {ExperimentalInfo::electron, "electron"},
    {ExperimentalInfo::gamma, "gamma"}};

constexpr EnumTextMapping<ExperimentalInfo::PowderStudy>::Initialiser powder_studies[] = {
    {ExperimentalInfo::unknown_study, "unknown"},
    {ExperimentalInfo::single_crystal_study, "single crystal"},
    {ExperimentalInfo::powder_study, "powder"}};

constexpr EnumTextMapping<ExperimentalInfo::IntensityMethod>::Initialiser intensity_methods[] = {
    {ExperimentalInfo::unknown_method, "unknown"},
    {ExperimentalInfo::photographic_visual, "photographic, visual"},
    {ExperimentalInfo::photographic_densitometer, "photographic, densitometer"},
    {ExperimentalInfo::diffractometer, "diffractometer"}};

// Numbers were measured and computed: they are the same within the comparator's default tolerance.
bool same(double a, double b) {
  return DoubleComparator().equal(a, b);
}

template <class Field>
bool same(const Field& a, const Field& b) {
  return a == b;
}

}  // namespace

ExperimentalInfo::ExperimentalInfo(double the_temperature, const std::string& the_temperature_text,
                                   const std::string& the_pressure, double the_experimental_density,
                                   double the_calculated_density, double the_r_factor,
                                   const Range<double, DoubleComparator>& the_mean_cc_bond_sigma,
                                   RadiationProbe the_probe, const std::string& the_radiation_source,
                                   bool the_absolute_configuration,
                                   const std::string& the_diffraction_details, PowderStudy the_powder,
                                   const std::string& the_refinement_details,
                                   IntensityMethod the_intensity_method)
    : temperature(the_temperature),
      temperature_text(the_temperature_text),
      pressure(the_pressure),
      experimental_density(the_experimental_density),
      calculated_density(the_calculated_density),
      r_factor(the_r_factor),
      mean_cc_bond_sigma(the_mean_cc_bond_sigma),
      probe(the_probe),
      radiation_source(the_radiation_source),
      absolute_configuration(the_absolute_configuration),
      diffraction_details(the_diffraction_details),
      powder(the_powder),
      refinement_details(the_refinement_details),
      intensity_method(the_intensity_method) {
  validate_radiation_probe(the_probe);
  validate_intensity_method(the_intensity_method);
}

void ExperimentalInfo::validate_radiation_probe(RadiationProbe probe) {
  require_enum_range(probe, unknown_probe, gamma, "Invalid ExperimentalInfo::RadiationProbe");
}

void ExperimentalInfo::validate_powder_study(PowderStudy powder) {
  require_enum_range(powder, unknown_study, powder_study, "Invalid ExperimentalInfo::PowderStudy");
}

void ExperimentalInfo::validate_intensity_method(IntensityMethod intensity_method) {
  require_enum_range(intensity_method, unknown_method, diffractometer,
                     "Invalid ExperimentalInfo::IntensityMethod");
}

THandle<EnumTextMapping<ExperimentalInfo::RadiationProbe>> ExperimentalInfo::radiation_probe_text() {
  return new_text_mapping<RadiationProbe>(radiation_probes);
}

THandle<EnumTextMapping<ExperimentalInfo::PowderStudy>> ExperimentalInfo::powder_text() {
  return new_text_mapping<PowderStudy>(powder_studies);
}

THandle<EnumTextMapping<ExperimentalInfo::IntensityMethod>> ExperimentalInfo::intensity_method_text() {
  return new_text_mapping<IntensityMethod>(intensity_methods);
}

void ExperimentalInfo::write(Archive& archive) const {
  write_all_fields(archive, *this);
}

void ExperimentalInfo::read(Archive& archive) {
  const auto read = read_all_fields_but_enumerations(archive, *this);
  probe = std::get<RadiationProbe>(read);
  validate_radiation_probe(probe);
  intensity_method = std::get<IntensityMethod>(read);
  validate_intensity_method(intensity_method);
  powder = std::get<PowderStudy>(read);
  validate_powder_study(powder);
}

void ExperimentalInfo::print(std::ostream& os) const {
  print_fields(os, *this);
}

bool ExperimentalInfo::operator==(const ExperimentalInfo& other) const {
  return std::apply([&](const auto&... field) { return (same(field.of(*this), field.of(other)) && ...); },
                    fields());
}
