// Crystals for the tests of perception.
#pragma once

#include <chemistry/crystal_maker.h>

#include <array>
#include <string>
#include <vector>

struct Site {
  const char* element;
  FractionalCoordinates position;
  double occupancy = 1.0;
};

inline CrystalMaker crystal(const std::array<double, 6>& p, const std::vector<std::string>& triplets,
                            const std::vector<Site>& sites) {
  const THandle<std::vector<CrystalSymmetryOperator>> operators(new std::vector<CrystalSymmetryOperator>);
  for (const std::string& triplet : triplets) operators->emplace_back(triplet);
  std::vector<THandle<Atom>> atoms;
  for (const Site& site : sites) {
    const THandle<Atom> atom(new Atom);
    atom->element = site.element;
    atom->label = site.element + std::to_string(atoms.size() + 1);
    atom->position = site.position;
    atom->occupancy = site.occupancy;
    atoms.push_back(atom);
  }
  return CrystalMaker(THandle<Cell>(new Cell(p[0], p[1], p[2], p[3], p[4], p[5], operators)), atoms);
}

// The places in ångström, in a cubic cell of 20 Å.
inline CrystalMaker in_a_box(const std::vector<Site>& sites) {
  std::vector<Site> scaled = sites;
  for (Site& site : scaled) {
    auto& [x, y, z] = site.position;
    site.position = {x / 20 + 0.5, y / 20 + 0.5, z / 20 + 0.5};
  }
  return crystal({20, 20, 20, 90, 90, 90}, {"x,y,z"}, scaled);
}

inline const std::vector<std::string> face_centred = {"x,y,z", "x,1/2+y,1/2+z", "1/2+x,y,1/2+z",
                                                      "1/2+x,1/2+y,z"};
