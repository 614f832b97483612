// Reads and writes the fields of one component with the stream's position held in registers.
// Internal: callers want utilities/archive.h.
//
//   ReadCursor cursor(archive);
//   cursor.read(a_);          // int, bool, double, an enumeration, std::string
//   cursor.read(text_);
//   cursor.detached([&] { date_.read(archive); });
//
// An entry is read by the million, and most of that time would go into storing and loading the position of
// the stream. A cursor takes the position once, moves it in a local variable, and puts it back when it goes,
// also when an exception leaves. Whatever does not lie in the stream's own buffer goes through the C library.
// So the bytes, the position, the end of file and the errors are those of one fread or fwrite per item.
//
// While a cursor lives nobody else may touch the stream; detached() gives it free for the length of one call.
// The slow calls take the position by value and give it back by value: a cursor whose address escaped could
// not live in registers.
#pragma once

#include <utilities/archive.h>
#include <utilities/stream_window.h>

#include <bit>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

namespace stream_cursor {

// How a scalar stands on the stream: an unsigned integer of its width, least significant byte first.
template <class T>
struct Wire;
template <>
struct Wire<bool> {
  using type = std::uint8_t;
  static constexpr const char* name = "a bool";
};
template <>
struct Wire<std::int32_t> {
  using type = std::uint32_t;
  static constexpr const char* name = "an int";
};
template <>
struct Wire<std::uint32_t> {
  using type = std::uint32_t;
  static constexpr const char* name = "an int";
};
template <>
struct Wire<double> {
  using type = std::uint64_t;
  static constexpr const char* name = "a double";
};

template <class T>
concept Scalar = requires {
  typename Wire<T>::type;
};

template <class T>
concept Enumeration = std::is_enum_v<T> && std::same_as<std::underlying_type_t<T>, std::int32_t>;

template <class Unsigned>
constexpr Unsigned little_endian(Unsigned value) {
  if constexpr (std::endian::native == std::endian::little) {
    return value;
  } else {
    Unsigned swapped = 0;
    for (unsigned byte = 0; byte < sizeof value; ++byte) {
      swapped = static_cast<Unsigned>(swapped << 8 | (value >> (8 * byte) & 0xFF));
    }
    return swapped;
  }
}

template <Scalar T>
T decode(const char* bytes) {
  typename Wire<T>::type wire;
  std::memcpy(&wire, bytes, sizeof wire);
  wire = little_endian(wire);
  if constexpr (std::same_as<T, bool>) {
    return wire != 0;
  } else {
    return std::bit_cast<T>(wire);
  }
}

template <Scalar T>
auto encode(T value) {
  using Unsigned = typename Wire<T>::type;
  if constexpr (std::same_as<T, bool>) {
    return static_cast<Unsigned>(value ? 1 : 0);
  } else {
    return little_endian(std::bit_cast<Unsigned>(value));
  }
}

// Reads `count` bytes, or throws ArchiveError naming `wanted`.
UTILITIES_EXPORT stream_window::Unread read_scalar(const Archive& archive, const char* next, char* into,
                                                   std::size_t count, const char* wanted);
// Reads the `length` bytes of a text that do not all lie in the stream's buffer.
UTILITIES_EXPORT stream_window::Unread read_text(FILE* stream, const char* next, std::string& text,
                                                 std::size_t length);
// Writes `count` bytes; throws ArchiveError naming `wanted` when they cannot be written whole, unless it is
// null.
UTILITIES_EXPORT stream_window::Room write_bytes(const Archive& archive, char* next, const char* from,
                                                 std::size_t count, const char* wanted);
[[noreturn]] UTILITIES_EXPORT void negative(const Archive& archive, const char* what, int value);
[[noreturn]] UTILITIES_EXPORT void too_long(const Archive& archive, const char* what, std::size_t value);

}  // namespace stream_cursor

class ReadCursor {
 public:
  explicit ReadCursor(Archive& archive)
      : archive_(archive), window_(stream_window::unread(archive.stream())) {}
  ReadCursor(const ReadCursor&) = delete;
  ReadCursor& operator=(const ReadCursor&) = delete;
  ~ReadCursor() { release(); }

  template <stream_cursor::Scalar T>
  void read(T& value) {
    value = scalar<T>();
  }

  // Takes any value of the underlying type: whether it names a member is the record's to check.
  template <stream_cursor::Enumeration T>
  void read(T& value) {
    value = static_cast<T>(scalar<std::int32_t>());
  }

