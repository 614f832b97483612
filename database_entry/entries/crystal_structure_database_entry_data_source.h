// Where a deferred entry gets its components from. A database back end derives from it and overrides what it
// can supply; the base class supplies nothing.
//
//   class Folder : public CrystalStructureDatabaseEntryDataSource {
//    public:
//     THandle<Publication> publication() const override { return load<Publication>("publication"); }
//   };
//
// An operation may throw anything: the entry passes it on and asks again at the next call.
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>

class DATABASE_ENTRY_EXPORT CrystalStructureDatabaseEntryDataSource {
 public:
  CrystalStructureDatabaseEntryDataSource() = default;
  CrystalStructureDatabaseEntryDataSource(const CrystalStructureDatabaseEntryDataSource&) = default;
  CrystalStructureDatabaseEntryDataSource& operator=(const CrystalStructureDatabaseEntryDataSource&) =
      default;

  // The order of the virtual operations is part of the binary interface: new ones go to the end.
  virtual ~CrystalStructureDatabaseEntryDataSource();

  // The identifier of the entry; asked for once, when the entry is made. Here a default one.
  [[nodiscard]] virtual DatabaseEntryIdentifier identifier() const;

  // Each is asked for when the component is first wanted. Here all give null handles.
  [[nodiscard]] virtual THandle<CrystalMaker> crystal_maker() const;
  [[nodiscard]] virtual THandle<ExperimentalInfo> experimental_info() const;
  [[nodiscard]] virtual THandle<Cell> cell() const;
  [[nodiscard]] virtual THandle<EditorsInfo> editors_info() const;
  [[nodiscard]] virtual THandle<ChemicalInfo> chemical_info() const;
  [[nodiscard]] virtual THandle<CrystalInfo> crystal_info() const;
  [[nodiscard]] virtual THandle<Publication> publication() const;
  [[nodiscard]] virtual THandle<ChemicalDiagram> chemical_diagram() const;
  [[nodiscard]] virtual THandle<ConnectivityInfo> connectivity_info() const;
  [[nodiscard]] virtual THandle<CrystalDiagramMatch> crystal_diagram_match() const;
  [[nodiscard]] virtual THandle<ConnectivityDiagramMatch> connectivity_diagram_match() const;
  [[nodiscard]] virtual THandle<CrystalConnectivityMatch> crystal_connectivity_match() const;
  [[nodiscard]] virtual THandle<CrossReferenceInfo> cross_reference_info() const;
  [[nodiscard]] virtual THandle<DepositionInfo> deposition_info() const;
  [[nodiscard]] virtual THandle<DisorderSelectors> disorder_selector() const;
  [[nodiscard]] virtual THandle<PublishedGeometry> published_geometry() const;
};
