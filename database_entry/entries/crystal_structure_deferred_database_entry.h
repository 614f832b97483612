// An entry that asks a data source for each component when it is first wanted, and keeps the answer.
//
//   const THandle<CrystalStructureDatabaseEntryDataSource> source(new Folder);
//   const CrystalStructureDeferredDatabaseEntry entry(source);
//   entry.publication();    // asks the source
//   entry.publication();    // does not
//
// A null answer is kept like any other, and a component that was set is never asked for. What the source
// throws passes through; the component is then asked for again at the next call.
// Threads: const accessors change what is kept; an entry and its source belong to one thread at a time.
#pragma once

#include <database_entry/entries/components.h>

class DATABASE_ENTRY_EXPORT CrystalStructureDeferredDatabaseEntry : public CrystalStructureDatabaseEntry {
 public:
  // Shares the source and asks it for the identifier. Throws NullHandleError when there is none.
  explicit CrystalStructureDeferredDatabaseEntry(THandle<CrystalStructureDatabaseEntryDataSource> source);

  [[nodiscard]] DatabaseEntryIdentifier identifier() const override;
  void set_identifier(const DatabaseEntryIdentifier& identifier) override;

  [[nodiscard]] THandle<CrystalMaker> crystal_maker() const override;
  [[nodiscard]] THandle<Cell> cell() const override;
  [[nodiscard]] THandle<ExperimentalInfo> experimental_info() const override;
  [[nodiscard]] THandle<EditorsInfo> editors_info() const override;
  [[nodiscard]] THandle<ChemicalInfo> chemical_info() const override;
  [[nodiscard]] THandle<CrystalInfo> crystal_info() const override;
  [[nodiscard]] THandle<Publication> publication() const override;
  [[nodiscard]] THandle<ChemicalDiagram> chemical_diagram() const override;
  [[nodiscard]] THandle<ConnectivityInfo> connectivity_info() const override;
  [[nodiscard]] THandle<CrystalDiagramMatch> crystal_diagram_match() const override;
  [[nodiscard]] THandle<ConnectivityDiagramMatch> connectivity_diagram_match() const override;
  [[nodiscard]] THandle<CrystalConnectivityMatch> crystal_connectivity_match() const override;
  [[nodiscard]] THandle<CrossReferenceInfo> cross_reference_info() const override;
  [[nodiscard]] THandle<DepositionInfo> deposition_info() const override;
  [[nodiscard]] THandle<DisorderSelectors> disorder_selector() const override;
  [[nodiscard]] THandle<PublishedGeometry> published_geometry() const override;

  void set_experimental_info(THandle<ExperimentalInfo> experimental_info) override;
  void set_editors_info(THandle<EditorsInfo> editors_info) override;
  void set_chemical_info(THandle<ChemicalInfo> chemical_info) override;
  void set_crystal_info(THandle<CrystalInfo> crystal_info) override;
  void set_publication(THandle<Publication> publication) override;
  void set_cross_reference_info(THandle<CrossReferenceInfo> cross_reference_info) override;
  void set_deposition_info(THandle<DepositionInfo> deposition_info) override;
  void set_disorder_selector(THandle<DisorderSelectors> disorder_selector) override;
  void set_published_geometry(THandle<PublishedGeometry> published_geometry) override;

 private:
  using Source = CrystalStructureDatabaseEntryDataSource;

  // What is known of one component.
  template <class T>
  struct DeferredData {
    bool obtained = false;
    THandle<T> data;
  };

  // Asks the source unless the component was obtained. The flag is set last, so that a failure leaves it to
  // be asked for again.
  template <class Component>
  THandle<typename Component::Type> obtain_data(const Component& component) const;
  template <class Component>
  void set_data(const Component& component, const THandle<typename Component::Type>& data);

  THandle<Source> source_;
  DatabaseEntryIdentifier identifier_;
  mutable PerComponent<DeferredData> components_;
};
