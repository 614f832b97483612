#include <lattice/lattice_error.h>
#include <lattice/number_text.h>
#include <lattice/operator_parts.h>
#include <lattice/packed_crystal.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

constexpr double farthest = 1e6;
constexpr double most_atoms = 20e6;

void check_position(const Atom& atom, std::size_t site) {
  for (const double coordinate : {atom.position.x, atom.position.y, atom.position.z}) {
    if (std::abs(coordinate) <= farthest) continue;  // false for what is no number
    throw LatticeError("The position of atom " + std::to_string(site + 1) + " (" + atom.label +
                       ") is not finite or is more than a million cells away");
  }
}

std::vector<CrystalSymmetryOperator> checked_operators(const Cell& cell) {
  if (cell.symmetry_operators().is_null() || cell.symmetry_operators()->empty())
    return {CrystalSymmetryOperator()};
  for (const CrystalSymmetryOperator& op : *cell.symmetry_operators())
    if (!parts_of(op)) throw LatticeError("A symmetry operator is not finite: " + op.xyz());
  return *cell.symmetry_operators();
}

// Into the cell; what is below 0 by less than rounding is 0.
int move_into_cell(double& coordinate) {
  double steps = -std::floor(coordinate);
  if (coordinate + steps >= 1.0) steps -= 1.0;
  coordinate = std::max(coordinate + steps, 0.0);
  return static_cast<int>(steps);
}

// The difference's shortest image is this one for all differences that are small in space.
double nearest(double difference) {
  return difference - std::round(difference);
}

// Atoms by place, so that those at one place are found without looking at all of them: a grid over the cell,
// coarser than the distance that is merged and no finer than a thousandth of the axes.
class Places {
 public:
  Places(const CellGeometry& geometry, double within) {
    for (std::size_t axis = 0; axis < 3; ++axis)
      count_[axis] =
          static_cast<int>(std::clamp(geometry.spacing(axis) / (2.0 * within + 1e-6), 1.0, 1000.0));
  }

  void add(const FractionalCoordinates& position, std::size_t atom) {
    boxes_[index(home(position))].push_back(atom);
  }

  // Calls is_there(atom) for the atoms around until one is.
  template <class IsThere>
  [[nodiscard]] bool any_near(const FractionalCoordinates& position, IsThere is_there) const {
    const std::array<int, 3> box = home(position);
    for (int i = -1; i <= 1; ++i)
      for (int j = -1; j <= 1; ++j)
        for (int k = -1; k <= 1; ++k)
          if (const auto found = boxes_.find(index({box[0] + i, box[1] + j, box[2] + k}));
              found != boxes_.end())
            if (std::any_of(found->second.begin(), found->second.end(), is_there)) return true;
    return false;
  }

 private:
  [[nodiscard]] std::array<int, 3> home(const FractionalCoordinates& position) const {
    return {static_cast<int>(position.x * count_[0]), static_cast<int>(position.y * count_[1]),
            static_cast<int>(position.z * count_[2])};
  }
  [[nodiscard]] long long index(std::array<int, 3> box) const {
    for (std::size_t axis = 0; axis < 3; ++axis) box[axis] = (box[axis] + count_[axis]) % count_[axis];
    return (static_cast<long long>(box[0]) * count_[1] + box[1]) * count_[2] + box[2];
  }

  std::array<int, 3> count_{};
  std::unordered_map<long long, std::vector<std::size_t>> boxes_;
};

// Whether two sites are one atom that is listed twice, when they share a place.
bool say_the_same(const Atom& left, const Atom& right) {
  return left.element == right.element && left.occupancy + right.occupancy > 1.01;
}

double range_length(const PackingOptions& options) {
  double cells = 1.0;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double steps = double(options.last_cell[axis]) - double(options.first_cell[axis]) + 1.0;
    if (steps < 1.0) throw LatticeError("A range of cells ends before it begins");
    cells *= steps;
  }
  return cells;
}

}  // namespace

PackedCrystal::PackedCrystal(const CrystalMaker& crystal, const PackingOptions& options)
    : geometry_(*crystal.cell()) {
  if (!(options.merge_within >= 0.0 && options.merge_within <= 1.0))
    throw LatticeError("Atoms are merged within 0 to 1 Å, not " + number_text(options.merge_within));
  const double cells = range_length(options);
  const std::vector<CrystalSymmetryOperator> operators = checked_operators(*crystal.cell());
  std::vector<PackedAtom> cell_atoms;
  Places places(geometry_, options.merge_within);
  for (std::size_t site = 0; site < crystal.atoms().size(); ++site) {
    const Atom& atom = *crystal.atoms()[site];
    check_position(atom, site);
    const std::size_t first = cell_atoms.size();
    for (std::size_t op = 0; op < operators.size(); ++op) {
      PackedAtom image = {site, op, {}, operators[op].apply(atom.position)};
      image.translation = {move_into_cell(image.position.x), move_into_cell(image.position.y),
                           move_into_cell(image.position.z)};
      const bool is_there = places.any_near(image.position, [&](std::size_t other) {
        const FractionalCoordinates& at = cell_atoms[other].position;
        return geometry_.length({nearest(image.position.x - at.x), nearest(image.position.y - at.y),
                                 nearest(image.position.z - at.z)}) <= options.merge_within &&
               (cell_atoms[other].site == site ||
                say_the_same(atom, *crystal.atoms()[cell_atoms[other].site]));
      });
      if (is_there) continue;
      places.add(image.position, cell_atoms.size());
      cell_atoms.push_back(image);
    }
    multiplicities_.push_back(cell_atoms.size() - first);
  }
  if (cells * static_cast<double>(cell_atoms.size()) > most_atoms)
    throw LatticeError("The range of cells holds more than 20 million atoms; ask for fewer cells");

  atoms_.reserve(static_cast<std::size_t>(cells) * cell_atoms.size());
  const auto& [a0, b0, c0] = options.first_cell;
  const auto& [a1, b1, c1] = options.last_cell;
  for (int a = a0; a <= a1; ++a) {
    for (int b = b0; b <= b1; ++b) {
      for (int c = c0; c <= c1; ++c) {
        for (PackedAtom atom : cell_atoms) {
          atom.translation = {atom.translation[0] + a, atom.translation[1] + b, atom.translation[2] + c};
          atom.position = {atom.position.x + a, atom.position.y + b, atom.position.z + c};
          atoms_.push_back(atom);
        }
      }
    }
  }
}
