// Numbers of cells and crystals as numpy arrays, all of them copies.
// Internal: for the sources of the module.
#pragma once

#include <chemistry/cell.h>
#include <chemistry/crystal_maker.h>
#include <symmetry/crystal_symmetry_operator.h>

#include "python.h"

[[nodiscard]] py::object operator_matrix(const CrystalSymmetryOperator& symmetry_operator);
[[nodiscard]] py::object cell_parameters(const Cell& cell);
// Throws LatticeError where the angles close no cell.
[[nodiscard]] py::object cell_matrix(const Cell& cell);
[[nodiscard]] py::object cell_rotations(const Cell& cell);
[[nodiscard]] py::object cell_translations(const Cell& cell);
[[nodiscard]] py::object crystal_positions(const CrystalMaker& crystal);
[[nodiscard]] py::object crystal_occupancies(const CrystalMaker& crystal);
