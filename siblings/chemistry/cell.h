// A unit cell: three lengths, three angles, and the symmetry operators of the crystal.
//
// Units: lengths in ångström, angles in degrees. 0.0 means "not known".
// Bytes: a, b, c, alpha, beta, gamma as doubles, the operator count as an int, then each operator.
#pragma once

#include <chemistry/export.h>
#include <symmetry/crystal_symmetry_operator.h>
#include <utilities/archive.h>
#include <utilities/fields.h>
#include <utilities/t_handle.h>

#include <iosfwd>
#include <tuple>
#include <vector>

class CHEMISTRY_EXPORT Cell {
 public:
  // Nothing known: six zeros and an empty list of operators.
  Cell();

  // Shares the list of operators, which may be null. Nothing is checked.
  Cell(double a, double b, double c, double alpha, double beta, double gamma,
       const THandle<std::vector<CrystalSymmetryOperator>>& symmetry_operators);

  // A copy shares the list of operators.
  Cell(const Cell&) = default;
  Cell& operator=(const Cell&) = default;
  virtual ~Cell() = default;

  [[nodiscard]] double a() const { return a_; }
  [[nodiscard]] double b() const { return b_; }
  [[nodiscard]] double c() const { return c_; }
  [[nodiscard]] double alpha() const { return alpha_; }
  [[nodiscard]] double beta() const { return beta_; }
  [[nodiscard]] double gamma() const { return gamma_; }

  // In cubic ångström: abc sqrt(1 - cos²α - cos²β - cos²γ + 2 cosα cosβ cosγ) (International Tables for
  // Crystallography, volume C, section 1.1). 0.0 for angles that close no cell.
  [[nodiscard]] double volume() const;

  // All operators, the identity included; an empty list when they are not known.
  [[nodiscard]] THandle<std::vector<CrystalSymmetryOperator>> symmetry_operators() const {
    return symmetry_operators_;
  }

  // Throws NullHandleError, before anything is written, when there is no list of operators.
  virtual void write(Archive& archive) const;
  // Others who share the list of operators keep it as it was: a new one is filled. Throws ArchiveError where
  // the stream ends or the count is negative; what was read before stays.
  virtual void read(Archive& archive);
  // "a: 10, b: 11, c: 12, alpha: 90, beta: 90, gamma: 90, symmetry operators: 4", without a line end.
  virtual void print(std::ostream& os) const;

  // The numbers exactly, and the operators one by one. Two null lists are equal.
  friend CHEMISTRY_EXPORT bool operator==(const Cell& left, const Cell& right);

  // In archive order. The operators are archived as a list, without their handle.
  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"a", &Cell::a_},
                      ReadOnlyField{"b", &Cell::b_},
                      ReadOnlyField{"c", &Cell::c_},
                      ReadOnlyField{"alpha", &Cell::alpha_},
                      ReadOnlyField{"beta", &Cell::beta_},
                      ReadOnlyField{"gamma", &Cell::gamma_},
                      ReadOnlyField{"symmetry_operators", &Cell::symmetry_operators_}};
  }

 private:
  template <class Self>
  static auto numbers(Self& cell);

  double a_ = 0.0;
  double b_ = 0.0;
  double c_ = 0.0;
  double alpha_ = 0.0;
  double beta_ = 0.0;
  double gamma_ = 0.0;
  THandle<std::vector<CrystalSymmetryOperator>> symmetry_operators_;
};
