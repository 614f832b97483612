#include <mathematics/range_limit.h>

#include <ostream>

Archive& operator<<(Archive& archive, RangeLimit::LimitCondition condition) {
  return archive << static_cast<int>(condition);
}

Archive& operator>>(Archive& archive, RangeLimit::LimitCondition& condition) {
  int value = 0;
  archive >> value;
  condition = static_cast<RangeLimit::LimitCondition>(value);
  return archive;
}

std::ostream& operator<<(std::ostream& os, RangeLimit::LimitCondition condition) {
  return os << static_cast<int>(condition);
}
