// What perception finds, as lines of text for the measuring scripts beside this file.
//
//   perception_probe molecules < FILE     FILE: "molecule NAME COUNT", then COUNT lines "ELEMENT X Y Z", in
//   ångström
//     molecule NAME
//     bond I J KEKULE_ORDER TYPE          atoms counted from 0
//     atom I CHARGE HYDROGENS             only where one of them is not 0
//     drawn OVERLAPS                      with the word `draw` after `molecules`, of molecules up to 60
//     atoms; or `undrawn REASON`
//   perception_probe crystals ARCHIVE     of every entry of a stored archive
//     entry NAME
//     cell A B C ALPHA BETA GAMMA
//     atom ELEMENT X Y Z                  of the packed cell, fractions
//     pair I J LENGTH A B C               neighbours within the sum of the radii + 0.4 Å
//     bond I J LENGTH A B C
//     molecule DIMENSION ATOMS FORMULA
//   perception_probe check ARCHIVE        "IDENTIFIER NUMBER WHERE: SENTENCE" of every finding
//   perception_probe times ARCHIVE        "packing bonds components", processor seconds, without drawing
//   perception_probe scaling              "ATOMS SECONDS" of cells of water, the best of 25, without drawing
//   perception_probe radii                ELEMENT RADIUS of each element
#include <database_entry/database_entry.h>
#include <exchange/cif_reader.h>
#include <lattice/lattice_error.h>
#include <perception/bond_types.h>
#include <perception/bonds.h>
#include <perception/components.h>
#include <perception/diagram.h>
#include <perception/entry_check.h>
#include <perception/molecules.h>
#include <perception/perception_error.h>
#include <perception/picture.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

namespace {

// A molecule in a cell of its own, so large that no image is near.
CrystalMaker alone(const std::vector<std::string>& elements,
                   const std::vector<CartesianCoordinates>& places) {
  CartesianCoordinates least = {1e9, 1e9, 1e9}, most = {-1e9, -1e9, -1e9};
  for (const CartesianCoordinates& p : places) {
    least = {std::min(least.x, p.x), std::min(least.y, p.y), std::min(least.z, p.z)};
    most = {std::max(most.x, p.x), std::max(most.y, p.y), std::max(most.z, p.z)};
  }
  const double a = most.x - least.x + 20, b = most.y - least.y + 20, c = most.z - least.z + 20;
  std::vector<THandle<Atom>> atoms;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const THandle<Atom> atom(new Atom);
    atom->element = elements[i];
    atom->position = {(places[i].x - least.x + 10) / a, (places[i].y - least.y + 10) / b,
                      (places[i].z - least.z + 10) / c};
    atoms.push_back(atom);
  }
  const THandle<std::vector<CrystalSymmetryOperator>> operators(new std::vector<CrystalSymmetryOperator>(1));
  return CrystalMaker(THandle<Cell>(new Cell(a, b, c, 90, 90, 90, operators)), atoms);
}

void answer_molecule(const std::string& name, MoleculeShape shape, bool draw) {
  const CrystalBonds crystal = perceive_bonds(alone(shape.elements, shape.places));
  for (const CrystalBond& bond : crystal.bonds)
    shape.bonds.push_back(
        {crystal.packed.atoms()[bond.first].site, crystal.packed.atoms()[bond.second].site});
  const MoleculeTypes types = perceive_bond_types(shape);
  std::cout << "molecule " << name << '\n';
  for (std::size_t i = 0; i < shape.bonds.size(); ++i)
    std::cout << "bond " << shape.bonds[i][0] << ' ' << shape.bonds[i][1] << ' ' << types.orders[i] << ' '
              << static_cast<int>(types.bonds[i]) << '\n';
  for (std::size_t i = 0; i < shape.elements.size(); ++i)
    if (types.charges[i] != 0 || types.hydrogen_counts[i] != 0)
      std::cout << "atom " << i << ' ' << types.charges[i] << ' ' << types.hydrogen_counts[i] << '\n';
  if (!draw || shape.elements.size() > 60) return;
  try {
    std::cout << "drawn " << draw_diagram(shape, types).overlaps << '\n';
  } catch (const PerceptionError& failure) {
    std::cout << "undrawn " << failure.what() << '\n';
  }
}

void answer_molecules(bool draw) {
  std::string word, name;
  std::size_t count = 0;
  while (std::cin >> word >> name >> count) {
    MoleculeShape shape;
    for (std::size_t i = 0; i < count; ++i) {
      std::string element;
      CartesianCoordinates place;
      std::cin >> element >> place.x >> place.y >> place.z;
      shape.elements.push_back(element);
      shape.places.push_back(place);
    }
    answer_molecule(name, std::move(shape), draw);
  }
}

