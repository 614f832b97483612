// steady_entries COUNT [RATIO]: writes, reads and drops COUNT full entries. The free store holds the same at
// the end of each tenth; with RATIO, no tenth takes more than that many times the processor time of the
// quickest.
#include <reliability/support/heap.h>
#include <reliability/support/subjects.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <iostream>

namespace {

double seconds_for(const Subject& entry, long count) {
  const std::clock_t start = std::clock();
  const auto original = entry.make();
  read_stream(*original, entry.layout.bytes());
  for (long index = 0; index < count; ++index) {
    const auto back = entry.make();
    read_stream(*back, archived(*original));
  }
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return 2;
  const long entries = std::atol(arguments[1]);
  const Subject entry = entry_subject();
  seconds_for(entry, 1);  // what is made once and kept
  const std::size_t live = heap::live_bytes();
  double quickest = 1e9;
  double slowest = 0;
  for (int tenth = 0; tenth < 10; ++tenth) {
    const double seconds = seconds_for(entry, entries / 10);
    quickest = std::min(quickest, seconds);
    slowest = std::max(slowest, seconds);
    if (heap::live_bytes() != live) {
      std::cerr << "the free store grew by " << heap::live_bytes() - live << " bytes\n";
      return 1;
    }
  }
  std::cout << entries << " entries, " << live << " bytes live throughout, slowest tenth " << slowest
            << " s, quickest " << quickest << " s\n";
  return count > 2 && slowest > std::atof(arguments[2]) * quickest ? 1 : 0;
}
