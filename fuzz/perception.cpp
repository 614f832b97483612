// The bytes as a crystal: a cell, some operators, some atoms, of any numbers. Whatever is perceived, checked
// and drawn is an answer or a refusal; matches hold, and an entry is not changed.
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <lattice/lattice_error.h>
#include <lattice/lattice_search.h>
#include <lattice/space_group.h>
#include <perception/components.h>
#include <perception/entry_check.h>
#include <perception/perception_error.h>
#include <perception/picture.h>

#include <array>
#include <cstring>
#include <limits>
#include <vector>

#include "entry_point.h"

namespace {

constexpr std::size_t most_atoms = 40;
constexpr std::size_t most_operators = 8;

class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  [[nodiscard]] bool are_left() const { return at_ < size_; }
  std::uint8_t next() { return at_ < size_ ? data_[at_++] : std::uint8_t{0}; }
  // Mostly an ordinary number; one in sixteen is of the odd ones.
  double number(double least, double most) {
    constexpr double odd[] = {0.0,
                              -1.0,
                              1e308,
                              1e-308,
                              std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::infinity(),
                              90.0,
                              180.0};
    const unsigned int high = next();
    const unsigned int low = next();
    if (high >= 0xf0) return odd[low % std::size(odd)];
    return least + (most - least) * (high * 256 + low) / 61440.0;
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t at_ = 0;
};

THandle<std::vector<CrystalSymmetryOperator>> operators_from(Bytes& bytes) {
  static const char* const triplets[] = {
      "-x,-y,-z", "-x,y,-z",         "-x,1/2+y,1/2-z",    "x,1/2+y,1/2+z", "1/2+x,1/2+y,1/2+z",
      "-y,x,z",   "-y,x-y,z",        "2/3+x,1/3+y,1/3+z", "y,x,-z",        "x+y,y,z",
      "0,0,0",    "2x,1/7+y,0.123+z"};
  const THandle<std::vector<CrystalSymmetryOperator>> list(new std::vector<CrystalSymmetryOperator>);
  const std::size_t count = bytes.next() % (most_operators + 1);
  if (count > 0) list->emplace_back();
  for (std::size_t i = 1; i < count; ++i) list->emplace_back(triplets[bytes.next() % std::size(triplets)]);
  return list;
}

THandle<CrystalMaker> crystal_from(Bytes& bytes) {
  std::array<double, 6> cell{};
  for (std::size_t i = 0; i < 6; ++i) cell[i] = i < 3 ? bytes.number(1.0, 30.0) : bytes.number(20.0, 160.0);
  const auto operators = operators_from(bytes);
  static const char* const elements[] = {"C", "C",  "C",  "H",  "H", "O", "N",  "S",
                                         "P", "Na", "Fe", "Si", "D", "",  "Zz", "Og"};
  std::vector<THandle<Atom>> atoms;
  while (bytes.are_left() && atoms.size() < most_atoms) {
    const THandle<Atom> atom(new Atom);
    atom->element = elements[bytes.next() % std::size(elements)];
    atom->label = atom->element + std::to_string(atoms.size());
    atom->position = {bytes.number(-0.5, 1.5), bytes.number(-0.5, 1.5), bytes.number(-0.5, 1.5)};
    if (bytes.next() % 4 == 0) atom->occupancy = bytes.number(0.0, 1.0);
    atoms.push_back(atom);
  }
  return THandle<CrystalMaker>(new CrystalMaker(
      THandle<Cell>(new Cell(cell[0], cell[1], cell[2], cell[3], cell[4], cell[5], operators)),
      std::move(atoms)));
}

template <class Match>
void require_match(const THandle<Match>& match) {
  if (match.is_null()) return;
  const std::vector<std::string> objections = objections_to(*match);
  require(objections.empty(), objections.empty() ? "" : objections.front());
}

void search(const CrystalMaker& maker) {
  try {
    const ReducedCell reduced(*maker.cell());
    require(LatticeSearch(reduced.geometry(), 1.0).finds(reduced), "a lattice does not find itself");
  } catch (const LatticeError&) {
    return;  // a refusal is an answer
  }
}

void draw(const CrystalStructureDatabaseEntry& entry, PictureKind kind) {
  try {
    const Picture picture =
        draw_picture(entry, {.kind = kind, .width = 64, .height = 64, .most_drawn_atoms = 20});
    require(!picture.bytes.empty(), "a picture without bytes");
  } catch (const PerceptionError&) {
    return;
  } catch (const LatticeError&) {
    return;
  }
}

}  // namespace

void take(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(data, size);
  const THandle<CrystalMaker> maker = crystal_from(bytes);
  const CrystalStructureImmediateDatabaseEntry entry(DatabaseEntryIdentifier("FUZZED"), maker);
  (void)SpaceGroup(*maker->cell()->symmetry_operators());
  search(*maker);
  const PerceivedEntry perceived =
      perceive_components(entry, {.most_drawn_atoms = 20, .frameworks = size % 2 == 0});
  require(entry.connectivity_info().is_null(), "the entry itself was changed");
  require_match(perceived.entry.crystal_connectivity_match());
  require_match(perceived.entry.crystal_diagram_match());
  require_match(perceived.entry.connectivity_diagram_match());
  for (const Finding& finding : check_entry(perceived.entry))
    require(finding.number > 0 && !finding.where.empty() && !finding.sentence.empty(),
            "a finding that says nothing");
  DuplicateSearch duplicates;
  require(duplicates.add(entry).empty(), "the first of its kind is a duplicate");
  draw(perceived.entry, PictureKind::cell);
  draw(perceived.entry, PictureKind::molecule);
}
