#include <lattice/lattice_error.h>
#include <lattice/operator_parts.h>
#include <lattice/packed_crystal.h>

#include <algorithm>
#include <cmath>
#include <string>

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
  const double cells = range_length(options);
  const std::vector<CrystalSymmetryOperator> operators = checked_operators(*crystal.cell());
  std::vector<PackedAtom> cell_atoms;
  for (std::size_t site = 0; site < crystal.atoms().size(); ++site) {
    const Atom& atom = *crystal.atoms()[site];
    check_position(atom, site);
    const std::size_t first = cell_atoms.size();
    for (std::size_t op = 0; op < operators.size(); ++op) {
      PackedAtom image = {site, op, {}, operators[op].apply(atom.position)};
      image.translation = {move_into_cell(image.position.x), move_into_cell(image.position.y),
                           move_into_cell(image.position.z)};
      bool is_new = true;
      for (std::size_t other = first; is_new && other < cell_atoms.size(); ++other) {
        const FractionalCoordinates& at = cell_atoms[other].position;
        is_new = geometry_.length({nearest(image.position.x - at.x), nearest(image.position.y - at.y),
                                   nearest(image.position.z - at.z)}) > options.merge_within;
      }
      if (is_new) cell_atoms.push_back(image);
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
