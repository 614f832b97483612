// One full example of everything that an archive holds: every text filled, every list with elements,
// every number except 0.
#pragma once

#include "layout.h"

[[nodiscard]] Layout identifier_layout();
[[nodiscard]] Layout date_layout();
[[nodiscard]] Layout symmetry_operator_layout();
[[nodiscard]] Layout cell_layout();
[[nodiscard]] Layout crystal_maker_layout();
[[nodiscard]] Layout journal_layout();
[[nodiscard]] Layout publication_layout();
[[nodiscard]] Layout range_layout();
[[nodiscard]] Layout experimental_info_layout();
[[nodiscard]] Layout editors_info_layout();
[[nodiscard]] Layout chemical_classification_layout();
[[nodiscard]] Layout chemical_info_layout();
[[nodiscard]] Layout crystal_info_layout();
[[nodiscard]] Layout connectivity_info_layout();
[[nodiscard]] Layout cross_reference_layout();
[[nodiscard]] Layout cross_reference_info_layout();
[[nodiscard]] Layout deposition_info_layout();
[[nodiscard]] Layout entry_layout();
