#include <database_entry/foundations/archive_encodings.h>
#include <stores/codec/component_layouts.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace {

constexpr int layout_number = 1;

template <class T>
constexpr int kind_of = 0;
template <>
constexpr int kind_of<ChemicalDiagram> = static_cast<int>(ComponentKind::chemical_diagram);
template <>
constexpr int kind_of<CrystalDiagramMatch> = static_cast<int>(ComponentKind::crystal_diagram_match);
template <>
constexpr int kind_of<ConnectivityDiagramMatch> = static_cast<int>(ComponentKind::connectivity_diagram_match);
template <>
constexpr int kind_of<CrystalConnectivityMatch> = static_cast<int>(ComponentKind::crystal_connectivity_match);
template <>
constexpr int kind_of<DisorderSelectors> = static_cast<int>(ComponentKind::disorder_selector);
template <>
constexpr int kind_of<PublishedGeometry> = static_cast<int>(ComponentKind::published_geometry);

// A count or a position, which is an int on the archive.
int checked(std::size_t count) {
  if (count > 0x7FFFFFFF)
    throw std::invalid_argument("a list of more than 2^31 - 1 elements cannot be stored");
  return static_cast<int>(count);
}

// How many elements follow. A negative count is refused; one that is too large ends with the bytes.
int read_count(Archive& archive) {
  int count = 0;
  archive >> count;
  if (count < 0) throw ArchiveError("a negative count, " + std::to_string(count));
  return count;
}

// Writes: what one component needs while it is written.
class Writing {
 public:
  Writing(Archive& archive, SharedIndex& index, int kind) : archive_(archive), index_(index), kind_(kind) {
    archive_ << layout_number;
  }

  // Gives the object a place, and the atoms of a bond theirs.
  template <class T>
  void settle(const THandle<T>& object) {
    if (!index_.settle(kind_, object, std::get<ObjectTable<T>>(own_))) return;
    if constexpr (requires { object->first; }) {
      settle(object->first);
      settle(object->second);
    }
  }

  // The table of the objects of one type that live here.
  template <class T>
  void table() {
    const ObjectTable<T>& objects = std::get<ObjectTable<T>>(own_);
    archive_ << checked(objects.size());
    for (const THandle<T>& object : objects) contents(*object);
  }

  template <class T>
  void reference(const THandle<T>& object) {
    const SharedReference place = index_.find(object);
    archive_ << place.kind << place.position;
  }

  template <class T>
  void references(const std::vector<THandle<T>>& objects) {
    archive_ << checked(objects.size());
    for (const THandle<T>& object : objects) reference(object);
  }

  Archive& archive() { return archive_; }

 private:
  void contents(const Atom& atom) { atom.write(archive_); }
  void contents(const ConnectivityAtom& atom) { atom.write(archive_); }
  void contents(const DiagramAtom& atom) {
    archive_ << atom.element << atom.label << atom.charge << atom.x << atom.y;
  }
  template <class AnyBond>
  requires requires(const AnyBond& bond) { bond.first; }
  void contents(const AnyBond& bond) {
    reference(bond.first);
    reference(bond.second);
    archive_ << static_cast<std::int32_t>(bond.type);
  }

  Archive& archive_;
  SharedIndex& index_;
  int kind_;
  SharedObjects own_;
};

class Reading {
 public:
  Reading(Archive& archive, const FetchObjects& fetch, SharedObjects& own, int kind)
      : archive_(archive), fetch_(fetch), own_(own), kind_(kind) {
    int number = 0;
    archive_ >> number;
    if (number != layout_number)
      throw std::invalid_argument("layout " + std::to_string(number) + " is not known");
  }

  template <class T>
  void table() {
    ObjectTable<T>& objects = std::get<ObjectTable<T>>(own_);
    for (int rest = read_count(archive_); rest > 0; --rest) {
      objects.push_back(THandle<T>::make());
      contents(*objects.back());
    }
  }

  template <class T>
  THandle<T> reference() {
    SharedReference place;
    archive_ >> place.kind >> place.position;
    if (place.kind == 0 && place.position == 0) return {};
    if (place.kind > 0 && place.kind <= kind_) {
      const ObjectTable<T>& objects =
          std::get<ObjectTable<T>>(place.kind == kind_ ? own_ : fetch_(place.kind));
      if (place.position >= 0 && static_cast<std::size_t>(place.position) < objects.size()) {
        return objects[static_cast<std::size_t>(place.position)];
      }
    }
    throw std::invalid_argument("it refers to object " + std::to_string(place.position) + " of component " +
                                std::to_string(place.kind) + ", which is not there");
  }

