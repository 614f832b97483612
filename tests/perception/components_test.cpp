#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <perception/components.h>

#include <limits>

#include "crystals.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

CrystalStructureImmediateDatabaseEntry entry_of(const CrystalMaker& maker) {
  return {DatabaseEntryIdentifier("ABCDEF"), THandle<CrystalMaker>(new CrystalMaker(maker))};
}

// Formic acid beside its image by a centre of symmetry.
CrystalMaker formic_acid() {
  return crystal({10, 10, 10, 90, 90, 90}, {"x,y,z", "-x,-y,-z"},
                 {{"C", {0.2, 0.2, 0.2}},
                  {"O", {0.265, 0.301, 0.2}},
                  {"O", {0.28, 0.093, 0.2}},
                  {"H", {0.09, 0.2, 0.2}},
                  {"H", {0.375, 0.105, 0.2}}});
}

TEST(PerceiveComponents, FillsConnectivityDiagramAndMatches) {
  const PerceivedEntry perceived = perceive_components(entry_of(formic_acid()));
  EXPECT_THAT(perceived.report.filled,
              ElementsAre("connectivity_info", "crystal_connectivity_match", "chemical_diagram",
                          "crystal_diagram_match", "connectivity_diagram_match", "editors_info.category"));
  const Connectivity& connectivity = *perceived.entry.connectivity_info()->connectivity();
  EXPECT_EQ(connectivity.atoms.size(), 5u);
  EXPECT_EQ(connectivity.bonds.size(), 4u);
  EXPECT_EQ(connectivity.atoms[0]->label, "C1");
  EXPECT_EQ(connectivity.bonds[0]->type, BondType::double_bond);
  EXPECT_EQ(perceived.entry.chemical_diagram()->atoms.size(), 3u);
  EXPECT_EQ(perceived.entry.chemical_diagram()->atoms[2]->label, "H");
}

TEST(PerceiveComponents, MakesMatchesThatHold) {
  const CrystalStructureImmediateDatabaseEntry entry = perceive_components(entry_of(formic_acid())).entry;
  EXPECT_THAT(objections_to(*entry.crystal_connectivity_match()), IsEmpty());
  EXPECT_THAT(objections_to(*entry.crystal_diagram_match()), IsEmpty());
  EXPECT_THAT(objections_to(*entry.connectivity_diagram_match()), IsEmpty());
  EXPECT_EQ(entry.crystal_connectivity_match()->atoms.size(), 5u);
  EXPECT_EQ(entry.crystal_connectivity_match()->atoms[3].first, entry.crystal_maker()->atoms()[3]);
}

TEST(PerceiveComponents, TellsMatchesThatDoNotHold) {
  CrystalConnectivityMatch match =
      *perceive_components(entry_of(formic_acid())).entry.crystal_connectivity_match();
  std::swap(match.atoms[0].second, match.atoms[1].second);
  EXPECT_THAT(objections_to(match), Contains(HasSubstr("C1: C is matched with O")));
  EXPECT_THAT(objections_to(match), Contains(HasSubstr("is matched with one between other atoms")));
}

TEST(PerceiveComponents, CountsMoietiesAndFormulaUnits) {
  const PerceptionReport report = perceive_components(entry_of(formic_acid())).report;
  ASSERT_EQ(report.moieties.size(), 1u);
  EXPECT_EQ(report.moieties[0].formula, "C H2 O2");
  EXPECT_EQ(report.moieties[0].in_cell, 2u);
  EXPECT_EQ(report.z, 2.0);
  EXPECT_EQ(report.z_prime, 1.0);
  EXPECT_EQ(report.bonds, 8u);
}

TEST(PerceiveComponents, SaysThatAConnectivityWasPerceived) {
  const CrystalStructureImmediateDatabaseEntry entry = perceive_components(entry_of(formic_acid())).entry;
  EXPECT_EQ(entry.editors_info()->connectivity_comment, perceived_comment);
  EXPECT_EQ(entry.editors_info()->category, EditorsInfo::full_structure);
  EXPECT_EQ(perceive_components(entry).entry.editors_info()->connectivity_comment, perceived_comment);
}

TEST(PerceiveComponents, LeavesWhatOthersShare) {
  CrystalStructureImmediateDatabaseEntry entry = entry_of(formic_acid());
  const THandle<EditorsInfo> shared(new EditorsInfo);
  shared->memo = "kept";
  entry.set_editors_info(shared);
  EXPECT_EQ(perceive_components(entry).entry.editors_info()->memo, "kept");
  EXPECT_EQ(shared->connectivity_comment, "");
  EXPECT_TRUE(entry.connectivity_info().is_null());
}

