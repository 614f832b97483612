#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <perception/entry_check.h>

#include <cmath>

#include "crystals.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Rock salt with everything that the checks ask for, all of it right.
class Salt {
 public:
  Salt() {
    chemical->formula = "Cl Na";
    crystal_info->z = 4;
    experimental->calculated_density = 2.164;
    publication->year = 1960;
    put(crystal({5.64, 5.64, 5.64, 90, 90, 90}, face_centred, {{"Na", {0, 0, 0}}, {"Cl", {0.5, 0, 0}}}));
  }
  void put(const CrystalMaker& maker) {
    handles[component_row<ComponentKind::crystal_maker>] = THandle<CrystalMaker>(new CrystalMaker(maker));
  }
  [[nodiscard]] CrystalStructureImmediateDatabaseEntry entry(const char* identifier = "SALT") const {
    ComponentHandles all = handles;
    all[component_row<ComponentKind::chemical_info>] = chemical;
    all[component_row<ComponentKind::crystal_info>] = crystal_info;
    all[component_row<ComponentKind::experimental_info>] = experimental;
    all[component_row<ComponentKind::publication>] = publication;
    all[component_row<ComponentKind::editors_info>] = editors;
    all[component_row<ComponentKind::cross_reference_info>] = references;
    all[component_row<ComponentKind::published_geometry>] = geometry;
    return CrystalStructureImmediateDatabaseEntry::from(DatabaseEntryIdentifier(identifier), all);
  }

  ComponentHandles handles;
  THandle<ChemicalInfo> chemical{new ChemicalInfo};
  THandle<CrystalInfo> crystal_info{new CrystalInfo};
  THandle<ExperimentalInfo> experimental{new ExperimentalInfo};
  THandle<Publication> publication{new Publication};
  THandle<EditorsInfo> editors{new EditorsInfo};
  THandle<CrossReferenceInfo> references{new CrossReferenceInfo};
  THandle<PublishedGeometry> geometry;
};

std::vector<int> numbers(const CrystalStructureDatabaseEntry& entry, const CheckOptions& options = {}) {
  std::vector<int> list;
  for (const Finding& finding : check_entry(entry, options)) list.push_back(finding.number);
  return list;
}

TEST(CheckEntry, FindsNothingInAGoodEntry) {
  EXPECT_THAT(numbers(Salt().entry()), IsEmpty());
}

TEST(CheckEntry, FindsNothingInAnEntryOfWhichNothingIsKnown) {
  EXPECT_THAT(numbers(CrystalStructureImmediateDatabaseEntry::from(DatabaseEntryIdentifier("A"), {})),
              IsEmpty());
  EXPECT_THAT(numbers(CrystalStructureImmediateDatabaseEntry(DatabaseEntryIdentifier("A"),
                                                             THandle<CrystalMaker>(new CrystalMaker))),
              IsEmpty());
}

struct Wrong {
  const char* what;
  void (*change)(Salt&);
  std::vector<int> numbers;
};

class WrongEntry : public testing::TestWithParam<Wrong> {};

TEST_P(WrongEntry, IsFoundByItsNumber) {
  Salt salt;
  GetParam().change(salt);
  EXPECT_EQ(numbers(salt.entry(),
                    {.is_there = [](const DatabaseEntryIdentifier& id) { return id.text() == "GHIJKL"; },
                     .year = 2030}),
            GetParam().numbers)
      << GetParam().what;
}

const std::vector<std::string> none = {};
const std::vector<Site> sites = {{"Na", {0, 0, 0}}, {"Cl", {0.5, 0, 0}}};

