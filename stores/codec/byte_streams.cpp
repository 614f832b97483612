#include <stdio_ext.h>
#include <stores/codec/byte_streams.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>

namespace {

struct CloseStream {
  void operator()(FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<FILE, CloseStream>;

// The bytes that a stream is fed with.
struct Feed {
  std::string_view rest;
};

ssize_t take(void* cookie, char* into, std::size_t size) {
  std::string_view& rest = static_cast<Feed*>(cookie)->rest;
  const std::size_t count = std::min(size, rest.size());
  std::memcpy(into, rest.data(), count);
  rest.remove_prefix(count);
  return static_cast<ssize_t>(count);
}

}  // namespace

struct ByteStreams::Streams {
  ~Streams() {
    writer.reset();
    std::free(written);
  }

  Feed feed;
  std::array<char, 16384> buffer;
  Stream reader;
  std::optional<Archive> reader_archive;

  char* written = nullptr;
  std::size_t written_size = 0;
  Stream writer;
  std::optional<Archive> writer_archive;
};

ByteStreams::ByteStreams() : streams_(std::make_unique<Streams>()) {
  Streams& s = *streams_;
  s.reader.reset(
      ::fopencookie(&s.feed, "rb", {.read = take, .write = nullptr, .seek = nullptr, .close = nullptr}));
  s.writer.reset(::open_memstream(&s.written, &s.written_size));
  if (s.reader == nullptr || s.writer == nullptr) throw std::bad_alloc();
  std::setvbuf(s.reader.get(), s.buffer.data(), _IOFBF, s.buffer.size());
  s.reader_archive.emplace(s.reader.get());
  s.writer_archive.emplace(s.writer.get());
}

ByteStreams::~ByteStreams() = default;

void ByteStreams::begin_writing() {
  std::clearerr(streams_->writer.get());
  if (std::fseek(streams_->writer.get(), 0, SEEK_SET) != 0) throw std::bad_alloc();
}
Archive& ByteStreams::writer_archive() {
  return *streams_->writer_archive;
}
std::string ByteStreams::end_writing() {
  streams_->writer_archive->flush();
  return {streams_->written, streams_->written_size};
}

void ByteStreams::begin_reading(std::string_view bytes) {
  __fpurge(streams_->reader.get());
  std::clearerr(streams_->reader.get());
  streams_->feed.rest = bytes;
}
Archive& ByteStreams::reader_archive() {
  return *streams_->reader_archive;
}
void ByteStreams::end_reading() {
  FILE* const stream = streams_->reader.get();
  // A text whose bytes are missing is no error of the archive: it becomes the bytes that came.
  if (std::feof(stream) != 0) throw ArchiveError("the last text is cut short");
  if (std::fgetc(stream) != EOF) throw ArchiveError("bytes are left after its end");
}
