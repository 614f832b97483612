#include <perception/bonds.h>
#include <perception/canvas.h>
#include <perception/components.h>
#include <perception/disorder.h>
#include <perception/elements.h>
#include <perception/entry_bonds.h>
#include <perception/molecules.h>
#include <perception/perception_error.h>
#include <perception/picture.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <sstream>
#include <utility>

namespace {

constexpr std::size_t most_atoms = 20000;

using Vector = CartesianCoordinates;

Vector minus(const Vector& left, const Vector& right) {
  return {left.x - right.x, left.y - right.y, left.z - right.z};
}
double dot(const Vector& left, const Vector& right) {
  return left.x * right.x + left.y * right.y + left.z * right.z;
}
Vector cross(const Vector& l, const Vector& r) {
  return {l.y * r.z - l.z * r.y, l.z * r.x - l.x * r.z, l.x * r.y - l.y * r.x};
}
Vector unit(const Vector& vector) {
  const double length = std::sqrt(dot(vector, vector));
  return length > 1e-12 ? Vector{vector.x / length, vector.y / length, vector.z / length} : Vector{0, 0, 1};
}

// A part of the page.
struct Frame {
  double left = 0.0;
  double top = 0.0;
  double width = 0.0;
  double height = 0.0;
};

struct Drawn {
  std::size_t atoms = 0;
  std::size_t bonds = 0;
};

constexpr Colour black = {0.0, 0.0, 0.0};
constexpr Colour white = {1.0, 1.0, 1.0};

// ---- Diagrams

class DiagramDrawing {
 public:
  DiagramDrawing(Canvas& canvas, const Frame& frame, const ChemicalDiagram& diagram)
      : canvas_(canvas), diagram_(diagram) {
    double left = 1e9, right = -1e9, bottom = 1e9, top = -1e9;
    for (const THandle<DiagramAtom>& atom : diagram.atoms) {
      left = std::min(left, atom->x);
      right = std::max(right, atom->x);
      bottom = std::min(bottom, atom->y);
      top = std::max(top, atom->y);
    }
    scale_ = std::min({(frame.width - 4) / (right - left + 2.0), (frame.height - 4) / (top - bottom + 2.0),
                       frame.height / 6.0});
    origin_ = {frame.left + frame.width / 2 - scale_ * (left + right) / 2,
               frame.top + frame.height / 2 + scale_ * (top + bottom) / 2};
  }

  Drawn draw() {
    std::map<const DiagramAtom*, std::vector<const DiagramAtom*>> neighbours;
    for (const THandle<DiagramBond>& bond : diagram_.bonds) {
      neighbours[bond->first.get()].push_back(bond->second.get());
      neighbours[bond->second.get()].push_back(bond->first.get());
    }
    for (const THandle<DiagramBond>& bond : diagram_.bonds) draw_bond(*bond, neighbours);
    for (const THandle<DiagramAtom>& atom : diagram_.atoms) draw_atom(*atom, neighbours[atom.get()]);
    return {diagram_.atoms.size(), diagram_.bonds.size()};
  }

 private:
  [[nodiscard]] PagePoint place(const DiagramAtom& atom) const {
    return {origin_.x + scale_ * atom.x, origin_.y - scale_ * atom.y};
  }

  // Above 0 where more of the neighbours are on the left of the bond: the inner side of a ring.
  static double side(const DiagramBond& bond,
                     std::map<const DiagramAtom*, std::vector<const DiagramAtom*>>& neighbours) {
    const DiagramAtom& first = *bond.first;
    const DiagramAtom& second = *bond.second;
    double sum = 0.0;
    for (const DiagramAtom* const end : {&first, &second})
      for (const DiagramAtom* const other : neighbours[end])
        if (other != &first && other != &second)
          sum += (second.x - first.x) * (other->y - first.y) - (second.y - first.y) * (other->x - first.x);
    return sum;
  }

