// How a limit of a range is bounded.
//
// Bytes: an int. Any int that an archive holds is taken and kept. Prints as an integer.
#pragma once

#include <mathematics/export.h>
#include <utilities/archive.h>

#include <cstdint>
#include <iosfwd>

class MATHEMATICS_EXPORT RangeLimit {
 public:
  enum LimitCondition : std::int32_t {
    inclusive = 0,  // the limit belongs to the range
    exclusive = 1,  // it does not
    unbounded = 2,  // there is no limit; its value means nothing
  };
};

MATHEMATICS_EXPORT Archive& operator<<(Archive& archive, RangeLimit::LimitCondition condition);
MATHEMATICS_EXPORT Archive& operator>>(Archive& archive, RangeLimit::LimitCondition& condition);
MATHEMATICS_EXPORT std::ostream& operator<<(std::ostream& os, RangeLimit::LimitCondition condition);
