#include <utilities/archiving/short_text.h>
#include <utilities/archiving/stream_calls.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <system_error>

namespace archiving {
namespace {

// A signal may end a read before its first byte; then nothing was lost and the read is tried again. The bound
// keeps a stream that is always interrupted from holding the caller for ever.
constexpr int most_interruptions = 100;

// fread until `count` bytes came, the stream ended or failed. Gives the number of bytes that came.
std::size_t read_whole(FILE* stream, char* into, std::size_t count) {
  std::size_t got = 0;
  for (int interruptions = 0; interruptions < most_interruptions; ++interruptions) {
    const bool had_failed = std::ferror(stream) != 0;
    errno = 0;
    got += read_some(stream, into + got, count - got);
    if (got == count || had_failed || std::ferror(stream) == 0 || errno != EINTR) break;
    std::clearerr(stream);
  }
  return got;
}

std::string place(const Archive& archive, std::size_t bytes_since) {
  std::string text;
#ifdef DATABASE_ENTRY_LONG_OFFSETS
  const std::int64_t position = ftello(archive.stream());
#else
  const std::int64_t position = std::ftell(archive.stream());
#endif
  const auto since = static_cast<std::int64_t>(bytes_since);
  if (position >= since) text += " at offset " + std::to_string(position - since);
  if (archive.component() != nullptr) {
    text += " (";
    text += archive.component();
    text += ")";
  }
  return text;
}

std::string reason(int error) {
  return error == 0 ? std::string() : ": " + std::generic_category().message(error);
}

// The first allocation for a text whose bytes have not been seen: its length may be a lie.
constexpr std::size_t first_chunk = 64 * 1024;

}  // namespace

Read read_bytes(FILE* stream, char* into, std::size_t size) {
  const std::size_t got = read_whole(stream, into, size);
  return {got, got == size || std::feof(stream) != 0 ? 0 : errno};
}

void run_cut_short(const Archive& archive, const Run& run, const Read& read) {
  const Item* item = run.items;
  std::size_t left = read.got;
  for (; left >= item->size; ++item) left -= item->size;
  throw ArchiveError(
      (read.error == 0 ? "Archive: end of the stream while reading " : "Archive: cannot read ") +
      std::string(item->name) + place(archive, left) + reason(read.error));
}

ReadWindow read_long_text(const Archive& archive, ReadWindow window, std::string& text, int length) {
  FILE* stream = archive.stream();
  set_read_window(stream, window);
  if (length < 0) negative(archive, "length", length);
  if (length == 0) {  // without the stream's fields there is no window to look into
    text.clear();
    return window;
  }
  const auto size = static_cast<std::size_t>(length);
  if (size <= window.size()) {
    text.assign(window.next, length_to_nul_anywhere(window.next, size));
    window.next += size;
    return window;
  }
  char short_bytes[256];
  if (size <= sizeof short_bytes) {
    const std::size_t got = read_whole(stream, short_bytes, size);
    text.assign(short_bytes, length_to_nul_anywhere(short_bytes, got));
    return read_window(stream);
  }
  std::string bytes;
  std::size_t got = 0;
  while (got < size) {
    // Never more than twice what has come, so that a false length costs nothing.
    bytes.resize(std::min(size, std::max(first_chunk, 2 * got)));
    const std::size_t came = read_whole(stream, bytes.data() + got, bytes.size() - got);
    got += came;
    if (got < bytes.size()) break;
  }
  text.assign(bytes.data(), length_to_nul_anywhere(bytes.data(), got));
  return read_window(stream);
}

void write_bytes(const Archive& archive, const char* from, const Run& run) {
  std::size_t size = 0;
  for (std::size_t index = 0; index < run.count; ++index) size += run.items[index].size;
  errno = 0;
  std::size_t put = write_some(archive.stream(), from, size);
  if (put < size) {
    const int error = errno;
    const Item* item = run.items;
    for (; put >= item->size; ++item) put -= item->size;
    throw ArchiveError("Archive: cannot write " + std::string(item->name) + place(archive, put) +
                       reason(error));
  }
}

WriteWindow write_long_text(const Archive& archive, WriteWindow window, const std::string& text) {
  if (text.size() <= window.size()) {
    copy_text(window.next, text.data(), text.size());
    window.next += text.size();
    return window;
  }
  set_write_window(archive.stream(), window);
  write_some(archive.stream(), text.data(), text.size());
  return write_window(archive.stream(), archive.is_file());
}

void negative(const Archive& archive, const char* what, int value) {
  throw ArchiveError("Archive: negative " + std::string(what) + " " + std::to_string(value) +
                     place(archive, sizeof value));
}

void too_long(const Archive& archive, const char* what, std::size_t value) {
  throw ArchiveError("Archive: the " + std::string(what) + " " + std::to_string(value) +
                     " is above 2147483647 and could not be read back" + place(archive, 0));
}

}  // namespace archiving
