// The entry that the examples store and show: a small organic salt, with every archived component.
#pragma once

#include <database_entry/database_entry.h>

#include <vector>

inline THandle<std::vector<CrystalSymmetryOperator>> sample_operators() {
  const THandle<std::vector<CrystalSymmetryOperator>> operators(new std::vector<CrystalSymmetryOperator>);
  for (const char* xyz : {"x,y,z", "-x,1/2+y,1/2-z", "-x,-y,-z", "x,1/2-y,1/2+z"}) {
    operators->push_back(CrystalSymmetryOperator(xyz));
  }
  return operators;
}

inline THandle<CrystalMaker> sample_crystal_maker() {
  const THandle<Cell> cell(new Cell(10.123, 11.5, 7.25, 90.0, 101.3, 90.0, sample_operators()));
  const THandle<Atom> atom(new Atom);
  atom->label = "N1";
  atom->element = "N";
  atom->position = {0.25, 0.125, 0.5};
  return THandle<CrystalMaker>(new CrystalMaker(cell, {atom}));
}

// Crystal, diagram, connectivity and matches are fixed when an entry is made; the records are set.
inline CrystalStructureImmediateDatabaseEntry sample_entry() {
  const THandle<CrystalMaker> crystal_maker = sample_crystal_maker();
  // begin records
  ComponentHandles fixed;
  fixed[component_row<ComponentKind::crystal_maker>] = crystal_maker;
  fixed[component_row<ComponentKind::cell>] = crystal_maker->cell();
  fixed[component_row<ComponentKind::connectivity_info>] = THandle<ConnectivityInfo>::make();
  CrystalStructureImmediateDatabaseEntry entry =
      CrystalStructureImmediateDatabaseEntry::from(DatabaseEntryIdentifier("ABCDEF01"), fixed);

  const THandle<Publication> publication(
      new Publication({"A.B.Smith", "C.Jones"}, Journal(4), "101", 1979, "2345"));
  entry.set_publication(publication);

  const THandle<ExperimentalInfo> experiment(new ExperimentalInfo);
  experiment->temperature = 295.0;  // kelvin
  experiment->probe = ExperimentalInfo::x_ray;
  entry.set_experimental_info(experiment);
  // end records
  entry.set_editors_info(THandle<EditorsInfo>(new EditorsInfo));
  entry.set_chemical_info(THandle<ChemicalInfo>(new ChemicalInfo));
  entry.chemical_info()->formula = "C6 H8 N1 1+,Cl1 1-";
  entry.chemical_info()->synonyms = {"anilinium chloride"};
  entry.set_crystal_info(THandle<CrystalInfo>(new CrystalInfo));
  entry.crystal_info()->z = 4;
  entry.set_cross_reference_info(THandle<CrossReferenceInfo>(new CrossReferenceInfo));
  entry.cross_reference_info()->insert(
      DatabaseCrossReference(DatabaseCrossReference::isomer, "Isomer of", DatabaseEntryIdentifier("GHIJKL")));
  entry.set_deposition_info(THandle<DepositionInfo>(new DepositionInfo));
  entry.deposition_info()->set_text(DepositionInfo::vorn, "VORN 123456 and VORN 789");
  return entry;
}
