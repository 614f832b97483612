#include <chemistry/connectivity.h>
#include <utilities/sequence_encoding.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <unordered_map>

namespace {

[[noreturn]] void no_such_atom(std::size_t bond, const std::string& atom) {
  throw std::invalid_argument("Invalid Connectivity: bond " + std::to_string(bond) + " names atom " + atom +
                              ", which is not in the list");
}

// The place of each atom in a list, from 0. An atom that stands there twice is at the first.
using Positions = std::unordered_map<const ConnectivityAtom*, int>;

Positions positions_of(const std::vector<THandle<ConnectivityAtom>>& atoms) {
  Positions positions;
  for (const THandle<ConnectivityAtom>& atom : atoms) {
    positions.emplace(atom.get(), static_cast<int>(&atom - atoms.data()));
  }
  return positions;
}

// Compares two lists of handles element by element with `same`; null equals null only.
template <class Object, class Same>
bool same_objects(const std::vector<THandle<Object>>& left, const std::vector<THandle<Object>>& right,
                  const Same& same) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&same](const THandle<Object>& one, const THandle<Object>& other) {
                      return one.is_null() || other.is_null() ? one == other : same(*one, *other);
                    });
}

// A bond as it stands in an archive.
struct StoredBond {
  int first = 0;
  int second = 0;
  BondType type = BondType::unknown;
};

}  // namespace

void Connectivity::write(Archive& archive) const {
  archive << static_cast<int>(atoms.size());
  for (const THandle<ConnectivityAtom>& atom : atoms) atom->write(archive);
  const Positions positions = bonds.empty() ? Positions() : positions_of(atoms);
  archive << static_cast<int>(bonds.size());
  for (std::size_t index = 0; index < bonds.size(); ++index) {
    const ConnectivityBond& bond = *bonds[index];
    const auto first = positions.find(bond.first.get());
    const auto second = positions.find(bond.second.get());
    if (first == positions.end()) no_such_atom(index, bond.first->label);
    if (second == positions.end()) no_such_atom(index, bond.second->label);
    write_fields(archive, first->second, second->second, bond.type);
  }
}

void Connectivity::read(Archive& archive) {
  atoms.clear();
  bonds.clear();
  const std::size_t atom_count = read_count(archive);
  for (std::size_t index = 0; index < atom_count; ++index) {
    const THandle<ConnectivityAtom> atom = THandle<ConnectivityAtom>::make();
    atom->read(archive);
    atoms.push_back(atom);
  }
  const auto atom_at = [this](int position) {
    if (position < 0 || static_cast<std::size_t>(position) >= atoms.size()) {
      no_such_atom(bonds.size(), std::to_string(position));
    }
    return atoms[static_cast<std::size_t>(position)];
  };
  const std::size_t bond_count = read_count(archive);
  for (std::size_t index = 0; index < bond_count; ++index) {
    StoredBond stored;
    read_fields(archive, stored.first, stored.second, stored.type);
    // In a handle before the list grows, which may fail.
    const auto bond =
        THandle<ConnectivityBond>::make(atom_at(stored.first), atom_at(stored.second), stored.type);
    bonds.push_back(bond);
  }
}

bool operator==(const Connectivity& left, const Connectivity& right) {
  const Positions left_positions = positions_of(left.atoms);
  const Positions right_positions = positions_of(right.atoms);
  const auto same_place = [&](const THandle<ConnectivityAtom>& one, const THandle<ConnectivityAtom>& other) {
    const auto place = left_positions.find(one.get());
    const auto other_place = right_positions.find(other.get());
    return place != left_positions.end() && other_place != right_positions.end() &&
           place->second == other_place->second;
  };
  return same_objects(left.atoms, right.atoms, std::equal_to<>()) &&
         same_objects(left.bonds, right.bonds,
                      [&](const ConnectivityBond& one, const ConnectivityBond& other) {
                        return one.type == other.type && same_place(one.first, other.first) &&
                               same_place(one.second, other.second);
                      });
}
