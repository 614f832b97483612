// Records whose fields nobody may set, made again from the values that they had.
// Internal: callers want exchange/entry_json.h.
//
//   Journal journal(1);
//   rebuild(journal, name, coden, international_coden);    // as if these had been archived
#pragma once

#include <database_entry/foundations/archive_encodings.h>
#include <utilities/archive.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

// Bytes in memory as a stream, first to be written and then to be read.
class MemoryStream {
 public:
  MemoryStream() : stream_(::open_memstream(&bytes_, &size_)) {
    if (stream_ == nullptr) throw std::bad_alloc();
  }
  MemoryStream(const MemoryStream&) = delete;
  MemoryStream& operator=(const MemoryStream&) = delete;
  ~MemoryStream() {
    if (stream_ != nullptr) std::fclose(stream_);
    std::free(bytes_);
  }

  [[nodiscard]] FILE* stream() const { return stream_; }

  // Once, after the last byte was written. Closing is what settles where the bytes are.
  void turn_to_reading() {
    std::fclose(std::exchange(stream_, nullptr));
    stream_ = ::fmemopen(bytes_, size_, "rb");
    if (stream_ == nullptr) throw std::bad_alloc();
  }

 private:
  char* bytes_ = nullptr;
  std::size_t size_ = 0;
  FILE* stream_;
};

// What `write` archives is read by the record. Throws what reading throws.
template <class Record, class Write>
void rebuild_from(Record& record, const Write& write) {
  MemoryStream memory;
  Archive writing(memory.stream());
  write(writing);
  writing.flush();
  memory.turn_to_reading();
  Archive reading(memory.stream());
  record.read(reading);
}

template <class Record, class... Values>
void rebuild(Record& record, const Values&... values) {
  rebuild_from(record, [&](Archive& archive) { (archive << ... << values); });
}
