// The slow ways into and out of a stream, through calls of the C library, and the errors of both.
// Internal: callers want utilities/archive.h.
//
// Each takes a cursor's window by value, gives the stream its true position before anything can throw, and
// gives a new window back. None is inlined: the quick ways are in a record once for every field, and the less
// space they take the sooner the processor has them at hand after a call of the system.
#pragma once

#include <utilities/archive.h>
#include <utilities/archiving/stream_window.h>
#include <utilities/archiving/wire.h>

#include <string>

namespace archiving {

struct Read {
  std::size_t got;
  int error;  // as errno has it, 0 at the end of the stream
};

// Reads up to `size` bytes from a stream in its true position. Does not throw.
UTILITIES_EXPORT Read read_bytes(FILE* stream, char* into, std::size_t size);
// The error for a run of which only the bytes of `read` came.
[[noreturn]] UTILITIES_EXPORT void run_cut_short(const Archive& archive, const Run& run, const Read& read);
// Writes the bytes of a run; throws ArchiveError naming the first scalar that cannot be written whole.
UTILITIES_EXPORT void write_bytes(const Archive& archive, const char* from, const Run& run);
[[noreturn]] UTILITIES_EXPORT void negative(const Archive& archive, const char* what, int value);
[[noreturn]] UTILITIES_EXPORT void too_long(const Archive& archive, const char* what, std::size_t value);

// A text of `length` bytes from the window's position on. Throws ArchiveError for a negative length.
UTILITIES_EXPORT ReadWindow read_long_text(const Archive& archive, ReadWindow window, std::string& text,
                                           int length);
// The bytes of a text, unchecked.
UTILITIES_EXPORT WriteWindow write_long_text(const Archive& archive, WriteWindow window,
                                             const std::string& text);

template <ScalarOrArray... T>
[[gnu::noinline]] ReadWindow read_run_across(const Archive& archive, ReadWindow window, T&... values) {
  set_read_window(archive.stream(), window);
  char buffer[Items<T...>::size];
  const Read read = read_bytes(archive.stream(), buffer, sizeof buffer);
  const char* bytes = buffer;
  const bool whole = (decode_whole(bytes, buffer + read.got, values) && ...);
  if (!whole) run_cut_short(archive, Items<T...>::run, read);
  return read_window(archive.stream());
}

template <ScalarOrArray... T>
[[gnu::noinline]] WriteWindow write_run_across(const Archive& archive, WriteWindow window,
                                               const T&... values) {
  set_write_window(archive.stream(), window);
  char buffer[Items<T...>::size];
  encode_all(buffer, values...);
  write_bytes(archive, buffer, Items<T...>::run);
  return write_window(archive.stream(), archive.is_file());
}

// A text with the scalars and the length before it.
template <ScalarOrArray... T>
[[gnu::noinline]] WriteWindow write_text_across(const Archive& archive, WriteWindow window,
                                                const std::string& text, const T&... before) {
  const auto length = static_cast<unsigned int>(text.size());
  if (window.size() >= Items<T..., unsigned int>::size) [[likely]] {
    window.next = encode_all(window.next, before..., length);
  } else {
    window = write_run_across(archive, window, before..., length);
  }
  return write_long_text(archive, window, text);
}

}  // namespace archiving
