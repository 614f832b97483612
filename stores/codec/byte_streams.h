// Archives over bytes in memory, without a new stream for each.
// Internal: for the stores, each of which keeps one.
//
//   ByteStreams streams;
//   const std::string bytes = streams.written([&](Archive& archive) { publication->write(archive); });
//   streams.read(bytes, [&](Archive& archive) { publication->read(archive); });
//
// A stream takes longer to make than most components take to read. Threads: one at a time.
#pragma once

#include <utilities/archive.h>

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

class ByteStreams {
 public:
  ByteStreams();
  ByteStreams(const ByteStreams&) = delete;
  ByteStreams& operator=(const ByteStreams&) = delete;
  ~ByteStreams();

  // What `write` writes. Throws what it throws.
  template <class Write>
  [[nodiscard]] std::string written(const Write& write) {
    begin_writing();
    write(writer_archive());
    return end_writing();
  }

  // Lets `read` take the bytes. Throws what it throws, and ArchiveError where it leaves bytes or wants more
  // than there are, also in the middle of a text.
  template <class Read>
  void read(std::string_view bytes, const Read& read) {
    begin_reading(bytes);
    read(reader_archive());
    end_reading();
  }

 private:
  struct Streams;

  void begin_writing();
  Archive& writer_archive();
  std::string end_writing();
  void begin_reading(std::string_view bytes);
  Archive& reader_archive();
  void end_reading();

  std::unique_ptr<Streams> streams_;
};
