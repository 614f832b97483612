#include <database_entry/records/published_bond.h>
#include <gtest/gtest.h>

#include <type_traits>

namespace {

static_assert(!std::is_default_constructible_v<PublishedBond>);

class PublishedBondTest : public testing::Test {
 protected:
  THandle<Atom> carbon{new Atom};
  THandle<Atom> oxygen{new Atom};
  UncertainValue length{1.215, 0.003};
  PublishedBond bond{carbon, oxygen, length, true, false};
};

TEST_F(PublishedBondTest, TakesTheConstructorsArgumentsInFieldOrder) {
  EXPECT_EQ(bond.first_atom, carbon);
  EXPECT_EQ(bond.second_atom, oxygen);
  EXPECT_EQ(bond.length, length);
  EXPECT_TRUE(bond.first_flag);
  EXPECT_FALSE(bond.second_flag);
}

TEST_F(PublishedBondTest, SharesItsAtoms) {
  EXPECT_EQ(carbon.use_count(), 2);
  {
    const PublishedBond copy = bond;
    EXPECT_EQ(carbon.use_count(), 3);
    EXPECT_EQ(copy.first_atom.get(), carbon.get());
  }
  EXPECT_EQ(carbon.use_count(), 2);
  EXPECT_EQ(oxygen.use_count(), 2);
}

TEST_F(PublishedBondTest, IsEqualWithTheSameAtomsLengthAndFlags) {
  EXPECT_TRUE(bond == PublishedBond(carbon, oxygen, length, true, false));
}

TEST_F(PublishedBondTest, DiffersInEachFlag) {
  EXPECT_FALSE(bond == PublishedBond(carbon, oxygen, length, true, true));
  EXPECT_FALSE(bond == PublishedBond(carbon, oxygen, length, false, false));
}

TEST_F(PublishedBondTest, DiffersInItsLengthAndInItsUncertainty) {
  EXPECT_FALSE(bond == PublishedBond(carbon, oxygen, UncertainValue(1.216, 0.003), true, false));
  EXPECT_FALSE(bond == PublishedBond(carbon, oxygen, UncertainValue(1.215, 0.004), true, false));
}

TEST_F(PublishedBondTest, DiffersFromTheBondTheOtherWayRound) {
  EXPECT_FALSE(bond == PublishedBond(oxygen, carbon, length, true, false));
}

TEST_F(PublishedBondTest, DiffersWithCopiesOfItsAtoms) {
  const THandle<Atom> other_carbon(new Atom(*carbon));
  const THandle<Atom> other_oxygen(new Atom(*oxygen));
  EXPECT_FALSE(bond == PublishedBond(other_carbon, oxygen, length, true, false));
  EXPECT_FALSE(bond == PublishedBond(carbon, other_oxygen, length, true, false));
}

TEST_F(PublishedBondTest, ComparesNullAtomsAsTheSameAtom) {
  const PublishedBond none(THandle<Atom>(), THandle<Atom>(), length, true, false);
  EXPECT_TRUE(none == PublishedBond(THandle<Atom>(), THandle<Atom>(), length, true, false));
}

}  // namespace
