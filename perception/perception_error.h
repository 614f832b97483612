// Thrown where an entry is such that nothing can be perceived in it; the text says why.
#pragma once

#include <perception/export.h>

#include <stdexcept>

class PERCEPTION_EXPORT PerceptionError : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
  ~PerceptionError() override;
};