  template <class T>
  void references(std::vector<THandle<T>>& objects) {
    for (int rest = read_count(archive_); rest > 0; --rest) objects.push_back(reference<T>());
  }

  Archive& archive() { return archive_; }

 private:
  void contents(Atom& atom) { atom.read(archive_); }
  void contents(ConnectivityAtom& atom) { atom.read(archive_); }
  void contents(DiagramAtom& atom) {
    archive_ >> atom.element >> atom.label >> atom.charge >> atom.x >> atom.y;
  }
  template <class AnyBond>
  requires requires(AnyBond& bond) { bond.first; }
  void contents(AnyBond& bond) {
    using End = std::remove_cvref_t<decltype(*bond.first)>;
    bond.first = reference<End>();
    bond.second = reference<End>();
    std::int32_t type = 0;
    archive_ >> type;
    bond.type = static_cast<BondType>(type);
  }

  Archive& archive_;
  const FetchObjects& fetch_;
  SharedObjects& own_;
  int kind_;
};

template <class A1, class B1, class A2, class B2>
void write_match(Archive& archive, SharedIndex& index,
                 const GraphMatch<THandle<A1>, THandle<B1>, THandle<A2>, THandle<B2>>& match) {
  Writing writing(archive, index, kind_of<std::remove_cvref_t<decltype(match)>>);
  for (const auto& [first, second] : match.atoms) {
    writing.settle(first);
    writing.settle(second);
  }
  for (const auto& [first, second] : match.bonds) {
    writing.settle(first);
    writing.settle(second);
  }
  writing.template table<A1>();
  writing.template table<B1>();
  writing.template table<A2>();
  writing.template table<B2>();
  archive << checked(match.atoms.size());
  for (const auto& [first, second] : match.atoms) {
    writing.reference(first);
    writing.reference(second);
  }
  archive << checked(match.bonds.size());
  for (const auto& [first, second] : match.bonds) {
    writing.reference(first);
    writing.reference(second);
  }
}

template <class A1, class B1, class A2, class B2>
void read_match(Archive& archive, const FetchObjects& fetch, SharedObjects& own,
                GraphMatch<THandle<A1>, THandle<B1>, THandle<A2>, THandle<B2>>& match) {
  Reading reading(archive, fetch, own, kind_of<std::remove_cvref_t<decltype(match)>>);
  reading.table<A1>();
  reading.table<B1>();
  reading.table<A2>();
  reading.table<B2>();
  for (int rest = read_count(archive); rest > 0; --rest) {
    const THandle<A1> first = reading.reference<A1>();
    match.atoms.emplace_back(first, reading.reference<A2>());
  }
  for (int rest = read_count(archive); rest > 0; --rest) {
    const THandle<B1> first = reading.reference<B1>();
    match.bonds.emplace_back(first, reading.reference<B2>());
  }
}

// Objects that only one component holds: each once, then the list as positions among them, -1 for a null
// handle.
template <class T>
class Distinct {
 public:
  explicit Distinct(const std::vector<THandle<T>>& list) {
    std::unordered_map<const T*, int> position_of;
    for (const THandle<T>& object : list) {
      if (object.is_null()) {
        positions_.push_back(-1);
        continue;
      }
      const auto [place, is_new] = position_of.emplace(object.get(), checked(objects_.size()));
      if (is_new) objects_.push_back(object);
      positions_.push_back(place->second);
    }
  }

  [[nodiscard]] const std::vector<THandle<T>>& objects() const { return objects_; }
  void write_positions(Archive& archive) const {
    archive << checked(positions_.size());
    for (const int position : positions_) archive << position;
  }
  static void read_positions(Archive& archive, const std::vector<THandle<T>>& objects,
                             std::vector<THandle<T>>& list) {
    for (int rest = read_count(archive); rest > 0; --rest) {
      int position = 0;
      archive >> position;
      if (position < -1 || position >= static_cast<int>(objects.size())) {
        throw std::invalid_argument("its list names element " + std::to_string(position) +
                                    ", which is not there");
      }
      list.push_back(position == -1 ? THandle<T>() : objects[static_cast<std::size_t>(position)]);
    }
  }

 private:
  std::vector<THandle<T>> objects_;
  std::vector<int> positions_;
};

}  // namespace

void write_layout(Archive& archive, SharedIndex& index, const ChemicalDiagram& diagram) {
  Writing writing(archive, index, kind_of<ChemicalDiagram>);
  for (const auto& atom : diagram.atoms) writing.settle(atom);
  for (const auto& bond : diagram.bonds) writing.settle(bond);
  writing.table<DiagramAtom>();
  writing.table<DiagramBond>();
  writing.references(diagram.atoms);
  writing.references(diagram.bonds);
}

