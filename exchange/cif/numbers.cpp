#include "exchange/cif/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

namespace {

bool all_digits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string_view without_plus(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

}  // namespace

std::optional<UncertainValue> cif_number(const std::string& text) {
  std::string_view number = without_plus(text);
  int uncertainty = 0;
  if (const std::size_t bracket = number.find('('); bracket != std::string_view::npos) {
    if (number.back() != ')') return std::nullopt;
    const std::string_view digits = number.substr(bracket + 1, number.size() - bracket - 2);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), uncertainty);
    if (!all_digits(digits) || error != std::errc()) return std::nullopt;
    number = number.substr(0, bracket);
  }
  // from_chars knows "inf" and "nan", CIF does not.
  if (number.empty() || number.find_first_not_of("0123456789+-.eE") != std::string_view::npos) {
    return std::nullopt;
  }
  double value = 0.0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error != std::errc() || end != number.data() + number.size()) return std::nullopt;
  // The uncertainty counts in units of the last digit that is written.
  const std::string_view digits = number.substr(0, number.find_first_of("eE"));
  const std::size_t point = digits.find('.');
  const int decimals = point == std::string_view::npos ? 0 : static_cast<int>(digits.size() - point - 1);
  int exponent = 0;
  if (digits.size() < number.size()) {
    const std::string_view power = without_plus(number.substr(digits.size() + 1));
    std::from_chars(power.data(), power.data() + power.size(), exponent);
  }
  return UncertainValue(value, uncertainty / std::pow(10.0, decimals - exponent));
}

std::optional<int> cif_integer(const std::string& text) {
  const std::string_view number = without_plus(text);
  int value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error != std::errc() || end != number.data() + number.size()) return std::nullopt;
  return value;
}

double cif_number_margin(const std::string& text) {
  const auto number = cif_number(text);
  if (!number) return 0.0;
  const std::string digits = text.substr(0, text.find_first_of("(eE"));
  const std::size_t point = digits.find('.');
  const std::size_t decimals = point == std::string::npos ? 0 : digits.size() - point - 1;
  return std::max(number->standard_uncertainty(), 0.5 * std::pow(10.0, -static_cast<double>(decimals)));
}
