// The bytes of a C stream that can be reached without a call.
// Internal: callers want utilities/archive.h.
//
// A stream that is being read holds a run of bytes that were fetched but not yet handed out, and a stream
// that is being written holds free room before the next flush. getc_unlocked and putc_unlocked take and put
// single bytes there; these functions show the whole run, so that many bytes can be taken or put at once,
// under the very conditions of those two macros: an empty window always means "call the C library".
//
// The fields are those of the GNU C library. The build probes for them and defines
// DATABASE_ENTRY_STREAM_FIELDS; without it every window is empty, and all bytes go through fread and fwrite.
#pragma once

#include <cstddef>
#include <cstdio>

namespace stream_window {

struct Unread {
  const char* next;
  const char* end;
};

struct Room {
  char* next;
  char* end;
};

#ifdef DATABASE_ENTRY_STREAM_FIELDS

inline Unread unread(FILE* stream) {
  return {stream->_IO_read_ptr, stream->_IO_read_end};
}
inline void set_unread(FILE* stream, const char* next) {
  stream->_IO_read_ptr = const_cast<char*>(next);
}
inline Room room(FILE* stream) {
  return {stream->_IO_write_ptr, stream->_IO_write_end};
}
inline void set_room(FILE* stream, char* next) {
  stream->_IO_write_ptr = next;
}

#else

inline Unread unread(FILE*) {
  return {nullptr, nullptr};
}
inline void set_unread(FILE*, const char*) {}
inline Room room(FILE*) {
  return {nullptr, nullptr};
}
inline void set_room(FILE*, char*) {}

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

}  // namespace stream_window