  void draw_bond(const DiagramBond& bond,
                 std::map<const DiagramAtom*, std::vector<const DiagramAtom*>>& neighbours) {
    const PagePoint from = place(*bond.first);
    const PagePoint to = place(*bond.second);
    const double width = std::max(scale_ * 0.045, 0.5);
    const double length = std::max(std::hypot(to.x - from.x, to.y - from.y), 1e-6);
    // Across the bond; y is downwards, so that the left side of the drawing is at minus.
    const double across_x = (to.y - from.y) / length;
    const double across_y = -(to.x - from.x) / length;
    const auto parallel = [&](double distance, double shorter, double dash) {
      const double along = shorter * scale_ / length;
      const double dx = (to.x - from.x) * along, dy = (to.y - from.y) * along;
      canvas_.line({from.x + dx + across_x * distance * scale_, from.y + dy + across_y * distance * scale_},
                   {to.x - dx + across_x * distance * scale_, to.y - dy + across_y * distance * scale_},
                   width, black, dash);
    };
    const double inner = side(bond, neighbours) >= 0.0 ? 0.16 : -0.16;
    switch (bond.type) {
      case BondType::single_bond:
        parallel(0.0, 0.0, 0.0);
        break;
      case BondType::double_bond:
        if (neighbours[bond.first.get()].size() == 1 || neighbours[bond.second.get()].size() == 1) {
          parallel(-0.08, 0.0, 0.0);
          parallel(0.08, 0.0, 0.0);
        } else {
          parallel(0.0, 0.0, 0.0);
          parallel(inner, 0.14, 0.0);
        }
        break;
      case BondType::triple_bond:
      case BondType::quadruple_bond:
        parallel(0.0, 0.0, 0.0);
        parallel(-0.14, 0.08, 0.0);
        parallel(0.14, 0.08, 0.0);
        break;
      case BondType::aromatic:
      case BondType::delocalised:
        parallel(0.0, 0.0, 0.0);
        parallel(inner, 0.14, scale_ * 0.11);
        break;
      case BondType::pi:
      case BondType::unknown:
        parallel(0.0, 0.0, scale_ * 0.11);
        break;
    }
  }

  void draw_atom(const DiagramAtom& atom, const std::vector<const DiagramAtom*>& neighbours) {
    std::string charge;
    if (std::abs(atom.charge) > 1) charge = std::to_string(std::abs(atom.charge));
    if (atom.charge != 0) charge += atom.charge > 0 ? '+' : '-';
    // A carbon atom is where bonds meet.
    if (atom.element == "C" && atom.label.empty() && charge.empty() && !neighbours.empty()) return;
    // The symbol is on the atom; its hydrogen atoms are on the side where no bond is, and before it in water.
    double to_the_right = 0.0;
    for (const DiagramAtom* const other : neighbours) to_the_right += other->x - atom.x;
    const bool before = to_the_right > 0.3 || (neighbours.empty() && atomic_number(atom.element) == 8);
    const std::string text = before ? atom.label + atom.element + charge : atom.element + atom.label + charge;
    const std::string left = before ? atom.label : "";
    const double height = 0.34 * scale_;
    PagePoint at = place(atom);
    const double prefix = left.empty() ? 0.0
                                       : Canvas::text_width(left + atom.element, height) -
                                             Canvas::text_width(atom.element, height);
    at.x += (Canvas::text_width(text, height) - Canvas::text_width(atom.element, height)) / 2 - prefix;
    const Colour own = element_colour(atomic_number(atom.element));
    canvas_.text(at, text, height,
                 atom.element == "C" || atom.element == "H" ? black : mixed(own, black, 0.25), true);
  }

