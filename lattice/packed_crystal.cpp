#include <lattice/lattice_error.h>
#include <lattice/number_text.h>
#include <lattice/packed_crystal.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
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

// Those of the cell; where none are known, the identity.
const std::vector<CrystalSymmetryOperator>& operators_of(
    const THandle<std::vector<CrystalSymmetryOperator>>& list) {
  static const std::vector<CrystalSymmetryOperator> identity(1);
  return list.is_null() || list->empty() ? identity : *list;
}

void check_image(const FractionalCoordinates& image, const CrystalSymmetryOperator& op) {
  // Twice a position, or a rotation of no crystal, still is a place; more is none.
  for (const double coordinate : {image.x, image.y, image.z})
    if (!(std::abs(coordinate) <= 100 * farthest))
      throw LatticeError("A symmetry operator is not finite: " + op.xyz());
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

// Atoms by place, so that those at one place are found without looking at all of them: a grid over the cell
// with about as many boxes as atoms, each wider than what is merged.
class Places {
 public:
  Places(const CellGeometry& geometry, double within, std::size_t atoms) {
    const double most = std::clamp(std::cbrt(static_cast<double>(atoms)), 1.0, 100.0);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double spacing = geometry.spacing(axis);
      count_[axis] = std::max(1, static_cast<int>(std::min(most, spacing / (2.0 * within + 1e-6))));
      margin_[axis] = within / spacing * count_[axis];
    }
    first_.assign(static_cast<std::size_t>(count_[0]) * static_cast<std::size_t>(count_[1]) *
                      static_cast<std::size_t>(count_[2]),
                  none);
  }

  // Atoms are added in order, from 0 on.
  void add(const FractionalCoordinates& position) {
    std::size_t& first = first_[index({home(position.x, 0), home(position.y, 1), home(position.z, 2)})];
    next_.push_back(std::exchange(first, next_.size()));
  }

  // Calls is_there(atom) for the atoms around until one is.
  template <class IsThere>
  [[nodiscard]] bool any_near(const FractionalCoordinates& position, IsThere is_there) const {
    const Range x = boxes_around(position.x, 0);
    const Range y = boxes_around(position.y, 1);
    const Range z = boxes_around(position.z, 2);
    for (int i = x.first; i <= x.last; ++i)
      for (int j = y.first; j <= y.last; ++j)
        for (int k = z.first; k <= z.last; ++k)
          for (std::size_t atom = first_[index({i, j, k})]; atom != none; atom = next_[atom])
            if (is_there(atom)) return true;
    return false;
  }

 private:
  static constexpr std::size_t none = static_cast<std::size_t>(-1);
  struct Range {
    int first;
    int last;
  };

  [[nodiscard]] int home(double coordinate, std::size_t axis) const {
    return std::min(static_cast<int>(coordinate * count_[axis]), count_[axis] - 1);
  }
  // The next box only where the place is near to it.
  [[nodiscard]] Range boxes_around(double coordinate, std::size_t axis) const {
    const double scaled = coordinate * count_[axis];
    return {static_cast<int>(std::floor(scaled - margin_[axis])),
            static_cast<int>(std::floor(scaled + margin_[axis]))};
  }
  [[nodiscard]] std::size_t index(std::array<int, 3> box) const {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (box[axis] < 0) box[axis] += count_[axis];
      if (box[axis] >= count_[axis]) box[axis] -= count_[axis];
    }
    const auto at = [&](std::size_t axis) { return static_cast<std::size_t>(box[axis]); };
    const auto count = [&](std::size_t axis) { return static_cast<std::size_t>(count_[axis]); };
    return (at(0) * count(1) + at(1)) * count(2) + at(2);
  }

  std::array<int, 3> count_{};
  std::array<double, 3> margin_{};
  std::vector<std::size_t> first_;  // of each box, then the chain of next_
  std::vector<std::size_t> next_;
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
  const auto list = crystal.cell()->symmetry_operators();
  const std::vector<CrystalSymmetryOperator>& operators = operators_of(list);
  std::vector<PackedAtom> cell_atoms;
  Places places(geometry_, options.merge_within, operators.size() * crystal.atoms().size());
  for (std::size_t site = 0; site < crystal.atoms().size(); ++site) {
    const Atom& atom = *crystal.atoms()[site];
    check_position(atom, site);
    const std::size_t first = cell_atoms.size();
    for (std::size_t op = 0; op < operators.size(); ++op) {
      PackedAtom image = {site, op, {}, operators[op].apply(atom.position)};
      check_image(image.position, operators[op]);
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
      places.add(image.position);
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
