// A measured value with its standard uncertainty, both in the unit of the value.
#pragma once

#include <mathematics/export.h>
#include <utilities/fields.h>

#include <tuple>

class MATHEMATICS_EXPORT UncertainValue {
 public:
  // A standard uncertainty of 0.0 means that none is known. Nothing is checked.
  UncertainValue(double value, double standard_uncertainty = 0.0)
      : value_(value), standard_uncertainty_(standard_uncertainty) {}

  [[nodiscard]] double value() const { return value_; }
  [[nodiscard]] double standard_uncertainty() const { return standard_uncertainty_; }

  // Both exactly; a NaN is equal to nothing.
  friend bool operator==(const UncertainValue&, const UncertainValue&) = default;

  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"value", &UncertainValue::value_},
                      ReadOnlyField{"standard_uncertainty", &UncertainValue::standard_uncertainty_}};
  }

 private:
  double value_;
  double standard_uncertainty_;
};
