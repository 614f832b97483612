#include <lattice/lattice_error.h>
#include <lattice/number_text.h>
#include <lattice/operator_parts.h>
#include <lattice/reduced_cell.h>

#include <algorithm>
#include <cstdint>
#include <numbers>
#include <set>
#include <string>

namespace {

using Integers = std::array<std::array<std::int64_t, 3>, 3>;  // basis vectors are the rows
using Translations = std::set<std::array<int, 3>>;            // in twenty-fourths, 0 to 23

constexpr int whole = translation_denominator;

struct Centring {
  char letter;
  Translations translations;
};

// The letters of the International Tables; R is the obverse setting on hexagonal axes.
const std::array<Centring, 8>& centrings() {
  static const std::array<Centring, 8> table = {{
      {'P', {{0, 0, 0}}},
      {'A', {{0, 0, 0}, {0, 12, 12}}},
      {'B', {{0, 0, 0}, {12, 0, 12}}},
      {'C', {{0, 0, 0}, {12, 12, 0}}},
      {'I', {{0, 0, 0}, {12, 12, 12}}},
      {'F', {{0, 0, 0}, {0, 12, 12}, {12, 0, 12}, {12, 12, 0}}},
      {'R', {{0, 0, 0}, {16, 8, 8}, {8, 16, 16}}},
      {'H', {{0, 0, 0}, {16, 8, 0}, {8, 16, 0}}},
  }};
  return table;
}

// The pure translations that the operators hold; the whole axes always.
Translations translations_of(const std::vector<CrystalSymmetryOperator>& operators) {
  Translations translations = {{0, 0, 0}};
  for (const CrystalSymmetryOperator& op : operators) {
    const std::optional<OperatorParts> parts = parts_of(op);
    if (!parts) throw LatticeError("A symmetry operator is not finite: " + op.xyz());
    if (!parts->is_translation()) continue;
    std::array<int, 3> steps{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const std::optional<int> step = twenty_fourths(parts->translation[axis]);
      if (!step) throw LatticeError("The translation " + op.xyz() + " is no multiple of 1/24 of the axes");
      steps[axis] = *step;
    }
    translations.insert(steps);
  }
  return translations;
}

// A basis of the lattice that the translations and the axes generate, in twenty-fourths: the Hermite normal
// form, one column after the other.
ReducedCell::Basis primitive_basis(const Translations& translations) {
  std::vector<std::array<int, 3>> rows(translations.begin(), translations.end());
  ReducedCell::Basis basis;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    // The whole axes are in the lattice; taking them off the rows keeps the numbers small.
    for (auto& row : rows)
      for (int& step : row) step %= whole;
    for (std::size_t later = axis; later < 3; ++later) {
      rows.emplace_back();
      rows.back()[later] = whole;
    }
    // Euclid's algorithm over the rows, until one of them alone is not 0 in this column.
    for (;;) {
      const auto used =
          std::partition(rows.begin(), rows.end(), [&](const auto& row) { return row[axis] != 0; });
      const auto smallest = std::min_element(rows.begin(), used, [&](const auto& left, const auto& right) {
        return std::abs(left[axis]) < std::abs(right[axis]);
      });
      std::iter_swap(rows.begin(), smallest);
      if (used == rows.begin() + 1) break;
      for (auto row = rows.begin() + 1; row != used; ++row) {
        const int times = (*row)[axis] / rows.front()[axis];
        for (std::size_t column = axis; column < 3; ++column) (*row)[column] -= times * rows.front()[column];
      }
    }
    const auto& row = rows.front();
    basis[axis] = {row[0] / double{whole}, row[1] / double{whole}, row[2] / double{whole}};
    rows.erase(rows.begin());
  }
  return basis;
}

ReducedCell::Basis primitive_basis_of_letter(char letter) {
  for (const Centring& centring : centrings())
    if (centring.letter == letter) return primitive_basis(centring.translations);
  throw LatticeError(std::string("No centring has the letter '") + letter +
                     "': it is P, A, B, C, I, F, R or H");
}

// The six scalar products of three vectors, A to zeta in the paper's letters.
struct Niggli {
  double A, B, C, xi, eta, zeta;
};

