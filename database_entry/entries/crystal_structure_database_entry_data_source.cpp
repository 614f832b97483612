#include <database_entry/entries/crystal_structure_database_entry_data_source.h>

CrystalStructureDatabaseEntryDataSource::~CrystalStructureDatabaseEntryDataSource() = default;

DatabaseEntryIdentifier CrystalStructureDatabaseEntryDataSource::identifier() const {
  return DatabaseEntryIdentifier();
}

THandle<CrystalMaker> CrystalStructureDatabaseEntryDataSource::crystal_maker() const {
  return {};
}

THandle<ExperimentalInfo> CrystalStructureDatabaseEntryDataSource::experimental_info() const {
  return {};
}

THandle<Cell> CrystalStructureDatabaseEntryDataSource::cell() const {
  return {};
}

THandle<EditorsInfo> CrystalStructureDatabaseEntryDataSource::editors_info() const {
  return {};
}

THandle<ChemicalInfo> CrystalStructureDatabaseEntryDataSource::chemical_info() const {
  return {};
}

THandle<CrystalInfo> CrystalStructureDatabaseEntryDataSource::crystal_info() const {
  return {};
}

THandle<Publication> CrystalStructureDatabaseEntryDataSource::publication() const {
  return {};
}

THandle<ChemicalDiagram> CrystalStructureDatabaseEntryDataSource::chemical_diagram() const {
  return {};
}

THandle<ConnectivityInfo> CrystalStructureDatabaseEntryDataSource::connectivity_info() const {
  return {};
}

THandle<CrystalDiagramMatch> CrystalStructureDatabaseEntryDataSource::crystal_diagram_match() const {
  return {};
}

THandle<ConnectivityDiagramMatch> CrystalStructureDatabaseEntryDataSource::connectivity_diagram_match()
    const {
  return {};
}

THandle<CrystalConnectivityMatch> CrystalStructureDatabaseEntryDataSource::crystal_connectivity_match()
    const {
  return {};
}

THandle<CrossReferenceInfo> CrystalStructureDatabaseEntryDataSource::cross_reference_info() const {
  return {};
}

THandle<DepositionInfo> CrystalStructureDatabaseEntryDataSource::deposition_info() const {
  return {};
}

THandle<DisorderSelectors> CrystalStructureDatabaseEntryDataSource::disorder_selector() const {
  return {};
}

THandle<PublishedGeometry> CrystalStructureDatabaseEntryDataSource::published_geometry() const {
  return {};
}
