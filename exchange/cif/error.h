// Why a text is not CIF, and where.
// Internal: callers see it as an ImportResult, exchange/import_result.h.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

struct CifFault {
  int line = 0;       // from 1
  int column = 0;     // from 1
  std::string block;  // the name of the data block, empty before the first one
  std::string reason;
  std::string hint;  // a way out; may be empty
  // Where the byte is that no CIF may hold there; the reason is then that.
  std::size_t stray = no_stray_byte;

  static constexpr std::size_t no_stray_byte = static_cast<std::size_t>(-1);
};

class CifError : public std::runtime_error {
 public:
  explicit CifError(CifFault found) : std::runtime_error(found.reason), fault(std::move(found)) {}

  CifFault fault;
};