class Reduction {
 public:
  Reduction(const CellGeometry& cell, const ReducedCell::Basis& primitive) {
    for (std::size_t i = 0; i < 3; ++i) vectors_[i] = cell.cartesian(primitive[i]);
    products_ = products();
    shorten();
    reduce();
  }

  [[nodiscard]] const Integers& basis() const { return basis_; }
  [[nodiscard]] const Niggli& result() const { return products_; }

 private:
  // Whole combinations of the first vectors, worked out anew each time, so that rounding does not add up.
  [[nodiscard]] Niggli products() const {
    std::array<CartesianCoordinates, 3> now;
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) {
        const auto times = static_cast<double>(basis_[i][j]);
        now[i].x += times * vectors_[j].x;
        now[i].y += times * vectors_[j].y;
        now[i].z += times * vectors_[j].z;
      }
    }
    const auto dot = [&](std::size_t i, std::size_t j) {
      return now[i].x * now[j].x + now[i].y * now[j].y + now[i].z * now[j].z;
    };
    return {dot(0, 0), dot(1, 1), dot(2, 2), 2.0 * dot(1, 2), 2.0 * dot(0, 2), 2.0 * dot(0, 1)};
  }

  void add(std::size_t to, std::size_t from, std::int64_t times) {
    for (std::size_t j = 0; j < 3; ++j) basis_[to][j] += times * basis_[from][j];
    products_ = products();
  }

  [[nodiscard]] double square(std::size_t i) const {
    return i == 0 ? products_.A : i == 1 ? products_.B : products_.C;
  }
  [[nodiscard]] double twice_product(std::size_t i, std::size_t j) const {
    return i + j == 3 ? products_.xi : i + j == 2 ? products_.eta : products_.zeta;
  }

  // Takes from each vector the whole multiples of the others that make it shorter: a lattice given in a
  // far-fetched setting would take Krivy and Gruber's steps by the thousand.
  void shorten() {
    for (int round = 0; round < 1000; ++round) {
      bool changed = false;
      for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
          if (i == j) continue;
          const double ratio = 0.5 * twice_product(i, j) / square(j);
          const double times = std::round(ratio);
          if (times == 0.0 || std::abs(ratio) < 0.5 + 1e-9) continue;
          add(i, j, -static_cast<std::int64_t>(times));
          changed = true;
        }
      }
      if (!changed) return;
    }
  }

  void exchange(std::size_t i, std::size_t j) {
    std::swap(basis_[i], basis_[j]);
    // The handedness stays.
    for (auto& vector : basis_)
      for (auto& element : vector) element = -element;
    products_ = products();
  }

  // Steps 1 to 8 of Krivy and Gruber. Each of 5 to 8 makes the sum of the squares smaller by more than the
  // tolerance, or settles an equality; a lattice that is shortened already needs a handful, so that the limit
  // is never the reason.
  void reduce() {
    const auto [least, most] = std::minmax({products_.A, products_.B, products_.C});
    tolerance_ = std::max(1e-5 * least, 1e-12 * most);
    for (int step = 0; step < 1000; ++step) {
      if (products_.A > products_.B + tolerance_ ||
          (!differ(products_.A, products_.B) &&
           std::abs(products_.xi) > std::abs(products_.eta) + tolerance_)) {
        exchange(0, 1);
      }
      if (products_.B > products_.C + tolerance_ ||
          (!differ(products_.B, products_.C) &&
           std::abs(products_.eta) > std::abs(products_.zeta) + tolerance_)) {
        exchange(1, 2);
        continue;
      }
      settle_signs();
      if (!lower()) return;
    }
  }

  [[nodiscard]] bool differ(double left, double right) const { return std::abs(left - right) > tolerance_; }
  // -1, 0 or 1, with the tolerance.
  [[nodiscard]] int sign(double value) const { return value > tolerance_ ? 1 : value < -tolerance_ ? -1 : 0; }

  // Steps 3 and 4: all three angles acute, or none.
  void settle_signs() {
    const std::array<int, 3> signs = {sign(products_.xi), sign(products_.eta), sign(products_.zeta)};
    std::array<int, 3> factors = {1, 1, 1};
    if (signs[0] * signs[1] * signs[2] > 0) {
      for (std::size_t i = 0; i < 3; ++i) factors[i] = signs[i] < 0 ? -1 : 1;
    } else {
      std::size_t free = 3;
      for (std::size_t i = 0; i < 3; ++i) {
        if (signs[i] > 0) factors[i] = -1;
        if (signs[i] == 0) free = i;
      }
      // Where the product of the three would turn the hand, the vector of a right angle is turned too.
      if (factors[0] * factors[1] * factors[2] < 0 && free < 3) factors[free] = -1;
    }
    for (std::size_t i = 0; i < 3; ++i)
      if (factors[i] < 0)
        for (auto& element : basis_[i]) element = -element;
    products_ = products();
  }

  // Steps 5 to 8; false where none applies.
  bool lower() {
    const auto [A, B, C, xi, eta, zeta] = products_;
    const auto step = [&](double product, double square_of_second, double other, double third, std::size_t to,
                          std::size_t from) {
      if (std::abs(product) > square_of_second + tolerance_ ||
          (!differ(product, square_of_second) && 2.0 * other < third - tolerance_) ||
          (!differ(product, -square_of_second) && third < -tolerance_)) {
        add(to, from, product > 0.0 ? -1 : 1);
        return true;
      }
      return false;
    };
    if (step(xi, B, eta, zeta, 2, 1)) return true;
    if (step(eta, A, xi, zeta, 2, 0)) return true;
    if (step(zeta, A, xi, eta, 1, 0)) return true;
    const double sum = xi + eta + zeta + A + B;
    if (sum < -tolerance_ || (std::abs(sum) <= tolerance_ && 2.0 * (A + eta) + zeta > tolerance_)) {
      add(2, 0, 1);
      add(2, 1, 1);
      return true;
    }
    return false;
  }

  std::array<CartesianCoordinates, 3> vectors_;
  Integers basis_ = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  Niggli products_{};
  double tolerance_ = 0.0;
};

