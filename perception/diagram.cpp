#include <coordgen/sketcherMinimizer.h>
#include <perception/diagram.h>
#include <perception/elements.h>
#include <perception/perception_error.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <string>

namespace {

constexpr double coordgen_bond = 50.0;  // a bond's length in the library's own units
constexpr double crowded = 0.4;

// Which atoms are drawn: all but hydrogen atoms with one neighbour that is heavier.
std::vector<bool> drawn_atoms(const MoleculeShape& molecule) {
  std::vector<std::size_t> degree(molecule.elements.size());
  std::vector<bool> heavy_neighbour(molecule.elements.size());
  for (const auto& [first, second] : molecule.bonds) {
    ++degree[first];
    ++degree[second];
    if (atomic_number(molecule.elements[second]) != 1) heavy_neighbour[first] = true;
    if (atomic_number(molecule.elements[first]) != 1) heavy_neighbour[second] = true;
  }
  std::vector<bool> drawn;
  for (std::size_t atom = 0; atom < degree.size(); ++atom)
    drawn.push_back(atomic_number(molecule.elements[atom]) != 1 || degree[atom] != 1 ||
                    !heavy_neighbour[atom]);
  return drawn;
}

std::size_t count_overlaps(const std::vector<THandle<DiagramAtom>>& atoms) {
  // Sorted by x, so that each atom meets only those near it.
  std::vector<const DiagramAtom*> sorted;
  for (const THandle<DiagramAtom>& atom : atoms) sorted.push_back(atom.get());
  std::sort(sorted.begin(), sorted.end(),
            [](const DiagramAtom* left, const DiagramAtom* right) { return left->x < right->x; });
  std::size_t overlaps = 0;
  for (std::size_t i = 0; i < sorted.size(); ++i)
    for (std::size_t j = i + 1; j < sorted.size() && sorted[j]->x - sorted[i]->x < crowded; ++j)
      if (std::hypot(sorted[i]->x - sorted[j]->x, sorted[i]->y - sorted[j]->y) < crowded) ++overlaps;
  return overlaps;
}

// One connected part: its places, by the library. The sketcher owns the molecule that it is given.
std::vector<std::array<double, 2>> laid_out(const std::vector<int>& numbers,
                                            const std::vector<std::array<std::size_t, 2>>& bonds,
                                            const std::vector<int>& orders, float precision) {
  sketcherMinimizer sketcher(precision);
  auto* const sketch = new sketcherMinimizerMolecule;
  std::vector<sketcherMinimizerAtom*> atoms;
  for (const int number : numbers) {
    atoms.push_back(sketch->addNewAtom());
    atoms.back()->setAtomicNumber(std::max(number, 1));
  }
  for (std::size_t bond = 0; bond < bonds.size(); ++bond)
    sketch->addNewBond(atoms[bonds[bond][0]], atoms[bonds[bond][1]])->setBondOrder(std::max(orders[bond], 1));
  sketcher.initialize(sketch);
  sketcher.runGenerateCoordinates();
  std::vector<std::array<double, 2>> places;
  for (const sketcherMinimizerAtom* const atom : atoms)
    places.push_back({atom->coordinates.x() / coordgen_bond, -atom->coordinates.y() / coordgen_bond});
  return places;
}

// Atoms that hang together, part after part, each in order.
std::vector<std::vector<std::size_t>> connected_parts(std::size_t atoms,
                                                      const std::vector<std::array<std::size_t, 2>>& bonds) {
  std::vector<std::vector<std::size_t>> neighbours(atoms);
  for (const auto& [first, second] : bonds) {
    neighbours[first].push_back(second);
    neighbours[second].push_back(first);
  }
  std::vector<bool> seen(atoms);
  std::vector<std::vector<std::size_t>> parts;
  for (std::size_t start = 0; start < atoms; ++start) {
    if (seen[start]) continue;
    std::vector<std::size_t> part = {start};
    seen[start] = true;
    for (std::size_t next = 0; next < part.size(); ++next) {
      for (const std::size_t other : neighbours[part[next]]) {
        if (!seen[other]) part.push_back(other);
        seen[other] = true;
      }
    }
    std::sort(part.begin(), part.end());
    parts.push_back(std::move(part));
  }
  return parts;
}

void place_part(DrawnMolecule& drawn, const std::vector<std::size_t>& part,
                const std::vector<std::array<std::size_t, 2>>& bonds, const MoleculeTypes& types,
                double& right) {
  std::vector<std::size_t> position(drawn.atoms.size());
  std::vector<int> numbers;
  for (std::size_t i = 0; i < part.size(); ++i) {
    position[part[i]] = i;
    numbers.push_back(atomic_number(drawn.diagram.atoms[part[i]]->element));
  }
  std::vector<std::array<std::size_t, 2>> own;
  std::vector<int> orders;
  for (std::size_t bond = 0; bond < bonds.size(); ++bond) {
    if (!std::binary_search(part.begin(), part.end(), bonds[bond][0])) continue;
    own.push_back({position[bonds[bond][0]], position[bonds[bond][1]]});
    orders.push_back(types.orders[drawn.bonds[bond]]);
  }
  const auto apply = [&](const std::vector<std::array<double, 2>>& places) {
    double left = 1e9;
    double most = -1e9;
    for (const auto& [x, y] : places) {
      if (!std::isfinite(x) || !std::isfinite(y))
        throw PerceptionError("The drawing library gives a place that is not finite");
      left = std::min(left, x);
      most = std::max(most, x);
    }
    std::vector<THandle<DiagramAtom>> atoms;
    for (std::size_t i = 0; i < part.size(); ++i) {
      DiagramAtom& atom = *drawn.diagram.atoms[part[i]];
      atom.x = places[i][0] - left + right;
      atom.y = places[i][1];
      atoms.push_back(drawn.diagram.atoms[part[i]]);
    }
    return std::pair(count_overlaps(atoms), most - left);
  };
  if (part.size() == 1) {
    right += apply({{0.0, 0.0}}).second + 2.0;
    return;
  }
  auto [overlaps, width] = apply(laid_out(numbers, own, orders, SKETCHER_STANDARD_PRECISION));
  if (overlaps > 0)
    std::tie(overlaps, width) = apply(laid_out(numbers, own, orders, SKETCHER_BEST_PRECISION));
  drawn.overlaps += overlaps;
  right += width + 2.0;
}

}  // namespace

