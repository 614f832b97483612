#include "tools/output/bar_chart.h"

#include <fmt/format.h>

#include <algorithm>

namespace {

// In pixels.
constexpr double row_height = 18;
constexpr double heading_height = 34;
constexpr double names_width = 200;
constexpr double bars_width = 480;
constexpr double numbers_width = 80;

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      default:
        result += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
  }
  return result;
}

}  // namespace

std::string bar_chart(const std::string& title, const Tally& rows) {
  std::uint64_t most = 1;
  for (const auto& [name, count] : rows) most = std::max(most, count);
  const double width = names_width + bars_width + numbers_width;
  const double height = heading_height + row_height * static_cast<double>(rows.size()) + 10;
  std::string svg = fmt::format(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0:.0f}\" height=\"{1:.0f}\" viewBox=\"0 0 {0:.0f} "
      "{1:.0f}\" font-family=\"sans-serif\" font-size=\"12\">\n"
      "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n"
      "<text x=\"10\" y=\"22\" font-size=\"15\" font-weight=\"bold\">{2}</text>\n",
      width, height, escaped(title));
  double top = heading_height;
  for (const auto& [name, count] : rows) {
    const double length = bars_width * static_cast<double>(count) / static_cast<double>(most);
    const double base = top + row_height - 5;
    svg += fmt::format(
        "<text x=\"{:.0f}\" y=\"{:.1f}\" text-anchor=\"end\">{}</text>"
        "<rect x=\"{:.0f}\" y=\"{:.1f}\" width=\"{:.1f}\" height=\"{:.1f}\" fill=\"#4c78a8\"/>"
        "<text x=\"{:.1f}\" y=\"{:.1f}\">{}</text>\n",
        names_width - 8, base, escaped(name), names_width, top + 2, length, row_height - 4,
        names_width + length + 6, base, count);
    top += row_height;
  }
  return svg + "</svg>\n";
}
