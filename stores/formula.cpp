#include <stores/formula.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <map>
#include <numeric>

namespace {

constexpr auto symbols = [] {
  std::array<std::string_view, 120> all = {
      "H",  "He", "Li", "Be", "B",  "C",  "N",  "O",  "F",  "Ne", "Na", "Mg", "Al", "Si", "P",
      "S",  "Cl", "Ar", "K",  "Ca", "Sc", "Ti", "V",  "Cr", "Mn", "Fe", "Co", "Ni", "Cu", "Zn",
      "Ga", "Ge", "As", "Se", "Br", "Kr", "Rb", "Sr", "Y",  "Zr", "Nb", "Mo", "Tc", "Ru", "Rh",
      "Pd", "Ag", "Cd", "In", "Sn", "Sb", "Te", "I",  "Xe", "Cs", "Ba", "La", "Ce", "Pr", "Nd",
      "Pm", "Sm", "Eu", "Gd", "Tb", "Dy", "Ho", "Er", "Tm", "Yb", "Lu", "Hf", "Ta", "W",  "Re",
      "Os", "Ir", "Pt", "Au", "Hg", "Tl", "Pb", "Bi", "Po", "At", "Rn", "Fr", "Ra", "Ac", "Th",
      "Pa", "U",  "Np", "Pu", "Am", "Cm", "Bk", "Cf", "Es", "Fm", "Md", "No", "Lr", "Rf", "Db",
      "Sg", "Bh", "Hs", "Mt", "Ds", "Rg", "Cn", "Nh", "Fl", "Mc", "Lv", "Ts", "Og", "D",  "T"};
  std::sort(all.begin(), all.end());
  return all;
}();

constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool is_capital(char c) {
  return c >= 'A' && c <= 'Z';
}
constexpr bool is_small(char c) {
  return c >= 'a' && c <= 'z';
}

// A sum that is meant to be a short decimal.
double tidy(double count) {
  return std::round(count * 1e6) / 1e6;
}

class Formula {
 public:
  using Counts = std::map<std::string_view, double>;

  explicit Formula(std::string_view text) : rest_(text) {}

  // The parts of a formula, to its end or to the bracket that closes it.
  bool parts(Counts& counts, char closing, int depth) {
    constexpr int deepest = 50;
    if (depth > deepest) return false;
    for (;;) {
      Counts part;
      blanks();
      const double factor = number_without_charge().value_or(1.0);
      if (!units(part, depth)) return false;
      for (const auto& [symbol, count] : part) counts[symbol] += factor * count;
      if (rest_.empty()) return closing == '\0';
      if (rest_.front() == closing) {
        rest_.remove_prefix(1);
        return true;
      }
      if (!separator()) return false;
    }
  }

 private:
  bool units(Counts& counts, int depth) {
    for (blanks(); !rest_.empty(); blanks()) {
      const char c = rest_.front();
      Counts unit;
      if (is_capital(c)) {
        const std::size_t length = rest_.size() > 1 && is_small(rest_[1]) ? 2 : 1;
        const std::string_view symbol = rest_.substr(0, length);
        const auto known = std::lower_bound(symbols.begin(), symbols.end(), symbol);
        if (known == symbols.end() || *known != symbol) return false;
        rest_.remove_prefix(length);
        unit[*known] = 1.0;
      } else if (c == '(' || c == '[' || c == '{') {
        rest_.remove_prefix(1);
        if (!parts(unit, c == '(' ? ')' : c == '[' ? ']' : '}', depth + 1)) return false;
      } else if (c == '+' || c == '-') {
        rest_.remove_prefix(1);
        continue;
      } else if (const std::size_t charge = charge_length()) {
        rest_.remove_prefix(charge);
        continue;
      } else {
        return true;
      }
      blanks();
      const double times = number_without_charge().value_or(1.0);
      for (const auto& [symbol, count] : unit) counts[symbol] += times * count;
    }
    return true;
  }

  void blanks() {
    while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t' || rest_.front() == '\n')) {
      rest_.remove_prefix(1);
    }
  }

