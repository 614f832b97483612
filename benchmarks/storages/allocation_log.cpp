#include "storages/allocation_log.h"

#include <array>
#include <cstdlib>
#include <new>
#include <stdexcept>

namespace {

constexpr std::size_t most_blocks = 1 << 16;
std::array<std::size_t, most_blocks> recorded;
std::size_t recorded_count = 0;
bool recording = false;

}  // namespace

// As the standard library's own, with one test in front.
void* operator new(std::size_t size) {
  if (recording && recorded_count < most_blocks) recorded[recorded_count++] = size;
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}

AllocationLog::AllocationLog() {
  recorded_count = 0;
  recording = true;
}

AllocationLog::~AllocationLog() {
  recording = false;
}

std::vector<std::size_t> AllocationLog::sizes() const {
  recording = false;
  if (recorded_count == most_blocks)
    throw std::length_error("an entry took more blocks than can be recorded");
  return {recorded.begin(), recorded.begin() + static_cast<std::ptrdiff_t>(recorded_count)};
}
