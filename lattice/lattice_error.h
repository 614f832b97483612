// Thrown where a cell, a list of operators or an atom gives no lattice or no crystal; the text names what
// was wrong with which number.
#pragma once

#include <lattice/export.h>

#include <stdexcept>

class LATTICE_EXPORT LatticeError : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
  ~LatticeError() override;
};
