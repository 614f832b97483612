#include <chemistry/connectivity.h>
#include <utilities/archiving/field_list.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>

namespace {

[[noreturn]] void no_such_atom(std::size_t bond, const std::string& atom) {
  throw std::invalid_argument("Invalid Connectivity: bond " + std::to_string(bond) + " names atom " + atom +
                              ", which is not in the list");
}

// The place of each atom in a list, from 0. An atom that is there twice has its first place.
// A table of places that is at most half full; an atom's own may be taken, then it is at the next free one.
class Positions {
 public:
  static constexpr int none = -1;

  explicit Positions(const std::vector<THandle<ConnectivityAtom>>& atoms)
      : atoms_(atoms), places_(std::bit_ceil(2 * atoms.size() + 2), none) {
    for (const THandle<ConnectivityAtom>& atom : atoms) {
      int& place = places_[index_of(atom.get())];
      if (place == none) place = static_cast<int>(&atom - atoms.data());
    }
  }

  [[nodiscard]] int of(const THandle<ConnectivityAtom>& atom) const { return places_[index_of(atom.get())]; }

 private:
  [[nodiscard]] std::size_t index_of(const ConnectivityAtom* atom) const {
    // The high bits of a product with 2^64 over the golden ratio spread addresses, however far they lie
    // apart.
    const std::uint64_t product = std::uint64_t{reinterpret_cast<std::uintptr_t>(atom)} * 0x9E3779B97F4A7C15U;
    auto index = static_cast<std::size_t>(product >> shift_);
    while (places_[index] != none && atoms_[static_cast<std::size_t>(places_[index])].get() != atom) {
      index = (index + 1) & (places_.size() - 1);  // a power of two
    }
    return index;
  }

  const std::vector<THandle<ConnectivityAtom>>& atoms_;
  std::vector<int> places_;
  int shift_ = 64 - std::countr_zero(places_.size());
};

// Compares two lists of handles element by element with `same`; null equals null only.
template <class Object, class Same>
bool same_objects(const std::vector<THandle<Object>>& left, const std::vector<THandle<Object>>& right,
                  const Same& same) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&same](const THandle<Object>& one, const THandle<Object>& other) {
                      return one.is_null() || other.is_null() ? one == other : same(*one, *other);
                    });
}

}  // namespace

void Connectivity::write(Archive& archive) const {
  write_fields(archive, atoms);
  archiving::WriteCursor cursor(archive);
  cursor.write_run(cursor.checked_count(bonds.size(), "count"));
  if (bonds.empty()) return;
  const Positions positions(atoms);
  for (std::size_t index = 0; index < bonds.size(); ++index) {
    const ConnectivityBond& bond = *bonds[index];
    const int first = positions.of(bond.first);
    const int second = positions.of(bond.second);
    if (first == Positions::none) no_such_atom(index, bond.first->label);
    if (second == Positions::none) no_such_atom(index, bond.second->label);
    cursor.write_run(first, second, bond.type);
  }
}

void Connectivity::read(Archive& archive) {
  atoms.clear();
  bonds.clear();
  read_fields(archive, atoms);
  const auto atom_at = [this](int position) {
    if (position < 0 || static_cast<std::size_t>(position) >= atoms.size()) {
      no_such_atom(bonds.size(), std::to_string(position));
    }
    return atoms[static_cast<std::size_t>(position)];
  };
  archiving::ReadCursor cursor(archive);
  int bond_count = 0;
  cursor.read_run(bond_count);
  for (std::size_t left = cursor.checked_count(bond_count, "count"); left > 0; --left) {
    int first = 0;
    int second = 0;
    BondType type = BondType::unknown;
    cursor.read_run(first, second, type);
    // In a handle before the list grows, which may fail.
    const auto bond = THandle<ConnectivityBond>::make(atom_at(first), atom_at(second), type);
    bonds.push_back(bond);
  }
}

bool operator==(const Connectivity& left, const Connectivity& right) {
  const Positions left_positions(left.atoms);
  const Positions right_positions(right.atoms);
  const auto same_place = [&](const THandle<ConnectivityAtom>& one, const THandle<ConnectivityAtom>& other) {
    const int place = left_positions.of(one);
    return place != Positions::none && place == right_positions.of(other);
  };
  return same_objects(left.atoms, right.atoms, std::equal_to<>()) &&
         same_objects(left.bonds, right.bonds,
                      [&](const ConnectivityBond& one, const ConnectivityBond& other) {
                        return one.type == other.type && same_place(one.first, other.first) &&
                               same_place(one.second, other.second);
                      });
}
