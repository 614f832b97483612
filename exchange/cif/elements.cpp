#include "exchange/cif/elements.h"

#include <algorithm>
#include <cctype>
#include <gemmi/elem.hpp>
#include <vector>

#include "exchange/cif/letters.h"

bool is_element(const std::string& symbol) {
  return gemmi::Element(symbol.c_str()) != gemmi::El::X && symbol != "X";
}

// The letters at the start, the first in upper case and the others in lower case.
std::string leading_symbol(const std::string& text, std::size_t longest) {
  std::string symbol;
  while (symbol.size() < std::min(longest, text.size()) && is_letter(text[symbol.size()])) {
    const auto c = static_cast<unsigned char>(text[symbol.size()]);
    symbol += static_cast<char>(symbol.empty() ? std::toupper(c) : std::tolower(c));
  }
  return symbol;
}

// The symbols in a formula such as "Mg2 Al2 Si O9 H4" or "(K.88 Na.06)".
std::set<std::string> formula_elements(const std::string& formula) {
  std::set<std::string> elements;
  for (std::size_t i = 0; i < formula.size(); ++i) {
    if (std::isupper(static_cast<unsigned char>(formula[i])) == 0) continue;
    std::string symbol(1, formula[i]);
    if (i + 1 < formula.size() && std::islower(static_cast<unsigned char>(formula[i + 1])) != 0) {
      symbol += formula[i + 1];
    }
    elements.insert(symbol);
  }
  return elements;
}

namespace {

std::string element_of_label(const std::string& label, const std::set<std::string>& in_formula) {
  const std::string two = leading_symbol(label, 2);
  const std::string one = leading_symbol(label, 1);
  // The way mineral files write a water molecule by its oxygen atom: "Wat1".
  if (lower_case(label.substr(0, 3)) == "wat" && in_formula.count("W") == 0) return "O";
  const bool as_written = label.compare(0, two.size(), two) == 0;
  std::vector<std::string> readings = {two, one};
  if (!as_written) std::reverse(readings.begin(), readings.end());
  for (const std::string& reading : readings) {
    if (is_element(reading) && in_formula.count(reading) != 0) return reading;
  }
  for (const std::string& reading : readings) {
    if (is_element(reading)) return reading;
  }
  return "";
}

}  // namespace

std::string element_of_atom(const std::string& type_symbol, const std::string& label,
                            const std::set<std::string>& in_formula) {
  const std::string symbol = leading_symbol(type_symbol, type_symbol.size());
  return is_element(symbol) ? symbol : element_of_label(label, in_formula);
}
