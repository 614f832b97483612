// Which CIF tags are read and written, and what they tell of.
#pragma once

#include <exchange/export.h>

#include <string_view>
#include <vector>

struct CifTagRow {
  std::string_view tag;    // with underscores; a dot in place of the first inner one is read as well
  std::string_view field;  // "publication.volume"; a name without a dot where several tags make one field
};

// In the order in which the tags of a field are preferred.
[[nodiscard]] EXCHANGE_EXPORT std::vector<CifTagRow> cif_tags();
