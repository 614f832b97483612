// The cells of published structures, changed a little and brought into another setting, asked of stores: what
// a database narrows down by must lose none of them. The search itself has its tests beside the lattices.
#include <exchange/cif_reader.h>
#include <gtest/gtest.h>
#include <lattice/reduced_cell.h>
#include <support/file_contents.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "stores/places.h"

namespace {

Entries sample_entries() {
  std::vector<std::filesystem::path> paths;
  if (std::filesystem::exists(SAMPLE_CRYSTALS))
    for (const auto& file : std::filesystem::recursive_directory_iterator(SAMPLE_CRYSTALS))
      if (file.path().extension() == ".cif") paths.push_back(file.path());
  std::sort(paths.begin(), paths.end());
  Entries entries;
  for (const std::filesystem::path& path : paths) {
    const std::string cif = contents_of_file(path);
    for (const ImportResult& result : read_cif(cif)) {
      if (result.entry.is_null()) continue;
      entries.push_back(*result.entry);
      entries.back().set_identifier(DatabaseEntryIdentifier(std::to_string(entries.size())));
    }
  }
  return entries;
}

// Of the reduced cell, whose axes have changed places and directions, with lengths and angles changed by a
// third of the tolerance.
std::array<double, 6> changed(const EntryColumns& columns, double percent, std::mt19937& random) {
  const std::array<double, 3> lengths = {*columns.reduced_a, *columns.reduced_b, *columns.reduced_c};
  const std::array<double, 3> angles = {*columns.reduced_alpha, *columns.reduced_beta,
                                        *columns.reduced_gamma};
  const auto by = [&] { return (random() % 2 == 0 ? -percent : percent) / 300.0; };
  std::array<std::size_t, 3> places = {0, 1, 2};
  std::shuffle(places.begin(), places.end(), random);
  const std::size_t turned = random() % 3;  // two of the angles become what is left of 180 degrees
  std::array<double, 6> cell{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    cell[axis] = lengths[places[axis]] * (1 + by());
    const double angle = angles[places[axis]];
    cell[3 + axis] = (axis == turned ? angle : 180.0 - angle) + 90.0 * by();
  }
  return cell;
}

template <class Place>
class StoredCells : public testing::Test {
 protected:
  void SetUp() override {
    if (!place_.is_there()) GTEST_SKIP() << "the server is not installed";
  }
  Place place_;
};
using Places = testing::Types<SqlitePlace, PostgresqlPlace>;
TYPED_TEST_SUITE(StoredCells, Places);

TYPED_TEST(StoredCells, AreFoundAgainWhereTheScanFindsThem) {
  const Entries entries = sample_entries();
  if (entries.empty()) GTEST_SKIP() << "the sample package is not installed: " << SAMPLE_CRYSTALS;
  ASSERT_EQ(entries.size(), 506U);
  const auto store = this->place_.holding(entries);
  const std::vector<EntryColumns> all = store->select_columns({});
  std::mt19937 random(5);
  std::size_t asked = 0;
  std::size_t found = 0;
  for (const EntryColumns& columns : all) {
    const double percent = std::array{0.3, 1.0, 3.0}[random() % 3];
    // One file has its lengths and angles exchanged.
    if (!columns.reduced_volume || *columns.alpha < 5) continue;
    const EntryQuery query = EntryQuery::cell(changed(columns, percent, random), percent);
    std::vector<DatabaseEntryIdentifier> expected;
    for (const EntryColumns& other : all)
      if (query.matches(other)) expected.emplace_back(other.identifier);
    const auto answer = store->select(query);
    ASSERT_EQ(answer, expected) << columns.identifier;
    ++asked;
    found +=
        std::count(answer.begin(), answer.end(), DatabaseEntryIdentifier(columns.identifier)) == 1 ? 1U : 0U;
  }
  EXPECT_GE(asked, 500U);
  EXPECT_EQ(found, asked);
}

}  // namespace
