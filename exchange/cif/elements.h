// Chemical elements as type symbols, labels of atoms and formulas name them.
// Internal: callers want exchange/cif_reader.h.
#pragma once

#include <set>
#include <string>

[[nodiscard]] bool is_element(const std::string& symbol);

// The letters at the start, the first in upper case and the others in lower case.
[[nodiscard]] std::string leading_symbol(const std::string& text, std::size_t longest);

// The symbols in a formula such as "Mg2 Al2 Si O9 H4" or "(K.88 Na.06)".
[[nodiscard]] std::set<std::string> formula_elements(const std::string& formula);

// "Fe3+" and "O-2" are iron and oxygen; "pb" is lead. Without a known type symbol the label tells: it begins
// with its element, but "Os1" may be the first oxygen of a silicate group and "CA1" calcium, so that an
// element of the formula is preferred. Empty when no reading is an element.
[[nodiscard]] std::string element_of_atom(const std::string& type_symbol, const std::string& label,
                                          const std::set<std::string>& in_formula);
