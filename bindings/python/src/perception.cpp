// Lattices, space groups, packed cells; bonds, molecules, perceived components, checks, pictures.
#include <lattice/packed_crystal.h>
#include <lattice/reduced_cell.h>
#include <lattice/space_group.h>
#include <perception/bonds.h>
#include <perception/components.h>
#include <perception/entry_check.h>
#include <perception/molecules.h>
#include <perception/picture.h>
#include <pybind11/numpy.h>

#include <algorithm>
#include <string>

#include "record.h"

namespace {

py::object text_object(const std::string& text) {
  return Converter<std::string>::to(text);
}

template <class Packed>
py::dict arrays_of(const CrystalMaker& crystal, const Packed& packed) {
  const auto count = static_cast<py::ssize_t>(packed.atoms().size());
  py::array_t<double> positions({count, py::ssize_t(3)});
  py::array_t<std::int64_t> sites(count);
  double* position = positions.mutable_data();
  std::int64_t* site = sites.mutable_data();
  py::list elements;
  for (const PackedAtom& atom : packed.atoms()) {
    *position++ = atom.position.x;
    *position++ = atom.position.y;
    *position++ = atom.position.z;
    *site++ = static_cast<std::int64_t>(atom.site);
    elements.append(text_object(crystal.atoms()[atom.site]->element));
  }
  py::dict arrays;
  arrays["positions"] = positions;
  arrays["sites"] = sites;
  arrays["elements"] = elements;
  return arrays;
}

py::object bonds_of(const CrystalMaker& crystal, double tolerance) {
  const CrystalBonds found = perceive_bonds(crystal, {.tolerance = tolerance});
  py::list bonds;
  for (const CrystalBond& bond : found.bonds)
    bonds.append(py::make_tuple(bond.first, bond.second, Converter<std::array<int, 3>>::to(bond.translation),
                                bond.length));
  py::dict result = arrays_of(crystal, found.packed);
  result["bonds"] = bonds;
  return result;
}

py::object molecules_of(const CrystalMaker& crystal) {
  const auto list = molecules(crystal, perceive_bonds(crystal));
  py::list found;
  for (const Molecule& molecule : list) {
    py::dict row;
    const auto count = static_cast<py::ssize_t>(molecule.atoms.size());
    py::array_t<double> positions({count, py::ssize_t(3)});
    double* position = positions.mutable_data();
    for (const MoleculeAtom& atom : molecule.atoms) {
      *position++ = atom.place.x;
      *position++ = atom.place.y;
      *position++ = atom.place.z;
    }
    py::list bonds;
    for (const MoleculeBond& bond : molecule.bonds) bonds.append(py::make_tuple(bond.first, bond.second));
    py::list atoms;
    for (const MoleculeAtom& atom : molecule.atoms) atoms.append(atom.atom);
    row["formula"] = text_object(molecule.formula);
    row["dimension"] = molecule.dimension;
    row["atoms"] = atoms;
    row["positions"] = positions;
    row["bonds"] = bonds;
    found.append(row);
  }
  return found;
}

py::object texts_of(const std::vector<std::string>& texts) {
  return Converter<std::vector<std::string>>::to(texts);
}

py::tuple perceived(const CrystalStructureDatabaseEntry& entry, bool draw, bool frameworks) {
  const PerceivedEntry result = perceive_components(entry, {.draw = draw, .frameworks = frameworks});
  py::dict report;
  report["filled"] = texts_of(result.report.filled);
  report["notes"] = texts_of(result.report.notes);
  py::list moieties;
  for (const PerceivedMoiety& each : result.report.moieties)
    moieties.append(py::make_tuple(text_object(each.formula), each.dimension, each.in_cell));
  report["moieties"] = py::tuple(moieties);
  report["bonds"] = result.report.bonds;
  report["z"] = result.report.z;
  report["z_prime"] = result.report.z_prime;
  using Immediate = CrystalStructureImmediateDatabaseEntry;
  return py::make_tuple(py::cast(THandle<Immediate>(new Immediate(result.entry))), report);
}

py::bytes picture(const CrystalStructureDatabaseEntry& entry, const std::string& kind,
                  const std::string& format, const std::string& view, bool labels, int width, int height) {
  PictureOptions options;
  if (kind == "cell") {
    options.kind = PictureKind::cell;
  } else if (kind == "molecule") {
    options.kind = PictureKind::molecule;
  } else if (kind != "diagram") {
    throw std::invalid_argument("a picture is of the 'diagram', the 'cell' or the 'molecule', not '" + kind +
                                "'");
  }
  options.format = picture_format_of("." + format);
  if (!view.empty()) options.view = picture_view_of(view);
  options.labels = labels;
  options.width = width;
  options.height = height;
  return py::bytes(draw_picture(entry, options).bytes);
}

}  // namespace

void bind_lattice(py::module_& module) {
  py::class_<SpaceGroup>(module, "SpaceGroup", class_documentation("SpaceGroup"))
      .def(py::init([](py::handle operators) {
             return SpaceGroup(Converter<std::vector<CrystalSymmetryOperator>>::from(operators));
           }),
           py::arg("operators"), "From all operators of a cell, or their texts.")
      .def_property_readonly("is_known", &SpaceGroup::is_known)
      .def_property_readonly("reason", [](const SpaceGroup& self) { return self.reason(); })
      .def_property_readonly("number", &SpaceGroup::number, "int: 1 to 230; 0 where it is not known.")
      .def_property_readonly("hermann_mauguin", [](const SpaceGroup& self) { return self.hermann_mauguin(); })
      .def_property_readonly("hall", [](const SpaceGroup& self) { return self.hall(); })
      .def_property_readonly("crystal_system", [](const SpaceGroup& self) { return self.crystal_system(); })
      .def_property_readonly("is_tabulated", &SpaceGroup::is_tabulated)
      .def("__repr__", [](const SpaceGroup& self) {
        return self.is_known()
                   ? "<SpaceGroup " + std::to_string(self.number()) + " " + self.hermann_mauguin() + ">"
                   : "<SpaceGroup not known: " + self.reason() + ">";
      });
  module.def(
      "reduced_cell",
      [](const Cell& cell) {
        const ReducedCell reduced(cell);
        py::array_t<double> numbers(6);
        std::copy(reduced.parameters().begin(), reduced.parameters().end(), numbers.mutable_data());
        return numbers;
      },
      py::arg("cell"), "numpy.ndarray, (6,): the Niggli cell, angstrom and degrees. Raises LatticeError.");
  module.def(
      "packed", [](const CrystalMaker& crystal) { return arrays_of(crystal, PackedCrystal(crystal)); },
      py::arg("crystal"),
      "All atoms of one cell: positions (atoms, 3) in fractions, sites (atoms,) in crystal.atoms, elements.");
}

void bind_perception(py::module_& module) {
  module.def("perceive_bonds", &bonds_of, py::arg("crystal"), py::arg("tolerance") = BondOptions().tolerance,
             "The packed cell and its bonds: (first, second, cells moved, length in angstrom).");
  module.def("molecules", &molecules_of, py::arg("crystal"),
             "The molecules of a cell: formula, dimension (0 for a finite one), atoms in the packed cell, "
             "positions (atoms, 3) in angstrom, bonds as pairs.");
  module.def("_perceive", &perceived);
  module.def("_picture", &picture);
  module.def("_check", [](const CrystalStructureDatabaseEntry& entry, int year) {
    py::list findings;
    for (const Finding& finding : check_entry(entry, {.is_there = {}, .year = year}))
      findings.append(
          py::make_tuple(finding.number, text_object(finding.where), text_object(finding.sentence)));
    return findings;
  });
}
