// Chemical formulae: reading them, and the forms in which they are compared.
//
//   const auto elements = parse_formula("C12 H10 O2, 2(H2 O)");    // C 12, H 14, O 4
//   hill_text(*elements, " ");                                     // "C12 H14 O4"
//
// A formula is symbols with counts, brackets with counts, and parts with a factor before them, separated by
// commas, semicolons, dots and asterisks; charges are left out.
#pragma once

#include <stores/entry_columns.h>
#include <stores/export.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Each element once, in the order of the symbols; nothing for a text that is no formula.
[[nodiscard]] STORES_EXPORT std::optional<std::vector<ElementCount>> parse_formula(std::string_view text);

// Whether it is the symbol of a chemical element, as it is written; D and T, the heavy kinds of hydrogen,
// are.
[[nodiscard]] STORES_EXPORT bool is_element(std::string_view symbol);

// Carbon and hydrogen first where there is carbon, the others by symbol; counts of 1 left out. (E. A. Hill,
// J. Am. Chem. Soc. 22, 478, 1900.)
[[nodiscard]] STORES_EXPORT std::string hill_text(const std::vector<ElementCount>& elements,
                                                  std::string_view separator);

// The counts as integers without a common divisor, each within half a hundredth of the count, by the smallest
// factor up to a hundred that does it; nothing where even then an element would count less than one.
[[nodiscard]] STORES_EXPORT std::optional<std::vector<ElementCount>> reduced_elements(
    const std::vector<ElementCount>& elements);

// "A2B": the reduced counts from the largest down, under letters instead of symbols.
[[nodiscard]] STORES_EXPORT std::string anonymous_text(const std::vector<ElementCount>& reduced);
