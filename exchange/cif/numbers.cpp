#include "exchange/cif/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
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

constexpr std::array powers_of_ten = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                      1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

double power_of_ten(int exponent) {
  const bool is_listed = exponent >= 0 && exponent < static_cast<int>(powers_of_ten.size());
  return is_listed ? powers_of_ten[static_cast<std::size_t>(exponent)] : std::pow(10.0, exponent);
}

// A sign, at most fifteen digits and a point among them: digits and power of ten are exact as doubles, so
// that their quotient is the double nearest to the number.
struct ShortDecimal {
  double value = 0.0;
  int decimals = 0;
};

std::optional<ShortDecimal> short_decimal(std::string_view text) {
  const bool is_negative = !text.empty() && text[0] == '-';
  if (is_negative) text.remove_prefix(1);
  constexpr std::size_t exact_digits = 15;
  const std::size_t point = text.find('.');
  const std::size_t digit_count = text.size() - (point == text.npos ? 0 : 1);
  if (digit_count == 0 || digit_count > exact_digits) return std::nullopt;
  std::int64_t digits = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (i == point) continue;
    if (text[i] < '0' || text[i] > '9') return std::nullopt;
    digits = 10 * digits + (text[i] - '0');
  }
  const int decimals = point == text.npos ? 0 : static_cast<int>(text.size() - point - 1);
  const double value = static_cast<double>(digits) / power_of_ten(decimals);
  return ShortDecimal{is_negative ? -value : value, decimals};
}

}  // namespace

std::optional<UncertainValue> cif_number(std::string_view text) {
  std::string_view number = without_plus(text);
  int uncertainty = 0;
  if (!number.empty() && number.back() == ')') {
    const std::size_t bracket = number.find('(');
    if (bracket == std::string_view::npos) return std::nullopt;
    const std::string_view digits = number.substr(bracket + 1, number.size() - bracket - 2);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), uncertainty);
    if (!all_digits(digits) || error != std::errc()) return std::nullopt;
    number = number.substr(0, bracket);
  }
  // The uncertainty counts in units of the last digit that is written.
  if (const auto decimal = short_decimal(number)) {
    return UncertainValue(decimal->value, uncertainty / power_of_ten(decimal->decimals));
  }
  // from_chars knows "inf" and "nan", CIF does not.
  if (number.empty() || number.find_first_not_of("0123456789+-.eE") != std::string_view::npos) {
    return std::nullopt;
  }
  double value = 0.0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error != std::errc() || end != number.data() + number.size()) return std::nullopt;
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

std::optional<int> cif_integer(std::string_view text) {
  const std::string_view number = without_plus(text);
  int value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error != std::errc() || end != number.data() + number.size()) return std::nullopt;
  return value;
}

double cif_number_margin(std::string_view text) {
  const auto number = cif_number(text);
  if (!number) return 0.0;
  const std::string_view digits = text.substr(0, text.find_first_of("(eE"));
  const std::size_t point = digits.find('.');
  const std::size_t decimals = point == std::string_view::npos ? 0 : digits.size() - point - 1;
  return std::max(number->standard_uncertainty(), 0.5 * std::pow(10.0, -static_cast<double>(decimals)));
}