void answer_crystal(const CrystalStructureDatabaseEntry& entry) {
  std::cout << "entry " << entry.identifier().text() << '\n';
  const CrystalMaker& maker = *entry.crystal_maker();
  try {
    const CrystalBonds crystal = perceive_bonds(maker);
    const auto& [a, b, c, alpha, beta, gamma] = crystal.packed.geometry().parameters();
    std::cout.flush();
    std::printf("cell %.17g %.17g %.17g %.17g %.17g %.17g\n", a, b, c, alpha, beta, gamma);
    std::vector<double> reaches;
    for (const PackedAtom& atom : crystal.packed.atoms()) {
      const Atom& site = *maker.atoms()[atom.site];
      const double radius = bonding_radius(site.element);
      reaches.push_back(radius > 0 ? radius + 0.2 : 0);
      std::printf("atom %s %.17g %.17g %.17g\n", site.element.empty() ? "X" : site.element.c_str(),
                  atom.position.x, atom.position.y, atom.position.z);
    }
    const auto print = [](const char* word, const CrystalBond& bond) {
      std::printf("%s %zu %zu %.9f %d %d %d\n", word, bond.first, bond.second, bond.length,
                  bond.translation[0], bond.translation[1], bond.translation[2]);
    };
    for (const CrystalBond& pair : neighbours(crystal.packed, reaches)) print("pair", pair);
    for (const CrystalBond& bond : crystal.bonds) print("bond", bond);
    for (const Molecule& molecule : molecules(maker, crystal))
      std::printf("molecule %d %zu %s\n", molecule.dimension, molecule.atoms.size(),
                  molecule.formula.c_str());
    std::fflush(stdout);
  } catch (const std::invalid_argument& refusal) {
    std::cout << "refused " << refusal.what() << '\n';
  }
}

// Calls use(entry) for every entry of a stored archive.
template <class Use>
void for_each_entry(const char* path, Use use) {
  const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path, "rb"), &std::fclose);
  if (file == nullptr) throw std::runtime_error(std::string("cannot open ") + path);
  Archive archive(file.get());
  CrystalStructureImmediateDatabaseEntry entry(DatabaseEntryIdentifier(),
                                               THandle<CrystalMaker>(new CrystalMaker));
  for (;;) {
    const int next = std::getc(file.get());
    if (next == EOF) return;
    std::ungetc(next, file.get());
    entry.read(archive);
    use(entry);
  }
}

void check_entries(const char* path) {
  DuplicateSearch duplicates;
  for_each_entry(path, [&](const CrystalStructureDatabaseEntry& entry) {
    std::vector<Finding> findings = check_entry(entry, {.is_there = {}, .year = 2100});
    for (const Finding& duplicate : duplicates.add(entry)) findings.push_back(duplicate);
    for (const Finding& finding : findings)
      std::cout << entry.identifier().text() << ' ' << finding.number << ' ' << finding.where << ": "
                << finding.sentence << '\n';
  });
}

void answer_published(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  const std::string cif = text.str();
  try {
    for (const ImportResult& imported : read_cif(cif)) {
      if (imported.entry.is_null()) continue;
      const CrystalStructureImmediateDatabaseEntry& entry = *imported.entry;
      const THandle<PublishedGeometry> geometry = entry.published_geometry();
      if (geometry.is_null() || geometry->bonds.is_null() || geometry->bonds->empty()) continue;
      std::vector<Finding> findings = check_entry(entry);
      std::erase_if(findings,
                    [](const Finding& finding) { return finding.number != 51 && finding.number != 52; });
      int dimension = 0;
      for (const PerceivedMoiety& moiety : perceive_components(entry, {.draw = false}).report.moieties)
        dimension = std::max(dimension, moiety.dimension);
      std::cout << entry.identifier().text() << ' ' << geometry->bonds->size() << ' '
                << geometry->bonds->size() - findings.size() << ' ' << dimension << '\n';
      for (const Finding& finding : findings)
        std::cout << "  " << finding.number << ' ' << finding.where << ": " << finding.sentence << '\n';
    }
  } catch (const std::exception& refusal) {
    std::cout << "refused " << path << ": " << refusal.what() << '\n';
  }
}

