#include <perception/bonds.h>
#include <perception/elements.h>
#include <perception/perception_error.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <numbers>
#include <numeric>
#include <string>
#include <tuple>

namespace {

using Steps = std::array<int, 3>;

constexpr double most_in_reach = 1000.0;

// The cell cut into boxes along its axes. A box is about as wide as the longest reach where the cell allows
// that; where it is narrower, boxes several cells away are looked at too.
class Boxes {
 public:
  Boxes(const PackedCrystal& packed, double reach) : packed_(packed) {
    const auto atoms = static_cast<double>(packed.atoms().size());
    // No more boxes than atoms along with a few: an empty cell of any size costs nothing.
    const int most = 1 + static_cast<int>(2.0 * std::cbrt(atoms));
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double spacing = packed.geometry().spacing(axis);
      count_[axis] =
          static_cast<int>(std::clamp(std::floor(spacing / reach), 1.0, static_cast<double>(most)));
      range_[axis] = static_cast<int>(std::min(std::ceil(reach * count_[axis] / spacing), 1e5));
    }
    box_of_.reserve(packed.atoms().size());
    first_.assign(index({count_[0] - 1, count_[1] - 1, count_[2] - 1}) + 2, 0);
    for (const PackedAtom& atom : packed.atoms()) {
      box_of_.push_back(
          index({place(atom.position.x, 0), place(atom.position.y, 1), place(atom.position.z, 2)}));
      ++first_[box_of_.back() + 1];
    }
    std::partial_sum(first_.begin(), first_.end(), first_.begin());
    sorted_.resize(packed.atoms().size());
    std::vector<std::size_t> next(first_.begin(), first_.end() - 1);
    for (std::size_t atom = 0; atom < sorted_.size(); ++atom) sorted_[next[box_of_[atom]]++] = atom;
  }

  // Calls enter(translation) for each box around an atom that holds any, then visit(other) for those from
  // `least` on.
  template <class Enter, class Visit>
  void around(std::size_t atom, std::size_t least, Enter enter, Visit visit) const {
    const FractionalCoordinates& position = packed_.atoms()[atom].position;
    const Steps home = {place(position.x, 0), place(position.y, 1), place(position.z, 2)};
    for (int i = home[0] - range_[0]; i <= home[0] + range_[0]; ++i) {
      const Wrapped x = wrapped(i, 0);
      for (int j = home[1] - range_[1]; j <= home[1] + range_[1]; ++j) {
        const Wrapped y = wrapped(j, 1);
        for (int k = home[2] - range_[2]; k <= home[2] + range_[2]; ++k) {
          const Wrapped z = wrapped(k, 2);
          const std::size_t at = index({x.box, y.box, z.box});
          const std::size_t end = first_[at + 1];
          // The atoms of a box are in order.
          if (end == first_[at] || sorted_[end - 1] < least) continue;
          enter(Steps{x.cell, y.cell, z.cell});
          for (std::size_t next = first_[at]; next < end; ++next)
            if (sorted_[next] >= least) visit(sorted_[next]);
        }
      }
    }
  }

 private:
  struct Wrapped {
    int box;
    int cell;
  };
  // The box of the cell that a box beyond it is an image of.
  [[nodiscard]] Wrapped wrapped(int box, std::size_t axis) const {
    const int count = count_[axis];
    if (box >= 0 && box < count) return {box, 0};
    const int cell = box >= 0 ? box / count : -((count - 1 - box) / count);
    return {box - cell * count, cell};
  }
  [[nodiscard]] int place(double coordinate, std::size_t axis) const {
    return std::clamp(static_cast<int>(coordinate * count_[axis]), 0, count_[axis] - 1);
  }
  [[nodiscard]] std::size_t index(const Steps& box) const {
    return (static_cast<std::size_t>(box[0]) * static_cast<std::size_t>(count_[1]) +
            static_cast<std::size_t>(box[1])) *
               static_cast<std::size_t>(count_[2]) +
           static_cast<std::size_t>(box[2]);
  }

  const PackedCrystal& packed_;
  Steps count_{};
  Steps range_{};
  std::vector<std::size_t> box_of_;
  std::vector<std::size_t> first_;
  std::vector<std::size_t> sorted_;
};

