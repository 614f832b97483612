// The first byte chooses a record, the others are its archive.
#include <reliability/support/subjects.h>

#include "byte_source.h"
#include "entry_point.h"

void take(const std::uint8_t* data, std::size_t size) {
  static const std::vector<Subject> all = subjects();
  ByteSource source(data, size);
  const Subject& subject = all[source.byte() % all.size()];
  const std::string problem = problem_with(subject, source.rest());
  require(problem.empty(), subject.name + (": " + problem));
}