  Canvas& canvas_;
  const ChemicalDiagram& diagram_;
  double scale_ = 1.0;
  PagePoint origin_;
};

// ---- Balls and sticks

struct Ball {
  Vector place;
  int number = 0;
  std::string label;
};

struct Scene {
  std::vector<Ball> balls;
  std::vector<std::pair<std::size_t, std::size_t>> sticks;
  std::vector<std::pair<Vector, Vector>> edges;
};

// Right, up, and towards the eye.
struct View {
  Vector right;
  Vector up;
  Vector eye;
};

View view_along(const Vector& direction, const Vector& upwards) {
  const Vector eye = unit(direction);
  Vector right = cross(upwards, eye);
  if (dot(right, right) < 1e-8 * dot(upwards, upwards)) right = cross({0.3, 1.0, 0.1}, eye);
  right = unit(right);
  return {right, cross(eye, right), eye};
}

// The direction in which the molecule is thinnest, by repeated multiplication with the inverse spread: here
// the plainest way, the best of a fixed set of directions.
View widest_view(const std::vector<Ball>& balls) {
  Vector middle;
  for (const Ball& ball : balls) {
    middle.x += ball.place.x / static_cast<double>(balls.size());
    middle.y += ball.place.y / static_cast<double>(balls.size());
    middle.z += ball.place.z / static_cast<double>(balls.size());
  }
  const auto spread = [&](const Vector& along) {
    double sum = 0.0;
    for (const Ball& ball : balls) {
      const double depth = dot(minus(ball.place, middle), along);
      sum += depth * depth;
    }
    return sum;
  };
  const auto best_of = [&](bool thinnest, const std::function<Vector(double, double)>& direction) {
    Vector best = direction(0, 0);
    for (int i = 0; i <= 36; ++i) {
      for (int j = 0; j < 72; ++j) {
        const Vector candidate = direction(i / 36.0, j / 72.0);
        const double gain = spread(best) - spread(candidate);
        if (thinnest ? gain > 1e-9 : gain < -1e-9) best = candidate;
      }
    }
    return best;
  };
  constexpr double turn = 6.283185307179586;
  const Vector eye = best_of(true, [](double i, double j) {
    const double z = 1.0 - i;
    const double radius = std::sqrt(std::max(1.0 - z * z, 0.0));
    return Vector{radius * std::cos(turn * j), radius * std::sin(turn * j), z};
  });
  // The longest direction of what is left is drawn from left to right.
  const View any = view_along(eye, {0, 0, 1});
  const Vector right = best_of(false, [&](double, double j) {
    const double c = std::cos(turn * j / 2), s = std::sin(turn * j / 2);
    return Vector{c * any.right.x + s * any.up.x, c * any.right.y + s * any.up.y,
                  c * any.right.z + s * any.up.z};
  });
  return {right, cross(eye, right), eye};
}

// After everything else, so that nothing covers them; an atom that is covered itself has none.
template <class OnPage, class Project, class Radius>
void draw_labels(Canvas& canvas, const Scene& scene, double scale, OnPage on_page, Project project,
                 Radius radius) {
  const double height = std::clamp(0.3 * scale, 3.0, 14.0);
  const auto is_covered = [&](const Ball& ball) {
    const PagePoint at = on_page(ball.place);
    return std::any_of(scene.balls.begin(), scene.balls.end(), [&](const Ball& other) {
      const PagePoint there = on_page(other.place);
      return project(other.place).depth > project(ball.place).depth + 1e-6 &&
             std::hypot(there.x - at.x, there.y - at.y) < radius(other);
    });
  };
  for (const Ball& ball : scene.balls) {
    if (ball.label.empty() || is_covered(ball)) continue;
    const PagePoint at = on_page(ball.place);
    const double right = radius(ball) + Canvas::text_width(ball.label, height) / 2 + 0.2 * height;
    canvas.text({at.x + right, at.y - radius(ball)}, ball.label, height, black, false);
  }
}

Drawn draw_scene(Canvas& canvas, const Frame& frame, const Scene& scene, const View& view, bool labels) {
  struct Projected {
    double x, y, depth;
  };
  const auto project = [&](const Vector& place) {
    return Projected{dot(place, view.right), dot(place, view.up), dot(place, view.eye)};
  };
  double left = 1e9, right = -1e9, bottom = 1e9, top = -1e9, near = -1e9, far = 1e9;
  const auto include = [&](const Vector& place, double margin) {
    const Projected p = project(place);
    left = std::min(left, p.x - margin);
    right = std::max(right, p.x + margin);
    bottom = std::min(bottom, p.y - margin);
    top = std::max(top, p.y + margin);
    near = std::max(near, p.depth);
    far = std::min(far, p.depth);
  };
  for (const Ball& ball : scene.balls) include(ball.place, 0.8);
  for (const auto& [from, to] : scene.edges) {
    include(from, 0.3);
    include(to, 0.3);
  }
  const double scale =
      std::min({(frame.width - 4) / (right - left), (frame.height - 4) / (top - bottom), frame.height / 4.0});
  const auto on_page = [&](const Vector& place) {
    const Projected p = project(place);
    return PagePoint{frame.left + frame.width / 2 + scale * (p.x - (left + right) / 2),
                     frame.top + frame.height / 2 - scale * (p.y - (bottom + top) / 2)};
  };
  // 0 in front, 0.6 at the back.
  const auto paleness = [&](double depth) {
    return near - far > 0.1 ? 0.6 * (near - depth) / (near - far) : 0.0;
  };
  const auto radius = [&](const Ball& ball) {
    const double covalent = covalent_radius(ball.number);
    return scale * (ball.number == 1 ? 0.2 : 0.18 + 0.17 * (covalent > 0.0 ? covalent : 0.7));
  };

  // Everything is drawn from the back to the front: by depth, and in the order of the scene where that is
  // equal.
  std::vector<std::pair<double, std::function<void()>>> layers;
  for (const auto& [from, to] : scene.edges) {
    // In pieces, so that an edge may pass in front of one atom and after another.
    constexpr int pieces = 8;
    for (int i = 0; i < pieces; ++i) {
      const auto at = [&from = from, &to = to](double share) {
        return Vector{from.x + share * (to.x - from.x), from.y + share * (to.y - from.y),
                      from.z + share * (to.z - from.z)};
      };
      const Vector one = at(i / double{pieces});
      const Vector other = at((i + 1) / double{pieces});
      const double depth = (project(one).depth + project(other).depth) / 2;
      layers.emplace_back(depth, [&, one, other, depth] {
        canvas.line(on_page(one), on_page(other), std::max(0.03 * scale, 0.5),
                    mixed({0.2, 0.2, 0.2}, white, paleness(depth)));
      });
    }
  }
  for (const auto& [first, second] : scene.sticks) {
    const Ball& one = scene.balls[first];
    const Ball& other = scene.balls[second];
    const Vector middle = {(one.place.x + other.place.x) / 2, (one.place.y + other.place.y) / 2,
                           (one.place.z + other.place.z) / 2};
    for (const Ball* const end : {&one, &other}) {
      // It leaves the ball at its surface, which is seen where it comes towards the eye.
      const Vector along = minus(middle, end->place);
      const double share =
          std::min(0.9 * radius(*end) / scale / std::max(std::sqrt(dot(along, along)), 1e-6), 1.0);
      const Vector begin = {end->place.x + share * along.x, end->place.y + share * along.y,
                            end->place.z + share * along.z};
      const double depth = (project(begin).depth + project(middle).depth) / 2;
      layers.emplace_back(depth, [&, end, begin, middle, depth] {
        const Colour colour = mixed(mixed(element_colour(end->number), black, 0.2), white, paleness(depth));
        canvas.line(on_page(begin), on_page(middle), std::max(0.16 * scale, 0.7), colour);
      });
    }
  }
  for (const Ball& ball : scene.balls) {
    const double depth = project(ball.place).depth;
    layers.emplace_back(depth + 1e-6, [&, depth] {
      const double pale = paleness(depth);
      const PagePoint at = on_page(ball.place);
      const Colour colour = element_colour(ball.number);
      canvas.disc(at, radius(ball), mixed(colour, white, pale), mixed(black, white, 0.3 + 0.7 * pale),
                  std::max(0.02 * scale, 0.3));
      // Light from the upper left.
      canvas.disc({at.x - 0.3 * radius(ball), at.y - 0.3 * radius(ball)}, 0.25 * radius(ball),
                  mixed(colour, white, 0.6 + 0.4 * pale), mixed(colour, white, 0.6 + 0.4 * pale), 0.0);
    });
  }
  std::stable_sort(layers.begin(), layers.end(),
                   [](const auto& l, const auto& r) { return l.first < r.first; });
  for (const auto& [depth, draw] : layers) draw();
  if (labels) draw_labels(canvas, scene, scale, on_page, project, radius);
  return {scene.balls.size(), scene.sticks.size()};
}

// ---- What is drawn of an entry

struct Crystal {
  THandle<CrystalMaker> maker;
  CrystalBonds bonds;
  std::vector<bool> hidden;
};

Crystal crystal_of(const CrystalStructureDatabaseEntry& entry) {
  const THandle<CrystalMaker> maker = entry.crystal_maker();
  if (maker.is_null() || maker->atoms().empty()) throw PerceptionError("There are no atoms to draw");
  const BondOptions options = bond_options_of(entry);
  CrystalBonds bonds = perceive_bonds(*maker, options);
  std::vector<bool> hidden = sites_not_shown(*maker, bonds.packed, options.alternatives);
  return {maker, std::move(bonds), std::move(hidden)};
}

void refuse_many(std::size_t atoms) {
  if (atoms > most_atoms)
    throw PerceptionError("A picture of more than 20,000 atoms shows nothing; this would have " +
                          std::to_string(atoms));
}

Ball ball_of(const Crystal& crystal, std::size_t atom, const Vector& place) {
  const Atom& site = *crystal.maker->atoms()[crystal.bonds.packed.atoms()[atom].site];
  return {place, atomic_number(site.element), site.label};
}

// Which bonds of a packed cell are worth a stick. Two metal atoms that share the non-metal atoms around them
// are within reach of each other in most salts and oxides; a stick there would hide the structure.
std::vector<bool> drawn_bonds(const Crystal& crystal) {
  const PackedCrystal& packed = crystal.bonds.packed;
  const auto number = [&](std::size_t atom) {
    return atomic_number(crystal.maker->atoms()[packed.atoms()[atom].site]->element);
  };
  std::vector<bool> has_ligand(packed.atoms().size());
  for (const CrystalBond& bond : crystal.bonds.bonds) {
    if (!is_metal(number(bond.second))) has_ligand[bond.first] = true;
    if (!is_metal(number(bond.first))) has_ligand[bond.second] = true;
  }
  std::vector<bool> drawn;
  for (const CrystalBond& bond : crystal.bonds.bonds) {
    const int first = number(bond.first), second = number(bond.second);
    const bool contact = is_metal(first) && is_metal(second) && has_ligand[bond.first] &&
                         has_ligand[bond.second] &&
                         bond.length > covalent_radius(first) + covalent_radius(second);
    drawn.push_back(!contact);
  }
  return drawn;
}

Scene cell_scene(const Crystal& crystal) {
  constexpr double on_face = 1e-3;
  const PackedCrystal& packed = crystal.bonds.packed;
  const CellGeometry geometry = packed.geometry();
  refuse_many(packed.atoms().size());
  Scene scene;
  // The atoms of the cell, and of those on its faces the images on the opposite ones.
  std::map<std::pair<std::size_t, std::array<int, 3>>, std::size_t> balls;
  for (std::size_t atom = 0; atom < packed.atoms().size(); ++atom) {
    if (crystal.hidden[packed.atoms()[atom].site]) continue;
    const auto& [x, y, z] = packed.atoms()[atom].position;
    const std::array<double, 3> position = {x, y, z};
    for (int image = 0; image < 27; ++image) {
      const std::array<int, 3> steps = {image % 3 - 1, image / 3 % 3 - 1, image / 9 - 1};
      bool inside = true;
      for (std::size_t axis = 0; axis < 3; ++axis)
        inside = inside && position[axis] + steps[axis] >= -on_face &&
                 position[axis] + steps[axis] <= 1.0 + on_face;
      if (!inside) continue;
      balls.emplace(std::pair(atom, steps), scene.balls.size());
      scene.balls.push_back(
          ball_of(crystal, atom, geometry.cartesian({x + steps[0], y + steps[1], z + steps[2]})));
    }
  }
  const std::vector<bool> drawn = drawn_bonds(crystal);
  for (std::size_t i = 0; i < drawn.size(); ++i) {
    if (!drawn[i]) continue;
    const CrystalBond& bond = crystal.bonds.bonds[i];
    for (int image = 0; image < 27; ++image) {
      const std::array<int, 3> from = {image % 3 - 1, image / 3 % 3 - 1, image / 9 - 1};
      const std::array<int, 3> to = {from[0] + bond.translation[0], from[1] + bond.translation[1],
                                     from[2] + bond.translation[2]};
      const auto first = balls.find({bond.first, from});
      const auto second = balls.find({bond.second, to});
      if (first != balls.end() && second != balls.end())
        scene.sticks.emplace_back(first->second, second->second);
    }
  }
  for (int corner = 0; corner < 8; ++corner) {
    for (int axis = 0; axis < 3; ++axis) {
      if ((corner >> axis & 1) != 0) continue;
      const auto place = [&](int bits) {
        return geometry.cartesian({double(bits & 1), double(bits >> 1 & 1), double(bits >> 2 & 1)});
      };
      scene.edges.emplace_back(place(corner), place(corner | 1 << axis));
    }
  }
  return scene;
}

Vector middle_of(const Molecule& molecule) {
  Vector sum;
  for (const MoleculeAtom& atom : molecule.atoms)
    sum = {sum.x + atom.place.x, sum.y + atom.place.y, sum.z + atom.place.z};
  const auto count = static_cast<double>(std::max<std::size_t>(molecule.atoms.size(), 1));
  return {sum.x / count, sum.y / count, sum.z / count};
}

Scene molecule_scene(const Crystal& crystal) {
  const std::vector<Molecule> list = molecules(*crystal.maker, crystal.bonds, crystal.hidden);
  const CellGeometry geometry = crystal.bonds.packed.geometry();
  Scene scene;
  FractionalCoordinates home;  // the middle of the first molecule; the others are moved next to it
  for (const MoleculeCount& independent : independent_molecules(list)) {
    const Molecule& molecule = list[independent.molecule];
    const std::size_t first = scene.balls.size();
    refuse_many(first + molecule.atoms.size());
    const FractionalCoordinates middle = geometry.fractional(middle_of(molecule));
    if (first == 0) home = middle;
    const Vector step = geometry.cartesian(
        {std::round(home.x - middle.x), std::round(home.y - middle.y), std::round(home.z - middle.z)});
    for (const MoleculeAtom& atom : molecule.atoms)
      scene.balls.push_back(
          ball_of(crystal, atom.atom, {atom.place.x + step.x, atom.place.y + step.y, atom.place.z + step.z}));
    for (const MoleculeBond& bond : molecule.bonds)
      if (bond.translation == std::array<int, 3>{})
        scene.sticks.emplace_back(first + bond.first, first + bond.second);
  }
  return scene;
}

Drawn draw_entry(Canvas& canvas, const Frame& frame, const CrystalStructureDatabaseEntry& entry,
                 const PictureOptions& options) {
  if (options.kind == PictureKind::diagram_or_cell) {
    PictureOptions one = options;
    one.kind = PictureKind::diagram;
    try {
      return draw_entry(canvas, frame, entry, one);
    } catch (const PerceptionError&) {
      one.kind = PictureKind::cell;
      return draw_entry(canvas, frame, entry, one);
    }
  }
  if (options.kind == PictureKind::diagram) {
    THandle<ChemicalDiagram> diagram = entry.chemical_diagram();
    if (diagram.is_null() || diagram->atoms.empty()) {
      const PerceivedEntry perceived =
          perceive_components(entry, {.most_drawn_atoms = options.most_drawn_atoms});
      diagram = perceived.entry.chemical_diagram();
      if (diagram.is_null() || diagram->atoms.empty())
        throw PerceptionError("There is no diagram: " + (perceived.report.notes.empty()
                                                             ? "nothing is perceived"
                                                             : perceived.report.notes.back()));
    }
    refuse_many(diagram->atoms.size());
    return DiagramDrawing(canvas, frame, *diagram).draw();
  }
  const Crystal crystal = crystal_of(entry);
  const Scene scene = options.kind == PictureKind::cell ? cell_scene(crystal) : molecule_scene(crystal);
  const CellGeometry geometry = crystal.bonds.packed.geometry();
  const auto& [u, v, w] = options.view;
  const bool chosen = u != 0.0 || v != 0.0 || w != 0.0;
  View view{};
  if (chosen) {
    // Down c, a is on the right side and b above; down another axis the next one is above.
    const Vector direction = geometry.cartesian({u, v, w});
    const bool down_c = u == 0.0 && v == 0.0;
    view = view_along(direction, geometry.cartesian(down_c ? FractionalCoordinates{0, 1, 0}
                                                           : FractionalCoordinates{0, 0, 1}));
  } else if (options.kind == PictureKind::cell) {
    const Vector a = unit(geometry.cartesian({1, 0, 0}));
    const Vector b = unit(geometry.cartesian({0, 1, 0}));
    const Vector c = unit(geometry.cartesian({0, 0, 1}));
    view = view_along(
        {a.x + 0.35 * b.x + 0.25 * c.x, a.y + 0.35 * b.y + 0.25 * c.y, a.z + 0.35 * b.z + 0.25 * c.z}, c);
  } else {
    view = widest_view(scene.balls);
  }
  return draw_scene(canvas, frame, scene, view, options.labels);
}

// The text in lines that fit, five at most.
std::vector<std::string> lines_of(const std::string& text, double width, double height) {
  std::vector<std::string> lines;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const std::string longer = lines.empty() ? word : lines.back() + " " + word;
    if (!lines.empty() && Canvas::text_width(longer, height) <= width) {
      lines.back() = longer;
    } else if (lines.size() == 5) {
      lines.back() += " ...";
      break;
    } else {
      lines.push_back(word);
    }
  }
  return lines;
}

}  // namespace