TEST(PerceiveComponents, KeepsAConnectivityThatWasNotPerceived) {
  const THandle<Connectivity> own(new Connectivity);
  own->atoms.emplace_back(new ConnectivityAtom);
  ComponentHandles handles;
  handles[component_row<ComponentKind::crystal_maker>] =
      THandle<CrystalMaker>(new CrystalMaker(formic_acid()));
  handles[component_row<ComponentKind::connectivity_info>] =
      THandle<ConnectivityInfo>(new ConnectivityInfo(own));
  const PerceivedEntry perceived = perceive_components(
      CrystalStructureImmediateDatabaseEntry::from(DatabaseEntryIdentifier("A"), handles));
  EXPECT_EQ(perceived.entry.connectivity_info()->connectivity(), own);
  EXPECT_THAT(perceived.report.notes, Contains("the entry has a connectivity, which is kept"));
}

TEST(PerceiveComponents, OffersNoConnectivityForAFrameworkUnlessAsked) {
  const auto entry = entry_of(
      crystal({5.64, 5.64, 5.64, 90, 90, 90}, face_centred, {{"Na", {0, 0, 0}}, {"Cl", {0.5, 0, 0}}}));
  EXPECT_TRUE(perceive_components(entry).entry.connectivity_info().is_null());
  EXPECT_THAT(perceive_components(entry).report.notes, Contains(HasSubstr("chains, layers or frameworks")));
  const PerceivedEntry asked = perceive_components(entry, {.frameworks = true});
  EXPECT_EQ(asked.entry.connectivity_info()->connectivity()->atoms.size(), 8u);
  EXPECT_EQ(asked.entry.connectivity_info()->connectivity()->bonds[0]->type, BondType::unknown);
}

TEST(PerceiveComponents, TakesAlkaliIonsOutOfASaltOfMolecules) {
  // Sodium formate: the carboxylate groups would hold together by sodium.
  const auto entry = entry_of(crystal({3.8, 6, 6, 90, 90, 90}, {"x,y,z"},
                                      {{"Na", {0, 0, 0}},
                                       {"C", {0.5, 0.3, 0}},
                                       {"O", {0.69, 0.127, 0}},
                                       {"O", {0.69, 0.473, 0}},
                                       {"H", {0.21, 0.3, 0}}}));
  const PerceivedEntry perceived = perceive_components(entry);
  ASSERT_EQ(perceived.report.moieties.size(), 2u);
  EXPECT_EQ(perceived.report.moieties[0].formula, "C H O2");
  EXPECT_EQ(perceived.report.moieties[1].formula, "Na");
}

TEST(PerceiveComponents, ShowsTheAlternativeThatIsTakenMost) {
  CrystalMaker maker = in_a_box({{"C", {0, 0, 0}}, {"Cl", {1.7, 0, 0}, 0.3}, {"Br", {1.9, 0, 0}, 0.7}});
  CrystalStructureImmediateDatabaseEntry entry = entry_of(maker);
  EXPECT_EQ(perceive_components(entry).entry.connectivity_info()->connectivity()->atoms[1]->element, "Br");
  const auto selector = [&](const char* group, std::size_t site) {
    return THandle<DisorderSelector>(new DisorderSelector{"A", group, {maker.atoms()[site]}});
  };
  entry.set_disorder_selector(
      THandle<DisorderSelectors>(new DisorderSelectors{selector("1", 1), selector("2", 2)}));
  EXPECT_EQ(perceive_components(entry).entry.connectivity_info()->connectivity()->atoms[1]->element, "Br");
}

TEST(PerceiveComponents, TakesTheEntrysOwnTolerance) {
  CrystalStructureImmediateDatabaseEntry entry = entry_of(in_a_box({{"C", {0, 0, 0}}, {"C", {2.2, 0, 0}}}));
  EXPECT_EQ(perceive_components(entry).report.bonds, 0u);
  const THandle<EditorsInfo> editors(new EditorsInfo);
  editors->bonding_tolerance = 0.8;
  entry.set_editors_info(editors);
  EXPECT_EQ(perceive_components(entry).report.bonds, 1u);
}

TEST(PerceiveComponents, DrawsNoMoleculeBeyondTheLimit) {
  const PerceivedEntry perceived = perceive_components(entry_of(formic_acid()), {.most_drawn_atoms = 4});
  EXPECT_TRUE(perceived.entry.chemical_diagram().is_null());
  EXPECT_THAT(perceived.report.notes, Contains(HasSubstr("5 atoms is not drawn")));
  EXPECT_TRUE(
      perceive_components(entry_of(formic_acid()), {.draw = false}).entry.chemical_diagram().is_null());
}

TEST(PerceiveComponents, SaysWhyNothingIsPerceived) {
  EXPECT_THAT(perceive_components(entry_of(in_a_box({}))).report.notes, ElementsAre("there are no atoms"));
  EXPECT_EQ(perceive_components(entry_of(in_a_box({}))).entry.editors_info()->category,
            EditorsInfo::unit_cell_only);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THAT(perceive_components(entry_of(in_a_box({{"C", {nan, 0, 0}}}))).report.notes,
              ElementsAre(HasSubstr("not finite")));
  EXPECT_THAT(
      perceive_components(entry_of(CrystalMaker(THandle<Cell>(new Cell),
                                                std::vector<THandle<Atom>>(5, THandle<Atom>(new Atom)))))
          .report.notes,
      ElementsAre(HasSubstr("No cell has a = 0")));
}

}  // namespace
