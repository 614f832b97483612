// A CIF text as blocks of values, before anyone says what they mean.
// Internal: callers want exchange/cif_reader.h.
//
// A file is parsed region by region, so that only a part of it is in memory as values. A region begins where
// a line begins with data_ or global_, and mostly is one block.
//
// Its source is the only one that knows the CIF parser, whose headers clang++ refuses as C++20: they hold
// vectors of classes that are not complete. So that source is C++17, and this header too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/cif/error.h"

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

// The raw values of a tag in one block, with their quotes; they are views of the text.
struct CifColumn {
  const std::string_view* first = nullptr;
  std::size_t stride = 0;
  std::size_t count = 0;
  int line = 0;   // of the tag, or of its loop
  int loop = -1;  // the same for the tags of one loop; -1 outside loops

  explicit operator bool() const { return count != 0; }
  std::string_view operator[](std::size_t row) const { return first[row * stride]; }

  // Whether any is not '?' or '.'.
  [[nodiscard]] bool has_value() const;
};

// A tag that is not in the table of tags.
struct CifOtherTag {
  std::string_view tag;
  CifColumn column;
};

class CifBlock {
 public:
  // "" for global_ and for a bare data_.
  [[nodiscard]] std::string name() const { return std::string(name_); }
  // The line of the first value; 0 for an empty block.
  [[nodiscard]] int first_line() const { return first_line_; }
  // By the position of the tag in the table of tags; without values where the block does not have it.
  [[nodiscard]] const CifColumn& column(std::size_t tag) const { return columns_[tag]; }
  [[nodiscard]] const std::vector<CifOtherTag>& other_tags() const { return others_; }
  [[nodiscard]] bool has_frames() const { return has_frames_; }

 private:
  friend class CifDocument;

  std::string_view name_;
  int first_line_ = 0;
  bool has_frames_ = false;
  std::vector<CifColumn> columns_;
  std::vector<CifOtherTag> others_;
};

// The blocks of one region of a text, which must stay.
class CifDocument {
 public:
  CifDocument() = default;
  CifDocument(const CifDocument&) = delete;
  CifDocument& operator=(const CifDocument&) = delete;

  // Throws CifError for what is no CIF, a tag without a value, and one that occurs twice in a block. What was
  // read before is forgotten.
  void read(std::string_view text, const CifRegion& region);

  [[nodiscard]] const std::vector<CifBlock>& blocks() const { return blocks_; }

  // A tag with its value, a loop, or the begin of a block, in the order of the text.
  struct Item {
    enum Kind : std::int8_t { pair, loop, block, frame };

    Kind kind = pair;
    int line = 0;
    std::size_t first_word = 0;  // the tag or tags, then the values; the name of a block
    std::size_t tag_count = 0;
  };
  struct Words {
    std::vector<std::string_view> words;
    std::vector<Item> items;
    bool in_frame = false;
  };

 private:
  void make_block(std::size_t begin, std::size_t end);

  Words words_;
  std::vector<CifBlock> blocks_;
};
