// A point in the unit cell, in fractions of the three cell axes.
#pragma once

#include <utilities/fields.h>

#include <tuple>

struct FractionalCoordinates {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  friend bool operator==(const FractionalCoordinates&, const FractionalCoordinates&) = default;

  // In archive order.
  static constexpr auto fields() {
    return std::tuple{Field{"x", &FractionalCoordinates::x}, Field{"y", &FractionalCoordinates::y},
                      Field{"z", &FractionalCoordinates::z}};
  }
  static constexpr bool archived_by_fields = true;
};
