#include "exchange/cif/text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

namespace {

// A code, the letters it may stand before, and what comes of each, in the same order.
struct Accent {
  char code;
  std::string_view letters;
  std::string_view composed;
};

constexpr std::array accents = {
    Accent{'\'', "aeiouyAEIOUYcnszlrCNSZLR", "áéíóúýÁÉÍÓÚÝćńśźĺŕĆŃŚŹĹŔ"},
    Accent{'`', "aeiouAEIOU", "àèìòùÀÈÌÒÙ"},
    Accent{'^', "aeiouAEIOUcghjswyCGHJSWY", "âêîôûÂÊÎÔÛĉĝĥĵŝŵŷĈĜĤĴŜŴŶ"},
    Accent{'"', "aeiouyAEIOUY", "äëïöüÿÄËÏÖÜŸ"},
    Accent{'~', "anoiuANOIU", "ãñõĩũÃÑÕĨŨ"},
    Accent{',', "cstCSTkglnrKGLNR", "çşţÇŞŢķģļņŗĶĢĻŅŖ"},
    Accent{';', "aeiuAEIU", "ąęįųĄĘĮŲ"},
    Accent{'>', "ouOU", "őűŐŰ"},
    Accent{'=', "aeiouAEIOU", "āēīōūĀĒĪŌŪ"},
    Accent{'.', "cegzICEGZ", "ċėġżİĊĖĠŻ"},
    Accent{'<', "cdenrstzCDENRSTZ", "čďěňřšťžČĎĚŇŘŠŤŽ"},
    Accent{'(', "aguAGU", "ăğŭĂĞŬ"},
    Accent{'%', "auAU", "åůÅŮ"},
    Accent{'/', "odlODL", "øđłØĐŁ"},
    Accent{'?', "i", "ı"},
    Accent{'&', "s", "ß"},
};

constexpr Accent greek = {'\\', "abcdefghiklmnopqrstuwxyzABCDEFGHIKLMNOPQRSTUWXYZ",
                          "αβχδεφγηικλμνοπθρστυωξψζΑΒΧΔΕΦΓΗΙΚΛΜΝΟΠΘΡΣΤΥΩΞΨΖ"};

// What the letter becomes behind the code; empty when the table does not have it.
std::string_view composed_letter(const Accent& accent, char letter) {
  const std::size_t index = accent.letters.find(letter);
  return index == std::string_view::npos ? std::string_view() : accent.composed.substr(2 * index, 2);
}

// All letters of all tables take two bytes of UTF-8.
constexpr bool tables_are_even() {
  for (const Accent& accent : accents) {
    if (accent.composed.size() != 2 * accent.letters.size()) return false;
  }
  return greek.composed.size() == 2 * greek.letters.size();
}
static_assert(tables_are_even());

struct Decoded {
  std::string_view text;
  std::size_t length = 0;  // of the code and its letter
};

// What the code at the start of `code` (a backslash) stands for; length 0 when it stands for nothing.
Decoded decoded(std::string_view code) {
  if (code.size() >= 3) {
    for (const Accent& accent : accents) {
      if (accent.code != code[1]) continue;
      const std::string_view letter = composed_letter(accent, code[2]);
      if (!letter.empty()) return {letter, 3};
    }
  }
  if (code.size() >= 2) {
    const std::string_view letter = composed_letter(greek, code[1]);
    if (!letter.empty()) return {letter, 2};
  }
  return {};
}

bool is_blank(char c) {
  return static_cast<unsigned char>(c) <= ' ' || c == 0x7F;
}

bool all_digits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string_view without_plus(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

}  // namespace

std::string readable_text(const std::string& text) {
  std::string result;
  std::string_view rest = text;
  while (!rest.empty()) {
    if (is_blank(rest[0])) {
      if (!result.empty() && result.back() != ' ') result += ' ';
      rest.remove_prefix(1);
      continue;
    }
    const Decoded code = rest[0] == '\\' ? decoded(rest) : Decoded();
    if (code.length == 0) {
      result += rest[0];
      rest.remove_prefix(1);
    } else {
      result += code.text;
      rest.remove_prefix(code.length);
    }
  }
  if (!result.empty() && result.back() == ' ') result.pop_back();
  return result;
}

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
