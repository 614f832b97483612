// A point in the unit cell, in fractions of the three cell axes.
#pragma once

struct FractionalCoordinates {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  friend bool operator==(const FractionalCoordinates&, const FractionalCoordinates&) = default;
};
