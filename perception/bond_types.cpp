#include <perception/bond_types.h>
#include <perception/elements.h>
#include <perception/matching.h>
#include <perception/rings.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

// Lengths of single, double and triple bonds, from the tables of Allen and others (J. Chem. Soc. Perkin
// Trans. 2, S1, 1987) where these elements are common, else from radii (Pyykkö and Atsumi, Chem. Eur. J. 15,
// 186 and 12770, 2009).
struct Lengths {
  double single;
  double double_bond;
  double triple;
};

struct KnownLengths {
  int first;
  int second;
  Lengths lengths;
};

constexpr KnownLengths known_lengths[] = {
    {6, 6, {1.52, 1.33, 1.19}},  {6, 7, {1.46, 1.29, 1.14}},   {6, 8, {1.42, 1.21, 1.13}},
    {7, 7, {1.42, 1.24, 1.10}},  {7, 8, {1.41, 1.22, 1.15}},   {8, 8, {1.47, 1.21, 1.15}},
    {6, 16, {1.81, 1.67, 1.55}}, {6, 15, {1.84, 1.67, 1.54}},  {8, 15, {1.61, 1.48, 1.40}},
    {8, 16, {1.60, 1.45, 1.40}}, {15, 16, {2.10, 1.95, 1.85}}, {7, 15, {1.68, 1.58, 1.50}},
    {7, 16, {1.66, 1.54, 1.45}}, {16, 16, {2.05, 1.89, 1.80}}, {8, 17, {1.60, 1.43, 1.40}},
};

Lengths lengths_of(int first, int second) {
  if (first > second) std::swap(first, second);
  for (const KnownLengths& known : known_lengths)
    if (known.first == first && known.second == second) return known.lengths;
  const double single = covalent_radius(first) + covalent_radius(second);
  return {single, 0.88 * single, 0.8 * single};
}

double distance(const CartesianCoordinates& left, const CartesianCoordinates& right) {
  return std::hypot(left.x - right.x, left.y - right.y, left.z - right.z);
}

// At the middle one, in degrees.
double angle(const CartesianCoordinates& left, const CartesianCoordinates& middle,
             const CartesianCoordinates& right) {
  const double a = distance(left, middle);
  const double b = distance(middle, right);
  if (a == 0.0 || b == 0.0) return 0.0;
  const double dot = (left.x - middle.x) * (right.x - middle.x) + (left.y - middle.y) * (right.y - middle.y) +
                     (left.z - middle.z) * (right.z - middle.z);
  return std::acos(std::clamp(dot / (a * b), -1.0, 1.0)) * 180.0 / std::numbers::pi;
}

struct Neighbour {
  std::size_t atom;
  std::size_t bond;
};

// One pi electron that an atom may share. What is lost when it stays alone, and what it costs when it does
// not.
struct Electron {
  std::size_t atom;
  double alone;
  double shared;
  bool second;  // the atom's second one
};

class Typing {
 public:
  explicit Typing(const MoleculeShape& molecule) : molecule_(molecule), size_(molecule.elements.size()) {
    for (const std::string& element : molecule.elements) numbers_.push_back(atomic_number(element));
    neighbours_.resize(size_);
    bonds_metal_.resize(size_);
    for (std::size_t bond = 0; bond < molecule.bonds.size(); ++bond) {
      const auto& [first, second] = molecule.bonds[bond];
      // What is no main-group element takes part in no valence.
      if (valence_electrons(numbers_[first]) == 0 || valence_electrons(numbers_[second]) == 0) {
        bonds_metal_[first] = bonds_metal_[second] = true;
        continue;
      }
      neighbours_[first].push_back({second, bond});
      neighbours_[second].push_back({first, bond});
    }
    types_.bonds.assign(molecule.bonds.size(), BondType::unknown);
    types_.orders.assign(molecule.bonds.size(), 0);
    types_.charges.assign(size_, 0);
    types_.hydrogen_counts.assign(size_, 0);
    pi_.assign(size_, 0);
    open_.assign(size_, false);
    hydrogens_known_ = std::find(numbers_.begin(), numbers_.end(), 1) != numbers_.end();
  }

