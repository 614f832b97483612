// One entry of a crystal-structure database: an identifier and a fixed set of components, each in a handle.
//
//   void show(const CrystalStructureDatabaseEntry& entry) {
//     entry.print(std::cout);
//     const THandle<Publication> publication = entry.publication();
//     if (!publication.is_null()) std::cout << publication->year;
//   }
//
// An accessor shares the component and never copies it; it may give a null handle. There is no setter for the
// crystal maker, the cell, the diagram, the connectivity and the three matches: they are fixed when the entry
// is made. CrystalStructureImmediateDatabaseEntry holds its components, CrystalStructureDeferredDatabaseEntry
// fetches them when they are first wanted.
// Threads: an entry and its components belong to one thread at a time.
#pragma once

#include <chemistry/atom.h>
#include <chemistry/bond.h>
#include <chemistry/connectivity_atom.h>
#include <chemistry/connectivity_bond.h>
#include <chemistry/diagram_atom.h>
#include <chemistry/diagram_bond.h>
#include <chemistry/disorder_selector.h>
#include <chemistry/graph_match.h>
#include <database_entry/entries/chemistry_components.h>
#include <database_entry/export.h>
#include <database_entry/records/chemical_info.h>
#include <database_entry/records/crystal_info.h>
#include <database_entry/records/editors_info.h>
#include <database_entry/records/experimental_info.h>
#include <database_entry/records/publication.h>
#include <database_entry/records/published_geometry.h>
#include <database_entry/references/cross_reference_info.h>
#include <database_entry/references/deposition_info.h>
#include <utilities/database_entry_identifier.h>
#include <utilities/t_handle.h>

#include <iosfwd>
#include <vector>

// Which atoms and bonds of one description of the compound are which of another.
using CrystalDiagramMatch =
    GraphMatch<THandle<Atom>, THandle<Bond>, THandle<DiagramAtom>, THandle<DiagramBond>>;
using ConnectivityDiagramMatch = GraphMatch<THandle<ConnectivityAtom>, THandle<ConnectivityBond>,
                                            THandle<DiagramAtom>, THandle<DiagramBond>>;
using CrystalConnectivityMatch =
    GraphMatch<THandle<Atom>, THandle<Bond>, THandle<ConnectivityAtom>, THandle<ConnectivityBond>>;

using DisorderSelectors = std::vector<THandle<DisorderSelector>>;

class DATABASE_ENTRY_EXPORT CrystalStructureDatabaseEntry {
 public:
  // The order of the virtual operations is part of the binary interface: new ones go to the end.
  virtual ~CrystalStructureDatabaseEntry();

  [[nodiscard]] virtual DatabaseEntryIdentifier identifier() const = 0;
  virtual void set_identifier(const DatabaseEntryIdentifier& identifier) = 0;

  [[nodiscard]] virtual THandle<CrystalMaker> crystal_maker() const = 0;
  [[nodiscard]] virtual THandle<Cell> cell() const = 0;
  [[nodiscard]] virtual THandle<ExperimentalInfo> experimental_info() const = 0;
  [[nodiscard]] virtual THandle<EditorsInfo> editors_info() const = 0;
  [[nodiscard]] virtual THandle<ChemicalInfo> chemical_info() const = 0;
  [[nodiscard]] virtual THandle<CrystalInfo> crystal_info() const = 0;
  [[nodiscard]] virtual THandle<Publication> publication() const = 0;
  [[nodiscard]] virtual THandle<ChemicalDiagram> chemical_diagram() const = 0;
  [[nodiscard]] virtual THandle<ConnectivityInfo> connectivity_info() const = 0;
  [[nodiscard]] virtual THandle<CrystalDiagramMatch> crystal_diagram_match() const = 0;
  [[nodiscard]] virtual THandle<ConnectivityDiagramMatch> connectivity_diagram_match() const = 0;
  [[nodiscard]] virtual THandle<CrystalConnectivityMatch> crystal_connectivity_match() const = 0;
  [[nodiscard]] virtual THandle<CrossReferenceInfo> cross_reference_info() const = 0;
  [[nodiscard]] virtual THandle<DepositionInfo> deposition_info() const = 0;
  [[nodiscard]] virtual THandle<DisorderSelectors> disorder_selector() const = 0;
  [[nodiscard]] virtual THandle<PublishedGeometry> published_geometry() const = 0;

  // Each lets its old component go and shares the new one, which may be null.
  virtual void set_experimental_info(THandle<ExperimentalInfo> experimental_info) = 0;
  virtual void set_editors_info(THandle<EditorsInfo> editors_info) = 0;
  virtual void set_chemical_info(THandle<ChemicalInfo> chemical_info) = 0;
  virtual void set_crystal_info(THandle<CrystalInfo> crystal_info) = 0;
  virtual void set_publication(THandle<Publication> publication) = 0;
  virtual void set_cross_reference_info(THandle<CrossReferenceInfo> cross_reference_info) = 0;
  virtual void set_deposition_info(THandle<DepositionInfo> deposition_info) = 0;
  virtual void set_disorder_selector(THandle<DisorderSelectors> disorder_selector) = 0;
  virtual void set_published_geometry(THandle<PublishedGeometry> published_geometry) = 0;

  // The identifier and ten components, each under its label; a null one as "<zero handle>". What an accessor
  // or a component throws passes through, and what was written before stays written.
  virtual void print(std::ostream& os) const;

 protected:
  // Copied as part of a concrete entry only.
  CrystalStructureDatabaseEntry() = default;
  CrystalStructureDatabaseEntry(const CrystalStructureDatabaseEntry&) = default;
  CrystalStructureDatabaseEntry& operator=(const CrystalStructureDatabaseEntry&) = default;
};