  // The text up to its first NUL; all of its bytes are consumed. Where the stream ends first, the bytes that
  // came.
  void read(std::string& text) {
    const auto length = static_cast<std::size_t>(count("length"));
    if (length > available()) {
      const char* next = window_.next;
      window_ = {};  // read_text has put the position back when it throws
      const auto after = stream_cursor::read_text(archive_.stream(), next, text, length);
      window_ = after;
      return;
    }
    text.assign(window_.next, strnlen(window_.next, length));
    window_.next += length;
  }

  // A count or a length: written unsigned or signed, never negative. `what` names it in the ArchiveError.
  int count(const char* what) {
    const int value = scalar<int>();
    if (value < 0) [[unlikely]] {
      release();
      stream_cursor::negative(archive_, what, value);
    }
    return value;
  }

  // Runs `work` with the stream in its true position, then goes on from wherever that left it.
  template <class Work>
  void detached(Work&& work) {
    release();
    work(archive_);
    window_ = stream_window::unread(archive_.stream());
  }

 private:
  [[nodiscard]] std::size_t available() const { return static_cast<std::size_t>(window_.end - window_.next); }

  template <stream_cursor::Scalar T>
  T scalar() {
    using Wire = stream_cursor::Wire<T>;
    constexpr std::size_t size = sizeof(typename Wire::type);
    if (available() >= size) [[likely]] {
      const T value = stream_cursor::decode<T>(window_.next);
      window_.next += size;
      return value;
    }
    char bytes[size];
    const char* next = window_.next;
    window_ = {};  // read_scalar has put the position back when it throws
    const auto after = stream_cursor::read_scalar(archive_, next, bytes, size, Wire::name);
    window_ = after;
    return stream_cursor::decode<T>(bytes);
  }

  // Once given back, a position is stale: forget it, so that an exception does not store it a second time.
  void release() {
    if (window_.next != nullptr) {
      stream_window::set_unread(archive_.stream(), window_.next);
      window_ = {};
    }
  }

  Archive& archive_;
  stream_window::Unread window_;
};

class WriteCursor {
 public:
  explicit WriteCursor(Archive& archive)
      : archive_(archive), window_(stream_window::room(archive.stream())) {}
  WriteCursor(const WriteCursor&) = delete;
  WriteCursor& operator=(const WriteCursor&) = delete;
  ~WriteCursor() { release(); }

  template <stream_cursor::Scalar T>
  void write(const T& value) {
    const auto wire = stream_cursor::encode(value);
    if (room() >= sizeof wire) [[likely]] {
      std::memcpy(window_.next, &wire, sizeof wire);
      window_.next += sizeof wire;
      return;
    }
    char bytes[sizeof wire];
    std::memcpy(bytes, &wire, sizeof wire);
    write_slowly(bytes, sizeof wire, stream_cursor::Wire<T>::name);
  }

  template <stream_cursor::Enumeration T>
  void write(const T& value) {
    write(static_cast<std::int32_t>(value));
  }

  // The length, then the bytes, whose arrival is not checked here: flush() sees a stream that has failed.
  void write(const std::string& text) {
    count(text.size(), "length");
    if (room() >= text.size()) [[likely]] {
      std::memcpy(window_.next, text.data(), text.size());
      window_.next += text.size();
      return;
    }
    write_slowly(text.data(), text.size(), nullptr);
  }

  // A count or a length. Throws ArchiveError beyond 2^31 - 1, which could not be read back.
  void count(std::size_t value, const char* what) {
    if (value > 0x7FFFFFFF) [[unlikely]] {
      release();
      stream_cursor::too_long(archive_, what, value);
    }
    write(static_cast<std::uint32_t>(value));
  }

  template <class Work>
  void detached(Work&& work) {
    release();
    work(archive_);
    window_ = stream_window::room(archive_.stream());
  }

 private:
  // A line-buffered or unbuffered stream has its end before its position: no room.
  [[nodiscard]] std::size_t room() const {
    return window_.next < window_.end ? static_cast<std::size_t>(window_.end - window_.next) : 0;
  }

  void write_slowly(const char* bytes, std::size_t count, const char* wanted) {
    char* next = window_.next;
    window_ = {};  // write_bytes has put the position back when it throws
    const auto after = stream_cursor::write_bytes(archive_, next, bytes, count, wanted);
    window_ = after;
  }

  void release() {
    if (window_.next != nullptr) {
      stream_window::set_room(archive_.stream(), window_.next);
      window_ = {};
    }
  }

  Archive& archive_;
  stream_window::Room window_;
};