  MoleculeTypes run() && {
    single_bonds();
    offer_electrons();
    share_electrons();
    settle_atoms();
    const std::vector<std::vector<std::size_t>> rings = rings_of_main_group();
    settle_ring_ions(rings);
    name_bonds();
    mark_aromatic(rings);
    mark_delocalised();
    return std::move(types_);
  }

 private:
  [[nodiscard]] std::size_t degree(std::size_t atom) const { return neighbours_[atom].size(); }

  void single_bonds() {
    for (std::size_t atom = 0; atom < size_; ++atom)
      for (const Neighbour& next : neighbours_[atom]) types_.orders[next.bond] = 1;
  }

  // The triangles that a metal makes with the bonds of a ligand would take the place of the ligand's own
  // rings.
  [[nodiscard]] std::vector<std::vector<std::size_t>> rings_of_main_group() const {
    std::vector<std::array<std::size_t, 2>> bonds;
    for (std::size_t bond = 0; bond < molecule_.bonds.size(); ++bond)
      if (types_.orders[bond] > 0) bonds.push_back(molecule_.bonds[bond]);
    return small_rings(size_, bonds, 7);
  }

  // The sum of the angles at an atom with three neighbours: 360 degrees where it is flat.
  [[nodiscard]] double angle_sum(std::size_t atom) const {
    double sum = 0.0;
    for (std::size_t i = 0; i < 3; ++i) sum += angle_at(atom, i, (i + 1) % 3);
    return sum;
  }
  [[nodiscard]] double angle_at(std::size_t atom, std::size_t i, std::size_t j) const {
    return angle(molecule_.places[neighbours_[atom][i].atom], molecule_.places[atom],
                 molecule_.places[neighbours_[atom][j].atom]);
  }
  [[nodiscard]] bool is_linear(std::size_t atom) const {
    return degree(atom) == 2 && angle_at(atom, 0, 1) > 155.0;
  }
  [[nodiscard]] bool is_terminal_chalcogen(std::size_t atom) const {
    const int number = numbers_[atom];
    return degree(atom) == 1 && (number == 8 || number == 16 || number == 34 || number == 52);
  }
  [[nodiscard]] std::size_t terminal_chalcogens(std::size_t atom) const {
    return static_cast<std::size_t>(
        std::count_if(neighbours_[atom].begin(), neighbours_[atom].end(),
                      [&](const Neighbour& next) { return is_terminal_chalcogen(next.atom); }));
  }

  void offer(std::size_t atom, double alone, double shared = 0.0) {
    const bool second = !electrons_.empty() && electrons_.back().atom == atom;
    electrons_.push_back({atom, alone, shared, second});
  }

  void offer_electrons() {
    for (std::size_t atom = 0; atom < size_; ++atom) {
      const std::size_t bonded = degree(atom);
      if (bonded == 0) continue;
      switch (numbers_[atom]) {
        case 6:
          offer_carbon(atom, bonded);
          break;
        case 14:
        case 32:
          if (bonded == 3 && !bonds_metal_[atom]) offer(atom, 3.0);
          break;
        case 7:
          offer_nitrogen(atom, bonded);
          break;
        case 8:
          offer_oxygen(atom, bonded);
          break;
        case 15:
        case 33:
          if (bonded == 4) offer(atom, 2.0);
          if (bonded == 3 && terminal_chalcogens(atom) > 1) {
            offer(atom, 2.0);
            offer(atom, 2.0);
          }
          if (bonded == 2) offer(atom, 4.0);
          if (bonded == 1) {
            offer(atom, 4.0);
            offer(atom, 4.0);
          }
          break;
        case 16:
        case 34:
        case 52:
          offer_sulphur(atom, bonded);
          break;
        case 9:
          break;
        case 17:
        case 35:
        case 53:
          if (bonded >= 2 && bonded <= 4)
            for (std::size_t i = 1; i < bonded; ++i)
              if (terminal_chalcogens(atom) >= bonded - 1) offer(atom, 2.0);
          break;
        case 5:
          if (bonded <= 2) offer(atom, 1.0);
          break;
        default:
          break;
      }
    }
  }

