// A CIF text as blocks of values, before anyone says what they mean.
// Internal: callers want exchange/cif_import.h.
//
// Its source is the only one that knows the CIF reader, whose classes hold vectors of themselves: clang++
// refuses them where the standard library's vector is constexpr. So that source is C++17, and this header
// too.
#pragma once

#include <exchange/cif_error.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace gemmi::cif {
struct Block;
struct Document;
}  // namespace gemmi::cif

// The text of a value as it stands in the file: without its quotes, empty for '?' and '.'.
[[nodiscard]] std::string cif_string(const std::string& raw);

struct CifValue {
  std::string raw;  // with its quotes
  int line = 0;     // of the tag, or of the loop
};

struct CifTable {
  int line = 0;                                // of the loop; 0 where each tag has one value
  std::vector<std::vector<std::string>> rows;  // raw values; empty for a column that lacks
};

// One block of a document, which it must not outlive.
class CifBlock {
 public:
  explicit CifBlock(gemmi::cif::Block& block) : block_(&block) {}

  // Empty for global_.
  [[nodiscard]] const std::string& name() const;
  // The line of the first value; 0 for an empty block.
  [[nodiscard]] int first_line() const;
  // Whether there is a value other than '?' and '.'.
  [[nodiscard]] bool has_any_value(const char* tag) const;
  // In the order of the file.
  [[nodiscard]] std::vector<CifValue> values(const char* tag) const;
  // The columns by their tags behind the prefix, of which those that begin with '?' may lack. None when
  // another lacks.
  [[nodiscard]] std::optional<CifTable> table(const char* prefix,
                                              const std::vector<std::string>& columns) const;

 private:
  gemmi::cif::Block* block_;
};

class CifDocument {
 public:
  // Line ends may be LF, CRLF or CR. Throws CifError.
  explicit CifDocument(const std::string& text);
  CifDocument(const CifDocument&) = delete;
  CifDocument& operator=(const CifDocument&) = delete;
  ~CifDocument();

  [[nodiscard]] const std::vector<CifBlock>& blocks() const { return blocks_; }

 private:
  std::unique_ptr<gemmi::cif::Document> document_;
  std::vector<CifBlock> blocks_;
};
