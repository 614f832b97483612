// Letters as lines, so that a picture needs no font and has the same bytes everywhere.
// Internal: callers want perception/picture.h.
#pragma once

#include <string>
#include <vector>

struct StrokePoint {
  double x = 0.0;  // 0 to 4
  double y = 0.0;  // from the base line up to 6; down to -2
};

// The lines of one character; a small box for one that has no shape here.
[[nodiscard]] std::vector<std::vector<StrokePoint>> strokes_of(char character);

inline constexpr double stroke_advance = 5.5;  // from one character to the next
inline constexpr double stroke_height = 6.0;   // of a capital letter