  void offer_carbon(std::size_t atom, std::size_t bonded) {
    if (bonded >= 4) return;
    if (bonded == 3) {
      if (hydrogens_known_) {
        // A carbon atom of a metal's ring or alkene has its fourth neighbour there.
        offer(atom, bonds_metal_[atom] ? 4.0 : 12.0);
      } else if (const double sum = angle_sum(atom); sum > 345.0) {
        offer(atom, bonds_metal_[atom] ? 4.0 : std::min((sum - 340.0) * 0.8, 12.0));
      }
      return;
    }
    if (bonded == 2) {
      const double at = angle_at(atom, 0, 1);
      if (hydrogens_known_) {
        const double alone = bonds_metal_[atom] ? 4.0 : 12.0;
        offer(atom, alone);
        // A carbene or a metal's carbon atom is bent.
        if (at > 140.0 || !bonds_metal_[atom]) offer(atom, at > 140.0 ? alone : 6.0);
      } else {
        if (at > 155.0) {
          offer(atom, 10.0);
          offer(atom, 8.0);
        } else if (at > 113.0 || in_small_ring(atom)) {
          offer(atom, std::clamp((at - 112.0) * 0.6, 1.5, 6.0));
        }
      }
      return;
    }
    // Carbon at an end: a nitrile's or carbonyl's of a metal, a methyl group without its hydrogen atoms.
    const double alone = bonds_metal_[atom] || hydrogens_known_ ? 6.0 : 0.5;
    offer(atom, alone);
    offer(atom, alone);
  }

  // Five atoms or fewer leave a flat ring with smaller angles.
  [[nodiscard]] bool in_small_ring(std::size_t atom) const {
    for (const Neighbour& one : neighbours_[atom])
      for (const Neighbour& two : neighbours_[one.atom])
        for (const Neighbour& three : neighbours_[two.atom])
          for (const Neighbour& four : neighbours_[three.atom])
            if (two.atom != atom && three.atom != one.atom && four.atom != two.atom && three.atom != atom &&
                four.atom != one.atom)
              for (const Neighbour& five : neighbours_[four.atom])
                if (five.atom == atom) return true;
    return false;
  }

  void offer_nitrogen(std::size_t atom, std::size_t bonded) {
    if (bonded >= 4) return;
    if (bonded == 3) {
      const std::size_t oxygens = terminal_chalcogens(atom);
      // Nitro groups and oxides; amidinium and pyridinium ions cost more.
      const double sum = angle_sum(atom);
      if (sum > 345.0) offer(atom, 0.0, oxygens >= 2 ? 0.5 : 5.0);
      return;
    }
    if (bonded == 2) {
      const double alone = bonds_metal_[atom] ? 3.0 : hydrogens_known_ ? 6.0 : 2.0;
      if (is_linear(atom)) {
        offer(atom, alone);
        offer(atom, 0.0, 2.0);
      } else {
        offer(atom, alone);
      }
      return;
    }
    const double alone = hydrogens_known_ || bonds_metal_[atom] ? 6.0 : 0.5;
    offer(atom, alone);
    offer(atom, hydrogens_known_ ? 4.0 : 0.5);
  }

  void offer_oxygen(std::size_t atom, std::size_t bonded) {
    if (bonded == 1) {
      offer(atom, bonds_metal_[atom] ? 3.0 : hydrogens_known_ ? 4.0 : 3.0);
      const std::size_t other = neighbours_[atom][0].atom;
      // Carbon monoxide and the nitrosyl cation; nitric oxide is longer.
      const bool triple = numbers_[other] == 6 || (numbers_[other] == 7 && !is_radical_oxide(other));
      if (triple && degree(other) == 1) offer(atom, 0.0, 1.0);
    } else if (bonded == 2 && !has_hydrogen(atom)) {
      // Ozone's middle atom; else an oxonium ion's.
      offer(atom, 0.0, terminal_chalcogens(atom) == 2 ? 0.5 : 8.0);
    }
  }

