// A binary stream of scalars over an open C stream, which it does not own.
//
//   Archive archive(file);
//   archive << 4 << 0.5 << true;
//   archive.flush();               // a full disk is seen here
//
// Bytes: little-endian on every machine. int and unsigned int are 4 bytes, two's complement; double is
// 8 bytes, IEEE 754; bool is 1 byte, written 0 or 1 and read as "not 0". Texts, lists and handles:
// docs/archive_format.md.
//
// The archive keeps no bytes of its own: after every operation the stream is exactly where fread and
// fwrite of the same bytes would have left it, and foreign code may use the stream in between.
//
// Fails: an operation that cannot read or write its scalar whole throws ArchiveError; the bytes that came
// are consumed, the target keeps its old value. Threads: an archive belongs to one thread at a time.
#pragma once

#include <utilities/archive_error.h>
#include <utilities/export.h>

#include <cstdio>

class UTILITIES_EXPORT Archive {
 public:
  explicit Archive(FILE* stream);

  Archive& operator<<(int value);
  Archive& operator<<(unsigned int value);
  Archive& operator<<(bool value);
  Archive& operator<<(double value);
  // A pointer would otherwise be written as a bool.
  Archive& operator<<(const void*) = delete;

  Archive& operator>>(int& value);
  Archive& operator>>(bool& value);
  Archive& operator>>(double& value);

  // Hands everything written so far to the system. Throws ArchiveError when that fails, or when an earlier
  // write on the stream has failed; the stream's error indicator stays set.
  void flush();

  [[nodiscard]] FILE* stream() const { return stream_; }
  // Whether the stream is one of the system's files, as far as the C library tells; false for memory.
  [[nodiscard]] bool is_file() const { return is_file_; }

  // The part of an entry that is being read or written, as errors name it; null when none is. The text must
  // outlive the archive: a string literal.
  void name_component(const char* component) { component_ = component; }
  [[nodiscard]] const char* component() const { return component_; }

 private:
  const char* component_ = nullptr;
  FILE* stream_;
  bool is_file_;
};
