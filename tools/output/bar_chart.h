// A bar chart as SVG: one horizontal bar a row, with its name and number.
//
//   bar_chart("Entries by year", {{"1960", 12}, {"1961", 7}})
//
// The same rows give the same bytes. Texts are escaped; the chart is as high as its rows need.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

using Tally = std::vector<std::pair<std::string, std::uint64_t>>;

[[nodiscard]] std::string bar_chart(const std::string& title, const Tally& rows);
