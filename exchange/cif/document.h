// A CIF text as blocks of values, before anyone says what they mean.
// Internal: callers want exchange/cif_reader.h.
//
// A file is parsed region by region, so that only a part of it is in memory as values. A region begins where
// a line begins with data_ or global_, and mostly is one block.
//
// Its source is the only one that knows the CIF parser, whose classes hold vectors of themselves: clang++
// refuses them where the standard library's vector is constexpr. So that source is C++17, and this header
// too.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/cif/error.h"

namespace gemmi::cif {
struct Block;
struct Document;
struct Item;
}  // namespace gemmi::cif

struct CifRegion {
  // What a glance at the lines says of it.
  enum Contents { neither_cell_nor_atoms, cell, unclear };

  std::size_t begin = 0;
  std::size_t end = 0;
  int line = 0;  // of its begin, from 1
  Contents contents = neither_cell_nor_atoms;
};

// Together they are the whole text, whose lines end with LF. What precedes the first block belongs to the
// first region.
[[nodiscard]] std::vector<CifRegion> cif_regions(std::string_view text);

// The raw values of a tag in one block, with their quotes.
struct CifColumn {
  const std::string* first = nullptr;
  std::size_t stride = 0;
  std::size_t count = 0;
  int line = 0;                // of the tag, or of its loop
  const void* loop = nullptr;  // the same for the tags of one loop; null outside loops

  explicit operator bool() const { return count != 0; }
  const std::string& operator[](std::size_t row) const { return first[row * stride]; }
};

// One block. It must not outlive its document.
class CifBlock {
 public:
  // Throws CifError for a tag without a value, and for one that occurs twice.
  explicit CifBlock(const gemmi::cif::Block& block);

  // Empty for global_, "#" for a bare data_.
  [[nodiscard]] const std::string& name() const;
  // The line of the first value; 0 for an empty block.
  [[nodiscard]] int first_line() const;
  // By the position of the tag in the table of tags; without values where the block does not have it.
  [[nodiscard]] const CifColumn& column(std::size_t tag) const { return columns_[tag]; }
  // Those that are not in the table and have a value.
  [[nodiscard]] std::vector<std::string> other_tags() const;
  // Those of our own prefix that are not in the table, with their columns.
  struct Own {
    std::string tag;
    CifColumn column;
  };
  [[nodiscard]] const std::vector<Own>& own_tags() const { return own_; }
  [[nodiscard]] bool has_frames() const { return has_frames_; }

 private:
  struct Other {
    const std::string* tag;
    CifColumn column;
  };

  void take(const std::string& tag, const CifColumn& column);

  const gemmi::cif::Block* block_;
  std::vector<CifColumn> columns_;
  std::vector<Other> others_;
  std::vector<Own> own_;
  bool has_frames_ = false;
};

class CifDocument {
 public:
  // The blocks of one region. Throws CifError.
  CifDocument(std::string_view text, const CifRegion& region);
  CifDocument(const CifDocument&) = delete;
  CifDocument& operator=(const CifDocument&) = delete;
  CifDocument(CifDocument&&) noexcept;
  CifDocument& operator=(CifDocument&&) noexcept;
  ~CifDocument();

  [[nodiscard]] const std::vector<CifBlock>& blocks() const { return blocks_; }

 private:
  std::unique_ptr<gemmi::cif::Document> document_;
  std::vector<CifBlock> blocks_;
};
