// An entry with every component, in which diagrams, matches, selectors and geometry share atoms and bonds.
#pragma once

#include "support/sample_entry.h"

inline CrystalStructureImmediateDatabaseEntry linked_entry(const std::string& identifier = "LINKED") {
  const auto base = sample_entry();
  const auto cell = base.cell();
  const auto carbon = handle_to(Atom{"C1", "C", {0.1, 0.2, 0.3}, 0.5});
  const auto nitrogen = handle_to(Atom{"N1", "N", {0.4, 0.5, 0.6}, 1.0});
  const auto stray = handle_to(Atom{"H1", "H", {0.7, 0.8, 0.9}, 1.0});  // of no crystal maker
  const auto bond = handle_to(Bond{carbon, nitrogen, BondType::triple_bond});
  const auto to_stray = handle_to(Bond{carbon, stray, BondType::single_bond});

  const auto drawn_carbon = handle_to(DiagramAtom{"C", "", 0, 0.0, 1.0});
  const auto drawn_nitrogen = handle_to(DiagramAtom{"N", "N", -1, 1.0, 1.0});
  ChemicalDiagram diagram;
  diagram.atoms = {drawn_carbon, {}, drawn_nitrogen, drawn_carbon};
  diagram.bonds = {handle_to(DiagramBond{drawn_carbon, drawn_nitrogen, BondType::triple_bond}), {}};

  const auto connectivity = base.connectivity_info();
  const auto& bonded = connectivity->connectivity()->atoms;

  CrystalDiagramMatch crystal_diagram;
  crystal_diagram.atoms = {{carbon, drawn_carbon}, {nitrogen, drawn_nitrogen}, {stray, {}}};
  crystal_diagram.bonds = {{bond, diagram.bonds[0]}, {{}, diagram.bonds[0]}};
  ConnectivityDiagramMatch connectivity_diagram;
  connectivity_diagram.atoms = {{bonded[0], drawn_carbon}, {bonded[1], drawn_nitrogen}};
  connectivity_diagram.bonds = {{connectivity->connectivity()->bonds[0], diagram.bonds[0]}};
  CrystalConnectivityMatch crystal_connectivity;
  crystal_connectivity.atoms = {{carbon, bonded[0]}, {stray, bonded[1]}};
  crystal_connectivity.bonds = {{bond, connectivity->connectivity()->bonds[0]}, {to_stray, {}}};

  const auto selector = handle_to(DisorderSelector{"A", "1", {carbon, {}, stray}});
  const DisorderSelectors selectors = {selector, {}, handle_to(DisorderSelector{"B", "", {}}), selector};

  const auto published =
      handle_to(PublishedBond(carbon, nitrogen, UncertainValue(1.156, 0.004), true, false));
  const auto bonds = handle_to(std::vector<THandle<PublishedBond>>{
      published, {}, published, handle_to(PublishedBond({}, stray, UncertainValue(0.9), false, true))});

  return CrystalStructureImmediateDatabaseEntry(
      DatabaseEntryIdentifier(identifier), handle_to(CrystalMaker(cell, {carbon, nitrogen})), cell,
      base.publication(), base.experimental_info(), base.editors_info(), base.chemical_info(),
      base.crystal_info(), handle_to(diagram), connectivity, handle_to(crystal_diagram),
      handle_to(connectivity_diagram), handle_to(crystal_connectivity), base.cross_reference_info(),
      base.deposition_info(), handle_to(selectors), handle_to(PublishedGeometry(bonds, true)));
}

// The sample entry under another identifier.
inline CrystalStructureImmediateDatabaseEntry entry_named(const std::string& identifier) {
  auto entry = sample_entry();
  entry.set_identifier(DatabaseEntryIdentifier(identifier));
  return entry;
}

// The same from another year.
inline CrystalStructureImmediateDatabaseEntry entry_of_year(const std::string& identifier, int year) {
  auto entry = entry_named(identifier);
  entry.set_publication(handle_to(Publication({"A.Author"}, Journal(4), "12", year, "34")));
  return entry;
}
