// One way of storing entries, as the benchmark drives them all.
//
// A storage is made from the archive bytes of some entries, builds its own objects from them once, outside of
// the timed part, and then writes or reads all of them in one pass, in order. Reading makes new objects and
// destroys them at once.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Stored entries: the bytes of each, back to back.
struct StoredEntries {
  std::string bytes;
  std::vector<std::size_t> ends;  // after the last byte of each entry

  [[nodiscard]] std::size_t size() const { return ends.size(); }
  [[nodiscard]] std::string_view entry(std::size_t index) const {
    const std::size_t begin = index == 0 ? 0 : ends[index - 1];
    return std::string_view(bytes).substr(begin, ends[index] - begin);
  }
};

class Storage {
 public:
  virtual ~Storage() = default;

  // From the current position of a file on.
  virtual void write_file(FILE* file) = 0;
  virtual void read_file(FILE* file) = 0;
  // In memory of the storage's own choice.
  virtual void write_memory() = 0;
  virtual void read_memory() = 0;
};

// A file that lives in memory, with the buffer that every new stream has.
FILE* file_in_memory();

using MakeStorage = std::unique_ptr<Storage> (*)(const StoredEntries& entries);
