#include <database_entry/foundations/archive_encodings.h>
#include <database_entry/foundations/component_text.h>
#include <database_entry/records/published_geometry.h>
#include <gtest/gtest.h>

namespace {

using Bonds = std::vector<THandle<PublishedBond>>;

template <class Component>
concept Archived = requires(Archive& archive, THandle<Component>& handle) {
  archive << handle;
};
// A published geometry never reaches an archive.
static_assert(!Archived<PublishedGeometry>);

THandle<PublishedBond> bond() {
  const THandle<Atom> atom(new Atom);
  return THandle<PublishedBond>(new PublishedBond(atom, atom, UncertainValue(1.5), false, false));
}

TEST(PublishedGeometry, ByDefaultHasNoListAtAll) {
  const PublishedGeometry none;
  EXPECT_TRUE(none.bonds.is_null());
  EXPECT_FALSE(none.flag);
}

TEST(PublishedGeometry, SharesTheListItIsGiven) {
  const THandle<Bonds> bonds(new Bonds);
  const PublishedGeometry geometry(bonds, true);
  EXPECT_EQ(geometry.bonds, bonds);
  EXPECT_EQ(bonds.use_count(), 2);
  EXPECT_TRUE(geometry.flag);
}

TEST(PublishedGeometry, SeesABondThatIsAddedThroughTheListOfAnother) {
  const THandle<Bonds> bonds(new Bonds);
  const PublishedGeometry first(bonds, false);
  const PublishedGeometry second(bonds, false);
  bonds->push_back(bond());
  EXPECT_EQ(first.bonds->size(), 1U);
  EXPECT_EQ(second.bonds->front(), first.bonds->front());
}

TEST(PublishedGeometry, ReleasesItsBondsWithTheLastHolderOfTheirList) {
  const THandle<PublishedBond> kept = bond();
  const THandle<PublishedGeometry> first(new PublishedGeometry(THandle<Bonds>(new Bonds{kept}), false));
  THandle<PublishedGeometry> second(new PublishedGeometry(*first));
  EXPECT_EQ(first->bonds.use_count(), 2);
  second = THandle<PublishedGeometry>(new PublishedGeometry);
  EXPECT_EQ(first->bonds.use_count(), 1);
  EXPECT_EQ(kept.use_count(), 2);
  first->bonds = THandle<Bonds>();
  EXPECT_EQ(kept.use_count(), 1);
}

TEST(PublishedGeometry, LeavesAListThatIsHeldElsewhere) {
  const THandle<Bonds> bonds(new Bonds{bond()});
  { const PublishedGeometry geometry(bonds, false); }
  EXPECT_EQ(bonds.use_count(), 1);
  EXPECT_EQ(bonds->size(), 1U);
}

}  // namespace
