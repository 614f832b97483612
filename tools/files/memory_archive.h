// Archives in memory: the bytes of anything that writes itself, and the other way round.
//
//   const std::string bytes = archived([&](Archive& archive) { entry.write(archive); });
//   from_archive(bytes, [&](Archive& archive) { journal.read(archive); });
#pragma once

#include <utilities/archive.h>

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

// Throws what `write` throws, and std::bad_alloc.
[[nodiscard]] std::string archived(const std::function<void(Archive&)>& write);

// `bytes` must not be empty.
void from_archive(const std::string& bytes, const std::function<void(Archive&)>& read);

// The same for one after another, in memory that is used again.
class MemoryArchive {
 public:
  MemoryArchive();
  ~MemoryArchive();
  MemoryArchive(const MemoryArchive&) = delete;
  MemoryArchive& operator=(const MemoryArchive&) = delete;

  // The bytes stay until the next call.
  template <class Record>
  [[nodiscard]] std::string_view bytes_of(const Record& record) {
    std::rewind(stream_);
    Archive archive(stream_);
    record.write(archive);
    archive.flush();
    return {bytes_, size_};
  }

 private:
  char* bytes_ = nullptr;
  std::size_t size_ = 0;
  FILE* stream_;
};
