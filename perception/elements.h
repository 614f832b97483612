// What is known of the elements, from gemmi's tables and the groups of the periodic table.
// Internal: callers want perception/bonds.h.
#pragma once

#include <string>

// The atomic number; 1 for D and T too, 0 for a symbol that is no element's ("X", "Wat", ""). Either case is
// taken.
[[nodiscard]] int atomic_number(const std::string& symbol);

// In ångström (Cordero and others, Dalton Trans. 2832, 2008); 0.0 for number 0.
[[nodiscard]] double covalent_radius(int number);

// 1.0079 for hydrogen; 0.0 for number 0.
[[nodiscard]] double atomic_weight(int number);

// Of number 1 to 118; "X" for 0.
[[nodiscard]] std::string element_symbol(int number);

[[nodiscard]] bool is_metal(int number);

// Electrons of the outer shell of a main-group element that makes covalent bonds (H, B to F and what is below
// them, noble gases not); 0 for others.
[[nodiscard]] int valence_electrons(int number);
