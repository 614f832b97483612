#include <database_entry/records/experimental_info.h>
#include <gtest/gtest.h>

#include <limits>

#include "support/sample_records.h"

namespace {

using Probe = ExperimentalInfo::RadiationProbe;
using Powder = ExperimentalInfo::PowderStudy;
using Method = ExperimentalInfo::IntensityMethod;

constexpr const char* bad_probe = "Invalid ExperimentalInfo::RadiationProbe";
constexpr const char* bad_powder = "Invalid ExperimentalInfo::PowderStudy";
constexpr const char* bad_method = "Invalid ExperimentalInfo::IntensityMethod";

ExperimentalInfo made_with(int probe, int powder, int method) {
  return ExperimentalInfo(1.0, "", "", 0.0, 0.0, 0.0, SigmaRange(), static_cast<Probe>(probe), "", false, "",
                          static_cast<Powder>(powder), "", static_cast<Method>(method));
}

// A stored record whose numbers are 1, whose texts are "t" and whose enumerations are as given.
std::string stored_with(int probe, int powder, int method) {
  return bytes(float64(1), text("t"), text("t"), float64(1), float64(1), float64(1), int32(1), int32(1),
               float64(1), float64(1), int32(probe), text("t"), boolean(true), text("t"), int32(powder),
               text("t"), int32(method));
}

TEST(ExperimentalInfo, TakesTheConstructorsArgumentsInFieldOrder) {
  const ExperimentalInfo info = Sample<ExperimentalInfo>::filled();
  EXPECT_EQ(info.temperature, 295.5);
  EXPECT_EQ(info.temperature_text, "room");
  EXPECT_EQ(info.pressure, "1 GPa");
  EXPECT_EQ(info.experimental_density, 1.25);
  EXPECT_EQ(info.calculated_density, 1.5);
  EXPECT_EQ(info.r_factor, 0.045);
  EXPECT_EQ(info.probe, ExperimentalInfo::neutron);
  EXPECT_EQ(info.radiation_source, "reactor");
  EXPECT_TRUE(info.absolute_configuration);
  EXPECT_EQ(info.diffraction_details, "weak");
  EXPECT_EQ(info.powder, ExperimentalInfo::powder_study);
  EXPECT_EQ(info.refinement_details, "riding H");
  EXPECT_EQ(info.intensity_method, ExperimentalInfo::diffractometer);
}

TEST(ExperimentalInfo, CopiesTheRangeWithItsComparator) {
  const SigmaRange sigma(0.0, RangeLimit::inclusive, 0.0, RangeLimit::inclusive,
                         DoubleComparator{0.5, less_than});
  const ExperimentalInfo info(0.0, "", "", 0.0, 0.0, 0.0, sigma, ExperimentalInfo::unknown_probe, "", false,
                              "", ExperimentalInfo::unknown_study, "", ExperimentalInfo::unknown_method);
  EXPECT_EQ(info.mean_cc_bond_sigma.comparator().tolerance, 0.5);
}

TEST(ExperimentalInfo, IsMadeOnlyWithAProbeAndAMethodThatAreMembers) {
  EXPECT_EQ(message_of<std::invalid_argument>([] { made_with(5, 0, 0); }), bad_probe);
  EXPECT_EQ(message_of<std::invalid_argument>([] { made_with(-1, 0, 0); }), bad_probe);
  EXPECT_EQ(message_of<std::invalid_argument>([] { made_with(0, 0, -1); }), bad_method);
  EXPECT_EQ(message_of<std::invalid_argument>([] { made_with(0, 0, 4); }), bad_method);
  EXPECT_EQ(message_of<std::invalid_argument>([] { made_with(5, 0, 4); }), bad_probe);
}

TEST(ExperimentalInfo, IsMadeWithAnyPowderStudy) {
  EXPECT_EQ(made_with(0, 7, 0).powder, 7);
  EXPECT_EQ(made_with(0, INT_MIN, 0).powder, INT_MIN);
}

TEST(ExperimentalInfo, AcceptsTheMembersOfItsEnumerations) {
  for (int value = 0; value <= 4; ++value)
    ExperimentalInfo::validate_radiation_probe(static_cast<Probe>(value));
  for (int value = 0; value <= 2; ++value)
    ExperimentalInfo::validate_powder_study(static_cast<Powder>(value));
  for (int value = 0; value <= 3; ++value) {
    ExperimentalInfo::validate_intensity_method(static_cast<Method>(value));
  }
}

TEST(ExperimentalInfo, RefusesEveryOtherProbe) {
  for (const int value : {-1, 5, INT_MIN, INT_MAX}) {
    EXPECT_EQ(message_of<std::invalid_argument>(
                  [&] { ExperimentalInfo::validate_radiation_probe(static_cast<Probe>(value)); }),
              bad_probe);
  }
}

TEST(ExperimentalInfo, RefusesEveryOtherPowderStudy) {
  for (const int value : {-1, 3, INT_MIN, INT_MAX}) {
    EXPECT_EQ(message_of<std::invalid_argument>(
                  [&] { ExperimentalInfo::validate_powder_study(static_cast<Powder>(value)); }),
              bad_powder);
  }
}

TEST(ExperimentalInfo, RefusesEveryOtherIntensityMethod) {
  for (const int value : {-1, 4, INT_MIN, INT_MAX}) {
    EXPECT_EQ(message_of<std::invalid_argument>(
                  [&] { ExperimentalInfo::validate_intensity_method(static_cast<Method>(value)); }),
              bad_method);
  }
}

template <class E>
std::vector<int> members_by_text(const THandle<EnumTextMapping<E>>& mapping) {
  std::vector<E> members;
  mapping->all_members(members);
  return {members.begin(), members.end()};
}

TEST(ExperimentalInfo, GivesTheTextsOfTheProbes) {
  const auto texts = ExperimentalInfo::radiation_probe_text();
  EXPECT_EQ(members_by_text(texts), (std::vector<int>{3, 4, 2, 0, 1}));
  EXPECT_EQ(texts->text(ExperimentalInfo::unknown_probe), "unknown");
  EXPECT_EQ(texts->text(ExperimentalInfo::x_ray), "x-ray");
  EXPECT_EQ(texts->text(ExperimentalInfo::neutron), "neutron");
  EXPECT_EQ(texts->text(ExperimentalInfo::electron), "electron");
  EXPECT_EQ(texts->text(ExperimentalInfo::gamma), "gamma");
}

TEST(ExperimentalInfo, GivesTheTextsOfThePowderStudies) {
  const auto texts = ExperimentalInfo::powder_text();
  EXPECT_EQ(members_by_text(texts), (std::vector<int>{2, 1, 0}));
  EXPECT_EQ(texts->text(ExperimentalInfo::unknown_study), "unknown");
  EXPECT_EQ(texts->text(ExperimentalInfo::single_crystal_study), "single crystal");
  EXPECT_EQ(texts->text(ExperimentalInfo::powder_study), "powder");
}

TEST(ExperimentalInfo, GivesTheTextsOfTheIntensityMethods) {
  const auto texts = ExperimentalInfo::intensity_method_text();
  EXPECT_EQ(members_by_text(texts), (std::vector<int>{3, 2, 1, 0}));
  EXPECT_EQ(texts->text(ExperimentalInfo::unknown_method), "unknown");
  EXPECT_EQ(texts->text(ExperimentalInfo::photographic_visual), "photographic, visual");
  EXPECT_EQ(texts->text(ExperimentalInfo::photographic_densitometer), "photographic, densitometer");
  EXPECT_EQ(texts->text(ExperimentalInfo::diffractometer), "diffractometer");
}

TEST(ExperimentalInfo, MakesItsTextsAnewForEachCall) {
  const auto first = ExperimentalInfo::powder_text();
  const auto second = ExperimentalInfo::powder_text();
  EXPECT_NE(first.get(), second.get());
  EXPECT_EQ(first.use_count(), 1);
  EXPECT_EQ(members_by_text(first), members_by_text(second));
}

TEST(ExperimentalInfo, ByDefaultPrintsZerosAndLabels) {
  EXPECT_EQ(printed(ExperimentalInfo()),
            "temperature (K): 0, temperature text: , pressure: , experimental density: 0, "
            "calculated density: 0, R-factor: 0, mean_cc_bond_sigma: 0000, probe: 0, radiation source: , "
            "absolute configuration: 0, diffraction details: , powder: 0, refinement details: , "
            "intensity method: 0");
}

TEST(ExperimentalInfo, PrintsEnumerationsAsIntegersAndNoLineEnd) {
  EXPECT_EQ(printed(Sample<ExperimentalInfo>::filled()),
            "temperature (K): 295.5, temperature text: room, pressure: 1 GPa, experimental density: 1.25, "
            "calculated density: 1.5, R-factor: 0.045, mean_cc_bond_sigma: 120.0010.005, probe: 2, "
            "radiation source: reactor, absolute configuration: 1, diffraction details: weak, powder: 2, "
            "refinement details: riding H, intensity method: 3");
}

TEST(ExperimentalInfo, PrintsItsBoolAsTheStreamDoes) {
  std::ostringstream os;
  os << std::boolalpha;
  ExperimentalInfo().print(os);
  EXPECT_NE(os.str().find("absolute configuration: false, "), std::string::npos);
}

// Every text and number has been read by then; the enumerations are stored in the order of their checks.
TEST(ExperimentalInfo, KeepsABadProbeAndTheOldMethodAndPowder) {
  ExperimentalInfo info = Sample<ExperimentalInfo>::filled();
  EXPECT_EQ(failed_read<std::invalid_argument>(info, stored_with(5, 3, 4)), bad_probe);
  EXPECT_EQ(info.probe, 5);
  EXPECT_EQ(info.intensity_method, ExperimentalInfo::diffractometer);
  EXPECT_EQ(info.powder, ExperimentalInfo::powder_study);
  EXPECT_EQ(info.refinement_details, "t");
}

TEST(ExperimentalInfo, KeepsABadMethodTheNewProbeAndTheOldPowder) {
  ExperimentalInfo info = Sample<ExperimentalInfo>::filled();
  EXPECT_EQ(failed_read<std::invalid_argument>(info, stored_with(1, 3, -1)), bad_method);
  EXPECT_EQ(info.probe, ExperimentalInfo::x_ray);
  EXPECT_EQ(info.intensity_method, -1);
  EXPECT_EQ(info.powder, ExperimentalInfo::powder_study);
}

TEST(ExperimentalInfo, KeepsABadPowderStudyAndEverythingElseNew) {
  ExperimentalInfo info;
  EXPECT_EQ(failed_read<std::invalid_argument>(info, stored_with(4, 3, 1)), bad_powder);
  info.powder = ExperimentalInfo::unknown_study;
  EXPECT_EQ(bytes_of(info), stored_with(4, 0, 1));
}

TEST(ExperimentalInfo, ConsumesAllItsBytesAlsoWhenAProbeIsBad) {
  ExperimentalInfo info;
  const std::string stored = stored_with(INT_MAX, 0, 0);
  read_from(stored + "after", [&](Archive& archive) {
    EXPECT_THROW(info.read(archive), std::invalid_argument);
    EXPECT_EQ(std::ftell(archive.stream()), static_cast<long>(stored.size()));
  });
}

TEST(ExperimentalInfo, KeepsItsEnumerationsWhenTheStreamEndsBeforeTheLast) {
  ExperimentalInfo info = Sample<ExperimentalInfo>::filled();
  const std::string stored = stored_with(1, 1, 1);
  failed_read<ArchiveError>(info, stored.substr(0, stored.size() - 1));
  EXPECT_EQ(info.refinement_details, "t");
  EXPECT_EQ(info.probe, ExperimentalInfo::neutron);
  EXPECT_EQ(info.powder, ExperimentalInfo::powder_study);
  EXPECT_EQ(info.intensity_method, ExperimentalInfo::diffractometer);
}

TEST(ExperimentalInfo, KeepsTheComparatorOfItsRangeWhenItIsRead) {
  ExperimentalInfo info;
  info.mean_cc_bond_sigma =
      SigmaRange(0, RangeLimit::inclusive, 0, RangeLimit::inclusive, DoubleComparator{0.25, less_than});
  read_from(stored_with(0, 0, 0), [&](Archive& archive) { info.read(archive); });
  EXPECT_EQ(info.mean_cc_bond_sigma.comparator().tolerance, 0.25);
  EXPECT_EQ(info.mean_cc_bond_sigma.lower(), 1.0);
}

TEST(ExperimentalInfo, ReadsAnyByteButZeroAsTrue) {
  ExperimentalInfo info;
  std::string stored = bytes_of(info);
  stored[72] = '\x80';  // after 4 doubles, 3 texts, a range of 24 bytes and the probe
  read_from(stored, [&](Archive& archive) { info.read(archive); });
  EXPECT_TRUE(info.absolute_configuration);
}

TEST(ExperimentalInfo, ReadsBackEqual) {
  ExperimentalInfo back;
  read_from(bytes_of(Sample<ExperimentalInfo>::filled()), [&](Archive& archive) { back.read(archive); });
  EXPECT_TRUE(back == Sample<ExperimentalInfo>::filled());
}

TEST(ExperimentalInfo, IsEqualWithinATenMillionthInEachNumber) {
  for (double ExperimentalInfo::*number :
       {&ExperimentalInfo::temperature, &ExperimentalInfo::experimental_density,
        &ExperimentalInfo::calculated_density, &ExperimentalInfo::r_factor}) {
    ExperimentalInfo info;
    ExperimentalInfo other;
    info.*number = 300.0;
    other.*number = 300.00000005;
    EXPECT_TRUE(info == other);
    other.*number = 300.0000002;
    EXPECT_FALSE(info == other);
    EXPECT_FALSE(other == info);
    other.*number = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(info == other);
  }
}

TEST(ExperimentalInfo, ComparesItsRangeWithTheComparatorOnTheLeft) {
  ExperimentalInfo wide;
  wide.mean_cc_bond_sigma =
      SigmaRange(0, RangeLimit::inclusive, 0, RangeLimit::inclusive, DoubleComparator{10.0, less_than});
  ExperimentalInfo narrow;
  narrow.mean_cc_bond_sigma =
      SigmaRange(1, RangeLimit::inclusive, 1, RangeLimit::inclusive, DoubleComparator());
  EXPECT_TRUE(wide == narrow);
  EXPECT_FALSE(narrow == wide);
}

TEST(ExperimentalInfo, DiffersInEachFieldThatIsComparedExactly) {
  using Change = void (*)(ExperimentalInfo&);
  const std::vector<std::pair<const char*, Change>> changes = {
      {"temperature_text", [](ExperimentalInfo& info) { info.temperature_text += ' '; }},
      {"pressure", [](ExperimentalInfo& info) { info.pressure += ' '; }},
      {"mean_cc_bond_sigma", [](ExperimentalInfo& info) { info.mean_cc_bond_sigma = SigmaRange(); }},
      {"probe", [](ExperimentalInfo& info) { info.probe = ExperimentalInfo::gamma; }},
      {"radiation_source", [](ExperimentalInfo& info) { info.radiation_source += ' '; }},
      {"absolute_configuration", [](ExperimentalInfo& info) { info.absolute_configuration = false; }},
      {"diffraction_details", [](ExperimentalInfo& info) { info.diffraction_details += ' '; }},
      {"powder", [](ExperimentalInfo& info) { info.powder = ExperimentalInfo::unknown_study; }},
      {"refinement_details", [](ExperimentalInfo& info) { info.refinement_details += ' '; }},
      {"intensity_method",
       [](ExperimentalInfo& info) { info.intensity_method = ExperimentalInfo::unknown_method; }}};
  for (const auto& [reason, change] : changes) {
    ExperimentalInfo other = Sample<ExperimentalInfo>::filled();
    change(other);
    EXPECT_FALSE(Sample<ExperimentalInfo>::filled() == other) << reason;
  }
}

}  // namespace
