// Molecules that every chemist knows: from idealised positions to bonds, types and charges.
#include <gtest/gtest.h>
#include <perception/bond_types.h>
#include <perception/molecules.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <ostream>
#include <sstream>

#include "crystals.h"

namespace {

struct KnownMolecule {
  const char* name;
  // An atom a line: its element, then an atom before it and the distance, another one and the angle there, a
  // third one and the torsion. What is called * is a point to build on.
  std::string shape;
  // Bonds without the single ones of hydrogen: - single, = double, # triple, : aromatic, ~ delocalised, ?
  // unknown.
  const char* bonds;
  const char* charges;  // of one Kekulé structure
};

void PrintTo(const KnownMolecule& row, std::ostream* out) {
  *out << row.name;
}

CartesianCoordinates operator+(const CartesianCoordinates& l, const CartesianCoordinates& r) {
  return {l.x + r.x, l.y + r.y, l.z + r.z};
}
CartesianCoordinates operator-(const CartesianCoordinates& l, const CartesianCoordinates& r) {
  return {l.x - r.x, l.y - r.y, l.z - r.z};
}
CartesianCoordinates operator*(double f, const CartesianCoordinates& v) {
  return {f * v.x, f * v.y, f * v.z};
}
CartesianCoordinates cross(const CartesianCoordinates& l, const CartesianCoordinates& r) {
  return {l.y * r.z - l.z * r.y, l.z * r.x - l.x * r.z, l.x * r.y - l.y * r.x};
}
CartesianCoordinates unit(const CartesianCoordinates& v) {
  return 1 / std::hypot(v.x, v.y, v.z) * v;
}

struct Placed {
  std::string element;
  CartesianCoordinates place;
};

// The next place: `length` from a, in `angle` with b, turned by `torsion` around a-b from c.
CartesianCoordinates next_place(const CartesianCoordinates& a, const CartesianCoordinates& b,
                                const CartesianCoordinates& c, double length, double angle, double torsion) {
  constexpr double degree = M_PI / 180;
  const CartesianCoordinates along = unit(a - b);
  const CartesianCoordinates normal = unit(cross(b - c, along));
  const CartesianCoordinates across = cross(normal, along);
  return a + length * (-std::cos(angle * degree) * along +
                       std::sin(angle * degree) *
                           (std::cos(torsion * degree) * across + std::sin(torsion * degree) * normal));
}

std::vector<Placed> placed(const std::string& shape) {
  std::vector<Placed> atoms;
  std::istringstream lines(shape);
  for (std::string line; std::getline(lines, line, ';');) {
    std::istringstream words(line);
    std::string element;
    std::size_t a = 0, b = 0, c = 0;
    double length = 0, angle = 0, torsion = 0;
    words >> element >> a >> length >> b >> angle >> c >> torsion;
    const auto place = [&](std::size_t i) { return atoms.at(i - 1).place; };
    if (a == 0) {
      atoms.push_back({element, {0, 0, 0}});
    } else if (b == 0) {
      atoms.push_back({element, place(a) + CartesianCoordinates{length, 0, 0}});
    } else {
      const CartesianCoordinates third = c == 0 ? place(b) + CartesianCoordinates{0, 1, 0} : place(c);
      atoms.push_back({element, next_place(place(a), place(b), third, length, angle, torsion)});
    }
  }
  std::erase_if(atoms, [](const Placed& atom) { return atom.element == "*"; });
  return atoms;
}

std::string name_of(const std::vector<Placed>& atoms, std::size_t i) {
  return atoms[i].element + std::to_string(i + 1);
}

// The types of all molecules, as the rows have them.
struct Said {
  std::string bonds;
  std::string charges;
};

Said perceived(const std::string& shape) {
  const std::vector<Placed> atoms = placed(shape);
  std::vector<Site> sites;
  for (const auto& [element, place] : atoms) sites.push_back({element.c_str(), {place.x, place.y, place.z}});
  const CrystalMaker maker = in_a_box(sites);
  const CrystalBonds crystal = perceive_bonds(maker);
  MoleculeShape molecule;
  for (const auto& [element, place] : atoms) {
    molecule.elements.push_back(element);
    molecule.places.push_back(place);
  }
  for (const CrystalBond& bond : crystal.bonds) molecule.bonds.push_back({bond.first, bond.second});
  const MoleculeTypes types = perceive_bond_types(molecule);
  Said said;
  for (std::size_t i = 0; i < molecule.bonds.size(); ++i) {
    const auto& [first, second] = molecule.bonds[i];
    const bool of_hydrogen = atoms[first].element == "H" || atoms[second].element == "H";
    if (of_hydrogen && types.bonds[i] == BondType::single_bond) continue;
    const std::map<BondType, char> signs = {{BondType::single_bond, '-'}, {BondType::double_bond, '='},
                                            {BondType::triple_bond, '#'}, {BondType::aromatic, ':'},
                                            {BondType::delocalised, '~'}, {BondType::unknown, '?'}};
    said.bonds += (said.bonds.empty() ? "" : " ") + name_of(atoms, first) + signs.at(types.bonds[i]) +
                  name_of(atoms, second);
  }
  std::vector<std::string> charges;
  for (std::size_t i = 0; i < atoms.size(); ++i)
    if (types.charges[i] != 0)
      charges.push_back(atoms[i].element + (types.charges[i] > 0 ? "+" : "") +
                        std::to_string(types.charges[i]));
  std::sort(charges.begin(), charges.end());
  for (const std::string& charge : charges) said.charges += (said.charges.empty() ? "" : " ") + charge;
  return said;
}

// The hydrogen atoms of a methyl group, seen along its bond to `next`.
std::string methyl(int atom, int next, int torsion_from) {
  const std::string ends = " 109.5 " + std::to_string(torsion_from);
  const std::string hydrogen = ";H " + std::to_string(atom) + " 1.09 " + std::to_string(next) + ends;
  return hydrogen + " 180" + hydrogen + " 60" + hydrogen + " -60";
}

class KnownMolecules : public testing::TestWithParam<KnownMolecule> {};

TEST_P(KnownMolecules, HaveTheBondsOfTheTextbook) {
  const Said said = perceived(GetParam().shape);
  EXPECT_EQ(said.bonds, GetParam().bonds);
  EXPECT_EQ(said.charges, GetParam().charges);
}

INSTANTIATE_TEST_SUITE_P(
    PerceiveBondTypes, KnownMolecules,
    testing::Values(
        KnownMolecule{"water", "O;H 1 .96;H 1 .96 2 104.5", "", ""},
        KnownMolecule{"hydronium", "O;H 1 .99;H 1 .99 2 111;H 1 .99 2 111 3 125", "", "O+1"},
        KnownMolecule{"hydroxide", "O;H 1 .96", "", "O-1"},
        KnownMolecule{"hydrogen peroxide", "O;O 1 1.47;H 1 .97 2 100;H 2 .97 1 100 3 115", "O1-O2", ""},
        KnownMolecule{"oxygen", "O;O 1 1.21", "O1=O2", ""},
        KnownMolecule{"ozone", "O;O 1 1.278;O 1 1.278 2 116.8", "O1~O2 O1~O3", "O+1 O-1"},
        KnownMolecule{"nitrogen", "N;N 1 1.1", "N1#N2", ""},
        KnownMolecule{"ammonium",
                      "N;H 1 1.03;H 1 1.03 2 109.47;H 1 1.03 2 109.47 3 120;H 1 1.03 2 109.47 3 -120", "",
                      "N+1"},
        KnownMolecule{
            "hydrazine",
            "N;N 1 1.45;H 1 1.01 2 108;H 1 1.01 2 108 3 110;H 2 1.01 1 108 3 90;H 2 1.01 1 108 3 -160",
            "N1-N2", ""},
        KnownMolecule{"diimide", "N;N 1 1.25;H 1 1.03 2 107;H 2 1.03 1 107 3 180", "N1=N2", ""},
        KnownMolecule{"azide", "N;N 1 1.18;N 1 1.18 2 180", "N1=N2 N1=N3", "N+1 N-1 N-1"},
        KnownMolecule{"methyl azide", "N;N 1 1.13;N 1 1.24 2 172;C 3 1.47 1 115 2 180" + methyl(4, 3, 1),
                      "N1=N2 N1=N3 N3-C4", "N+1 N-1"},
        KnownMolecule{"nitric oxide, a radical", "N;O 1 1.15", "N1?O2", ""},
        KnownMolecule{"nitrosonium", "N;O 1 1.06", "N1#O2", "O+1"},
        KnownMolecule{"nitronium", "N;O 1 1.15;O 1 1.15 2 180", "N1=O2 N1=O3", "N+1"},
        KnownMolecule{"nitrogen dioxide, a radical", "N;O 1 1.19;O 1 1.19 2 134", "N1?O2 N1?O3", ""},
        KnownMolecule{"nitrous oxide", "N;N 1 1.128;O 1 1.184 2 180", "N1=N2 N1=O3", "N+1 N-1"},
        KnownMolecule{"nitrite", "N;O 1 1.24;O 1 1.24 2 115", "N1~O2 N1~O3", "O-1"},
        KnownMolecule{"nitrate", "N;O 1 1.25;O 1 1.25 2 120;O 1 1.25 2 120 3 180", "N1~O2 N1~O3 N1~O4",
                      "N+1 O-1 O-1"},
        KnownMolecule{"nitric acid", "N;O 1 1.2;O 1 1.2 2 130;O 1 1.4 2 115 3 180;H 4 .97 1 102 2 0",
                      "N1~O2 N1~O3 N1-O4", "N+1 O-1"},
        KnownMolecule{"nitromethane", "N;O 1 1.22;O 1 1.22 2 125;C 1 1.49 2 117.5 3 180" + methyl(4, 1, 2),
                      "N1~O2 N1~O3 N1-C4", "N+1 O-1"},
        KnownMolecule{"nitrobenzene",
                      "C;C 1 1.39;C 2 1.39 1 120;C 3 1.39 2 120 1 0;C 4 1.39 3 120 2 0;C 5 1.39 4 120 3 0;N "
                      "1 1.47 2 120 3 180;O 7 1.22 1 118 2 0;O 7 1.22 1 118 2 180;H 2 1.08 1 120 6 180;H 3 "
                      "1.08 2 120 1 180;H 4 1.08 3 120 2 180;H 5 1.08 4 120 3 180;H 6 1.08 5 120 4 180",
                      "C1:C2 C1:C6 C1-N7 C2:C3 C3:C4 C4:C5 C5:C6 N7~O8 N7~O9", "N+1 O-1"},
        KnownMolecule{"carbon monoxide", "C;O 1 1.13", "C1#O2", "C-1 O+1"},
        KnownMolecule{"carbon dioxide", "C;O 1 1.16;O 1 1.16 2 180", "C1=O2 C1=O3", ""},
        KnownMolecule{"carbon disulfide", "C;S 1 1.55;S 1 1.55 2 180", "C1=S2 C1=S3", ""},
        KnownMolecule{"carbon suboxide", "C;C 1 1.28;C 1 1.28 2 180;O 2 1.16 1 180;O 3 1.16 1 180",
                      "C1=C2 C1=C3 C2=O4 C3=O5", ""},
        KnownMolecule{"carbonate", "C;O 1 1.29;O 1 1.29 2 120;O 1 1.29 2 120 3 180", "C1~O2 C1~O3 C1~O4",
                      "O-1 O-1"},
        KnownMolecule{"hydrogencarbonate",
                      "C;O 1 1.26;O 1 1.26 2 125;O 1 1.35 2 117.5 3 180;H 4 .97 1 108 2 0",
                      "C1~O2 C1~O3 C1-O4", "O-1"},
        KnownMolecule{"cyanide", "C;N 1 1.15", "C1#N2", "C-1"},
        KnownMolecule{"cyanate", "C;N 1 1.19;O 1 1.21 2 180", "C1=N2 C1=O3", "N-1"},
        KnownMolecule{"thiocyanate", "C;N 1 1.16;S 1 1.65 2 180", "C1=N2 C1=S3", "N-1"},
        KnownMolecule{"hydrogen cyanide", "C;N 1 1.15;H 1 1.06 2 180", "C1#N2", ""},
        KnownMolecule{"acetonitrile", "C;C 1 1.46;N 1 1.14 2 180" + methyl(2, 1, 0), "C1-C2 C1#N3", ""},
        KnownMolecule{"methyl isocyanide", "N;C 1 1.43;C 1 1.16 2 180" + methyl(2, 1, 0), "N1-C2 N1#C3",
                      "C-1 N+1"},
        KnownMolecule{"methyl isocyanate", "C;N 1 1.2;O 1 1.17 2 172;C 2 1.45 1 136 3 180" + methyl(4, 2, 1),
                      "C1=N2 C1=O3 N2-C4", ""},
        KnownMolecule{"diazomethane", "C;N 1 1.3;N 2 1.14 1 180;H 1 1.08 2 117 0 0;H 1 1.08 2 117 0 180",
                      "C1=N2 N2=N3", "N+1 N-1"},
        KnownMolecule{"benzenediazonium",
                      "C;C 1 1.39;C 2 1.39 1 120;C 3 1.39 2 120 1 0;C 4 1.39 3 120 2 0;C 5 1.39 4 120 3 0;N "
                      "1 1.4 2 120 3 180;N 7 1.1 1 180 2 0;H 2 1.08 1 120 6 180;H 3 1.08 2 120 1 180;H 4 "
                      "1.08 3 120 2 180;H 5 1.08 4 120 3 180;H 6 1.08 5 120 4 180",
                      "C1:C2 C1:C6 C1-N7 C2:C3 C3:C4 C4:C5 C5:C6 N7#N8", "N+1"},
        KnownMolecule{"ethane", "C;C 1 1.53" + methyl(1, 2, 0) + methyl(2, 1, 0), "C1-C2", ""},
        KnownMolecule{
            "ethylene",
            "C;C 1 1.33;H 1 1.08 2 121 0 0;H 1 1.08 2 121 0 180;H 2 1.08 1 121 0 0;H 2 1.08 1 121 0 180",
            "C1=C2", ""},
        KnownMolecule{"acetylene", "C;C 1 1.2;H 1 1.06 2 180;H 2 1.06 1 180", "C1#C2", ""},
        KnownMolecule{"allene",
                      "C;C 1 1.31;C 1 1.31 2 180;H 2 1.08 1 121 0 0;H 2 1.08 1 121 0 180;H 3 1.08 1 121 0 "
                      "90;H 3 1.08 1 121 0 -90",
                      "C1=C2 C1=C3", ""},
        KnownMolecule{"ketene", "C;C 1 1.31;O 1 1.16 2 180;H 2 1.08 1 119 0 0;H 2 1.08 1 119 0 180",
                      "C1=C2 C1=O3", ""},
        KnownMolecule{"butadiene",
                      "C;C 1 1.34;C 2 1.46 1 124;C 3 1.34 2 124 1 180;H 1 1.08 2 121 3 0;H 1 1.08 2 121 3 "
                      "180;H 2 1.08 1 119 3 180;H 3 1.08 2 117 1 0;H 4 1.08 3 121 2 0;H 4 1.08 3 121 2 180",
                      "C1=C2 C2-C3 C3=C4", ""},
        KnownMolecule{"formaldehyde", "C;O 1 1.21;H 1 1.1 2 122;H 1 1.1 2 122 3 180", "C1=O2", ""},
        KnownMolecule{"formaldoxime",
                      "C;N 1 1.28;O 2 1.4 1 110;H 3 .96 2 103 1 180;H 1 1.08 2 120 3 0;H 1 1.08 2 120 3 180",
                      "C1=N2 N2-O3", ""},
        KnownMolecule{"nitrosomethane", "N;O 1 1.21;C 1 1.48 2 113" + methyl(3, 1, 2), "N1=O2 N1-C3", ""},
        KnownMolecule{"formamide",
                      "C;O 1 1.22;N 1 1.35 2 125;H 1 1.09 2 122 3 180;H 3 1 1 119 2 0;H 3 1 1 120 2 180",
                      "C1=O2 C1-N3", ""},
        KnownMolecule{"urea",
                      "C;O 1 1.26;N 1 1.34 2 121;N 1 1.34 2 121 3 180;H 3 1 1 119 2 0;H 3 1 1 120 2 180;H 4 "
                      "1 1 119 2 0;H 4 1 1 120 2 180",
                      "C1=O2 C1-N3 C1-N4", ""},
        KnownMolecule{"thiourea",
                      "C;S 1 1.71;N 1 1.33 2 121;N 1 1.33 2 121 3 180;H 3 1 1 119 2 0;H 3 1 1 120 2 180;H 4 "
                      "1 1 119 2 0;H 4 1 1 120 2 180",
                      "C1=S2 C1-N3 C1-N4", ""},
        KnownMolecule{"guanidinium",
                      "C;N 1 1.325;N 1 1.325 2 120;N 1 1.325 2 120 3 180;H 2 1 1 120 3 0;H 2 1 1 120 3 180;H "
                      "3 1 1 120 2 0;H 3 1 1 120 2 180;H 4 1 1 120 2 0;H 4 1 1 120 2 180",
                      "C1~N2 C1~N3 C1~N4", "N+1"},
        KnownMolecule{"formamidinium",
                      "C;N 1 1.31;N 1 1.31 2 125;H 1 1.09 2 117.5 3 180;H 2 1 1 120 3 0;H 2 1 1 120 3 180;H "
                      "3 1 1 120 2 0;H 3 1 1 120 2 180",
                      "C1~N2 C1~N3", "N+1"},
        KnownMolecule{"acetic acid",
                      "C;O 1 1.21;O 1 1.32 2 123;C 1 1.49 2 124 3 180;H 3 .97 1 109 2 0" + methyl(4, 1, 2),
                      "C1=O2 C1-O3 C1-C4", ""},
        KnownMolecule{"acetate", "C;O 1 1.25;O 1 1.25 2 125;C 1 1.52 2 117.5 3 180" + methyl(4, 1, 2),
                      "C1~O2 C1~O3 C1-C4", "O-1"},
        KnownMolecule{
            "glycine as a zwitterion",
            "C;O 1 1.25;O 1 1.25 2 125.5;C 1 1.53 2 117 3 180;N 4 1.48 1 111.5 2 -20;H 4 1.09 1 109 5 120;H "
            "4 1.09 1 109 5 -120;H 5 1.04 4 109.5 1 180;H 5 1.04 4 109.5 1 60;H 5 1.04 4 109.5 1 -60",
            "C1~O2 C1~O3 C1-C4 C4-N5", "N+1 O-1"},
        KnownMolecule{"glycine in the gas",
                      "C;O 1 1.2;O 1 1.35 2 123;C 1 1.52 2 126 3 180;N 4 1.46 1 115 2 0;H 4 1.09 1 107 5 "
                      "122;H 4 1.09 1 107 5 -122;H 5 1.01 4 110 1 60;H 5 1.01 4 110 1 -60;H 3 .97 1 108 2 0",
                      "C1=O2 C1-O3 C1-C4 C4-N5", ""},
        KnownMolecule{"tetramethylammonium",
                      "N;C 1 1.49;C 1 1.49 2 109.47;C 1 1.49 2 109.47 3 120;C 1 1.49 2 109.47 3 -120" +
                          methyl(2, 1, 3) + methyl(3, 1, 2) + methyl(4, 1, 2) + methyl(5, 1, 2),
                      "N1-C2 N1-C3 N1-C4 N1-C5", "N+1"},
        KnownMolecule{"trimethylamine oxide",
                      "N;O 1 1.39;C 1 1.49 2 109.47;C 1 1.49 2 109.47 3 120;C 1 1.49 2 109.47 3 -120" +
                          methyl(3, 1, 2) + methyl(4, 1, 2) + methyl(5, 1, 2),
                      "N1-O2 N1-C3 N1-C4 N1-C5", "N+1 O-1"},
        KnownMolecule{"trimethylphosphine oxide",
                      "P;O 1 1.49;C 1 1.8 2 109.47;C 1 1.8 2 109.47 3 120;C 1 1.8 2 109.47 3 -120" +
                          methyl(3, 1, 2) + methyl(4, 1, 2) + methyl(5, 1, 2),
                      "P1=O2 P1-C3 P1-C4 P1-C5", ""},
        KnownMolecule{"a phosphonium ylide",
                      "P;C 1 1.66;C 1 1.81 2 109.47;C 1 1.81 2 109.47 3 120;C 1 1.81 2 109.47 3 -120" +
                          methyl(3, 1, 2) + methyl(4, 1, 2) + methyl(5, 1, 2) +
                          ";H 2 1.08 1 120 3 90;H 2 1.08 1 120 3 -90",
                      "P1=C2 P1-C3 P1-C4 P1-C5", ""},
        KnownMolecule{"a sulfoxonium ylide",
                      "S;C 1 1.64;O 1 1.46 2 109.47;C 1 1.79 2 109.47 3 120;C 1 1.79 2 109.47 3 -120" +
                          methyl(4, 1, 2) + methyl(5, 1, 2) + ";H 2 1.08 1 120 3 90;H 2 1.08 1 120 3 -90",
                      "S1=C2 S1=O3 S1-C4 S1-C5", ""},
        KnownMolecule{"dimethyl sulfoxide",
                      "S;O 1 1.5;C 1 1.79 2 106.5;C 1 1.79 2 106.5 3 105" + methyl(3, 1, 2) + methyl(4, 1, 2),
                      "S1=O2 S1-C3 S1-C4", ""},
        KnownMolecule{"dimethyl sulfone",
                      "S;O 1 1.44;O 1 1.44 2 109.47;C 1 1.77 2 109.47 3 120;C 1 1.77 2 109.47 3 -120" +
                          methyl(4, 1, 2) + methyl(5, 1, 2),
                      "S1=O2 S1=O3 S1-C4 S1-C5", ""},
        KnownMolecule{"trimethylsulfonium",
                      "S;C 1 1.79;C 1 1.79 2 102;C 1 1.79 2 102 3 105" + methyl(2, 1, 3) + methyl(3, 1, 2) +
                          methyl(4, 1, 2),
                      "S1-C2 S1-C3 S1-C4", "S+1"},
        KnownMolecule{
            "methanesulfonate",
            "S;O 1 1.46;O 1 1.46 2 109.47;O 1 1.46 2 109.47 3 120;C 1 1.77 2 109.47 3 -120" + methyl(5, 1, 2),
            "S1~O2 S1~O3 S1~O4 S1-C5", "O-1"},
        KnownMolecule{"sulfur dioxide", "S;O 1 1.43;O 1 1.43 2 119.5", "S1=O2 S1=O3", ""},
        KnownMolecule{"sulfur trioxide", "S;O 1 1.42;O 1 1.42 2 120;O 1 1.42 2 120 3 180",
                      "S1=O2 S1=O3 S1=O4", ""},
        KnownMolecule{"sulfite", "S;O 1 1.52;O 1 1.52 2 105;O 1 1.52 2 105 3 110", "S1~O2 S1~O3 S1~O4",
                      "O-1 O-1"},
        KnownMolecule{"sulfate",
                      "S;O 1 1.47;O 1 1.47 2 109.47;O 1 1.47 2 109.47 3 120;O 1 1.47 2 109.47 3 -120",
                      "S1~O2 S1~O3 S1~O4 S1~O5", "O-1 O-1"},
        KnownMolecule{"hydrogensulfate",
                      "S;O 1 1.45;O 1 1.45 2 109.47;O 1 1.45 2 109.47 3 120;O 1 1.56 2 109.47 3 -120;H 5 .97 "
                      "1 109 2 60",
                      "S1~O2 S1~O3 S1~O4 S1-O5", "O-1"},
        KnownMolecule{"sulfuric acid",
                      "S;O 1 1.42;O 1 1.42 2 109.47;O 1 1.54 2 109.47 3 120;O 1 1.54 2 109.47 3 -120;H 4 .97 "
                      "1 109 2 60;H 5 .97 1 109 2 60",
                      "S1=O2 S1=O3 S1-O4 S1-O5", ""},
        KnownMolecule{"thiosulfate",
                      "S;S 1 2.0;O 1 1.47 2 109.47;O 1 1.47 2 109.47 3 120;O 1 1.47 2 109.47 3 -120",
                      "S1-S2 S1~O3 S1~O4 S1~O5", "O-1 S-1"},
        KnownMolecule{"phosphate",
                      "P;O 1 1.54;O 1 1.54 2 109.47;O 1 1.54 2 109.47 3 120;O 1 1.54 2 109.47 3 -120",
                      "P1~O2 P1~O3 P1~O4 P1~O5", "O-1 O-1 O-1"},
        KnownMolecule{"dihydrogenphosphate",
                      "P;O 1 1.51;O 1 1.51 2 109.47;O 1 1.57 2 109.47 3 120;O 1 1.57 2 109.47 3 -120;H 4 .97 "
                      "1 112 2 60;H 5 .97 1 112 2 60",
                      "P1~O2 P1~O3 P1-O4 P1-O5", "O-1"},
        KnownMolecule{"phosphoric acid",
                      "P;O 1 1.49;O 1 1.55 2 109.47;O 1 1.55 2 109.47 3 120;O 1 1.55 2 109.47 3 -120;H 3 .97 "
                      "1 112 2 60;H 4 .97 1 112 2 60;H 5 .97 1 112 2 60",
                      "P1=O2 P1-O3 P1-O4 P1-O5", ""},
        KnownMolecule{"perchlorate",
                      "Cl;O 1 1.44;O 1 1.44 2 109.47;O 1 1.44 2 109.47 3 120;O 1 1.44 2 109.47 3 -120",
                      "Cl1~O2 Cl1~O3 Cl1~O4 Cl1~O5", "O-1"},
        KnownMolecule{"chlorate", "Cl;O 1 1.49;O 1 1.49 2 106;O 1 1.49 2 106 3 112", "Cl1~O2 Cl1~O3 Cl1~O4",
                      "O-1"},
        KnownMolecule{"tetrafluoroborate",
                      "B;F 1 1.39;F 1 1.39 2 109.47;F 1 1.39 2 109.47 3 120;F 1 1.39 2 109.47 3 -120",
                      "B1-F2 B1-F3 B1-F4 B1-F5", "B-1"},
        KnownMolecule{"boric acid",
                      "B;O 1 1.36;O 1 1.36 2 120;O 1 1.36 2 120 3 180;H 2 .97 1 112 3 0;H 3 .97 1 112 4 0;H "
                      "4 .97 1 112 2 0",
                      "B1-O2 B1-O3 B1-O4", ""},
        KnownMolecule{"diborane, which has bonds of three centres",
                      "B;H 1 1.33;H 1 1.33 2 97;B 2 1.33 1 83 3 0;H 1 1.19 2 108 3 105;H 1 1.19 2 108 3 "
                      "-105;H 4 1.19 2 108 3 105;H 4 1.19 2 108 3 -105",
                      "B1?H2 B1?H3 B1?B4 B1?H5 B1?H6 H2?B4 H3?B4 B4?H7 B4?H8", ""},
        KnownMolecule{
            "hexafluorophosphate",
            "P;F 1 1.6;F 1 1.6 2 90;F 1 1.6 2 90 3 90;F 1 1.6 2 90 3 180;F 1 1.6 2 90 3 -90;F 1 1.6 2 180",
            "P1-F2 P1-F3 P1-F4 P1-F5 P1-F6 P1-F7", "P-1"},
        KnownMolecule{"sulfur hexafluoride",
                      "S;F 1 1.56;F 1 1.56 2 90;F 1 1.56 2 90 3 90;F 1 1.56 2 90 3 180;F 1 1.56 2 90 3 -90;F "
                      "1 1.56 2 180",
                      "S1-F2 S1-F3 S1-F4 S1-F5 S1-F6 S1-F7", ""},
        KnownMolecule{"hexafluorosilicate",
                      "Si;F 1 1.69;F 1 1.69 2 90;F 1 1.69 2 90 3 90;F 1 1.69 2 90 3 180;F 1 1.69 2 90 3 "
                      "-90;F 1 1.69 2 180",
                      "Si1-F2 Si1-F3 Si1-F4 Si1-F5 Si1-F6 Si1-F7", "Si-2"},
        KnownMolecule{
            "phosphorus pentachloride",
            "P;Cl 1 2.02;Cl 1 2.02 2 120;Cl 1 2.02 2 120 3 180;Cl 1 2.14 2 90 3 90;Cl 1 2.14 2 90 3 -90",
            "P1-Cl2 P1-Cl3 P1-Cl4 P1-Cl5 P1-Cl6", ""},
        KnownMolecule{"iodine", "I;I 1 2.67", "I1-I2", ""},
        KnownMolecule{"tetrachloroiodate, a square", "I;Cl 1 2.5;Cl 1 2.5 2 90;Cl 1 2.5 2 180;Cl 1 2.5 3 180",
                      "I1-Cl2 I1-Cl3 I1-Cl4 I1-Cl5", "I-1"},
        KnownMolecule{"triiodide", "I;I 1 2.92;I 1 2.92 2 180", "I1-I2 I1-I3", "I-1"},
        KnownMolecule{"dimethyliodonium", "I;C 1 2.13;C 1 2.13 2 94" + methyl(2, 1, 3) + methyl(3, 1, 2),
                      "I1-C2 I1-C3", "I+1"},
        KnownMolecule{"xenon difluoride, whose electrons no rule places", "Xe;F 1 2;F 1 2 2 180",
                      "Xe1?F2 Xe1?F3", ""},
        KnownMolecule{"tetrachlorosilane",
                      "Si;Cl 1 2.02;Cl 1 2.02 2 109.47;Cl 1 2.02 2 109.47 3 120;Cl 1 2.02 2 109.47 3 -120",
                      "Si1-Cl2 Si1-Cl3 Si1-Cl4 Si1-Cl5", ""},
        KnownMolecule{"benzene",
                      "C;C 1 1.39;C 2 1.39 1 120;C 3 1.39 2 120 1 0;C 4 1.39 3 120 2 0;C 5 1.39 4 120 3 0;H "
                      "1 1.08 6 120 5 180;H 2 1.08 1 120 6 180;H 3 1.08 2 120 1 180;H 4 1.08 3 120 2 180;H 5 "
                      "1.08 4 120 3 180;H 6 1.08 5 120 4 180",
                      "C1:C2 C1:C6 C2:C3 C3:C4 C4:C5 C5:C6", ""},
        KnownMolecule{"pyridine",
                      "N;C 1 1.385;C 2 1.385 1 120;C 3 1.385 2 120 1 0;C 4 1.385 3 120 2 0;C 5 1.385 4 120 3 "
                      "0;H 2 1.08 1 120 6 180;H 3 1.08 2 120 1 180;H 4 1.08 3 120 2 180;H 5 1.08 4 120 3 "
                      "180;H 6 1.08 5 120 4 180",
                      "N1:C2 N1:C6 C2:C3 C3:C4 C4:C5 C5:C6", ""},
        KnownMolecule{"pyridinium",
                      "N;C 1 1.385;C 2 1.385 1 120;C 3 1.385 2 120 1 0;C 4 1.385 3 120 2 0;C 5 1.385 4 120 3 "
                      "0;H 1 1.08 6 120 5 180;H 2 1.08 1 120 6 180;H 3 1.08 2 120 1 180;H 4 1.08 3 120 2 "
                      "180;H 5 1.08 4 120 3 180;H 6 1.08 5 120 4 180",
                      "N1:C2 N1:C6 C2:C3 C3:C4 C4:C5 C5:C6", "N+1"},
        KnownMolecule{"pyridine oxide",
                      "N;C 1 1.385;C 2 1.385 1 120;C 3 1.385 2 120 1 0;C 4 1.385 3 120 2 0;C 5 1.385 4 120 3 "
                      "0;H 2 1.08 1 120 6 180;H 3 1.08 2 120 1 180;H 4 1.08 3 120 2 180;H 5 1.08 4 120 3 "
                      "180;H 6 1.08 5 120 4 180;O 1 1.31 2 120 3 180",
                      "N1:C2 N1:C6 N1-O12 C2:C3 C3:C4 C4:C5 C5:C6", "N+1 O-1"},
        KnownMolecule{"naphthalene",
                      "C;C 1 1.4;C 2 1.4 1 120;C 3 1.4 2 120 1 0;C 4 1.4 3 120 2 0;C 5 1.4 4 120 3 0;C 1 1.4 "
                      "6 120 5 180;C 7 1.4 1 120 6 0;C 8 1.4 7 120 1 0;C 9 1.4 8 120 7 0;H 2 1.08 1 120 6 "
                      "180;H 3 1.08 2 120 1 180;H 4 1.08 3 120 2 180;H 5 1.08 4 120 3 180;H 7 1.08 8 120 9 "
                      "180;H 8 1.08 7 120 1 180;H 9 1.08 8 120 7 180;H 10 1.08 9 120 8 180",
                      "C1:C2 C1:C6 C1:C7 C2:C3 C3:C4 C4:C5 C5:C6 C6:C10 C7:C8 C8:C9 C9:C10", ""},
        KnownMolecule{
            "pyrrole",
            "N;C 1 1.37;C 2 1.38 1 108;C 3 1.42 2 108 1 0;C 4 1.38 3 108 2 0;H 1 1.08 5 126 4 180;H 2 1.08 1 "
            "126 5 180;H 3 1.08 2 126 1 180;H 4 1.08 3 126 2 180;H 5 1.08 4 126 3 180",
            "N1:C2 N1:C5 C2:C3 C3:C4 C4:C5", ""},
        KnownMolecule{"tropylium",
                      "C;C 1 1.39;C 2 1.39 1 128.571;C 3 1.39 2 128.571 1 0;C 4 1.39 3 128.571 2 0;C 5 1.39 "
                      "4 128.571 3 0;C 6 1.39 5 128.571 4 0;H 1 1.08 7 115.714 6 180;H 2 1.08 1 115.714 7 "
                      "180;H 3 1.08 2 115.714 1 180;H 4 1.08 3 115.714 2 180;H 5 1.08 4 115.714 3 180;H 6 "
                      "1.08 5 115.714 4 180;H 7 1.08 6 115.714 5 180",
                      "C1:C2 C1:C7 C2:C3 C3:C4 C4:C5 C5:C6 C6:C7", "C+1"},
        KnownMolecule{"furan",
                      "O;C 1 1.37;C 2 1.36 1 108;C 3 1.42 2 108 1 0;C 4 1.36 3 108 2 0;H 2 1.08 1 126 5 "
                      "180;H 3 1.08 2 126 1 180;H 4 1.08 3 126 2 180;H 5 1.08 4 126 3 180",
                      "O1:C2 O1:C5 C2:C3 C3:C4 C4:C5", ""},
        KnownMolecule{"thiophene",
                      "S;C 1 1.71;C 2 1.37 1 111.5;C 3 1.42 2 112.5 1 0;C 4 1.37 3 112.5 2 0;H 2 1.08 1 126 "
                      "5 180;H 3 1.08 2 126 1 180;H 4 1.08 3 126 2 180;H 5 1.08 4 126 3 180",
                      "S1:C2 S1:C5 C2:C3 C3:C4 C4:C5", ""},
        KnownMolecule{"imidazole",
                      "N;C 1 1.35;N 2 1.32 1 112;C 3 1.38 2 105 1 0;C 4 1.36 3 110 2 0;H 1 1.08 5 126 4 "
                      "180;H 2 1.08 1 126 5 180;H 4 1.08 3 126 2 180;H 5 1.08 4 126 3 180",
                      "N1:C2 N1:C5 C2:N3 N3:C4 C4:C5", ""},
        KnownMolecule{
            "cyclopentadienide",
            "C;C 1 1.41;C 2 1.41 1 108;C 3 1.41 2 108 1 0;C 4 1.41 3 108 2 0;H 1 1.08 5 126 4 180;H 2 1.08 1 "
            "126 5 180;H 3 1.08 2 126 1 180;H 4 1.08 3 126 2 180;H 5 1.08 4 126 3 180",
            "C1:C2 C1:C5 C2:C3 C3:C4 C4:C5", "C-1"},
        KnownMolecule{"cyclobutadiene, which is not aromatic",
                      "C;C 1 1.34;C 2 1.56 1 90;C 3 1.34 2 90 1 0;H 1 1.08 2 135 3 180;H 2 1.08 1 135 4 "
                      "180;H 3 1.08 4 135 1 180;H 4 1.08 3 135 2 180",
                      "C1=C2 C1-C4 C2-C3 C3=C4", ""},
        KnownMolecule{"benzoquinone",
                      "C;C 1 1.48;C 2 1.34 1 121;C 3 1.48 2 121 1 0;C 4 1.48 3 118 2 0;C 5 1.34 4 121 3 0;O "
                      "1 1.22 2 121 3 180;O 4 1.22 3 121 2 180;H 2 1.08 3 123 4 180;H 3 1.08 2 123 1 180;H 5 "
                      "1.08 6 123 1 180;H 6 1.08 5 123 4 180",
                      "C1-C2 C1-C6 C1=O7 C2=C3 C3-C4 C4-C5 C4=O8 C5=C6", ""},
        KnownMolecule{"borazine",
                      "B;N 1 1.43;B 2 1.43 1 120;N 3 1.43 2 120 1 0;B 4 1.43 3 120 2 0;N 5 1.43 4 120 3 0;H "
                      "1 1.08 6 120 5 180;H 2 1.08 1 120 6 180;H 3 1.08 2 120 1 180;H 4 1.08 3 120 2 180;H 5 "
                      "1.08 4 120 3 180;H 6 1.08 5 120 4 180",
                      "B1:N2 B1:N6 N2:B3 B3:N4 N4:B5 B5:N6", ""},
        KnownMolecule{"caffeine",
                      "N;C 1 1.4;N 2 1.37 1 117;C 3 1.37 2 119.5 1 0;C 4 1.37 3 122.5 2 0;C 5 1.43 4 122.5 3 "
                      "0;O 2 1.22 1 121.5 3 180;O 6 1.23 5 126.5 4 180;N 5 1.38 4 105.5 3 180;C 9 1.34 5 106 "
                      "4 0;N 4 1.36 5 111.5 6 180;C 1 1.47 2 116 3 180;C 3 1.46 2 119.5 1 180;C 9 1.46 5 127 "
                      "4 180;H 10 1.08 9 123 5 180" +
                          methyl(12, 1, 2) + methyl(13, 3, 2) + methyl(14, 9, 5),
                      "N1:C2 N1:C6 N1-C12 C2:N3 C2=O7 N3:C4 N3-C13 C4:C5 C4:N11 C5:C6 C5:N9 C6=O8 N9:C10 "
                      "N9-C14 C10:N11",
                      ""},
        KnownMolecule{"azulene",
                      "C;C 1 1.4;C 2 1.39 1 109;C 3 1.39 2 110 1 0;C 4 1.4 3 109 2 0;C 5 1.39 4 125 3 180;C "
                      "6 1.39 5 129 4 180;C 7 1.39 6 129 5 0;C 8 1.39 7 129 6 0;C 9 1.39 8 129 7 0;H 2 1.08 "
                      "1 125 5 180;H 3 1.08 2 125 1 180;H 4 1.08 3 125 2 180;H 6 1.08 5 115.5 4 0;H 7 1.08 6 "
                      "115.5 5 180;H 8 1.08 7 115.5 6 180;H 9 1.08 8 115.5 7 180;H 10 1.08 9 115.5 8 180",
                      "C1:C2 C1:C5 C1:C10 C2:C3 C3:C4 C4:C5 C5:C6 C6:C7 C7:C8 C8:C9 C9:C10", ""},
        KnownMolecule{"cubane",
                      "C;C 1 1.57;C 1 1.57 2 90;C 1 1.57 2 90 3 90;C 2 1.57 1 90 3 0;C 2 1.57 1 90 4 0;C 3 "
                      "1.57 1 90 4 0;C 5 1.57 2 90 6 0;H 1 1.08 2 125.26 8 180;H 2 1.08 1 125.26 7 180;H 3 "
                      "1.08 1 125.26 6 180;H 4 1.08 1 125.26 5 180;H 5 1.08 2 125.26 4 180;H 6 1.08 2 125.26 "
                      "3 180;H 7 1.08 3 125.26 2 180;H 8 1.08 5 125.26 1 180",
                      "C1-C2 C1-C3 C1-C4 C2-C5 C2-C6 C3-C5 C3-C7 C4-C6 C4-C7 C5-C8 C6-C8 C7-C8", ""},
        KnownMolecule{"ferrocene: bonds of the metal unknown, its rings aromatic",
                      "Fe;* 1 1.66;* 1 1.66 2 180;C 2 1.2 1 90 0 0;C 2 1.2 1 90 0 72;C 2 1.2 1 90 0 144;C 2 "
                      "1.2 1 90 0 216;C 2 1.2 1 90 0 288;C 3 1.2 1 90 0 0;C 3 1.2 1 90 0 72;C 3 1.2 1 90 0 "
                      "144;C 3 1.2 1 90 0 216;C 3 1.2 1 90 0 288;H 2 2.28 1 90 0 0;H 2 2.28 1 90 0 72;H 2 "
                      "2.28 1 90 0 144;H 2 2.28 1 90 0 216;H 2 2.28 1 90 0 288;H 3 2.28 1 90 0 0;H 3 2.28 1 "
                      "90 0 72;H 3 2.28 1 90 0 144;H 3 2.28 1 90 0 216;H 3 2.28 1 90 0 288",
                      "Fe1?C2 Fe1?C3 Fe1?C4 Fe1?C5 Fe1?C6 Fe1?C7 Fe1?C8 Fe1?C9 Fe1?C10 Fe1?C11 C2:C3 C2:C6 "
                      "C3:C4 C4:C5 C5:C6 C7:C8 C7:C11 C8:C9 C9:C10 C10:C11",
                      ""},
        KnownMolecule{"chromium hexacarbonyl",
                      "Cr;C 1 1.91;C 1 1.91 2 90;C 1 1.91 2 90 3 90;C 1 1.91 2 90 3 180;C 1 1.91 2 90 3 "
                      "-90;C 1 1.91 2 180;O 1 3.05;O 1 3.05 2 90;O 1 3.05 2 90 3 90;O 1 3.05 2 90 3 180;O 1 "
                      "3.05 2 90 3 -90;O 1 3.05 2 180",
                      "Cr1?C2 Cr1?C3 Cr1?C4 Cr1?C5 Cr1?C6 Cr1?C7 C2#O8 C3#O9 C4#O10 C5#O11 C6#O12 C7#O13",
                      "C-1 C-1 C-1 C-1 C-1 C-1 O+1 O+1 O+1 O+1 O+1 O+1"},
        KnownMolecule{
            "cisplatin",
            "Pt;Cl 1 2.33;Cl 1 2.33 2 90;N 1 2.04 2 90 3 180;N 1 2.04 3 90 2 180;H 4 1.02 1 110 2 0;H 4 1.02 "
            "1 110 2 120;H 4 1.02 1 110 2 -120;H 5 1.02 1 110 3 0;H 5 1.02 1 110 3 120;H 5 1.02 1 110 3 -120",
            "Pt1?Cl2 Pt1?Cl3 Pt1?N4 Pt1?N5", ""},
        KnownMolecule{"methyllithium", "Li;C 1 2.0" + methyl(2, 1, 0), "Li1?C2", ""},
        KnownMolecule{"methyl radical", "C;H 1 1.08;H 1 1.08 2 120;H 1 1.08 2 120 3 180", "C1?H2 C1?H3 C1?H4",
                      ""}));

}  // namespace
