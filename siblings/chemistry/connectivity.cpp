#include <chemistry/connectivity.h>
#include <utilities/sequence_encoding.h>

#include <stdexcept>
#include <unordered_map>

namespace {

[[noreturn]] void no_such_atom(std::size_t bond, const std::string& atom) {
  throw std::invalid_argument("Invalid Connectivity: bond " + std::to_string(bond) + " names atom " + atom +
                              ", which is not in the list");
}

// A bond as it stands in an archive.
struct StoredBond {
  int first = 0;
  int second = 0;
  BondType type = BondType::unknown;
};

}  // namespace

void Connectivity::write(Archive& archive) const {
  std::unordered_map<const ConnectivityAtom*, int> positions;
  archive << static_cast<int>(atoms.size());
  for (std::size_t index = 0; index < atoms.size(); ++index) {
    atoms[index]->write(archive);
    positions.emplace(atoms[index].get(), static_cast<int>(index));
  }
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
    const THandle<ConnectivityAtom> atom(new ConnectivityAtom);
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
    const THandle<ConnectivityBond> bond(
        new ConnectivityBond{atom_at(stored.first), atom_at(stored.second), stored.type});
    bonds.push_back(bond);
  }
}