  [[nodiscard]] bool has_hydrogen(std::size_t atom) const {
    return std::any_of(neighbours_[atom].begin(), neighbours_[atom].end(),
                       [&](const Neighbour& next) { return numbers_[next.atom] == 1; });
  }

  void offer_sulphur(std::size_t atom, std::size_t bonded) {
    const std::size_t ends = terminal_chalcogens(atom);
    if (bonded == 1) {
      offer(atom, bonds_metal_[atom] ? 2.0 : 4.0);
    } else if (bonded == 2) {
      if (ends == 2) {
        offer(atom, 1.0);
        offer(atom, 1.0);
      } else if (!has_hydrogen(atom)) {
        offer(atom, 0.0, 7.0);
      }
    } else if (bonded == 3) {
      offer(atom, 1.0);
      // Sulphur trioxide is flat, a sulphite ion is not.
      if (ends >= 2 && angle_sum(atom) > 350.0) {
        offer(atom, 1.0);
        offer(atom, 1.0);
      }
    } else if (bonded == 4) {
      offer(atom, 1.0);
      offer(atom, 1.0);
    }
  }

  // How much the bond's length speaks for another pi bond: about 3 where it is that of one, -3 and less where
  // it is that of a bond without it.
  static double length_weight(double length, double longer, double shorter) {
    return std::clamp(6.0 * ((longer - length) / (longer - shorter) - 0.5), -7.0, 3.5);
  }

  void share_electrons() {
    std::vector<std::vector<std::size_t>> of_atom(size_);
    for (std::size_t i = 0; i < electrons_.size(); ++i) of_atom[electrons_[i].atom].push_back(i);
    std::vector<WeightedPair> pairs;
    std::vector<std::size_t> bond_of_pair;
    for (std::size_t bond = 0; bond < molecule_.bonds.size(); ++bond) {
      if (types_.orders[bond] == 0) continue;
      const auto& [first, second] = molecule_.bonds[bond];
      const double length = distance(molecule_.places[first], molecule_.places[second]);
      const Lengths lengths = lengths_of(numbers_[first], numbers_[second]);
      const double second_bond = length_weight(length, lengths.single, lengths.double_bond);
      const double third_bond = length_weight(length, lengths.double_bond, lengths.triple);
      const bool may_be_triple = of_atom[first].size() > 1 && of_atom[second].size() > 1;
      for (const std::size_t i : of_atom[first]) {
        for (const std::size_t j : of_atom[second]) {
          const Electron& one = electrons_[i];
          const Electron& other = electrons_[j];
          // Both pairs of a triple bond together weigh as much whichever way they are made.
          const int seconds = may_be_triple ? int{one.second} + int{other.second} : 0;
          const double by_length = second_bond + seconds * 0.5 * (third_bond - second_bond);
          const double weight = one.alone + other.alone - one.shared - other.shared + by_length;
          if (weight > 0.0) {
            pairs.push_back({i, j, weight});
            bond_of_pair.push_back(bond);
          }
        }
      }
    }
    const std::vector<std::size_t> chosen = heaviest_matching(electrons_.size(), pairs);
    shared_.assign(electrons_.size(), false);
    for (const std::size_t pair : chosen) {
      ++types_.orders[bond_of_pair[pair]];
      for (const std::size_t electron : {pairs[pair].first, pairs[pair].second}) {
        shared_[electron] = true;
        ++pi_[electrons_[electron].atom];
      }
    }
  }

