#include <concepts>

#include "flatbuffers_entry_generated.h"
#include "storages/framed_storage.h"
#include "storages/storages.h"

namespace flatbuffers_entry {

// The fields of the object interface, in the order of the plain records.
// clang-format off
auto fields(auto& v, const CellT*) { return std::tie(v.a, v.b, v.c, v.alpha, v.beta, v.gamma, v.operators); }
auto fields(auto& v, const AtomT*) { return std::tie(v.label, v.element, v.x, v.y, v.z, v.occupancy); }
auto fields(auto& v, const CrystalMakerT*) { return std::tie(v.cell, v.atoms); }
auto fields(auto& v, const JournalT*) { return std::tie(v.name, v.coden, v.international_coden); }
auto fields(auto& v, const PublicationT*) { return std::tie(v.journal, v.authors, v.volume, v.year, v.page); }
auto fields(auto& v, const ExperimentalInfoT*) { return std::tie(v.temperature, v.temperature_text, v.pressure, v.experimental_density, v.calculated_density, v.r_factor, v.mean_cc_bond_sigma, v.probe, v.radiation_source, v.absolute_configuration, v.diffraction_details, v.powder, v.refinement_details, v.intensity_method); }
auto fields(auto& v, const EditorsInfoT*) { return std::tie(v.accession_date, v.modification_date, v.category, v.bonding_tolerance, v.previous_refcode, v.aser_match_flag, v.connectivity_comment, v.batch, v.memo, v.remarks, v.author_correspondence, v.ignored_errors); }
auto fields(auto& v, const ChemicalInfoT*) { return std::tie(v.formula, v.name, v.bioactivity, v.conformer, v.source, v.peptide_sequence, v.isomer, v.classifiers, v.synonyms); }
auto fields(auto& v, const CrystalInfoT*) { return std::tie(v.z, v.z_prime, v.color, v.habit, v.analogues, v.melting_point, v.notes, v.phase_transitions, v.polymorph, v.sensitivity, v.recrystallisation_solvent, v.disorder_details, v.other_cell_details); }
auto fields(auto& v, const ConnectivityAtomT*) { return std::tie(v.element, v.label, v.charge, v.hydrogen_count); }
auto fields(auto& v, const ConnectivityT*) { return std::tie(v.atoms, v.bonds); }
auto fields(auto& v, const TypedTextT*) { return std::tie(v.type, v.text); }
auto fields(auto& v, const EntryT*) { return std::tie(v.identifier, v.crystal_maker, v.cell, v.publication, v.experimental_info, v.editors_info, v.chemical_info, v.crystal_info, v.connectivity, v.cross_references, v.depositions); }
// clang-format on

template <class T>
concept Table = requires(T& value) {
  fields(value, &value);
};

}  // namespace flatbuffers_entry

namespace {

// The object interface's form of a plain value. None of this is timed.
template <class From, class To>
void copy(const From& from, To& to) {
  if constexpr (requires { to = from; }) {
    to = from;
  } else if constexpr (flatbuffers_entry::Table<To>) {
    std::apply(
        [&](const auto&... source) {
          std::apply([&](auto&... target) { (copy(source, target), ...); }, fields(to, &to));
        },
        plain::fields(from, &from));
  } else if constexpr (requires { typename To::deleter_type; }) {
    to = std::make_unique<typename To::element_type>();
    copy(from, *to);
  } else if constexpr (plain::Record<From>) {
    to = std::make_from_tuple<To>(plain::fields(from, &from));
  } else {
    to.resize(from.size());
    for (std::size_t index = 0; index < from.size(); ++index) copy(from[index], to[index]);
  }
}

class FlatBuffersCodec {
 public:
  using Object = flatbuffers_entry::EntryT;

  static Object convert(const plain::Entry& entry) {
    Object object;
    copy(entry, object);
    return object;
  }

  std::string_view encode(const Object& object) {
    builder_.Clear();
    builder_.Finish(flatbuffers_entry::Entry::Pack(builder_, &object));
    return {reinterpret_cast<const char*>(builder_.GetBufferPointer()), builder_.GetSize()};
  }

  static void decode(std::string_view bytes, const auto& use) {
    const std::unique_ptr<Object> object(flatbuffers_entry::GetEntry(bytes.data())->UnPack());
    use(*object);
  }

 private:
  flatbuffers::FlatBufferBuilder builder_;
};

}  // namespace

std::unique_ptr<Storage> flatbuffers_storage(const StoredEntries& entries) {
  return std::make_unique<FramedStorage<FlatBuffersCodec>>(entries);
}
