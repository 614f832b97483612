#include "tools/files/memory_archive.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

namespace {

struct CloseStream {
  void operator()(FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<FILE, CloseStream>;

struct FreeBytes {
  void operator()(char* bytes) const { std::free(bytes); }
};

}  // namespace

std::string archived(const std::function<void(Archive&)>& write) {
  char* bytes = nullptr;
  std::size_t size = 0;
  Stream stream(::open_memstream(&bytes, &size));
  if (stream == nullptr) throw std::bad_alloc();
  try {
    Archive archive(stream.get());
    write(archive);
    archive.flush();
  } catch (...) {
    stream.reset();
    const std::unique_ptr<char, FreeBytes> unused(bytes);
    throw;
  }
  stream.reset();
  const std::unique_ptr<char, FreeBytes> owner(bytes);
  return {owner.get(), size};
}

void from_archive(const std::string& bytes, const std::function<void(Archive&)>& read) {
  // Opened for reading: the bytes are not changed.
  const Stream stream(::fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb"));
  if (stream == nullptr) throw std::bad_alloc();
  Archive archive(stream.get());
  read(archive);
}

MemoryArchive::MemoryArchive() : stream_(::open_memstream(&bytes_, &size_)) {
  if (stream_ == nullptr) throw std::bad_alloc();
}

MemoryArchive::~MemoryArchive() {
  std::fclose(stream_);
  std::free(bytes_);
}