double degrees(double product, double square1, double square2) {
  const double cosine = std::clamp(0.5 * product / std::sqrt(square1 * square2), -1.0, 1.0);
  // What is a right angle but for rounding is one, and so are the angles of hexagons.
  for (const double exact : {0.0, 0.5, -0.5})
    if (std::abs(cosine - exact) < 1e-14) return exact == 0.0 ? 90.0 : exact > 0.0 ? 60.0 : 120.0;
  return std::acos(cosine) * 180.0 / std::numbers::pi;
}

CellGeometry geometry_of(const Niggli& products) {
  const auto [A, B, C, xi, eta, zeta] = products;
  return {std::sqrt(A),      std::sqrt(B),       std::sqrt(C),
          degrees(xi, B, C), degrees(eta, A, C), degrees(zeta, A, B)};
}

}  // namespace

ReducedCell::ReducedCell(const Cell& cell)
    : ReducedCell(CellGeometry(cell),
                  primitive_basis(translations_of(cell.symmetry_operators().is_null()
                                                      ? std::vector<CrystalSymmetryOperator>()
                                                      : *cell.symmetry_operators()))) {}

ReducedCell::ReducedCell(const CellGeometry& cell, char centring)
    : ReducedCell(cell, primitive_basis_of_letter(centring)) {}

ReducedCell::ReducedCell(const CellGeometry& cell, const Basis& primitive)
    : basis_(primitive), geometry_(cell) {
  const Reduction reduction(cell, primitive);
  for (std::size_t i = 0; i < 3; ++i) {
    basis_[i] = {};
    for (std::size_t j = 0; j < 3; ++j) {
      const auto times = static_cast<double>(reduction.basis()[i][j]);
      basis_[i].x += times * primitive[j].x;
      basis_[i].y += times * primitive[j].y;
      basis_[i].z += times * primitive[j].z;
    }
  }
  geometry_ = geometry_of(reduction.result());
}

char centring_of(const std::vector<CrystalSymmetryOperator>& operators) {
  const Translations translations = translations_of(operators);
  for (const Centring& centring : centrings())
    if (centring.translations == translations) return centring.letter;
  return 0;
}
