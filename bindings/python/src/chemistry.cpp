// Operators, cells, atoms, crystals, diagrams, connectivities, matches.
#include <database_entry/entries/crystal_structure_database_entry.h>

#include "arrays.h"
#include "list.h"

namespace {

void bind_symmetry(py::module_& module) {
  using Operator = CrystalSymmetryOperator;
  auto bound = bind_fields<Operator>(module, "CrystalSymmetryOperator");
  bound.def(py::init([](const std::string& xyz) { return THandle<Operator>(new Operator(xyz)); }),
            py::arg("xyz") = "x,y,z", "From a coordinate triplet: \"-x,1/2+y,1/2-z\".");
  bound.def_static("_from_fields", [](const py::tuple& fields) {
    return made_of_fields<Operator>(fields, THandle<Operator>::make());
  });
  bound.def("xyz", &Operator::xyz, "The coordinate triplet, translations first.");
  bound.def("__str__", &Operator::xyz);
  bound.def(
      "apply",
      [](const Operator& self, py::handle point) {
        return Converter<FractionalCoordinates>::to(self.apply(coordinates_from(point)));
      },
      py::arg("point"), "The image of a point, in fractions of the cell's axes; not moved into the cell.");
  bound.def_property_readonly("matrix", &operator_matrix,
                              "The operator as a 4 by 4 matrix of floats on (x, y, z, 1); a copy.");
  bind_list<Operator>(module, "SymmetryOperators");
}

void bind_cell(py::module_& module) {
  auto cell = bind_fields<Cell>(module, "Cell");
  cell.def(
      py::init([](double a, double b, double c, double alpha, double beta, double gamma,
                  py::handle symmetry_operators) {
        using Operators = THandle<std::vector<CrystalSymmetryOperator>>;
        const auto operators = Converter<Operators>::from(symmetry_operators);
        return THandle<Cell>(new Cell(a, b, c, alpha, beta, gamma, operators));
      }),
      py::arg("a") = 0.0, py::arg("b") = 0.0, py::arg("c") = 0.0, py::arg("alpha") = 0.0,
      py::arg("beta") = 0.0, py::arg("gamma") = 0.0, py::arg("symmetry_operators") = py::tuple(),
      "Lengths in angstrom, angles in degrees; operators or their texts. A SymmetryOperators is shared.");
  cell.def_property_readonly("volume", &Cell::volume, "float: in cubic angstrom; 0.0 for no cell.");
  cell.def_property_readonly(
      "parameters", &cell_parameters,
      "numpy.ndarray, (6,): a, b, c in angstrom, alpha, beta, gamma in degrees; a copy.");
  cell.def_property_readonly("matrix", &cell_matrix,
                             "numpy.ndarray, (3, 3): the axes as rows, Cartesian, in angstrom; a along x, b "
                             "in the plane of x and y. "
                             "fractions @ matrix are Cartesian coordinates. A copy.");
  cell.def_property_readonly("rotations", &cell_rotations,
                             "numpy.ndarray of int, (operators, 3, 3): the operators' rotations; a copy.");
  cell.def_property_readonly("translations", &cell_translations,
                             "numpy.ndarray, (operators, 3): in fractions of the axes; a copy.");
}

bool are_equal_by_value(const CrystalMaker& a, const CrystalMaker& b) {
  if (!(*a.cell() == *b.cell()) || a.atoms().size() != b.atoms().size()) return false;
  for (std::size_t i = 0; i < a.atoms().size(); ++i) {
    const Atom* const left = a.atoms()[i].get();
    const Atom* const right = b.atoms()[i].get();
    if (left == right) continue;
    if (left == nullptr || right == nullptr || !(*left == *right)) return false;
  }
  return true;
}

void bind_crystal(py::module_& module) {
  bind_record<Atom>(module, "Atom");
  bind_list<THandle<Atom>>(module, "Atoms");
  auto crystal = bind_fields<CrystalMaker, Equality::by_identity>(module, "CrystalMaker");
  crystal.def(py::init([](const THandle<Cell>& cell, py::handle atoms) {
                return THandle<CrystalMaker>(
                    new CrystalMaker(cell, Converter<std::vector<THandle<Atom>>>::from(atoms)));
              }),
              py::arg("cell"), py::arg("atoms") = py::tuple(), "Shares the cell and the atoms.");
  crystal.def(py::init([] { return THandle<CrystalMaker>::make(); }), "A default cell, no atoms.");
  crystal.def("__eq__", [](const CrystalMaker& left, py::handle right) -> py::object {
    if (!py::isinstance<CrystalMaker>(right)) return py::reinterpret_borrow<py::object>(Py_NotImplemented);
    return py::bool_(are_equal_by_value(left, object_of<CrystalMaker>(right.ptr())));
  });
  crystal.attr("__hash__") = py::none();
  crystal.def_property_readonly("positions", &crystal_positions,
                                "numpy.ndarray, (atoms, 3): in fractions of the cell's axes; a copy.");
  crystal.def_property_readonly("occupancies", &crystal_occupancies, "numpy.ndarray, (atoms,): a copy.");
}

void bind_graphs(py::module_& module) {
  bind_enumeration<BondType>(module);
  bind_record<Bond>(module, "Bond");

  bind_record<DiagramAtom>(module, "DiagramAtom");
  bind_record<DiagramBond>(module, "DiagramBond");
  bind_list<THandle<DiagramAtom>>(module, "DiagramAtoms");
  bind_list<THandle<DiagramBond>>(module, "DiagramBonds");
  bind_record<ChemicalDiagram, Equality::by_identity>(module, "ChemicalDiagram");

  bind_record<ConnectivityAtom>(module, "ConnectivityAtom");
  bind_record<ConnectivityBond>(module, "ConnectivityBond");
  bind_list<THandle<ConnectivityAtom>>(module, "ConnectivityAtoms");
  bind_list<THandle<ConnectivityBond>>(module, "ConnectivityBonds");
  bind_record<Connectivity>(module, "Connectivity");
  auto info = bind_fields<ConnectivityInfo>(module, "ConnectivityInfo");
  info.def(py::init([] { return THandle<ConnectivityInfo>::make(); }), "An empty connectivity.");
  info.def(py::init([](const THandle<Connectivity>& connectivity) {
             return THandle<ConnectivityInfo>(new ConnectivityInfo(connectivity));
           }),
           py::arg("connectivity"), "Shares the connectivity.");
}

void bind_matches(py::module_& module) {
  bind_list<std::pair<THandle<Atom>, THandle<DiagramAtom>>>(module, "CrystalDiagramAtomPairs");
  bind_list<std::pair<THandle<Bond>, THandle<DiagramBond>>>(module, "CrystalDiagramBondPairs");
  bind_list<std::pair<THandle<ConnectivityAtom>, THandle<DiagramAtom>>>(module,
                                                                        "ConnectivityDiagramAtomPairs");
  bind_list<std::pair<THandle<ConnectivityBond>, THandle<DiagramBond>>>(module,
                                                                        "ConnectivityDiagramBondPairs");
  bind_list<std::pair<THandle<Atom>, THandle<ConnectivityAtom>>>(module, "CrystalConnectivityAtomPairs");
  bind_list<std::pair<THandle<Bond>, THandle<ConnectivityBond>>>(module, "CrystalConnectivityBondPairs");
  bind_record<CrystalDiagramMatch, Equality::by_identity>(module, "CrystalDiagramMatch");
  bind_record<ConnectivityDiagramMatch, Equality::by_identity>(module, "ConnectivityDiagramMatch");
  bind_record<CrystalConnectivityMatch, Equality::by_identity>(module, "CrystalConnectivityMatch");

  bind_record<DisorderSelector, Equality::by_identity>(module, "DisorderSelector");
  bind_list<THandle<DisorderSelector>>(module, "DisorderSelectors");
}

}  // namespace

void bind_chemistry(py::module_& module) {
  bind_list<std::string>(module, "Texts");
  bind_symmetry(module);
  bind_cell(module);
  bind_crystal(module);
  bind_graphs(module);
  bind_matches(module);
}
