#include <lattice/lattice_error.h>
#include <lattice/reduced_cell.h>
#include <lattice/space_group.h>
#include <stores/lattice_columns.h>

#include <cmath>

void take_lattice(EntryColumns& columns, const Cell& cell) {
  try {
    const ReducedCell reduced(cell);
    const auto& parameters = reduced.parameters();
    bool is_finite = std::isfinite(reduced.volume());
    for (const double parameter : parameters) is_finite = is_finite && std::isfinite(parameter);
    if (is_finite) {
      columns.reduced_a = parameters[0];
      columns.reduced_b = parameters[1];
      columns.reduced_c = parameters[2];
      columns.reduced_alpha = parameters[3];
      columns.reduced_beta = parameters[4];
      columns.reduced_gamma = parameters[5];
      columns.reduced_volume = reduced.volume();
    }
  } catch (const LatticeError&) {
    // A cell that is not known, or that closes no lattice, has no reduced cell.
  }
  const auto operators = cell.symmetry_operators();
  if (operators.is_null() || operators->empty()) return;
  const SpaceGroup group(*operators);
  if (group.is_known()) columns.space_group = group.number();
}
