#include <chemistry/bond.h>
#include <chemistry/chemical_diagram.h>
#include <chemistry/connectivity.h>
#include <chemistry/disorder_selector.h>
#include <chemistry/graph_match.h>
#include <gtest/gtest.h>

namespace {

// The three matches of an entry.
using CrystalDiagram = GraphMatch<THandle<Atom>, THandle<Bond>, THandle<DiagramAtom>, THandle<DiagramBond>>;
using ConnectivityDiagram = GraphMatch<THandle<ConnectivityAtom>, THandle<ConnectivityBond>,
                                       THandle<DiagramAtom>, THandle<DiagramBond>>;
using CrystalConnectivity =
    GraphMatch<THandle<Atom>, THandle<Bond>, THandle<ConnectivityAtom>, THandle<ConnectivityBond>>;

template <class Match>
class GraphMatchOf : public testing::Test {};
using Matches = testing::Types<CrystalDiagram, ConnectivityDiagram, CrystalConnectivity>;
TYPED_TEST_SUITE(GraphMatchOf, Matches);

TYPED_TEST(GraphMatchOf, PairsNothingByDefault) {
  EXPECT_TRUE(TypeParam().atoms.empty());
  EXPECT_TRUE(TypeParam().bonds.empty());
}

TEST(GraphMatch, SharesTheAtomsItPairs) {
  const THandle<Atom> atom(new Atom);
  const THandle<DiagramAtom> drawn(new DiagramAtom);
  CrystalDiagram match;
  match.atoms.emplace_back(atom, drawn);
  EXPECT_EQ(atom.use_count(), 2);
  EXPECT_EQ(match.atoms[0].second, drawn);
}

TEST(DisorderSelector, SharesTheAtomsOfItsGroup) {
  const THandle<Atom> atom(new Atom);
  const DisorderSelector selector{"A", "1", {atom}};
  EXPECT_EQ(selector.atoms[0], atom);
}

}  // namespace
