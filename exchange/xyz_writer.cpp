#include <exchange/xyz_writer.h>
#include <fmt/format.h>
#include <lattice/cell_geometry.h>
#include <lattice/lattice_error.h>
#include <lattice/packed_crystal.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <vector>

namespace {

std::string number_text(double value) {
  std::string text = fmt::format("{:.6f}", value);
  return text == "-0.000000" ? text.substr(1) : text;
}

std::string point_text(const CartesianCoordinates& point) {
  return number_text(point.x) + " " + number_text(point.y) + " " + number_text(point.z);
}

// A word of extended XYZ in quotes, on one line.
std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? ' ' : c;
  }
  return result + "\"";
}

std::string species_of(const Atom& atom) {
  const auto is_printable = [](char c) { return c > ' ' && c < 0x7F; };
  const bool is_word =
      !atom.element.empty() && std::all_of(atom.element.begin(), atom.element.end(), is_printable);
  return is_word ? atom.element : "X";
}

void check_positions(const std::vector<THandle<Atom>>& atoms) {
  for (std::size_t i = 0; i < atoms.size(); ++i) {
    if (atoms[i].is_null()) throw LatticeError(fmt::format("atom {} is null", i + 1));
    const FractionalCoordinates& position = atoms[i]->position;
    if (!std::isfinite(position.x) || !std::isfinite(position.y) || !std::isfinite(position.z))
      throw LatticeError(fmt::format("the position of atom {} ({}) is not finite", i + 1, atoms[i]->label));
  }
}

std::string comment_of(const std::optional<CellGeometry>& geometry, const std::string& identifier) {
  std::string comment;
  if (geometry) {
    comment = "Lattice=\"" + point_text(geometry->cartesian({1, 0, 0})) + " " +
              point_text(geometry->cartesian({0, 1, 0})) + " " + point_text(geometry->cartesian({0, 0, 1})) +
              "\" ";
  }
  comment += "Properties=species:S:1:pos:R:3 ";
  if (geometry) comment += "pbc=\"T T T\" ";
  return comment + "identifier=" + quoted(identifier) + "\n";
}

// A cell of zeros says that there is none.
std::optional<CellGeometry> geometry_of(const CrystalMaker& crystal) {
  const Cell& cell = *crystal.cell();
  const bool is_known = cell.a() != 0.0 || cell.b() != 0.0 || cell.c() != 0.0;
  if (is_known) return CellGeometry(cell);
  if (!crystal.atoms().empty()) throw LatticeError("it has atoms but no cell");
  return std::nullopt;
}

std::string crystal_xyz(const CrystalMaker& crystal, const std::string& identifier, XyzAtoms which) {
  const std::vector<THandle<Atom>>& atoms = crystal.atoms();
  check_positions(atoms);
  const std::optional<CellGeometry> geometry = geometry_of(crystal);
  std::size_t count = 0;
  std::string lines;
  const auto add = [&](const Atom& atom, const FractionalCoordinates& position) {
    lines += species_of(atom) + " " + point_text(geometry->cartesian(position)) + "\n";
    ++count;
  };
  if (which == XyzAtoms::asymmetric_unit) {
    for (const THandle<Atom>& atom : atoms) add(*atom, atom->position);
  } else if (!atoms.empty()) {
    for (const PackedAtom& packed : PackedCrystal(crystal).atoms()) add(*atoms[packed.site], packed.position);
  }
  return fmt::format("{}\n{}{}", count, comment_of(geometry, identifier), lines);
}

}  // namespace

std::string entry_xyz(const CrystalStructureDatabaseEntry& entry, XyzAtoms which) {
  const DatabaseEntryIdentifier name = entry.identifier();
  const THandle<CrystalMaker> crystal = entry.crystal_maker();
  try {
    return crystal_xyz(crystal.is_null() ? CrystalMaker() : *crystal, name.text(), which);
  } catch (const LatticeError& error) {
    throw std::invalid_argument("entry " + name.text() + ": " + error.what());
  }
}
