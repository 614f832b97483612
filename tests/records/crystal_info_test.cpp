#include <database_entry/records/crystal_info.h>
#include <gtest/gtest.h>

#include <limits>

#include "support/sample_records.h"

namespace {

TEST(CrystalInfo, TakesTheConstructorsArgumentsInFieldOrder) {
  const CrystalInfo info = Sample<CrystalInfo>::filled();
  EXPECT_EQ(info.z, 4.0);
  EXPECT_EQ(info.z_prime, 0.5);
  EXPECT_EQ(info.color, "red");
  EXPECT_EQ(info.melting_point, "371 K");
  EXPECT_EQ(info.disorder_details, "C7 over two sites");
  EXPECT_EQ(info.other_cell_details, "reduced cell");
}

TEST(CrystalInfo, ByDefaultPrintsTwoZerosAndItsLabelsBackToBack) {
  EXPECT_EQ(printed(CrystalInfo()),
            "Z: 0, Z': 0, color: , habit: , analogues: , melting_point: , notes: , phase_transitions: , "
            "polymorph: , sensitivity: , recrystallisation_solvent: , disorder_details: , "
            "other_cell_details: \n");
}

TEST(CrystalInfo, PrintsNumbersWithoutTrailingZeros) {
  EXPECT_EQ(printed(Sample<CrystalInfo>::filled()),
            "Z: 4, Z': 0.5, color: red, habit: needle, analogues: ABCDEF, melting_point: 371 K, "
            "notes: twinned, phase_transitions: at 90 K, polymorph: form II, sensitivity: light, "
            "recrystallisation_solvent: water, disorder_details: C7 over two sites, "
            "other_cell_details: reduced cell\n");
}

TEST(CrystalInfo, PrintsNumbersInTheFormatOfTheStream) {
  std::ostringstream os;
  os << std::fixed;
  os.precision(2);
  Sample<CrystalInfo>::filled().print(os);
  EXPECT_EQ(os.str().substr(0, 19), "Z: 4.00, Z': 0.50, ");
}

TEST(CrystalInfo, ByDefaultIsTwoZerosAndElevenEmptyTexts) {
  EXPECT_EQ(bytes_of(CrystalInfo()), std::string(2 * 8 + 11 * 4, '\0'));
}

TEST(CrystalInfo, ReadsBackEqualForAnyNumberButNaN) {
  using Limits = std::numeric_limits<double>;
  for (const double number : {-0.0, Limits::denorm_min(), Limits::max(), Limits::infinity(), 0.1}) {
    CrystalInfo info;
    info.z = info.z_prime = number;
    CrystalInfo back;
    read_from(bytes_of(info), [&](Archive& archive) { back.read(archive); });
    EXPECT_TRUE(back == info) << number;
  }
}

TEST(CrystalInfo, WithANaNIsUnequalToItsOwnCopy) {
  CrystalInfo info;
  info.z_prime = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(info == CrystalInfo(info));
}

TEST(CrystalInfo, KeepsTheFieldsAfterAFailure) {
  CrystalInfo info = Sample<CrystalInfo>::filled();
  failed_read<ArchiveError>(info, bytes(float64(8), float64(1), text("blue")));
  EXPECT_EQ(info.z, 8.0);
  EXPECT_EQ(info.color, "blue");
  EXPECT_EQ(info.habit, "needle");
}

TEST(CrystalInfo, DiffersInEachField) {
  using Change = void (*)(CrystalInfo&);
  const std::vector<std::pair<const char*, Change>> changes = {
      {"z by a trifle", [](CrystalInfo& info) { info.z += 1e-12; }},
      {"z_prime", [](CrystalInfo& info) { info.z_prime += 1e-12; }},
      {"color", [](CrystalInfo& info) { info.color += ' '; }},
      {"habit", [](CrystalInfo& info) { info.habit += ' '; }},
      {"analogues", [](CrystalInfo& info) { info.analogues += ' '; }},
      {"melting_point", [](CrystalInfo& info) { info.melting_point += ' '; }},
      {"notes", [](CrystalInfo& info) { info.notes += ' '; }},
      {"phase_transitions", [](CrystalInfo& info) { info.phase_transitions += ' '; }},
      {"polymorph", [](CrystalInfo& info) { info.polymorph += ' '; }},
      {"sensitivity", [](CrystalInfo& info) { info.sensitivity += ' '; }},
      {"recrystallisation_solvent", [](CrystalInfo& info) { info.recrystallisation_solvent += ' '; }},
      {"disorder_details", [](CrystalInfo& info) { info.disorder_details += ' '; }},
      {"other_cell_details", [](CrystalInfo& info) { info.other_cell_details += ' '; }}};
  EXPECT_TRUE(Sample<CrystalInfo>::filled() == Sample<CrystalInfo>::filled());
  for (const auto& [reason, change] : changes) {
    CrystalInfo other = Sample<CrystalInfo>::filled();
    change(other);
    EXPECT_FALSE(Sample<CrystalInfo>::filled() == other) << reason;
  }
}

}  // namespace
