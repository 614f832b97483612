// "Less than" for doubles that leaves room for rounding.
//
//   DoubleComparator less;            // less_than with a tolerance of 1e-7
//   less(300.0, 300.00000005);        // false: they differ by no more than the tolerance
//   less.equal(300.0, 300.00000005);  // true
#pragma once

#include <database_entry/export.h>

// Exactly a < b - tolerance, computed in that way: |a - b| <= tolerance would decide hundreds of values
// otherwise. False when any of the three is a NaN.
[[nodiscard]] DATABASE_ENTRY_EXPORT bool less_than(double a, double b, double tolerance);

struct DoubleComparator {
  double tolerance = 1e-7;
  bool (*function)(double a, double b, double tolerance) = less_than;

  [[nodiscard]] bool operator()(double a, double b) const { return function(a, b, tolerance); }
  // Neither is less. With less_than a NaN is therefore equal to everything.
  [[nodiscard]] bool equal(double a, double b) const { return !(*this)(a, b) && !(*this)(b, a); }
};
