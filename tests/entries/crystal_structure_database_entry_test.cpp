#include <database_entry/entries/crystal_structure_database_entry.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "support/sample_entry.h"

namespace {

static_assert(std::is_abstract_v<CrystalStructureDatabaseEntry>);
static_assert(std::has_virtual_destructor_v<CrystalStructureDatabaseEntry>);

// Ten components may stand in an archive through a handle, and no other.
template <class T>
concept WrittenThroughHandle = requires(Archive& archive, const THandle<T>& handle) {
  archive << handle;
};
template <class T>
concept ReadThroughHandle = requires(Archive& archive, THandle<T>& handle) {
  archive >> handle;
};
template <class... T>
constexpr bool all_archived = ((WrittenThroughHandle<T> && ReadThroughHandle<T>)&&...);
template <class... T>
constexpr bool none_archived = ((!WrittenThroughHandle<T> && !ReadThroughHandle<T>)&&...);

static_assert(all_archived<CrystalMaker, Cell, Publication, ExperimentalInfo, EditorsInfo, ChemicalInfo,
                           CrystalInfo, ConnectivityInfo, CrossReferenceInfo, DepositionInfo>);
static_assert(none_archived<ChemicalDiagram, PublishedGeometry, CrystalDiagramMatch, ConnectivityDiagramMatch,
                            CrystalConnectivityMatch, DisorderSelectors, Journal, Connectivity>);

template <class T>
concept PrintedThroughHandle = requires(std::ostream& os, const THandle<T>& handle) {
  os << handle;
};
template <class... T>
constexpr bool all_printed = (PrintedThroughHandle<T> && ...);
template <class... T>
constexpr bool none_printed = (!PrintedThroughHandle<T> && ...);

static_assert(all_printed<CrystalMaker, Publication, ExperimentalInfo, EditorsInfo, ChemicalInfo, CrystalInfo,
                          ChemicalDiagram, ConnectivityInfo, CrossReferenceInfo, DepositionInfo>);
static_assert(none_printed<Cell, PublishedGeometry, DisorderSelectors, CrystalDiagramMatch>);

TEST(PrintedEntry, WithoutComponentsIsElevenLines) {
  EXPECT_EQ(printed(empty_entry()), empty_text);
}

TEST(PrintedEntry, ShowsItsComponentsUnderTheirLabels) {
  const CrystalStructureImmediateDatabaseEntry entry = sample_entry();
  const CrystalStructureDatabaseEntry& base = entry;
  EXPECT_EQ(printed(base), sample_text);
}

TEST(PrintedEntry, RunsComponentsTogetherWhoseTextsEndWithoutALineEnd) {
  CrystalStructureImmediateDatabaseEntry entry = empty_entry();
  entry.set_cross_reference_info(handle_to(CrossReferenceInfo()));
  entry.set_deposition_info(handle_to(DepositionInfo()));
  EXPECT_TRUE(printed(entry).ends_with("\ncross reference info:\nCross References: deposition info:\n"));
}

struct WithoutPublication : CrystalStructureImmediateDatabaseEntry {
  WithoutPublication() : CrystalStructureImmediateDatabaseEntry(sample_entry()) {}
  THandle<Publication> publication() const override { throw 7; }
};

TEST(PrintedEntry, KeepsWhatWasWrittenBeforeAnAccessorFailed) {
  std::ostringstream os;
  EXPECT_THROW(WithoutPublication().print(os), int);
  EXPECT_EQ(os.str(), sample_text.substr(0, sample_text.find("publication:")));
}

}  // namespace
