// The values of a block and of the blocks of its file that it shares.
// Internal: callers want exchange/cif_reader.h.
#pragma once

#include <exchange/import_result.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/cif/document.h"
#include "exchange/cif/tags.h"

struct CifText {
  std::string text;
  int line = 0;
};

// A block that has neither cell nor atoms.
struct SharedBlock {
  const CifBlock* block = nullptr;
  bool is_used = false;
};

class CifValues {
 public:
  // The shared blocks in the order in which they are asked.
  CifValues(const CifBlock& own, std::vector<SharedBlock*> shared, std::vector<ImportWarning>& warnings);

  // The first value there is, tag by tag, of the block itself, else of the shared ones.
  [[nodiscard]] std::optional<CifText> first(CifTagRange tags) const;
  // All values of the first tag that has any.
  [[nodiscard]] std::vector<CifText> all(CifTagRange tags) const;
  // Of the block itself alone.
  [[nodiscard]] std::optional<CifText> own_first(CifTagRange tags) const;

  // The raw values of a tag that has any value, and of others of the same loop; without rows where it has
  // none, or is not of that loop.
  [[nodiscard]] CifColumn column(CifTag tag) const;
  [[nodiscard]] CifColumn column_beside(const CifColumn& column, CifTag tag) const;

  // As text for people, and as it is on one line.
  [[nodiscard]] std::string readable(std::string_view raw, int line) const;
  [[nodiscard]] std::string plain(std::string_view raw, int line) const;

  [[nodiscard]] const CifBlock& own() const { return own_; }

 private:
  template <class Found>
  [[nodiscard]] std::vector<CifText> shared_values(CifTagRange tags, const Found& found) const;

  const CifBlock& own_;
  std::vector<SharedBlock*> shared_;
  std::vector<ImportWarning>& warnings_;
};
