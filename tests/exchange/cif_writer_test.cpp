#include <exchange/cif_reader.h>
#include <exchange/cif_writer.h>
#include <exchange/entry_json.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

#include "exchange/full_entry.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string cif_of(const Entry& entry) {
  std::ostringstream os;
  CifWriter(os).write(entry);
  return os.str();
}

ImportResult read_one(const std::string& cif) {
  auto results = read_cif(cif);
  if (results.size() != 1) throw std::runtime_error(std::to_string(results.size()) + " results");
  return results.front();
}

TEST(CifWriter, WritesWhatReadsBackToEqualComponents) {
  const Entry entry = full_entry();
  const ImportResult back = read_one(cif_of(entry));
  ASSERT_EQ(back.status, ImportResult::imported) << back.reason;
  EXPECT_EQ(back.identifier, "FULL 01");
  EXPECT_EQ(archived(*back.entry), archived(entry));
  EXPECT_EQ(entry_json(*back.entry).dump(), entry_json(entry).dump());
}

TEST(CifWriter, WritesAnEntryOfNullsThatReadsBack) {
  const Entry entry = Entry::from(DatabaseEntryIdentifier("X"), ComponentHandles());
  EXPECT_EQ(entry_json(*read_one(cif_of(entry)).entry).dump(), entry_json(entry).dump());
}

TEST(CifWriter, WritesNothingUnderOurPrefixThatTheTagsOfCifSay) {
  const std::string cif =
      "data_x\n_cell_length_a 4\n_journal_year 1979\n_journal_volume 101\n_chemical_name_systematic 'sodium "
      "chloride'\n_diffrn_ambient_temperature 293(2)\n_chemical_melting_point_gt "
      "300\nloop_\n_atom_site_label\n"
      "_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\nNa1 0 0.333333333 0\n";
  const ImportResult entry = read_one(cif);
  const std::string written_cif = cif_of(*entry.entry);
  EXPECT_THAT(written_cif, StartsWith("#\\#CIF_1.1\ndata_x\n"));
  EXPECT_THAT(written_cif, HasSubstr("_diffrn_ambient_temperature 293(2)\n"));
  EXPECT_THAT(written_cif, HasSubstr("_chemical_melting_point_gt 300\n"));
  EXPECT_THAT(written_cif, Not(HasSubstr("_dbentry_")));
}

TEST(CifWriter, HasLinesThatCifAllows) {
  Entry entry = full_entry();
  const auto info = made<CrystalInfo>();
  info->notes = std::string(5000, 'x') + "\\\n;a semicolon \\ \n\\";
  entry.set_crystal_info(info);
  const std::string cif = cif_of(entry);
  std::istringstream lines(cif);
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 2048U);
  EXPECT_EQ(archived(*read_one(cif).entry), archived(entry));
}

TEST(CifWriter, GivesEachBlockANameOfItsOwn) {
  std::ostringstream os;
  CifWriter writer(os);
  for (int i = 0; i < 2; ++i) writer.write(full_entry());
  EXPECT_THAT(os.str(), HasSubstr("data_FULL_01\n"));
  EXPECT_THAT(os.str(), HasSubstr("data_FULL_01-2\n"));
  EXPECT_EQ(read_cif(os.str()).size(), 2U);
}

TEST(OwnTags, OfTheWrongKindAreNamedAndLeaveTheOthers) {
  const ImportResult entry =
      read_one("data_x\n_cell_length_a 4\n_dbentry_crystal_info_z four\n_dbentry_nothing 1\n");
  ASSERT_EQ(entry.status, ImportResult::imported);
  EXPECT_EQ(entry.entry->cell()->a(), 4.0);
  std::string warnings;
  for (const ImportWarning& warning : entry.warnings) warnings += warning.text + "\n";
  EXPECT_THAT(warnings, HasSubstr("unknown tag _dbentry_nothing\n"));
  EXPECT_THAT(warnings,
              HasSubstr("tags of our own are not read: entry x: crystal_info.z: a number is expected\n"));
}

}  // namespace
