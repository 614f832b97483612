// steady_cross_references COUNT [RATIO]: one set of COUNT / 2 cross-references, then one of COUNT: made,
// written and read back. The second takes twice the memory; with RATIO, at most that many times the processor
// time, which is little more than 2: the search tree is deeper by one.
#include <database_entry/database_entry.h>
#include <reliability/support/heap.h>
#include <reliability/support/memory_stream.h>

#include <cstdlib>
#include <ctime>
#include <iostream>

namespace {

constexpr double most_memory_ratio = 2.01;

struct Cost {
  double seconds;
  double bytes;
};

Cost cost_of(long count) {
  const std::clock_t start = std::clock();
  const std::size_t live = heap::live_bytes();
  CrossReferenceInfo info;
  for (long index = 0; index < count; ++index) {
    info.insert(DatabaseCrossReference(DatabaseCrossReference::isomer, "Isomer " + std::to_string(index)));
  }
  const double bytes = static_cast<double>(heap::live_bytes() - live);
  CrossReferenceInfo back;
  read_stream(back, archived(info));
  if (back.size() != static_cast<std::size_t>(count) || !(back == info)) std::exit(1);
  return {static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, bytes};
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return 2;
  const long references = std::atol(arguments[1]);
  const Cost half = cost_of(references / 2);
  const Cost whole = cost_of(references);
  std::cout << references << " cross-references: " << whole.seconds << " s, "
            << whole.bytes / static_cast<double>(references) << " bytes each; half as many: " << half.seconds
            << " s\n";
  if (whole.bytes > most_memory_ratio * half.bytes) return 1;
  return count > 2 && whole.seconds > std::atof(arguments[2]) * half.seconds ? 1 : 0;
}