  // Charges, missing hydrogen atoms, and which atoms have open valences, from the bonds there are.
  void settle_atoms() {
    for (std::size_t atom = 0; atom < size_; ++atom) {
      const int bonds = static_cast<int>(degree(atom)) + pi_[atom];
      int& charge = types_.charges[atom];
      int& hydrogens = types_.hydrogen_counts[atom];
      const bool free = !bonds_metal_[atom];
      switch (numbers_[atom]) {
        case 1:
          if (bonds == 0 && free) charge = 1;
          if (bonds > 1) open_[atom] = true;
          break;
        case 5:
          if (bonds == 4) charge = -1;
          if (bonds > 4 || (bonds < 3 && free)) open_[atom] = true;
          break;
        case 6:
        case 14:
        case 32:
          if (bonds > 4) {
            open_[atom] = numbers_[atom] == 6;
            if (numbers_[atom] != 6) charge = 4 - bonds;
          } else if (has_carbons_lone_pair(atom)) {
            charge = -1;  // the ligand's own, where a metal takes the pair
          } else if (bonds < 4 && free) {
            if (!hydrogens_known_ && numbers_[atom] == 6) {
              hydrogens = 4 - bonds;
            } else {
              open_[atom] = true;
            }
          }
          break;
        case 7:
          if (bonds == 4) charge = 1;
          if (bonds > 4 || is_radical_oxide(atom)) open_[atom] = true;
          if (bonds < 3 && free) {
            if (hydrogens_known_ || is_next_to_ammonium(atom) || ends_cyanate(atom)) {
              charge = bonds - 3;
            } else {
              hydrogens = 3 - bonds;
            }
          }
          break;
        case 8:
          if (bonds == 3) charge = 1;
          if (bonds > 3) open_[atom] = true;
          if (bonds < 2 && free) {
            if (hydrogens_known_ || bonds_to_oxoacid(atom)) {
              charge = bonds == 0 ? 0 : bonds - 2;
              if (bonds == 0) hydrogens = 2;  // water without its hydrogen atoms
            } else {
              hydrogens = 2 - bonds;
            }
          }
          if (bonds == 1 && !free) charge = -1;
          break;
        case 15:
        case 33:
          if (bonds == 4) charge = 1;
          if (bonds == 6) charge = -1;
          if (bonds < 3 && free) charge = bonds - 3;
          if (bonds > 6) open_[atom] = true;
          break;
        case 16:
        case 34:
        case 52:
          if (bonds == 3 && degree(atom) == 3) charge = 1;
          if (bonds == 1) charge = -1;
          if (bonds == 5 || bonds > 6) open_[atom] = true;
          break;
        case 9:
        case 17:
        case 35:
        case 53:
          if (bonds == 0 && free) charge = -1;
          if (bonds == 2 && numbers_[atom] != 9) charge = is_polyhalide(atom) ? -1 : 1;
          if (bonds == 4 && is_polyhalide(atom)) charge = -1;
          break;
        default:
          break;
      }
    }
  }

  // The end of an azide or a diazo group.
  [[nodiscard]] bool is_next_to_ammonium(std::size_t atom) const {
    if (degree(atom) != 1) return false;
    const std::size_t other = neighbours_[atom][0].atom;
    return numbers_[other] == 7 && static_cast<int>(degree(other)) + pi_[other] == 4;
  }

  // Carbon monoxide, cyanide, an isocyanide: the end of a triple bond that is not missing a hydrogen atom.
  [[nodiscard]] bool has_carbons_lone_pair(std::size_t atom) const {
    if (numbers_[atom] != 6 || degree(atom) != 1 || pi_[atom] != 2) return false;
    const std::size_t other = neighbours_[atom][0].atom;
    return (numbers_[other] == 8 && degree(other) == 1) || (numbers_[other] == 7 && degree(other) <= 2);
  }

  // The nitrogen end of a cyanate or of its kind with another chalcogen.
  [[nodiscard]] bool ends_cyanate(std::size_t atom) const {
    if (degree(atom) != 1) return false;
    const std::size_t carbon = neighbours_[atom][0].atom;
    return numbers_[carbon] == 6 && degree(carbon) == 2 && pi_[carbon] == 2 &&
           terminal_chalcogens(carbon) == 1;
  }

