#include <chemistry/chemical_diagram.h>
#include <gtest/gtest.h>

#include "support/bytes.h"

namespace {

TEST(ChemicalDiagram, PrintsOneLine) {
  ChemicalDiagram diagram;
  EXPECT_EQ(printed(diagram), "diagram atoms: 0, diagram bonds: 0\n");
  diagram.atoms.resize(6);
  diagram.bonds.resize(5);
  EXPECT_EQ(printed(diagram), "diagram atoms: 6, diagram bonds: 5\n");
}

TEST(DiagramBond, IsTheSameOnlyBetweenTheSameAtomObjects) {
  const THandle<DiagramAtom> one(new DiagramAtom);
  const THandle<DiagramAtom> other(new DiagramAtom);
  const DiagramBond bond{one, other, BondType::aromatic};
  EXPECT_EQ(bond, (DiagramBond{one, other, BondType::aromatic}));
  EXPECT_NE(bond, (DiagramBond{other, one, BondType::aromatic}));
  EXPECT_NE(bond, (DiagramBond{one, other, BondType::pi}));
}

}  // namespace
