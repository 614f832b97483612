// The bytes of a C stream that can be reached without a call.
// Internal: callers want utilities/archive.h.
//
// A stream that is being read holds a run of bytes that were fetched but not yet handed out, and a stream
// that is being written has free space before the next flush. getc_unlocked and putc_unlocked take and put
// single bytes there; these functions show the whole run, so that many bytes can be taken or put at once,
// under the very conditions of those two macros: an empty window always means "call the C library".
//
// The fields are those of the GNU C library. The build probes for them and defines
// DATABASE_ENTRY_STREAM_FIELDS; without it every window is empty, and all bytes go through fread and fwrite.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace archiving {

struct ReadWindow {
  const char* next = nullptr;
  const char* end = nullptr;

  [[nodiscard]] std::size_t size() const { return static_cast<std::size_t>(end - next); }
};

struct WriteWindow {
  char* next = nullptr;
  char* end = nullptr;
  // Up to here bytes that nobody asked for may be left after the position, as nobody sees them there.
  // Not so in a stream over memory, which shows its buffer.
  char* loose_end = nullptr;

  [[nodiscard]] std::size_t size() const { return static_cast<std::size_t>(end - next); }
  [[nodiscard]] std::ptrdiff_t loose_size() const { return loose_end - next; }
};

#ifdef DATABASE_ENTRY_STREAM_FIELDS

inline ReadWindow read_window(FILE* stream) {
  return {stream->_IO_read_ptr, stream->_IO_read_end};
}
inline void set_read_window(FILE* stream, ReadWindow window) {
  if (window.next != nullptr) stream->_IO_read_ptr = const_cast<char*>(window.next);
}
// Whether the stream writes to a file of the system, and its buffer is its own.
inline bool is_file(FILE* stream) {
  return stream != nullptr && fileno(stream) >= 0;
}
// A line-buffered or unbuffered stream has its end before its position: no space.
inline WriteWindow write_window(FILE* stream, bool is_file) {
  char* const next = stream->_IO_write_ptr;
  char* const end = std::max(next, stream->_IO_write_end);
  return {next, end, is_file ? end : next};
}
inline void set_write_window(FILE* stream, WriteWindow window) {
  if (window.next != nullptr) stream->_IO_write_ptr = window.next;
}

#else

inline ReadWindow read_window(FILE*) {
  return {};
}
inline void set_read_window(FILE*, ReadWindow) {}
inline bool is_file(FILE*) {
  return false;
}
inline WriteWindow write_window(FILE*, bool) {
  return {};
}
inline void set_write_window(FILE*, WriteWindow) {}

#endif

#ifdef DATABASE_ENTRY_UNLOCKED_CALLS

inline std::size_t read_some(FILE* stream, void* into, std::size_t count) {
  return fread_unlocked(into, 1, count, stream);
}
inline std::size_t write_some(FILE* stream, const void* from, std::size_t count) {
  return fwrite_unlocked(from, 1, count, stream);
}

#else

inline std::size_t read_some(FILE* stream, void* into, std::size_t count) {
  return std::fread(into, 1, count, stream);
}
inline std::size_t write_some(FILE* stream, const void* from, std::size_t count) {
  return std::fwrite(from, 1, count, stream);
}

#endif

}  // namespace archiving
