#include <chemistry/cell.h>
#include <utilities/archiving/field_list.h>
#include <utilities/unshared.h>

#include <cmath>
#include <numbers>
#include <ostream>

Cell::Cell() : symmetry_operators_(THandle<std::vector<CrystalSymmetryOperator>>::make()) {}

Cell::Cell(double a, double b, double c, double alpha, double beta, double gamma,
           const THandle<std::vector<CrystalSymmetryOperator>>& symmetry_operators)
    : a_(a),
      b_(b),
      c_(c),
      alpha_(alpha),
      beta_(beta),
      gamma_(gamma),
      symmetry_operators_(symmetry_operators) {}

double Cell::volume() const {
  const auto cosine = [](double degrees) { return std::cos(degrees * std::numbers::pi / 180.0); };
  const double cos_alpha = cosine(alpha_);
  const double cos_beta = cosine(beta_);
  const double cos_gamma = cosine(gamma_);
  const double square = 1.0 - cos_alpha * cos_alpha - cos_beta * cos_beta - cos_gamma * cos_gamma +
                        2.0 * cos_alpha * cos_beta * cos_gamma;
  return square > 0.0 ? a_ * b_ * c_ * std::sqrt(square) : 0.0;
}

// The six numbers, which are archived and compared.
template <class Self>
auto Cell::numbers(Self& cell) {
  return std::tie(cell.a_, cell.b_, cell.c_, cell.alpha_, cell.beta_, cell.gamma_);
}

void Cell::write(Archive& archive) const {
  write_fields(archive, std::tuple_cat(numbers(*this), std::tie(*symmetry_operators_)));
}

void Cell::read(Archive& archive) {
  read_fields(archive, numbers(*this));
  std::vector<CrystalSymmetryOperator>& operators = unshared(symmetry_operators_);
  operators.clear();
  read_fields(archive, operators);
}

void Cell::print(std::ostream& os) const {
  os << "a: " << a_ << ", b: " << b_ << ", c: " << c_ << ", alpha: " << alpha_ << ", beta: " << beta_
     << ", gamma: " << gamma_ << ", symmetry operators: ";
  if (symmetry_operators_.is_null()) {
    os << "<zero handle>";
  } else {
    os << symmetry_operators_->size();
  }
}

bool operator==(const Cell& left, const Cell& right) {
  if (Cell::numbers(left) != Cell::numbers(right)) return false;
  if (left.symmetry_operators_ == right.symmetry_operators_) return true;
  return !left.symmetry_operators_.is_null() && !right.symmetry_operators_.is_null() &&
         *left.symmetry_operators_ == *right.symmetry_operators_;
}
