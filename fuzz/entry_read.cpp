// The bytes as the archive of one entry.
#include <reliability/support/subjects.h>

#include "entry_point.h"

void take(const std::uint8_t* data, std::size_t size) {
  static const Subject entry = entry_subject();
  const std::string problem = problem_with(entry, std::string(reinterpret_cast<const char*>(data), size));
  require(problem.empty(), problem);
}
