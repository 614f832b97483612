#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <utilities/vorn_log.h>

#include <iterator>
#include <sstream>
#include <tuple>

namespace {

// The archived components as errors name them, in archive order.
constexpr const char* archived_components[] = {
    "crystal maker", "cell",         "publication",       "experimental info",    "editors info",
    "chemical info", "crystal info", "connectivity info", "cross reference info", "deposition info"};

// Errors name a component only while the entry is at work, also when one of them ends that work.
class ComponentName {
 public:
  explicit ComponentName(Archive& archive) : archive_(archive), before_(archive.component()) {}
  ComponentName(const ComponentName&) = delete;
  ComponentName& operator=(const ComponentName&) = delete;
  ~ComponentName() { archive_.name_component(before_); }

  void set(const char* name) const { archive_.name_component(name); }

 private:
  Archive& archive_;
  const char* before_;
};

// Hands each of the ten components to `transfer`, in archive order and under its name.
template <class Components, class Transfer>
void transfer_components(Archive& archive, Components&& components, const Transfer& transfer) {
  static_assert(std::tuple_size_v<std::remove_reference_t<Components>> == std::size(archived_components));
  const ComponentName name(archive);
  const char* const* next = archived_components;
  std::apply([&](auto&... each) { ((name.set(*next++), transfer(each)), ...); }, components);
}

}  // namespace

CrystalStructureImmediateDatabaseEntry::CrystalStructureImmediateDatabaseEntry(
    const DatabaseEntryIdentifier& identifier, THandle<CrystalMaker> crystal_maker, THandle<Cell> cell,
    THandle<Publication> publication, THandle<ExperimentalInfo> experimental_info,
    THandle<EditorsInfo> editors_info, THandle<ChemicalInfo> chemical_info, THandle<CrystalInfo> crystal_info,
    THandle<ChemicalDiagram> chemical_diagram, THandle<ConnectivityInfo> connectivity_info,
    THandle<CrystalDiagramMatch> crystal_diagram_match,
    THandle<ConnectivityDiagramMatch> connectivity_diagram_match,
    THandle<CrystalConnectivityMatch> crystal_connectivity_match,
    THandle<CrossReferenceInfo> cross_reference_info, THandle<DepositionInfo> deposition_info,
    THandle<DisorderSelectors> disorder_selector, THandle<PublishedGeometry> published_geometry)
    : identifier_(identifier),
      crystal_maker_(crystal_maker),
      cell_(cell),
      publication_(publication),
      experimental_info_(experimental_info),
      editors_info_(editors_info),
      chemical_info_(chemical_info),
      crystal_info_(crystal_info),
      chemical_diagram_(chemical_diagram),
      connectivity_info_(connectivity_info),
      crystal_diagram_match_(crystal_diagram_match),
      connectivity_diagram_match_(connectivity_diagram_match),
      crystal_connectivity_match_(crystal_connectivity_match),
      cross_reference_info_(cross_reference_info),
      deposition_info_(deposition_info),
      disorder_selector_(disorder_selector),
      published_geometry_(published_geometry) {}

CrystalStructureImmediateDatabaseEntry::CrystalStructureImmediateDatabaseEntry(
    const DatabaseEntryIdentifier& identifier, THandle<CrystalMaker> crystal_maker)
    : identifier_(identifier), crystal_maker_(crystal_maker), cell_(new Cell(*crystal_maker->cell())) {}

CrystalStructureImmediateDatabaseEntry::~CrystalStructureImmediateDatabaseEntry() {
  if (!VORNLog::active(3)) return;
  try {
    // Put together before it meets the log stream, whose format a failure half way could leave changed.
    std::ostringstream line;
    line << "Entered CrystalStructureImmediateDatabaseEntry::~CrystalStructureImmediateDatabaseEntry() - "
         << static_cast<const void*>(this);
    VORNLog::start_debug_line(3) << line.str();
    VORNLog::end_debug_line();
  } catch (...) {
    // The entry goes all the same: a log that fails must not end the program.
  }
}

DatabaseEntryIdentifier CrystalStructureImmediateDatabaseEntry::identifier() const {
  return identifier_;
}

void CrystalStructureImmediateDatabaseEntry::set_identifier(const DatabaseEntryIdentifier& identifier) {
  identifier_ = identifier;
}

THandle<CrystalMaker> CrystalStructureImmediateDatabaseEntry::crystal_maker() const {
  return crystal_maker_;
}

THandle<Cell> CrystalStructureImmediateDatabaseEntry::cell() const {
  return cell_;
}