void refuse_crowd(const PackedCrystal& packed, double reach) {
  const double sphere = 4.0 / 3.0 * std::numbers::pi * reach * reach * reach;
  const double within = static_cast<double>(packed.atoms().size()) * sphere / packed.geometry().volume();
  if (within > most_in_reach)
    throw PerceptionError("The cell of " + std::to_string(packed.atoms().size()) + " atoms has a volume of " +
                          std::to_string(packed.geometry().volume()) +
                          " Å³: too little for bonds to be told");
}

// Which atoms are alternatives to one another: of the same assembly and different groups.
class Alternatives {
 public:
  Alternatives(const CrystalMaker& crystal, const std::vector<THandle<DisorderSelector>>& selectors)
      : place_of_(crystal.atoms().size()) {
    if (selectors.empty()) return;
    std::map<const Atom*, std::size_t> sites;
    for (std::size_t site = 0; site < crystal.atoms().size(); ++site)
      sites[crystal.atoms()[site].get()] = site;
    std::map<std::string, int> assemblies;
    std::map<std::string, int> groups;
    for (const THandle<DisorderSelector>& selector : selectors) {
      if (selector.is_null()) continue;
      const int assembly = number(assemblies, selector->assembly);
      const int group = number(groups, selector->group);
      const bool special = selector->group.starts_with('-');
      for (const THandle<Atom>& atom : selector->atoms)
        if (const auto site = sites.find(atom.get()); site != sites.end())
          place_of_[site->second] = {assembly, group, special};
    }
    known_ = true;
  }

  [[nodiscard]] bool are_known() const { return known_; }

  // A group whose number is negative lies on a symmetry element: images by different operators are
  // alternatives.
  [[nodiscard]] bool exclude(const PackedAtom& first, const PackedAtom& second) const {
    const Place& one = place_of_[first.site];
    const Place& other = place_of_[second.site];
    if (one.assembly != other.assembly || one.assembly == 0) return false;
    return one.group != other.group || (one.special && first.op != second.op);
  }

 private:
  struct Place {
    int assembly = 0;
    int group = 0;
    bool special = false;
  };
  static int number(std::map<std::string, int>& numbers, const std::string& name) {
    return numbers.emplace(name, static_cast<int>(numbers.size()) + 1).first->second;
  }

  std::vector<Place> place_of_;
  bool known_ = false;
};

// Nothing said which sites are alternatives, so that the occupancies must: sites that are taken less than
// always, and together at most always, and that overlap with another one, are parts of a disorder. Of two
// parts those with equal occupancies are taken to go together, unless both overlap with the same atom.
class Overlaps {
 public:
  Overlaps(const CrystalMaker& crystal, const PackedCrystal& packed)
      : crystal_(crystal), overlapping_(packed.atoms().size()) {}

  void add(std::size_t first, std::size_t second) {
    overlapping_[first] = true;
    overlapping_[second] = true;
  }
  [[nodiscard]] bool exclude(const PackedCrystal& packed, const CrystalBond& bond) const {
    const double one = occupancy(packed, bond.first);
    const double other = occupancy(packed, bond.second);
    if (one >= 0.999 || other >= 0.999 || one + other > 1.02) return false;
    if (!overlapping_[bond.first] && !overlapping_[bond.second]) return false;
    return std::abs(one - other) > 0.02;
  }

 private:
  [[nodiscard]] double occupancy(const PackedCrystal& packed, std::size_t atom) const {
    return crystal_.atoms()[packed.atoms()[atom].site]->occupancy;
  }

  const CrystalMaker& crystal_;
  std::vector<bool> overlapping_;
};

// A hydrogen atom has one neighbour, or shares itself between two that are about as near: its longer bonds
// are contacts. So is what is between two hydrogen atoms, unless they have nothing else.
void drop_hydrogen_contacts(const std::vector<bool>& hydrogen, std::vector<CrystalBond>& bonds) {
  constexpr double shared = 0.25;
  constexpr double none = 1e9;
  std::vector<double> shortest(hydrogen.size(), none);
  const auto each_end = [&](const CrystalBond& bond, auto use) {
    if (hydrogen[bond.first] && !hydrogen[bond.second]) use(bond.first);
    if (hydrogen[bond.second] && !hydrogen[bond.first]) use(bond.second);
  };
  for (const CrystalBond& bond : bonds)
    each_end(bond, [&](std::size_t atom) { shortest[atom] = std::min(shortest[atom], bond.length); });
  std::erase_if(bonds, [&](const CrystalBond& bond) {
    if (hydrogen[bond.first] && hydrogen[bond.second])
      return shortest[bond.first] < none || shortest[bond.second] < none;
    bool contact = false;
    each_end(bond, [&](std::size_t atom) { contact = bond.length > shortest[atom] + shared; });
    return contact;
  });
}

}  // namespace

