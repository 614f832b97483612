// A data block as it is written.
// Internal: callers want exchange/cif_writer.h.
//
// Like exchange/cif/document.h, this header is C++17: its source knows the CIF writer.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gemmi::cif {
struct Block;
}

class CifOutput {
 public:
  explicit CifOutput(const std::string& block);
  CifOutput(const CifOutput&) = delete;
  CifOutput& operator=(const CifOutput&) = delete;
  ~CifOutput();

  // The text as it is to be read, quoted as far as it has to be. No control characters except line feeds.
  void pair(std::string_view tag, const std::string& text);
  // A number or '?', never quoted.
  void number(std::string_view tag, const std::string& number);

  // One text a column; empty ones are '?'.
  void loop(const std::vector<std::string_view>& tags, const std::vector<std::vector<std::string>>& rows);

  [[nodiscard]] std::string text() const;

 private:
  std::unique_ptr<gemmi::cif::Block> block_;
};
