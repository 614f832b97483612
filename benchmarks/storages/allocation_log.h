// Which blocks the program takes from the free store.
#pragma once

#include <cstddef>
#include <vector>

// While one lives, the size of every block that operator new gives out is recorded. One at a time.
class AllocationLog {
 public:
  AllocationLog();
  AllocationLog(const AllocationLog&) = delete;
  AllocationLog& operator=(const AllocationLog&) = delete;
  ~AllocationLog();

  [[nodiscard]] std::vector<std::size_t> sizes() const;
};