double bonding_radius(const std::string& element) {
  return covalent_radius(atomic_number(element));
}

std::vector<CrystalBond> neighbours(const PackedCrystal& packed, const std::vector<double>& reaches) {
  std::vector<CrystalBond> pairs;
  const double longest = reaches.empty() ? 0.0 : *std::max_element(reaches.begin(), reaches.end());
  if (longest <= 0.0) return pairs;
  refuse_crowd(packed, 2.0 * longest);
  const Boxes boxes(packed, 2.0 * longest);
  const std::vector<PackedAtom>& atoms = packed.atoms();
  std::vector<CartesianCoordinates> places;
  places.reserve(atoms.size());
  for (const PackedAtom& atom : atoms) places.push_back(packed.geometry().cartesian(atom.position));
  for (std::size_t first = 0; first < atoms.size(); ++first) {
    if (reaches[first] <= 0.0) continue;
    const std::size_t begin = pairs.size();
    Steps translation{};
    CartesianCoordinates origin{};  // of the cell in which the other atom is, seen from the first atom
    const auto enter = [&](const Steps& cell) {
      translation = cell;
      origin = packed.geometry().cartesian({double(cell[0]), double(cell[1]), double(cell[2])});
      origin = {origin.x - places[first].x, origin.y - places[first].y, origin.z - places[first].z};
    };
    boxes.around(first, first, enter, [&](std::size_t second) {
      const double x = places[second].x + origin.x;
      const double y = places[second].y + origin.y;
      const double z = places[second].z + origin.z;
      const double squared = x * x + y * y + z * z;
      const double reach = reaches[first] + reaches[second];
      if (squared >= reach * reach || reaches[second] <= 0.0) return;
      if (second == first && translation <= Steps{}) return;
      pairs.push_back({first, second, translation, std::sqrt(squared)});
    });
    std::sort(pairs.begin() + static_cast<std::ptrdiff_t>(begin), pairs.end(),
              [](const CrystalBond& left, const CrystalBond& right) {
                return std::tie(left.second, left.translation) < std::tie(right.second, right.translation);
              });
  }
  return pairs;
}

CrystalBonds perceive_bonds(const CrystalMaker& crystal, const BondOptions& options) {
  CrystalBonds result{PackedCrystal(crystal), {}};
  const std::vector<PackedAtom>& atoms = result.packed.atoms();
  if (!(options.tolerance >= 0.0 && options.tolerance <= 5.0))
    throw PerceptionError("The tolerance of bonds is from 0 to 5 Å");
  std::vector<double> site_radii;
  for (const THandle<Atom>& atom : crystal.atoms()) site_radii.push_back(bonding_radius(atom->element));
  std::vector<double> reaches;
  reaches.reserve(atoms.size());
  for (const PackedAtom& atom : atoms) {
    const double radius = site_radii[atom.site];
    // The limit itself is within.
    reaches.push_back(radius > 0.0 ? radius + options.tolerance / 2.0 + 1e-9 : 0.0);
  }
  const Alternatives alternatives(crystal, options.alternatives);
  Overlaps overlaps(crystal, result.packed);
  for (const CrystalBond& pair : neighbours(result.packed, reaches)) {
    const PackedAtom& first = atoms[pair.first];
    const PackedAtom& second = atoms[pair.second];
    if (pair.length < 0.5 * (site_radii[first.site] + site_radii[second.site])) {
      overlaps.add(pair.first, pair.second);
      continue;
    }
    if (!alternatives.exclude(first, second)) result.bonds.push_back(pair);
  }
  std::vector<bool> hydrogen;
  hydrogen.reserve(atoms.size());
  for (const PackedAtom& atom : atoms)
    hydrogen.push_back(atomic_number(crystal.atoms()[atom.site]->element) == 1);
  drop_hydrogen_contacts(hydrogen, result.bonds);
  if (!alternatives.are_known())
    std::erase_if(result.bonds,
                  [&](const CrystalBond& bond) { return overlaps.exclude(result.packed, bond); });
  return result;
}