Picture draw_picture(const CrystalStructureDatabaseEntry& entry, const PictureOptions& options) {
  Canvas canvas(options.format, options.width, options.height);
  const Drawn drawn =
      draw_entry(canvas, {0.0, 0.0, double(options.width), double(options.height)}, entry, options);
  return {canvas.bytes(), drawn.atoms, drawn.bonds};
}

Picture draw_sheet(const std::vector<THandle<CrystalStructureDatabaseEntry>>& entries,
                   const PictureOptions& options, std::size_t columns) {
  if (entries.empty()) throw PerceptionError("There are no entries to draw on a sheet");
  if (columns == 0)
    columns = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(entries.size()))));
  columns = std::min(columns, entries.size());
  const std::size_t rows = (entries.size() + columns - 1) / columns;
  const double width = options.width, height = options.height;
  const auto whole = [](double size) { return static_cast<int>(std::min(size, 1e6)); };
  Canvas canvas(options.format, whole(width * static_cast<double>(columns)),
                whole(height * static_cast<double>(rows)));
  Drawn total;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::size_t row = i / columns;
    const Frame frame = {width * static_cast<double>(i % columns), height * static_cast<double>(row), width,
                         height};
    const double letters = std::clamp(height / 25.0, 4.0, 16.0);
    const PagePoint title = {frame.left + width / 2, frame.top + height - 1.2 * letters};
    const auto fitting = [&](const std::string& text) {
      const auto most = static_cast<std::size_t>(std::max((width - 4) / (letters * 0.92), 4.0));
      return text.size() <= most ? text : text.substr(0, most - 3) + "...";
    };
    canvas.text(title, fitting(entries[i]->identifier().text()), letters, black, false);
    try {
      const Drawn drawn =
          draw_entry(canvas, {frame.left, frame.top, width, height - 2.4 * letters}, *entries[i], options);
      total.atoms += drawn.atoms;
      total.bonds += drawn.bonds;
    } catch (const std::invalid_argument& reason) {
      double top = frame.top + height / 3;
      for (const std::string& line : lines_of(reason.what(), width - 8, letters * 0.7)) {
        canvas.text({frame.left + width / 2, top}, line, letters * 0.7, {0.5, 0.5, 0.5}, false);
        top += letters * 1.4;
      }
    }
  }
  return {canvas.bytes(), total.atoms, total.bonds};
}