  // Nitric oxide, which is longer than its cation, and nitrogen dioxide, which is wider than the nitrite ion:
  // an electron is alone.
  [[nodiscard]] bool is_radical_oxide(std::size_t atom) const {
    if (bonds_metal_[atom] || terminal_chalcogens(atom) != degree(atom)) return false;
    if (degree(atom) == 1)
      return distance(molecule_.places[atom], molecule_.places[neighbours_[atom][0].atom]) > 1.1;
    return degree(atom) == 2 && !is_linear(atom) && angle_at(atom, 0, 1) > 125.0;
  }

  // A halogen in the middle of a line or a square of halogens, as in the triiodide ion.
  [[nodiscard]] bool is_polyhalide(std::size_t atom) const {
    const auto is_halogen = [&](const Neighbour& next) {
      return valence_electrons(numbers_[next.atom]) == 7;
    };
    return (degree(atom) == 4 || is_linear(atom)) &&
           std::all_of(neighbours_[atom].begin(), neighbours_[atom].end(), is_halogen);
  }

  // The one carbon atom that has no partner in a ring of five, or of seven: the anion of cyclopentadiene, the
  // cation of cycloheptatriene.
  void settle_ring_ions(const std::vector<std::vector<std::size_t>>& rings) {
    for (const auto& ring : rings) {
      if ((ring.size() != 5 && ring.size() != 7) || !is_flat(ring)) continue;
      const auto is_open = [&](std::size_t atom) {
        return open_[atom] && numbers_[atom] == 6 && degree(atom) == 3 && pi_[atom] == 0;
      };
      const auto alone = std::find_if(ring.begin(), ring.end(), is_open);
      if (alone == ring.end() || !std::all_of(ring.begin(), ring.end(), [&](std::size_t atom) {
            return atom == *alone || (numbers_[atom] == 6 && pi_[atom] == 1);
          }))
        continue;
      open_[*alone] = false;
      types_.charges[*alone] = ring.size() == 5 ? -1 : 1;
    }
  }

  // Of two equal terminal oxygen atoms on one atom without hydrogen atoms known, the single one is charged.
  [[nodiscard]] bool bonds_to_oxoacid(std::size_t atom) const {
    if (degree(atom) != 1) return false;
    const std::size_t centre = neighbours_[atom][0].atom;
    const double own = distance(molecule_.places[atom], molecule_.places[centre]);
    for (const Neighbour& next : neighbours_[centre]) {
      if (next.atom == atom || !is_terminal_chalcogen(next.atom) || types_.orders[next.bond] != 2) continue;
      if (std::abs(distance(molecule_.places[next.atom], molecule_.places[centre]) - own) < 0.045)
        return true;
    }
    return false;
  }

  void name_bonds() {
    for (std::size_t bond = 0; bond < molecule_.bonds.size(); ++bond) {
      const auto& [first, second] = molecule_.bonds[bond];
      int& order = types_.orders[bond];
      if (open_[first] || open_[second]) order = 0;
      switch (order) {
        case 1:
          types_.bonds[bond] = BondType::single_bond;
          break;
        case 2:
          types_.bonds[bond] = BondType::double_bond;
          break;
        case 3:
          types_.bonds[bond] = BondType::triple_bond;
          break;
        default:
          order = 0;
          types_.complete = false;
          break;
      }
    }
    if (std::find(open_.begin(), open_.end(), true) != open_.end()) types_.complete = false;
    // An end of an unknown bond has no charge that follows from it.
    for (std::size_t atom = 0; atom < size_; ++atom)
      if (degree(atom) == 1 && open_[neighbours_[atom][0].atom]) types_.charges[atom] = 0;
  }

