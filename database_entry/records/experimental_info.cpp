#include <database_entry/foundations/enum_range.h>
#include <database_entry/foundations/enum_text_table.h>
#include <database_entry/records/experimental_info.h>
#include <utilities/archiving/field_list.h>

#include <cstddef>
#include <tuple>
#include <utility>

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

// In archive order, which is the order of comparison too. The enumerations are handed in: reading keeps them
// aside until everything has been read.
template <class Record, class Probe, class Powder, class Method>
auto fields(Record& record, Probe& probe, Powder& powder, Method& intensity_method) {
  return std::tie(record.temperature, record.temperature_text, record.pressure, record.experimental_density,
                  record.calculated_density, record.r_factor, record.mean_cc_bond_sigma, probe,
                  record.radiation_source, record.absolute_configuration, record.diffraction_details, powder,
                  record.refinement_details, intensity_method);
}

auto fields(const ExperimentalInfo& record) {
  return fields(record, record.probe, record.powder, record.intensity_method);
}

// Numbers were measured and computed: they are the same within the comparator's default tolerance.
bool same(double a, double b) {
  return DoubleComparator().equal(a, b);
}

template <class Field>
bool same(const Field& a, const Field& b) {
  return a == b;
}

template <class... Fields, std::size_t... index>
bool all_same(const std::tuple<Fields...>& a, const std::tuple<Fields...>& b, std::index_sequence<index...>) {
  return (same(std::get<index>(a), std::get<index>(b)) && ...);
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
  write_fields(archive, fields(*this));
}

void ExperimentalInfo::read(Archive& archive) {
  auto read_probe = unknown_probe;
  auto read_powder = unknown_study;
  auto read_intensity_method = unknown_method;
  read_fields(archive, fields(*this, read_probe, read_powder, read_intensity_method));
  probe = read_probe;
  validate_radiation_probe(probe);
  intensity_method = read_intensity_method;
  validate_intensity_method(intensity_method);
  powder = read_powder;
  validate_powder_study(powder);
}

void ExperimentalInfo::print(std::ostream& os) const {
  os << "temperature (K): " << temperature << ", temperature text: " << temperature_text
     << ", pressure: " << pressure << ", experimental density: " << experimental_density
     << ", calculated density: " << calculated_density << ", R-factor: " << r_factor
     << ", mean_cc_bond_sigma: " << mean_cc_bond_sigma << ", probe: " << static_cast<int>(probe)
     << ", radiation source: " << radiation_source << ", absolute configuration: " << absolute_configuration
     << ", diffraction details: " << diffraction_details << ", powder: " << static_cast<int>(powder)
     << ", refinement details: " << refinement_details
     << ", intensity method: " << static_cast<int>(intensity_method);
}

bool ExperimentalInfo::operator==(const ExperimentalInfo& other) const {
  const auto mine = fields(*this);
  return all_same(mine, fields(other), std::make_index_sequence<std::tuple_size_v<decltype(mine)>>());
}
