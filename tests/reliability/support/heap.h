// The free store under observation: what lives, how high it rose, and which allocation shall fail.
//
// A test program that links heap.cpp has its operator new and delete replaced, in the library it tests too.
// Bytes are those the C library really set aside. For one thread.
#pragma once

#include <cstddef>

namespace heap {

[[nodiscard]] std::size_t live_bytes();

// The most bytes that lived at once since the last start_peak(), above those that lived then.
void start_peak();
[[nodiscard]] std::size_t peak_bytes();

enum class Failing { once, from_then_on };

// While it lives, the allocation number `index` (the first is 0) throws std::bad_alloc; with from_then_on
// also every later one.
class FailAllocation {
 public:
  FailAllocation(std::size_t index, Failing failing);
  ~FailAllocation();
  FailAllocation(const FailAllocation&) = delete;
  FailAllocation& operator=(const FailAllocation&) = delete;

  // False when fewer allocations were asked for: then nothing failed.
  [[nodiscard]] bool happened() const;
};

}  // namespace heap