  // Hückel's rule for each ring of five to seven atoms, and for two of them that share a bond.
  void mark_aromatic(const std::vector<std::vector<std::size_t>>& rings) {
    std::vector<bool> in_ring(size_);
    std::vector<const std::vector<std::size_t>*> flat;
    for (const auto& ring : rings) {
      if (ring.size() < 5 || !is_flat(ring)) continue;
      flat.push_back(&ring);
      for (const std::size_t atom : ring) in_ring[atom] = true;
    }
    std::vector<bool> aromatic(flat.size());
    for (std::size_t i = 0; i < flat.size(); ++i) {
      const int electrons = pi_electrons(*flat[i], in_ring);
      aromatic[i] = electrons >= 0 && electrons % 4 == 2;
    }
    // Azulene's kind: neither ring alone has 4n + 2 electrons.
    for (std::size_t i = 0; i < flat.size(); ++i) {
      for (std::size_t j = i + 1; j < flat.size() && flat.size() < 200; ++j) {
        if (aromatic[i] && aromatic[j]) continue;
        std::vector<std::size_t> both = *flat[i];
        std::size_t common = 0;
        for (const std::size_t atom : *flat[j]) {
          if (std::find(both.begin(), both.end(), atom) == both.end()) {
            both.push_back(atom);
          } else {
            ++common;
          }
        }
        if (common != 2) continue;
        const int electrons = pi_electrons(both, in_ring);
        if (electrons >= 0 && electrons % 4 == 2 && both.size() % 2 == 0 && !aromatic[i] && !aromatic[j])
          aromatic[i] = aromatic[j] = true;
      }
    }
    for (std::size_t i = 0; i < flat.size(); ++i) {
      if (!aromatic[i]) continue;
      const auto& ring = *flat[i];
      for (std::size_t k = 0; k < ring.size(); ++k) {
        const std::size_t next = ring[(k + 1) % ring.size()];
        for (const Neighbour& neighbour : neighbours_[ring[k]])
          if (neighbour.atom == next && types_.bonds[neighbour.bond] != BondType::unknown)
            types_.bonds[neighbour.bond] = BondType::aromatic;
      }
    }
  }

  // The pi electrons of the atoms together; -1 where one of them is saturated, or the bonds are not known.
  [[nodiscard]] int pi_electrons(const std::vector<std::size_t>& atoms,
                                 const std::vector<bool>& in_ring) const {
    int total = 0;
    for (const std::size_t atom : atoms) {
      if (open_[atom]) return -1;
      const std::size_t bonded = degree(atom);
      if (pi_[atom] == 0) {
        const int number = numbers_[atom];
        const bool lone_pair =
            (number == 7 && bonded <= 3) || ((number == 8 || number == 16 || number == 34) && bonded == 2);
        const int charge = types_.charges[atom];
        const bool carbanion = number == 6 && bonded == 3 && (bonds_metal_[atom] || charge == -1);
        if (lone_pair || carbanion) {
          total += 2;
          continue;
        }
        if (bonded == 3 && (number == 5 || (number == 6 && charge == 1))) continue;
        return -1;
      }
      if (pi_[atom] > 1) return -1;
      for (const Neighbour& next : neighbours_[atom]) {
        if (types_.orders[next.bond] != 2) continue;
        const bool inside = std::find(atoms.begin(), atoms.end(), next.atom) != atoms.end();
        if (inside || in_ring[next.atom]) {
          ++total;
        } else if (numbers_[next.atom] == 6) {
          return -1;
        }
        // A carbonyl group takes its electron out of the ring.
      }
    }
    return total;
  }

