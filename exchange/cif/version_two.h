// What CIF 2.0 has and CIF 1.1 does not: lists, tables, and texts in triple quotes as values.
// Internal: callers want exchange/cif_reader.h.
#pragma once

#include <optional>
#include <string_view>

#include "exchange/cif/error.h"

// The first such value of a text that begins with the code of CIF 2.0; nothing for every other text. Lines
// end with LF.
[[nodiscard]] std::optional<CifFault> value_of_cif_2(std::string_view text);