  // Digits, with decimals where the dot is between digits.
  [[nodiscard]] std::size_t number_length() const {
    std::size_t length = 0;
    while (length < rest_.size() && is_digit(rest_[length])) ++length;
    if (length + 1 < rest_.size() && rest_[length] == '.' && is_digit(rest_[length + 1]) && length > 0) {
      ++length;
      while (length < rest_.size() && is_digit(rest_[length])) ++length;
    }
    return length;
  }
  // "2+"
  [[nodiscard]] std::size_t charge_length() const {
    const std::size_t length = number_length();
    return length > 0 && length < rest_.size() && (rest_[length] == '+' || rest_[length] == '-') ? length + 1
                                                                                                 : 0;
  }

  std::optional<double> number_without_charge() {
    const std::size_t length = number_length();
    if (length == 0 || charge_length() > 0) return std::nullopt;
    double value = 0.0;
    const auto end = std::from_chars(rest_.data(), rest_.data() + length, value);
    if (end.ec != std::errc()) return std::nullopt;
    rest_.remove_prefix(length);
    return value;
  }

  bool separator() {
    constexpr std::string_view middle_dot = "\xC2\xB7";
    const bool is_dot = rest_.substr(0, 2) == middle_dot;
    const char c = rest_.front();
    if (!is_dot && c != ',' && c != ';' && c != '.' && c != '*') return false;
    rest_.remove_prefix(is_dot ? 2 : 1);
    return true;
  }

  std::string_view rest_;
};

std::string count_text(double count) {
  if (count == 1.0) return "";
  std::array<char, 32> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), count);
  return {text.data(), end.ptr};
}

}  // namespace

bool is_element(std::string_view symbol) {
  return std::binary_search(symbols.begin(), symbols.end(), symbol);
}

std::optional<std::vector<ElementCount>> parse_formula(std::string_view text) {
  Formula::Counts counts;
  if (!Formula(text).parts(counts, '\0', 0)) return std::nullopt;
  std::vector<ElementCount> elements;
  for (const auto& [symbol, count] : counts) {
    if (!(tidy(count) < 1e12)) return std::nullopt;
    if (tidy(count) > 0.0) elements.push_back({std::string(symbol), tidy(count)});
  }
  if (elements.empty()) return std::nullopt;
  return elements;
}

std::string hill_text(const std::vector<ElementCount>& elements, std::string_view separator) {
  const bool is_organic = std::any_of(elements.begin(), elements.end(),
                                      [](const auto& element) { return element.symbol == "C"; });
  const auto rank = [&](const ElementCount& element) {
    return !is_organic ? 2 : element.symbol == "C" ? 0 : element.symbol == "H" ? 1 : 2;
  };
  std::string text;
  for (int wanted = 0; wanted <= 2; ++wanted) {
    for (const ElementCount& element : elements) {
      if (rank(element) != wanted) continue;
      if (!text.empty()) text += separator;
      text += element.symbol + count_text(element.count);
    }
  }
  return text;
}

std::optional<std::vector<ElementCount>> reduced_elements(const std::vector<ElementCount>& elements) {
  constexpr int largest_factor = 100;
  constexpr double tolerance = 0.005;
  for (int factor = 1; factor <= largest_factor; ++factor) {
    std::vector<ElementCount> whole = elements;
    std::int64_t divisor = 0;
    bool fits = true;
    for (ElementCount& element : whole) {
      const double exact = element.count * factor;
      element.count = std::round(exact);
      fits = fits && element.count >= 1.0 && std::abs(exact - element.count) <= tolerance * factor;
      divisor = std::gcd(divisor, static_cast<std::int64_t>(element.count));
    }
    if (!fits) continue;
    for (ElementCount& element : whole) element.count /= static_cast<double>(divisor);
    return whole;
  }
  return std::nullopt;
}

std::string anonymous_text(const std::vector<ElementCount>& reduced) {
  std::vector<double> counts;
  for (const ElementCount& element : reduced) counts.push_back(element.count);
  std::sort(counts.rbegin(), counts.rend());
  std::string text;
  for (std::size_t index = 0; index < counts.size(); ++index) {
    text += static_cast<char>('A' + index % 26);
    // The 27th letter and those after it get a small letter: Aa, Ba, ... Za, Ab, ...
    if (index >= 26) text += static_cast<char>('a' + index / 26 - 1);
    text += count_text(counts[index]);
  }
  return text;
}
