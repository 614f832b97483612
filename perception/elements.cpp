#include <perception/elements.h>

#include <cctype>
#include <cmath>
#include <gemmi/elem.hpp>

int atomic_number(const std::string& symbol) {
  if (symbol.empty() || symbol.size() > 2) return 0;
  for (const char letter : symbol)
    if (std::isalpha(static_cast<unsigned char>(letter)) == 0) return 0;
  if (symbol == "T" || symbol == "t") return 1;
  const gemmi::El element = gemmi::find_element(symbol.c_str());
  if (element == gemmi::El::D) return 1;
  const int number = static_cast<int>(element);
  return number >= 1 && number <= 118 ? number : 0;
}

double covalent_radius(int number) {
  if (number < 1 || number > 118) return 0.0;
  // The table's numbers have two decimals; as floats they would not be those numbers.
  return static_cast<double>(std::lround(gemmi::covalent_radius(static_cast<gemmi::El>(number)) * 100.0F)) /
         100.0;
}

double atomic_weight(int number) {
  return number < 1 || number > 118 ? 0.0 : gemmi::molecular_weight(static_cast<gemmi::El>(number));
}

std::string element_symbol(int number) {
  return number < 1 || number > 118 ? "X" : gemmi::element_name(static_cast<gemmi::El>(number));
}

bool is_metal(int number) {
  return number >= 1 && number <= 118 && gemmi::is_metal(static_cast<gemmi::El>(number));
}

int valence_electrons(int number) {
  switch (number) {
    case 1:
      return 1;
    case 5:
      return 3;
    case 6:
    case 14:
    case 32:
      return 4;
    case 7:
    case 15:
    case 33:
      return 5;
    case 8:
    case 16:
    case 34:
    case 52:
      return 6;
    case 9:
    case 17:
    case 35:
    case 53:
      return 7;
    default:
      return 0;
  }
}