DrawnMolecule draw_diagram(const MoleculeShape& molecule, const MoleculeTypes& types) {
  DrawnMolecule drawn;
  const std::vector<bool> is_drawn = drawn_atoms(molecule);
  std::vector<std::size_t> position(molecule.elements.size());
  std::vector<int> hydrogens = types.hydrogen_counts;
  for (const auto& [first, second] : molecule.bonds) {
    if (!is_drawn[first]) ++hydrogens[second];
    if (!is_drawn[second]) ++hydrogens[first];
  }
  for (std::size_t atom = 0; atom < molecule.elements.size(); ++atom) {
    if (!is_drawn[atom]) continue;
    position[atom] = drawn.atoms.size();
    drawn.atoms.push_back(atom);
    DiagramAtom made;
    made.element = molecule.elements[atom];
    made.charge = types.charges[atom];
    if (hydrogens[atom] > 0 && atomic_number(made.element) != 6)
      made.label = hydrogens[atom] == 1 ? "H" : "H" + std::to_string(hydrogens[atom]);
    drawn.diagram.atoms.emplace_back(new DiagramAtom(made));
  }
  std::vector<std::array<std::size_t, 2>> bonds;
  for (std::size_t bond = 0; bond < molecule.bonds.size(); ++bond) {
    const auto& [first, second] = molecule.bonds[bond];
    if (!is_drawn[first] || !is_drawn[second] || first == second) continue;
    bonds.push_back({position[first], position[second]});
    drawn.bonds.push_back(bond);
    drawn.diagram.bonds.emplace_back(new DiagramBond{
        drawn.diagram.atoms[position[first]], drawn.diagram.atoms[position[second]], types.bonds[bond]});
  }
  // What is bonded in all directions, like a cluster of metal atoms, has no drawing, and would be looked for
  // without end.
  if (bonds.size() > 2 * drawn.atoms.size() + 8)
    throw PerceptionError("A molecule of " + std::to_string(drawn.atoms.size()) + " atoms and " +
                          std::to_string(bonds.size()) + " bonds is too dense to be drawn");
  double right = 0.0;
  try {
    for (const std::vector<std::size_t>& part : connected_parts(drawn.atoms.size(), bonds))
      place_part(drawn, part, bonds, types, right);
  } catch (const PerceptionError&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& failure) {
    throw PerceptionError(std::string("The drawing library fails: ") + failure.what());
  }
  return drawn;
}
