#include "heap.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

std::size_t live = 0;
std::size_t peak_base = 0;
std::size_t peak = 0;
std::size_t asked = 0;
std::size_t first_to_fail = never;
std::size_t last_to_fail = never;

void* allocate(std::size_t size) {
  const std::size_t index = asked++;
  if (index >= first_to_fail && index <= last_to_fail) throw std::bad_alloc();
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  live += malloc_usable_size(memory);
  peak = std::max(peak, live);
  return memory;
}

void release(void* memory) {
  if (memory == nullptr) return;
  live -= malloc_usable_size(memory);
  std::free(memory);
}

}  // namespace

namespace heap {

std::size_t live_bytes() {
  return live;
}

void start_peak() {
  peak_base = peak = live;
}

std::size_t peak_bytes() {
  return peak - peak_base;
}

FailAllocation::FailAllocation(std::size_t index, Failing failing) {
  asked = 0;
  first_to_fail = index;
  last_to_fail = failing == Failing::once ? index : never - 1;
}

FailAllocation::~FailAllocation() {
  first_to_fail = never;
}

bool FailAllocation::happened() const {
  return asked > first_to_fail;
}

}  // namespace heap

// Every form is written out: a sanitizer brings forms of its own for those that are left to the default.
void* operator new(std::size_t size) {
  return allocate(size);
}
void* operator new[](std::size_t size) {
  return allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept {
  return operator new(size, nothrow);
}
void operator delete(void* memory) noexcept {
  release(memory);
}
void operator delete[](void* memory) noexcept {
  release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  release(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  release(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  release(memory);
}
