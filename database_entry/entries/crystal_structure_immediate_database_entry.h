// An entry that holds every component in memory. The one entry with an archive form.
//
//   CrystalStructureImmediateDatabaseEntry entry(DatabaseEntryIdentifier("ABCDEF01"), maker);
//   entry.set_publication(publication);
//   entry.write(archive);       // needs all ten archived components
//   entry.read(archive);        // lets the old components go
//
// Components are shared with whoever handed them in. Setters are plain handle assignment.
// Bytes: the identifier, then crystal maker, cell, publication, experimental, editors', chemical and crystal
// information, connectivity information, cross-references and depositions, back to back. The diagram, the
// three matches, the disorder selectors and the published geometry are not stored.
#pragma once

#include <database_entry/entries/components.h>

class DATABASE_ENTRY_EXPORT CrystalStructureImmediateDatabaseEntry : public CrystalStructureDatabaseEntry {
 public:
  // Shares each component; any may be null.
  CrystalStructureImmediateDatabaseEntry(
      const DatabaseEntryIdentifier& identifier, THandle<CrystalMaker> crystal_maker, THandle<Cell> cell,
      THandle<Publication> publication, THandle<ExperimentalInfo> experimental_info,
      THandle<EditorsInfo> editors_info, THandle<ChemicalInfo> chemical_info,
      THandle<CrystalInfo> crystal_info, THandle<ChemicalDiagram> chemical_diagram,
      THandle<ConnectivityInfo> connectivity_info, THandle<CrystalDiagramMatch> crystal_diagram_match,
      THandle<ConnectivityDiagramMatch> connectivity_diagram_match,
      THandle<CrystalConnectivityMatch> crystal_connectivity_match,
      THandle<CrossReferenceInfo> cross_reference_info, THandle<DepositionInfo> deposition_info,
      THandle<DisorderSelectors> disorder_selector, THandle<PublishedGeometry> published_geometry);

  // Shares the crystal maker and holds a copy of its cell; all else is null. Throws NullHandleError when the
  // crystal maker, or the cell in it, is null.
  CrystalStructureImmediateDatabaseEntry(const DatabaseEntryIdentifier& identifier,
                                         THandle<CrystalMaker> crystal_maker);

  // Shares each component: the full constructor for callers that walk the table of the components. (It has a
  // name because a constructor would make `(identifier, {})` ambiguous.)
  [[nodiscard]] static CrystalStructureImmediateDatabaseEntry from(const DatabaseEntryIdentifier& identifier,
                                                                   const ComponentHandles& components);

  // A copy shares every component.
  CrystalStructureImmediateDatabaseEntry(const CrystalStructureImmediateDatabaseEntry&) = default;
  CrystalStructureImmediateDatabaseEntry& operator=(const CrystalStructureImmediateDatabaseEntry&) = default;

  // Writes a debug line of level 3 when that level is logged. Never throws, whatever the log stream does.
  ~CrystalStructureImmediateDatabaseEntry() override;

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

  // Takes the components from the accessors, then writes them. Throws NullHandleError at the first archived
  // component that is null, and ArchiveError when the stream fails; the items before it are on the stream.
  virtual void write(Archive& archive) const;

  // Reads the identifier in place and puts a new object in the handle of each archived component: other
  // holders keep the old ones as they were. When a component cannot be read (ArchiveError, or
  // std::invalid_argument for a value that it refuses), it stays as far as it came, those before it are new,
  // those after it are the old ones.
  virtual void read(Archive& archive);

 private:
  DatabaseEntryIdentifier identifier_;
  ComponentHandles components_;
};
