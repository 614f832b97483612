#include "arrays.h"

#include <lattice/cell_geometry.h>
#include <pybind11/numpy.h>

#include <array>
#include <tuple>

namespace {

std::tuple<std::array<int, 9>, std::array<double, 3>> parts(
    const CrystalSymmetryOperator& symmetry_operator) {
  return std::apply([&](const auto&... field) { return std::tuple(field.of(symmetry_operator)...); },
                    CrystalSymmetryOperator::fields());
}

const std::vector<CrystalSymmetryOperator>& operators_of(const Cell& cell) {
  static const std::vector<CrystalSymmetryOperator> none;
  const auto operators = cell.symmetry_operators();
  return operators.is_null() ? none : *operators;
}

}  // namespace

py::object operator_matrix(const CrystalSymmetryOperator& symmetry_operator) {
  const auto [rotation, translation] = parts(symmetry_operator);
  py::array_t<double> matrix({4, 4});
  auto at = matrix.mutable_unchecked<2>();
  for (py::ssize_t row = 0; row < 3; ++row) {
    for (py::ssize_t column = 0; column < 3; ++column)
      at(row, column) = rotation.at(static_cast<std::size_t>(3 * row + column));
    at(row, 3) = translation.at(static_cast<std::size_t>(row));
    at(3, row) = 0.0;
  }
  at(3, 3) = 1.0;
  return matrix;
}

py::object cell_parameters(const Cell& cell) {
  py::array_t<double> array(6);
  const double numbers[] = {cell.a(), cell.b(), cell.c(), cell.alpha(), cell.beta(), cell.gamma()};
  std::copy(std::begin(numbers), std::end(numbers), array.mutable_data());
  return array;
}

py::object cell_matrix(const Cell& cell) {
  const CellGeometry geometry(cell);
  py::array_t<double> matrix({3, 3});
  auto at = matrix.mutable_unchecked<2>();
  const FractionalCoordinates axes[] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
  for (py::ssize_t row = 0; row < 3; ++row) {
    const CartesianCoordinates axis = geometry.cartesian(axes[row]);
    at(row, 0) = axis.x;
    at(row, 1) = axis.y;
    at(row, 2) = axis.z;
  }
  return matrix;
}

py::object cell_rotations(const Cell& cell) {
  const auto& operators = operators_of(cell);
  py::array_t<int> array({static_cast<py::ssize_t>(operators.size()), py::ssize_t(3), py::ssize_t(3)});
  int* next = array.mutable_data();
  for (const CrystalSymmetryOperator& each : operators) {
    const auto rotation = std::get<0>(parts(each));
    next = std::copy(rotation.begin(), rotation.end(), next);
  }
  return array;
}

py::object cell_translations(const Cell& cell) {
  const auto& operators = operators_of(cell);
  py::array_t<double> array({static_cast<py::ssize_t>(operators.size()), py::ssize_t(3)});
  double* next = array.mutable_data();
  for (const CrystalSymmetryOperator& each : operators) {
    const auto translation = std::get<1>(parts(each));
    next = std::copy(translation.begin(), translation.end(), next);
  }
  return array;
}

py::object crystal_positions(const CrystalMaker& crystal) {
  py::array_t<double> array({static_cast<py::ssize_t>(crystal.atoms().size()), py::ssize_t(3)});
  double* next = array.mutable_data();
  for (const THandle<Atom>& atom : crystal.atoms()) {
    *next++ = atom->position.x;
    *next++ = atom->position.y;
    *next++ = atom->position.z;
  }
  return array;
}

py::object crystal_occupancies(const CrystalMaker& crystal) {
  py::array_t<double> array(static_cast<py::ssize_t>(crystal.atoms().size()));
  double* next = array.mutable_data();
  for (const THandle<Atom>& atom : crystal.atoms()) *next++ = atom->occupancy;
  return array;
}