INSTANTIATE_TEST_SUITE_P(
    CheckEntry, WrongEntry,
    testing::Values(
        Wrong{"a cell that is none",
              [](Salt& s) {
                s.put(crystal({5.64, 5.64, 5.64, 90, 90, 0}, face_centred, sites));
              },
              {11}},
        Wrong{"no operators",
              [](Salt& s) {
                s.put(crystal({5.64, 5.64, 5.64, 90, 90, 90}, none, sites));
              },
              {12, 42}},
        Wrong{"operators that are no group",
              [](Salt& s) {
                s.put(crystal({5.64, 5.64, 5.64, 90, 90, 90}, {"x,y,z", "x,1/2+y,1/2+z", "1/2+x,y,1/2+z"},
                              sites));
              },
              {13, 42}},
        Wrong{"a fourfold axis in a cell that is not square",
              [](Salt& s) {
                s.put(crystal({5.5, 5.8, 5.62, 90, 90, 90}, {"x,y,z", "-y,x,z", "-x,-y,z", "y,-x,z"},
                              {{"Na", {0, 0, 0}}, {"Cl", {0.5, 0.5, 0}}}));
                s.crystal_info->z = 1;
                s.experimental->calculated_density = 0;
              },
              {14}},
        Wrong{"a position that is no number",
              [](Salt& s) {
                s.put(crystal({5.64, 5.64, 5.64, 90, 90, 90}, face_centred, {{"Na", {0, std::nan(""), 0}}}));
              },
              {21}},
        Wrong{"an element that is none",
              [](Salt& s) {
                s.put(crystal({5.64, 5.64, 5.64, 90, 90, 90}, face_centred,
                              {{"Na", {0, 0, 0}}, {"Wx", {0.5, 0, 0}}}));
              },
              {22}},
        Wrong{"an occupancy above one",
              [](Salt& s) {
                s.put(crystal({5.64, 5.64, 5.64, 90, 90, 90}, face_centred,
                              {{"Na", {0, 0, 0}, 1.5}, {"Cl", {0.5, 0, 0}, 1.5}}));
                s.crystal_info->z = 0;
              },
              {23, 23}},
        Wrong{"two atoms at half a bond",
              [](Salt& s) {
                s.put(crystal({5.64, 5.64, 5.64, 90, 90, 90}, face_centred,
                              {{"Na", {0, 0, 0}}, {"Cl", {0.2, 0, 0}}}));
              },
              {24}},
        Wrong{"a formula that is none", [](Salt& s) { s.chemical->formula = "salt"; }, {31}},
        Wrong{"a formula with another element",
              [](Salt& s) {
                s.chemical->formula = "Br Na";
                s.experimental->calculated_density = 0;
              },
              {32}},
        Wrong{"a formula with another ratio",
              [](Salt& s) {
                s.chemical->formula = "Cl2 Na";
                s.experimental->calculated_density = 0;
              },
              {33}},
        Wrong{"another density", [](Salt& s) { s.experimental->calculated_density = 2.3; }, {41}},
        Wrong{"a measured density, which is not as good",
              [](Salt& s) { s.experimental->experimental_density = 2.3; },
              {}},
        Wrong{"another Z",
              [](Salt& s) {
                s.crystal_info->z = 2;
                s.experimental->calculated_density = 0;
              },
              {42}},
        Wrong{"modified before it was accessed",
              [](Salt& s) {
                s.editors->accession_date = Date(2003, 5, 17);
                s.editors->modification_date = Date(2003, 5, 16);
              },
              {61}},
        Wrong{"published before diffraction", [](Salt& s) { s.publication->year = 1820; }, {62}},
        Wrong{"published in the future", [](Salt& s) { s.publication->year = 2040; }, {62}},
        Wrong{"one reference that is there and one that is not",
              [](Salt& s) {
                s.references->insert(
                    DatabaseCrossReference(DatabaseCrossReference::isomer, "see [GHIJKL] and [MNOPQR]"));
              },
              {71}},
        Wrong{"a published bond of another length",
              [](Salt& s) {
                const auto maker = s.handles[component_row<ComponentKind::crystal_maker>];
                const THandle<std::vector<THandle<PublishedBond>>> bonds(
                    new std::vector<THandle<PublishedBond>>);
                bonds->emplace_back(new PublishedBond(maker->atoms()[0], maker->atoms()[1],
                                                      UncertainValue(2.7, 0.01), false, false));
                bonds->emplace_back(new PublishedBond(maker->atoms()[0], maker->atoms()[1],
                                                      UncertainValue(2.82, 0.01), false, false));
                bonds->emplace_back(new PublishedBond(maker->atoms()[1], maker->atoms()[1],
                                                      UncertainValue(3.988, 0.01), false, false));
                s.geometry = THandle<PublishedGeometry>(new PublishedGeometry(bonds, false));
              },
              {51}}));

TEST(CheckEntry, SaysWhereAndWhat) {
  Salt salt;
  salt.put(crystal({5.64, 5.64, 5.64, 90, 90, 90}, face_centred, {{"Na", {0, 0, 0}}, {"Cl", {0.2, 0, 0}}}));
  const std::vector<Finding> findings = check_entry(salt.entry());
  ASSERT_EQ(findings.size(), 1u);
  EXPECT_EQ(findings[0].where, "atoms: Na1, Cl2");
  EXPECT_EQ(findings[0].sentence, "they are 1.128 Å apart");
}

TEST(CheckEntry, LetsTwoHalvesShareAPlace) {
  Salt salt;
  salt.chemical->formula = "Cl K0.5 Na0.5";
  salt.experimental->calculated_density = 0;
  salt.put(crystal({5.64, 5.64, 5.64, 90, 90, 90}, face_centred,
                   {{"Na", {0, 0, 0}, 0.5}, {"K", {0, 0, 0}, 0.5}, {"Cl", {0.5, 0, 0}}}));
  EXPECT_THAT(numbers(salt.entry()), IsEmpty());
}

TEST(DuplicateSearch, FindsTheSameLatticeAndCompositionInAnySetting) {
  Salt primitive;
  primitive.put(
      crystal({3.99, 3.99, 3.99, 60, 60, 60}, {"x,y,z"}, {{"Na", {0, 0, 0}}, {"Cl", {0.5, 0.5, 0.5}}}));
  Salt larger;
  larger.put(crystal({5.8, 5.8, 5.8, 90, 90, 90}, face_centred, sites));
  Salt other;
  other.put(crystal({5.64, 5.64, 5.64, 90, 90, 90}, face_centred, {{"K", {0, 0, 0}}, {"Cl", {0.5, 0, 0}}}));
  DuplicateSearch search;
  EXPECT_THAT(search.add(Salt().entry("FIRST")), IsEmpty());
  EXPECT_THAT(search.add(larger.entry("LARGER")), IsEmpty());
  EXPECT_THAT(search.add(other.entry("OTHER")), IsEmpty());
  const std::vector<Finding> findings = search.add(primitive.entry("PRIMITIVE"));
  ASSERT_EQ(findings.size(), 1u);
  EXPECT_EQ(findings[0].number, 81);
  EXPECT_EQ(findings[0].where, "entry FIRST");
}

}  // namespace