THandle<ExperimentalInfo> CrystalStructureImmediateDatabaseEntry::experimental_info() const {
  return experimental_info_;
}

THandle<EditorsInfo> CrystalStructureImmediateDatabaseEntry::editors_info() const {
  return editors_info_;
}

THandle<ChemicalInfo> CrystalStructureImmediateDatabaseEntry::chemical_info() const {
  return chemical_info_;
}

THandle<CrystalInfo> CrystalStructureImmediateDatabaseEntry::crystal_info() const {
  return crystal_info_;
}

THandle<Publication> CrystalStructureImmediateDatabaseEntry::publication() const {
  return publication_;
}

THandle<ChemicalDiagram> CrystalStructureImmediateDatabaseEntry::chemical_diagram() const {
  return chemical_diagram_;
}

THandle<ConnectivityInfo> CrystalStructureImmediateDatabaseEntry::connectivity_info() const {
  return connectivity_info_;
}

THandle<CrystalDiagramMatch> CrystalStructureImmediateDatabaseEntry::crystal_diagram_match() const {
  return crystal_diagram_match_;
}

THandle<ConnectivityDiagramMatch> CrystalStructureImmediateDatabaseEntry::connectivity_diagram_match() const {
  return connectivity_diagram_match_;
}

THandle<CrystalConnectivityMatch> CrystalStructureImmediateDatabaseEntry::crystal_connectivity_match() const {
  return crystal_connectivity_match_;
}

THandle<CrossReferenceInfo> CrystalStructureImmediateDatabaseEntry::cross_reference_info() const {
  return cross_reference_info_;
}

THandle<DepositionInfo> CrystalStructureImmediateDatabaseEntry::deposition_info() const {
  return deposition_info_;
}

THandle<DisorderSelectors> CrystalStructureImmediateDatabaseEntry::disorder_selector() const {
  return disorder_selector_;
}

THandle<PublishedGeometry> CrystalStructureImmediateDatabaseEntry::published_geometry() const {
  return published_geometry_;
}

void CrystalStructureImmediateDatabaseEntry::set_experimental_info(
    THandle<ExperimentalInfo> experimental_info) {
  experimental_info_ = experimental_info;
}

void CrystalStructureImmediateDatabaseEntry::set_editors_info(THandle<EditorsInfo> editors_info) {
  editors_info_ = editors_info;
}

void CrystalStructureImmediateDatabaseEntry::set_chemical_info(THandle<ChemicalInfo> chemical_info) {
  chemical_info_ = chemical_info;
}

void CrystalStructureImmediateDatabaseEntry::set_crystal_info(THandle<CrystalInfo> crystal_info) {
  crystal_info_ = crystal_info;
}

void CrystalStructureImmediateDatabaseEntry::set_publication(THandle<Publication> publication) {
  publication_ = publication;
}

void CrystalStructureImmediateDatabaseEntry::set_cross_reference_info(
    THandle<CrossReferenceInfo> cross_reference_info) {
  cross_reference_info_ = cross_reference_info;
}

void CrystalStructureImmediateDatabaseEntry::set_deposition_info(THandle<DepositionInfo> deposition_info) {
  deposition_info_ = deposition_info;
}

void CrystalStructureImmediateDatabaseEntry::set_disorder_selector(
    THandle<DisorderSelectors> disorder_selector) {
  disorder_selector_ = disorder_selector;
}

void CrystalStructureImmediateDatabaseEntry::set_published_geometry(
    THandle<PublishedGeometry> published_geometry) {
  published_geometry_ = published_geometry;
}

void CrystalStructureImmediateDatabaseEntry::write(Archive& archive) const {
  const DatabaseEntryIdentifier identifier_now = identifier();
  // In braces, so that the accessors are called in this order.
  const std::tuple components{crystal_maker(),        cell(),           publication(),  experimental_info(),
                              editors_info(),         chemical_info(),  crystal_info(), connectivity_info(),
                              cross_reference_info(), deposition_info()};
  identifier_now.write(archive);
  transfer_components(archive, components, [&archive](const auto& component) { archive << component; });
}

void CrystalStructureImmediateDatabaseEntry::read(Archive& archive) {
  identifier_.read(archive);
  transfer_components(
      archive,
      std::tie(crystal_maker_, cell_, publication_, experimental_info_, editors_info_, chemical_info_,
               crystal_info_, connectivity_info_, cross_reference_info_, deposition_info_),
      [&archive](auto& component) { archive >> component; });
}
