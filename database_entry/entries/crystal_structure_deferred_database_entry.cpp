#include <database_entry/entries/crystal_structure_deferred_database_entry.h>

template <class T>
THandle<T> CrystalStructureDeferredDatabaseEntry::obtain_data(DeferredData<T>& component,
                                                              const Source& source,
                                                              THandle<T> (Source::*operation)() const) {
  if (!component.obtained) {
    component.data = (source.*operation)();
    component.obtained = true;
  }
  return component.data;
}

template <class T>
void CrystalStructureDeferredDatabaseEntry::set_data(DeferredData<T>& component, const THandle<T>& data) {
  component.data = data;
  component.obtained = true;
}

CrystalStructureDeferredDatabaseEntry::CrystalStructureDeferredDatabaseEntry(
    THandle<CrystalStructureDatabaseEntryDataSource> source)
    : source_(source), identifier_(source_->identifier()) {}

DatabaseEntryIdentifier CrystalStructureDeferredDatabaseEntry::identifier() const {
  return identifier_;
}

void CrystalStructureDeferredDatabaseEntry::set_identifier(const DatabaseEntryIdentifier& identifier) {
  identifier_ = identifier;
}

THandle<CrystalMaker> CrystalStructureDeferredDatabaseEntry::crystal_maker() const {
  return obtain_data(crystal_maker_, *source_, &Source::crystal_maker);
}

THandle<Cell> CrystalStructureDeferredDatabaseEntry::cell() const {
  return obtain_data(cell_, *source_, &Source::cell);
}

THandle<ExperimentalInfo> CrystalStructureDeferredDatabaseEntry::experimental_info() const {
  return obtain_data(experimental_info_, *source_, &Source::experimental_info);
}

THandle<EditorsInfo> CrystalStructureDeferredDatabaseEntry::editors_info() const {
  return obtain_data(editors_info_, *source_, &Source::editors_info);
}

THandle<ChemicalInfo> CrystalStructureDeferredDatabaseEntry::chemical_info() const {
  return obtain_data(chemical_info_, *source_, &Source::chemical_info);
}

THandle<CrystalInfo> CrystalStructureDeferredDatabaseEntry::crystal_info() const {
  return obtain_data(crystal_info_, *source_, &Source::crystal_info);
}

THandle<Publication> CrystalStructureDeferredDatabaseEntry::publication() const {
  return obtain_data(publication_, *source_, &Source::publication);
}

THandle<ChemicalDiagram> CrystalStructureDeferredDatabaseEntry::chemical_diagram() const {
  return obtain_data(chemical_diagram_, *source_, &Source::chemical_diagram);
}

THandle<ConnectivityInfo> CrystalStructureDeferredDatabaseEntry::connectivity_info() const {
  return obtain_data(connectivity_info_, *source_, &Source::connectivity_info);
}

THandle<CrystalDiagramMatch> CrystalStructureDeferredDatabaseEntry::crystal_diagram_match() const {
  return obtain_data(crystal_diagram_match_, *source_, &Source::crystal_diagram_match);
}

THandle<ConnectivityDiagramMatch> CrystalStructureDeferredDatabaseEntry::connectivity_diagram_match() const {
  return obtain_data(connectivity_diagram_match_, *source_, &Source::connectivity_diagram_match);
}

THandle<CrystalConnectivityMatch> CrystalStructureDeferredDatabaseEntry::crystal_connectivity_match() const {
  return obtain_data(crystal_connectivity_match_, *source_, &Source::crystal_connectivity_match);
}

THandle<CrossReferenceInfo> CrystalStructureDeferredDatabaseEntry::cross_reference_info() const {
  return obtain_data(cross_reference_info_, *source_, &Source::cross_reference_info);
}

THandle<DepositionInfo> CrystalStructureDeferredDatabaseEntry::deposition_info() const {
  return obtain_data(deposition_info_, *source_, &Source::deposition_info);
}

THandle<DisorderSelectors> CrystalStructureDeferredDatabaseEntry::disorder_selector() const {
  return obtain_data(disorder_selector_, *source_, &Source::disorder_selector);
}

THandle<PublishedGeometry> CrystalStructureDeferredDatabaseEntry::published_geometry() const {
  return obtain_data(published_geometry_, *source_, &Source::published_geometry);
}

void CrystalStructureDeferredDatabaseEntry::set_experimental_info(
    THandle<ExperimentalInfo> experimental_info) {
  set_data(experimental_info_, experimental_info);
}

void CrystalStructureDeferredDatabaseEntry::set_editors_info(THandle<EditorsInfo> editors_info) {
  set_data(editors_info_, editors_info);
}

void CrystalStructureDeferredDatabaseEntry::set_chemical_info(THandle<ChemicalInfo> chemical_info) {
  set_data(chemical_info_, chemical_info);
}

void CrystalStructureDeferredDatabaseEntry::set_crystal_info(THandle<CrystalInfo> crystal_info) {
  set_data(crystal_info_, crystal_info);
}

void CrystalStructureDeferredDatabaseEntry::set_publication(THandle<Publication> publication) {
  set_data(publication_, publication);
}

void CrystalStructureDeferredDatabaseEntry::set_cross_reference_info(
    THandle<CrossReferenceInfo> cross_reference_info) {
  set_data(cross_reference_info_, cross_reference_info);
}

void CrystalStructureDeferredDatabaseEntry::set_deposition_info(THandle<DepositionInfo> deposition_info) {
  set_data(deposition_info_, deposition_info);
}

void CrystalStructureDeferredDatabaseEntry::set_disorder_selector(
    THandle<DisorderSelectors> disorder_selector) {
  set_data(disorder_selector_, disorder_selector);
}

void CrystalStructureDeferredDatabaseEntry::set_published_geometry(
    THandle<PublishedGeometry> published_geometry) {
  set_data(published_geometry_, published_geometry);
}
