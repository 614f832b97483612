#include <cairo/cairo-pdf.h>
#include <cairo/cairo-svg.h>
#include <cairo/cairo.h>
#include <perception/canvas.h>
#include <perception/perception_error.h>
#include <perception/stroke_letters.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

cairo_status_t append(void* bytes, const unsigned char* data, unsigned int length) noexcept {
  try {
    static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
  } catch (...) {
    return CAIRO_STATUS_NO_MEMORY;
  }
}

// cairo numbers its surfaces as the program makes them; the picture is the same each time, and so is its
// text.
void drop_surface_number(std::string& svg) {
  constexpr std::string_view mark = "id=\"surface";
  for (std::size_t at = svg.find(mark); at != std::string::npos; at = svg.find(mark, at + 1)) {
    const std::size_t digits = at + mark.size();
    const std::size_t end = svg.find('"', digits);
    if (end != std::string::npos) svg.erase(digits, end - digits);
  }
}

struct ElementColour {
  int number;
  unsigned int rgb;
};

constexpr ElementColour colours[] = {
    {1, 0xf4f4f4},  {3, 0xb070e8},  {4, 0xb8e060},  {5, 0xf0a8a0},  {6, 0x808080},  {7, 0x3050e8},
    {8, 0xe02020},  {9, 0x80d850},  {11, 0x9858e0}, {12, 0x70c820}, {13, 0xb8a0a0}, {14, 0xe8c090},
    {15, 0xf08010}, {16, 0xe8d820}, {17, 0x30c830}, {19, 0x8040c8}, {20, 0x40b820}, {22, 0xb0b4b8},
    {24, 0x8090c0}, {25, 0x9870c0}, {26, 0xd86830}, {27, 0xe088a0}, {28, 0x50c850}, {29, 0xc87830},
    {30, 0x7878a8}, {33, 0xb878d8}, {34, 0xf0a000}, {35, 0xa02828}, {38, 0x28c818}, {46, 0x306880},
    {47, 0xb4b4b8}, {48, 0xe8c880}, {50, 0x608080}, {51, 0x9860b0}, {52, 0xc87808}, {53, 0x8c10a0},
    {55, 0x602090}, {56, 0x20b010}, {74, 0x3090c8}, {78, 0xc4c4d0}, {79, 0xf0c820}, {80, 0xb0b0c0},
    {82, 0x585c60}, {83, 0x9850a8}, {92, 0x2088f0},
};

}  // namespace

Colour mixed(const Colour& first, const Colour& second, double share) {
  return {first.red + share * (second.red - first.red), first.green + share * (second.green - first.green),
          first.blue + share * (second.blue - first.blue)};
}

Colour element_colour(int atomic_number) {
  unsigned int rgb = 0xd070a0;  // what has no colour of its own
  for (const ElementColour& colour : colours)
    if (colour.number == atomic_number) rgb = colour.rgb;
  return {((rgb >> 16) & 0xff) / 255.0, ((rgb >> 8) & 0xff) / 255.0, (rgb & 0xff) / 255.0};
}

Canvas::Canvas(PictureFormat format, int width, int height) : format_(format) {
  if (width < 16 || width > 20000 || height < 16 || height > 20000)
    throw PerceptionError("A picture is from 16 to 20,000 wide and high, not " + std::to_string(width) +
                          " x " + std::to_string(height));
  switch (format) {
    case PictureFormat::svg:
      surface_ = cairo_svg_surface_create_for_stream(append, &bytes_, width, height);
      break;
    case PictureFormat::pdf:
      surface_ = cairo_pdf_surface_create_for_stream(append, &bytes_, width, height);
      // A fixed date instead of the present one.
      cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_CREATE_DATE, "2000-01-01T00:00:00Z");
      break;
    case PictureFormat::png:
      surface_ = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
      break;
  }
  page_ = cairo_create(surface_);
  cairo_set_line_cap(page_, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(page_, CAIRO_LINE_JOIN_ROUND);
  set_colour({1.0, 1.0, 1.0});
  cairo_paint(page_);
}

Canvas::~Canvas() {
  cairo_destroy(page_);
  cairo_surface_finish(surface_);
  cairo_surface_destroy(surface_);
}

void Canvas::set_colour(const Colour& colour) {
  cairo_set_source_rgb(page_, colour.red, colour.green, colour.blue);
}

void Canvas::line(const PagePoint& from, const PagePoint& to, double width, const Colour& colour,
                  double dash) {
  set_colour(colour);
  cairo_set_line_width(page_, width);
  if (dash > 0.0) cairo_set_dash(page_, &dash, 1, 0.0);
  cairo_move_to(page_, from.x, from.y);
  cairo_line_to(page_, to.x, to.y);
  cairo_stroke(page_);
  cairo_set_dash(page_, nullptr, 0, 0.0);
}

void Canvas::disc(const PagePoint& centre, double radius, const Colour& fill, const Colour& edge,
                  double edge_width) {
  cairo_new_path(page_);
  cairo_arc(page_, centre.x, centre.y, radius, 0.0, 2.0 * std::numbers::pi);
  set_colour(fill);
  if (edge_width <= 0.0) {
    cairo_fill(page_);
    return;
  }
  cairo_fill_preserve(page_);
  set_colour(edge);
  cairo_set_line_width(page_, edge_width);
  cairo_stroke(page_);
}

double Canvas::text_width(const std::string& text, double height) {
  const double unit = height / stroke_height;
  return text.empty() ? 0.0
                      : (static_cast<double>(text.size()) * stroke_advance - (stroke_advance - 4.0)) * unit;
}

void Canvas::text(const PagePoint& middle, const std::string& text, double height, const Colour& colour,
                  bool backing) {
  const double unit = height / stroke_height;
  const double width = text_width(text, height);
  if (backing) {
    set_colour({1.0, 1.0, 1.0});
    cairo_rectangle(page_, middle.x - width / 2 - 2.5 * unit, middle.y - height / 2 - 2.0 * unit,
                    width + 5.0 * unit, height + 4.0 * unit);
    cairo_fill(page_);
  }
  set_colour(colour);
  cairo_set_line_width(page_, std::max(0.8 * unit, 0.4));
  double left = middle.x - width / 2;
  for (const char character : text) {
    for (const std::vector<StrokePoint>& stroke : strokes_of(character)) {
      bool first = true;
      for (const StrokePoint& point : stroke) {
        const double x = left + point.x * unit;
        const double y = middle.y + height / 2 - point.y * unit;
        first ? cairo_move_to(page_, x, y) : cairo_line_to(page_, x, y);
        first = false;
      }
    }
    left += stroke_advance * unit;
  }
  cairo_stroke(page_);
}

std::string Canvas::bytes() {
  if (format_ == PictureFormat::png) cairo_surface_write_to_png_stream(surface_, append, &bytes_);
  const cairo_status_t drawn = cairo_status(page_);
  cairo_surface_finish(surface_);
  const cairo_status_t written = cairo_surface_status(surface_);
  for (const cairo_status_t status : {drawn, written})
    if (status != CAIRO_STATUS_SUCCESS)
      throw PerceptionError(std::string("The picture cannot be drawn: ") + cairo_status_to_string(status));
  if (format_ == PictureFormat::svg) drop_surface_number(bytes_);
  return std::move(bytes_);
}
