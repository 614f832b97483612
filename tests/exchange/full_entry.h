// An entry of which every component and every field says something.
#pragma once

#include <database_entry/entries/components.h>
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>

#include <limits>
#include <string>
#include <vector>

#include "support/bytes.h"

using Entry = CrystalStructureImmediateDatabaseEntry;

template <class Component, class... Arguments>
THandle<Component> made(Arguments&&... arguments) {
  return THandle<Component>(new Component(std::forward<Arguments>(arguments)...));
}

inline THandle<Atom> atom(const std::string& label, const std::string& element,
                          FractionalCoordinates position, double occupancy = 1.0) {
  const auto result = made<Atom>();
  result->label = label;
  result->element = element;
  result->position = position;
  result->occupancy = occupancy;
  return result;
}

// Texts that no plain line of CIF holds: "?", control characters, markup that is none, bytes that are not
// UTF-8.
inline Entry full_entry() {
  const auto operators = made<std::vector<CrystalSymmetryOperator>>();
  *operators = {CrystalSymmetryOperator(), CrystalSymmetryOperator("-x,1/2+y,1/2-z"),
                CrystalSymmetryOperator("x+0.3333,y,z")};
  const auto cell = made<Cell>(4.1, 5.2, 6.3, 90.0, 100.5, 90.0, operators);
  const std::vector<THandle<Atom>> atoms = {atom("C1", "C", {0.1, 0.2, 1.0 / 3.0}),
                                            atom("O1", "O", {0.5, -0.25, 0}, 0.75),
                                            atom("O1", "O", {1e-9, 0, 0})};
  ComponentHandles all;
  all[component_row<ComponentKind::crystal_maker>] = made<CrystalMaker>(cell, atoms);
  all[component_row<ComponentKind::cell>] = cell;
  all[component_row<ComponentKind::publication>] = made<Publication>(
      std::vector<std::string>{"Müller, A.", "O'Hara; B.", ""}, Journal(4), "101A", 1979, "L345");
  all[component_row<ComponentKind::experimental_info>] =
      made<ExperimentalInfo>(295.25, "room temperature, about 295 K", "100 kPa", 5.26, 5.3, 0.041,
                             Range<double, DoubleComparator>(0.001, RangeLimit::inclusive, 0.005,
                                                             RangeLimit::exclusive, DoubleComparator()),
                             ExperimentalInfo::electron, "a tube", true, "two\nlines\tand a tab",
                             ExperimentalInfo::powder_study, "?", ExperimentalInfo::photographic_visual);
  all[component_row<ComponentKind::editors_info>] =
      made<EditorsInfo>(Date(2003, 5, 17), Date(2004, 6, 18), EditorsInfo::full_structure, 0.4, "ABCDEF",
                        EditorsInfo::partial_match, "perceived", -7, "a memo", ";begins with a semicolon",
                        EditorsInfo::received_correction, EditorsInfo::valency_errors_ignored);
  all[component_row<ComponentKind::chemical_info>] = made<ChemicalInfo>(
      "C2 H6 O", "'quoted' \"twice\" &amp; \\'e", "none -- +-", "gauche", "M\xfcller", "Gly-Ala", "R",
      std::vector<ChemicalClassification>{ChemicalClassification(ChemicalClassification::steroid),
                                          ChemicalClassification(ChemicalClassification::terpene)},
      std::vector<std::string>{"spirit of wine", "水"});
  all[component_row<ComponentKind::crystal_info>] =
      made<CrystalInfo>(4.0, 0.5, "blue", "prism", "an analogue", "> 300 K", "notes", "at 100 K", "α", "air",
                        "hexane", "disordered", "a cell of another setting");
  const auto diagram = made<ChemicalDiagram>();
  diagram->atoms = {made<DiagramAtom>(DiagramAtom{"C", "a", 1, 0.5, -1.5}),
                    made<DiagramAtom>(DiagramAtom{"O", "", 0, 1, 2})};
  diagram->bonds = {
      made<DiagramBond>(DiagramBond{diagram->atoms[0], diagram->atoms[1], BondType::double_bond})};
  all[component_row<ComponentKind::chemical_diagram>] = diagram;
  const auto connectivity = made<Connectivity>();
  connectivity->atoms = {made<ConnectivityAtom>(), made<ConnectivityAtom>()};
  connectivity->atoms[0]->element = "C";
  connectivity->atoms[0]->label = "C1";
  connectivity->atoms[0]->hydrogen_count = 3;
  connectivity->atoms[1]->element = "O";
  connectivity->atoms[1]->charge = -1;
  connectivity->bonds = {made<ConnectivityBond>(
      ConnectivityBond{connectivity->atoms[1], connectivity->atoms[0], BondType::single_bond})};
  all[component_row<ComponentKind::connectivity_info>] = made<ConnectivityInfo>(connectivity);
  const auto crystal_bond = made<Bond>(Bond{atoms[0], atoms[1], BondType::aromatic});
  const auto to_diagram = made<CrystalDiagramMatch>();
  to_diagram->atoms = {{atoms[1], diagram->atoms[1]}, {atoms[0], {}}};
  to_diagram->bonds = {{crystal_bond, diagram->bonds[0]}};
  all[component_row<ComponentKind::crystal_diagram_match>] = to_diagram;
  const auto between = made<ConnectivityDiagramMatch>();
  between->atoms = {{connectivity->atoms[0], diagram->atoms[0]}};
  between->bonds = {{connectivity->bonds[0], diagram->bonds[0]}};
  all[component_row<ComponentKind::connectivity_diagram_match>] = between;
  const auto to_connectivity = made<CrystalConnectivityMatch>();
  to_connectivity->atoms = {{atoms[0], connectivity->atoms[0]}};
  to_connectivity->bonds = {{crystal_bond, connectivity->bonds[0]}};
  all[component_row<ComponentKind::crystal_connectivity_match>] = to_connectivity;
  const auto references = made<CrossReferenceInfo>();
  references->insert(DatabaseCrossReference(DatabaseCrossReference::racemate, "Racemate of [ABCDEF01]"));
  references->insert(DatabaseCrossReference(DatabaseCrossReference::isomer, ""));
  all[component_row<ComponentKind::cross_reference_info>] = references;
  const auto depositions = made<DepositionInfo>();
  depositions->set_text(DepositionInfo::contributor, "COD 1000001, AMCSD 0010866");
  depositions->set_text(DepositionInfo::russian, "R1 R2");
  depositions->set_text(DepositionInfo::russian, "R3");
  all[component_row<ComponentKind::deposition_info>] = depositions;
  const auto selector = made<DisorderSelector>();
  selector->assembly = "A";
  selector->group = "1";
  selector->atoms = {atoms[2], atom("X", "X", {})};
  all[component_row<ComponentKind::disorder_selector>] = made<DisorderSelectors>(DisorderSelectors{selector});
  const auto bonds = made<std::vector<THandle<PublishedBond>>>();
  *bonds = {made<PublishedBond>(atoms[0], atoms[1], UncertainValue(1.234, 0.005), false, true),
            made<PublishedBond>(atoms[0], atoms[2], UncertainValue(1.0 / 3.0, 0.1), true, false)};
  all[component_row<ComponentKind::published_geometry>] = made<PublishedGeometry>(bonds, true);
  return Entry::from(DatabaseEntryIdentifier("FULL 01"), all);
}

inline std::string archived(const Entry& entry) {
  return written([&](Archive& archive) { entry.write(archive); });
}