PictureFormat picture_format_of(const std::string& file_name) {
  const std::size_t dot = file_name.rfind('.');
  std::string end = dot == std::string::npos ? "" : file_name.substr(dot + 1);
  for (char& letter : end)
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  if (end == "svg") return PictureFormat::svg;
  if (end == "png") return PictureFormat::png;
  if (end == "pdf") return PictureFormat::pdf;
  throw PerceptionError("A picture's name ends in .svg, .png or .pdf; \"" + file_name + "\" does not");
}

std::array<double, 3> picture_view_of(const std::string& text) {
  if (text == "a") return {1, 0, 0};
  if (text == "b") return {0, 1, 0};
  if (text == "c") return {0, 0, 1};
  std::array<double, 3> view{};
  const char* at = text.data();
  const char* const end = text.data() + text.size();
  bool good = true;
  for (std::size_t i = 0; good && i < 3; ++i) {
    const auto [next, error] = std::from_chars(at, end, view[i]);
    good = error == std::errc() && std::isfinite(view[i]) && std::abs(view[i]) <= 1e6 &&
           (i == 2 ? next == end : next != end && *next == ',');
    at = next + (i < 2 ? 1 : 0);
  }
  if (!good || view == std::array<double, 3>{})
    throw PerceptionError("A view is a, b, c or three numbers like 1,0,2; \"" + text + "\" is none");
  return view;
}