// Of this process, so that what others do on the machine counts for little.
double processor_seconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Water molecules on a grid of 3.1 Å, as dense as water, in no symmetry.
void time_growth() {
  for (const std::size_t count : {4998U, 9999U, 19998U, 39999U}) {
    std::vector<std::string> elements;
    std::vector<CartesianCoordinates> places;
    const auto side = static_cast<std::size_t>(std::ceil(std::cbrt(static_cast<double>(count) / 3)));
    for (std::size_t i = 0; elements.size() < count; ++i) {
      const double x = 3.1 * static_cast<double>(i % side), y = 3.1 * static_cast<double>(i / side % side);
      const std::size_t layer = i / side / side;
      const double z = 3.1 * static_cast<double>(layer);
      elements.insert(elements.end(), {"O", "H", "H"});
      places.insert(places.end(), {{x, y, z}, {x + 0.96, y, z}, {x - 0.24, y + 0.93, z}});
    }
    const CrystalStructureImmediateDatabaseEntry entry(
        DatabaseEntryIdentifier("WATER"), THandle<CrystalMaker>(new CrystalMaker(alone(elements, places))));
    double best = 1e9;
    for (int run = 0; run < 25; ++run) {
      const double start = processor_seconds();
      (void)perceive_components(entry, {.draw = false});
      best = std::min(best, processor_seconds() - start);
    }
    std::cout << elements.size() << ' ' << best << '\n';
  }
}

void draw_entries(const char* path, const std::string& file, const std::string& kind, std::size_t count) {
  std::vector<THandle<CrystalStructureDatabaseEntry>> entries;
  for_each_entry(path, [&](const CrystalStructureImmediateDatabaseEntry& entry) {
    if (entries.size() < count) entries.emplace_back(new CrystalStructureImmediateDatabaseEntry(entry));
  });
  PictureOptions options{.format = picture_format_of(file), .width = 300, .height = 260};
  options.kind = kind == "cell"       ? PictureKind::cell
                 : kind == "molecule" ? PictureKind::molecule
                                      : PictureKind::diagram;
  const Picture picture = draw_sheet(entries, options);
  std::ofstream(file, std::ios::binary) << picture.bytes;
  std::cout << picture.atoms << " atoms, " << picture.bonds << " bonds\n";
}

void time_entries(const char* path) {
  double packing = 0, bonds = 0, components = 0;
  const auto timed = [](double& total, auto work) {
    const double start = processor_seconds();
    try {
      work();
    } catch (const std::invalid_argument&) {
      // A refusal takes its time too.
    }
    total += processor_seconds() - start;
  };
  for_each_entry(path, [&](const CrystalStructureDatabaseEntry& entry) {
    const CrystalMaker& maker = *entry.crystal_maker();
    timed(packing, [&] { (void)PackedCrystal(maker); });
    timed(bonds, [&] { (void)perceive_bonds(maker); });
    timed(components, [&] { (void)perceive_components(entry, {.draw = false}); });
  });
  std::cout << packing << ' ' << bonds << ' ' << components << '\n';
}

}  // namespace

int main(int count, char** words) {
  if (count >= 2 && std::strcmp(words[1], "molecules") == 0) {
    answer_molecules(count == 3 && std::strcmp(words[2], "draw") == 0);
  } else if (count == 3 && std::strcmp(words[1], "crystals") == 0) {
    for_each_entry(words[2], answer_crystal);
  } else if (count == 3 && std::strcmp(words[1], "check") == 0) {
    check_entries(words[2]);
  } else if (count == 3 && std::strcmp(words[1], "times") == 0) {
    time_entries(words[2]);
  } else if (count >= 3 && std::strcmp(words[1], "published") == 0) {
    for (int i = 2; i < count; ++i) answer_published(words[i]);
  } else if (count == 6 && std::strcmp(words[1], "sheet") == 0) {
    draw_entries(words[2], words[3], words[4], std::stoul(words[5]));
  } else if (count == 2 && std::strcmp(words[1], "scaling") == 0) {
    time_growth();
  } else if (count == 2 && std::strcmp(words[1], "radii") == 0) {
    // Every symbol there is has one capital and at most one small letter.
    for (char first = 'A'; first <= 'Z'; ++first) {
      for (char second = 'a' - 1; second <= 'z'; ++second) {
        const std::string symbol = second < 'a' ? std::string{first} : std::string{first, second};
        if (bonding_radius(symbol) > 0) std::cout << symbol << ' ' << bonding_radius(symbol) << '\n';
      }
    }
  } else {
    std::cerr << "usage: perception_probe molecules [draw] | crystals|check|times ARCHIVE | radii\n";
    return 2;
  }
}
