// Bytes as a stream has them, written so that a reader can follow them.
//
//   bytes(int32(2), text("RACEMATE"), float64(0.5), boolean(true))
//
// Put together by hand from the rules of docs/archive_format.md, without the library.
#pragma once

#include <utilities/archive.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

inline std::string little_endian_bytes(std::uint64_t value, int count) {
  std::string result;
  for (int byte = 0; byte < count; ++byte) result += static_cast<char>(value >> (8 * byte) & 0xFF);
  return result;
}

inline std::string int32(std::int32_t value) {
  return little_endian_bytes(static_cast<std::uint32_t>(value), 4);
}

inline std::string float64(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return little_endian_bytes(bits, 8);
}

inline std::string boolean(bool value) {
  return std::string(1, value ? '\1' : '\0');
}

// The length, then the bytes.
inline std::string text(const std::string& value) {
  return int32(static_cast<std::int32_t>(value.size())) + value;
}

template <class... Parts>
std::string bytes(const Parts&... parts) {
  return (std::string() + ... + parts);
}

struct CloseFile {
  void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

// A temporary file that holds `contents` and is at its start.
inline File file_with(const std::string& contents) {
  File file(std::tmpfile());
  if (file == nullptr) throw std::runtime_error("no temporary file could be made");
  std::fwrite(contents.data(), 1, contents.size(), file.get());
  std::rewind(file.get());
  return file;
}

// What the file holds from its start; leaves the position there.
inline std::string contents_of(FILE* file) {
  std::string contents;
  std::rewind(file);
  for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) contents += static_cast<char>(byte);
  std::rewind(file);
  return contents;
}

// The bytes that `write` puts on an archive, also when it ends with an exception that it catches itself.
template <class Write>
std::string written(const Write& write) {
  const File file = file_with("");
  Archive archive(file.get());
  write(archive);
  std::fflush(file.get());
  return contents_of(file.get());
}

// Lets `read` take an archive that holds `contents`. Gives the number of bytes consumed.
template <class Read>
long read_from(const std::string& contents, const Read& read) {
  const File file = file_with(contents);
  Archive archive(file.get());
  read(archive);
  return std::ftell(file.get());
}

// The message of the exception of type E that `action` throws; a clear text when it throws none.
template <class E, class Action>
std::string message_of(const Action& action) {
  try {
    action();
  } catch (const E& error) {
    return error.what();
  }
  return "nothing was thrown";
}

// What `print` writes to a stream with default settings.
template <class Printable>
std::string printed(const Printable& value) {
  std::ostringstream os;
  value.print(os);
  return os.str();
}
