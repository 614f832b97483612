// A page of lines, discs and letters, and its bytes, over cairo.
// Internal: callers want perception/picture.h.
#pragma once

#include <cairo/cairo.h>
#include <perception/picture.h>

#include <memory>
#include <string>

struct Colour {
  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;
};

// Between two colours: the first at 0, the second at 1.
[[nodiscard]] Colour mixed(const Colour& first, const Colour& second, double share);

// What models of that element are painted with.
[[nodiscard]] Colour element_colour(int atomic_number);

struct PagePoint {
  double x = 0.0;  // to the right
  double y = 0.0;  // downwards
};

class Canvas {
 public:
  // White. Throws PerceptionError for a size that is not from 16 to 20,000, or where cairo cannot make it.
  Canvas(PictureFormat format, int width, int height);
  ~Canvas();
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  void line(const PagePoint& from, const PagePoint& to, double width, const Colour& colour,
            double dash = 0.0);
  // An edge of no width is none.
  void disc(const PagePoint& centre, double radius, const Colour& fill, const Colour& edge,
            double edge_width);
  // In the middle of the point; the height is that of a capital. With a backing, on a white disc or bar.
  void text(const PagePoint& middle, const std::string& text, double height, const Colour& colour,
            bool backing);
  [[nodiscard]] static double text_width(const std::string& text, double height);

  // Ends the page. Throws PerceptionError where cairo failed.
  [[nodiscard]] std::string bytes();

 private:
  void set_colour(const Colour& colour);

  PictureFormat format_;
  std::string bytes_;
  cairo_surface_t* surface_ = nullptr;
  cairo_t* page_ = nullptr;
};