  // No torsion along the ring above 20 degrees.
  [[nodiscard]] bool is_flat(const std::vector<std::size_t>& ring) const {
    const auto at = [&](std::size_t i) { return molecule_.places[ring[i % ring.size()]]; };
    for (std::size_t i = 0; i < ring.size(); ++i)
      if (std::abs(torsion(at(i), at(i + 1), at(i + 2), at(i + 3))) > 20.0) return false;
    return true;
  }
  static double torsion(const CartesianCoordinates& a, const CartesianCoordinates& b,
                        const CartesianCoordinates& c, const CartesianCoordinates& d) {
    const auto minus = [](const CartesianCoordinates& l, const CartesianCoordinates& r) {
      return CartesianCoordinates{l.x - r.x, l.y - r.y, l.z - r.z};
    };
    const auto cross = [](const CartesianCoordinates& l, const CartesianCoordinates& r) {
      return CartesianCoordinates{l.y * r.z - l.z * r.y, l.z * r.x - l.x * r.z, l.x * r.y - l.y * r.x};
    };
    const auto dot = [](const CartesianCoordinates& l, const CartesianCoordinates& r) {
      return l.x * r.x + l.y * r.y + l.z * r.z;
    };
    const CartesianCoordinates axis = minus(c, b);
    const CartesianCoordinates first = cross(minus(b, a), axis);
    const CartesianCoordinates second = cross(axis, minus(d, c));
    return std::atan2(dot(cross(first, second), axis) / std::sqrt(std::max(dot(axis, axis), 1e-12)),
                      dot(first, second)) *
           180.0 / std::numbers::pi;
  }

  // Carboxylate, nitrate, nitro, phosphate and their kind: a double bond and a charged atom's single one of
  // about the same length, from one atom to ends of one element.
  void mark_delocalised() {
    for (std::size_t centre = 0; centre < size_; ++centre) {
      for (const Neighbour& one : neighbours_[centre]) {
        if (types_.orders[one.bond] != 2 || !is_terminal_chalcogen(one.atom)) continue;
        const double length = distance(molecule_.places[centre], molecule_.places[one.atom]);
        for (const Neighbour& other : neighbours_[centre]) {
          if (other.atom == one.atom || types_.orders[other.bond] != 1 ||
              numbers_[other.atom] != numbers_[one.atom])
            continue;
          if (!is_terminal_chalcogen(other.atom) || types_.charges[other.atom] != -1) continue;
          if (std::abs(distance(molecule_.places[centre], molecule_.places[other.atom]) - length) > 0.045)
            continue;
          types_.bonds[one.bond] = types_.bonds[other.bond] = BondType::delocalised;
        }
      }
      if (numbers_[centre] == 6) mark_amidinium(centre);
    }
  }

  // Amidinium and guanidinium ions: a double bond to a charged nitrogen atom and single ones to flat ones, of
  // about the same length.
  void mark_amidinium(std::size_t centre) {
    const auto length = [&](const Neighbour& end) {
      return distance(molecule_.places[centre], molecule_.places[end.atom]);
    };
    for (const Neighbour& one : neighbours_[centre]) {
      if (types_.orders[one.bond] != 2 || numbers_[one.atom] != 7 || types_.charges[one.atom] != 1) continue;
      for (const Neighbour& other : neighbours_[centre]) {
        if (types_.bonds[other.bond] != BondType::single_bond || numbers_[other.atom] != 7 ||
            degree(other.atom) != 3 || angle_sum(other.atom) < 345.0)
          continue;
        if (types_.bonds[one.bond] == BondType::aromatic || std::abs(length(one) - length(other)) > 0.03)
          continue;
        types_.bonds[one.bond] = types_.bonds[other.bond] = BondType::delocalised;
      }
    }
  }

  const MoleculeShape& molecule_;
  std::size_t size_;
  std::vector<int> numbers_;
  std::vector<std::vector<Neighbour>> neighbours_;  // among main-group elements
  std::vector<bool> bonds_metal_;
  bool hydrogens_known_ = false;
  std::vector<Electron> electrons_;
  std::vector<bool> shared_;
  std::vector<int> pi_;     // pi bonds of each atom
  std::vector<bool> open_;  // whose valences do not come out
  MoleculeTypes types_;
};

}  // namespace

MoleculeTypes perceive_bond_types(const MoleculeShape& molecule) {
  return Typing(molecule).run();
}
