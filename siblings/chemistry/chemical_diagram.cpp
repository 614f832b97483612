#include <chemistry/chemical_diagram.h>

#include <ostream>

void ChemicalDiagram::print(std::ostream& os) const {
  os << "diagram atoms: " << atoms.size() << ", diagram bonds: " << bonds.size() << std::endl;
}