void read_layout(Archive& archive, const FetchObjects& fetch, SharedObjects& own, ChemicalDiagram& diagram) {
  Reading reading(archive, fetch, own, kind_of<ChemicalDiagram>);
  reading.table<DiagramAtom>();
  reading.table<DiagramBond>();
  reading.references(diagram.atoms);
  reading.references(diagram.bonds);
}

void write_layout(Archive& archive, SharedIndex& index, const CrystalDiagramMatch& match) {
  write_match(archive, index, match);
}
void write_layout(Archive& archive, SharedIndex& index, const ConnectivityDiagramMatch& match) {
  write_match(archive, index, match);
}
void write_layout(Archive& archive, SharedIndex& index, const CrystalConnectivityMatch& match) {
  write_match(archive, index, match);
}

void read_layout(Archive& archive, const FetchObjects& fetch, SharedObjects& own,
                 CrystalDiagramMatch& match) {
  read_match(archive, fetch, own, match);
}
void read_layout(Archive& archive, const FetchObjects& fetch, SharedObjects& own,
                 ConnectivityDiagramMatch& match) {
  read_match(archive, fetch, own, match);
}
void read_layout(Archive& archive, const FetchObjects& fetch, SharedObjects& own,
                 CrystalConnectivityMatch& match) {
  read_match(archive, fetch, own, match);
}

void write_layout(Archive& archive, SharedIndex& index, const DisorderSelectors& selectors) {
  Writing writing(archive, index, kind_of<DisorderSelectors>);
  const Distinct<DisorderSelector> distinct(selectors);
  for (const auto& selector : distinct.objects()) {
    for (const auto& atom : selector->atoms) writing.settle(atom);
  }
  writing.table<Atom>();
  archive << checked(distinct.objects().size());
  for (const auto& selector : distinct.objects()) {
    archive << selector->assembly << selector->group;
    writing.references(selector->atoms);
  }
  distinct.write_positions(archive);
}

void read_layout(Archive& archive, const FetchObjects& fetch, SharedObjects& own,
                 DisorderSelectors& selectors) {
  Reading reading(archive, fetch, own, kind_of<DisorderSelectors>);
  reading.table<Atom>();
  std::vector<THandle<DisorderSelector>> objects;
  for (int rest = read_count(archive); rest > 0; --rest) {
    objects.push_back(THandle<DisorderSelector>::make());
    archive >> objects.back()->assembly >> objects.back()->group;
    reading.references(objects.back()->atoms);
  }
  Distinct<DisorderSelector>::read_positions(archive, objects, selectors);
}

void write_layout(Archive& archive, SharedIndex& index, const PublishedGeometry& geometry) {
  Writing writing(archive, index, kind_of<PublishedGeometry>);
  const bool has_list = !geometry.bonds.is_null();
  const Distinct<PublishedBond> distinct(has_list ? *geometry.bonds : std::vector<THandle<PublishedBond>>());
  for (const auto& bond : distinct.objects()) {
    writing.settle(bond->first_atom);
    writing.settle(bond->second_atom);
  }
  writing.table<Atom>();
  archive << geometry.flag << has_list << checked(distinct.objects().size());
  for (const auto& bond : distinct.objects()) {
    writing.reference(bond->first_atom);
    writing.reference(bond->second_atom);
    archive << bond->length.value() << bond->length.standard_uncertainty() << bond->first_flag
            << bond->second_flag;
  }
  distinct.write_positions(archive);
}

void read_layout(Archive& archive, const FetchObjects& fetch, SharedObjects& own,
                 PublishedGeometry& geometry) {
  Reading reading(archive, fetch, own, kind_of<PublishedGeometry>);
  reading.table<Atom>();
  bool has_list = false;
  archive >> geometry.flag >> has_list;
  std::vector<THandle<PublishedBond>> objects;
  for (int rest = read_count(archive); rest > 0; --rest) {
    const THandle<Atom> first = reading.reference<Atom>();
    const THandle<Atom> second = reading.reference<Atom>();
    double value = 0.0;
    double uncertainty = 0.0;
    bool first_flag = false;
    bool second_flag = false;
    archive >> value >> uncertainty >> first_flag >> second_flag;
    objects.push_back(THandle<PublishedBond>::make(first, second, UncertainValue(value, uncertainty),
                                                   first_flag, second_flag));
  }
  if (has_list) geometry.bonds = THandle<std::vector<THandle<PublishedBond>>>::make();
  std::vector<THandle<PublishedBond>> none;
  Distinct<PublishedBond>::read_positions(archive, objects, has_list ? *geometry.bonds : none);
}
