// Why a text is not CIF, and where.
#pragma once

#include <exchange/export.h>

#include <stdexcept>
#include <string>
#include <utility>

struct CifFault {
  int line = 0;       // from 1
  int column = 0;     // from 1
  std::string block;  // the name of the data block, empty before the first one
  std::string reason;
  std::string hint;  // a way out; may be empty
};

// The text is not CIF. No entry of it is taken.
class EXCHANGE_EXPORT CifError : public std::runtime_error {
 public:
  explicit CifError(CifFault found) : std::runtime_error(found.reason), fault(std::move(found)) {}

  CifFault fault;
};
