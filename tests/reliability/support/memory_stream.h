// C streams over bytes in memory. What they cost the free store is the C library's and not counted.
#pragma once

#include <support/bytes.h>

#include <cstdlib>
#include <string>

#ifdef _WIN32  // has no streams over memory: files instead

[[nodiscard]] inline File stream_of(const std::string& contents) {
  return file_with(contents);
}

class MemorySink {
 public:
  [[nodiscard]] FILE* stream() const { return file_.get(); }
  [[nodiscard]] std::string contents() const {
    std::fflush(file_.get());
    return contents_of(file_.get());
  }

 private:
  File file_ = file_with("");
};

#else

// A stream that gives `contents`, which must outlive it.
[[nodiscard]] inline File stream_of(const std::string& contents) {
  return File(fmemopen(const_cast<char*>(contents.data()), contents.size(), "r"));
}

// A stream that keeps what is written to it.
class MemorySink {
 public:
  MemorySink() : stream_(open_memstream(&memory_, &size_)) {}
  ~MemorySink() {
    std::fclose(stream_);
    std::free(memory_);
  }
  MemorySink(const MemorySink&) = delete;
  MemorySink& operator=(const MemorySink&) = delete;

  [[nodiscard]] FILE* stream() const { return stream_; }
  [[nodiscard]] std::string contents() const {
    std::fflush(stream_);
    return {memory_, size_};
  }

 private:
  char* memory_ = nullptr;
  std::size_t size_ = 0;
  FILE* stream_;
};

#endif

// The bytes of anything that can write itself.
template <class T>
std::string archived(const T& value) {
  const MemorySink sink;
  Archive archive(sink.stream());
  value.write(archive);
  return sink.contents();
}

template <class T>
void read_stream(T& value, const std::string& contents) {
  const File stream = stream_of(contents);
  Archive archive(stream.get());
  value.read(archive);
}
