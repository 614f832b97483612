// Reads and writes the fields of one component with the stream's position held in registers.
// Internal: callers want utilities/archive.h.
//
//   int length = 0;
//   ReadCursor cursor(archive);
//   cursor.read_run(z, z_prime, length);     // int, bool, double, enumerations
//   cursor.read_text(color, cursor.checked_count(length, "length"));
//   cursor.detached([&](Archive& whole) { date.read(whole); });
//
// field_list.h cuts any list of fields into such steps.
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

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

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
concept Enumeration = std::is_enum_v<T> && std::same_as<std::underlying_type_t<T>, std::int32_t>;

// The wire of an enumeration is that of the int it is archived as; whether the value names a member is the
// record's to check.
template <Enumeration T>
struct Wire<T> : Wire<std::int32_t> {};

template <class T>
concept Scalar = requires {
  typename Wire<T>::type;
};

// An array of scalars stands on the stream as they do one after the other, and is copied whole where it can
// be.
template <class T>
struct Elements {
  using type = T;
  static constexpr std::size_t count = 1;
};
template <class T, std::size_t size>
struct Elements<std::array<T, size>> {
  using type = T;
  static constexpr std::size_t count = size;
};

template <class T>
concept ScalarOrArray = Scalar<typename Elements<T>::type>;

template <class T>
inline constexpr std::size_t wire_size = Elements<T>::count *
                                         sizeof(typename Wire<typename Elements<T>::type>::type);

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

template <ScalarOrArray T>
void decode(const char* bytes, T& value) {
  using Element = typename Elements<T>::type;
  if constexpr (!Scalar<T>) {
    if constexpr (std::endian::native == std::endian::little && !std::same_as<Element, bool>) {
      static_assert(sizeof(T) == wire_size<T>);
      std::memcpy(value.data(), bytes, sizeof(T));
    } else {
      for (Element& element : value) decode(std::exchange(bytes, bytes + wire_size<Element>), element);
    }
  } else {
    typename Wire<T>::type wire;
    std::memcpy(&wire, bytes, sizeof wire);
    wire = little_endian(wire);
    if constexpr (std::same_as<T, bool>) {
      value = wire != 0;
    } else if constexpr (std::is_enum_v<T>) {
      value = static_cast<T>(std::bit_cast<std::int32_t>(wire));
    } else {
      value = std::bit_cast<T>(wire);
    }
  }
}

template <ScalarOrArray T>
void encode(char* bytes, const T& value) {
  using Element = typename Elements<T>::type;
  if constexpr (!Scalar<T>) {
    if constexpr (std::endian::native == std::endian::little && !std::same_as<Element, bool>) {
      std::memcpy(bytes, value.data(), sizeof(T));
    } else {
      for (const Element& element : value) encode(std::exchange(bytes, bytes + wire_size<Element>), element);
    }
  } else {
    using Unsigned = typename Wire<T>::type;
    Unsigned wire;
    if constexpr (std::same_as<T, bool>) {
      wire = value ? 1 : 0;
    } else if constexpr (std::is_enum_v<T>) {
      wire = static_cast<Unsigned>(value);
    } else {
      wire = std::bit_cast<Unsigned>(value);
    }
    wire = little_endian(wire);
    std::memcpy(bytes, &wire, sizeof wire);
  }
}

// One scalar of a run, for the error that names the first one that did not come or go.
struct Item {
  std::size_t size;
  const char* name;
};

struct Run {
  const Item* items;
  std::size_t count;
};

struct Read {
  stream_window::Unread after;
  std::size_t got;
  int error;  // as errno has it, 0 at the end of the stream
};

// Reads up to `size` bytes, partly or wholly from beyond the stream's buffer. Does not throw.
UTILITIES_EXPORT Read read_across(FILE* stream, const char* next, char* into, std::size_t size);
// The error for a run of which only the bytes of `read` came.
[[noreturn]] UTILITIES_EXPORT void run_cut_short(const Archive& archive, const Run& run, const Read& read);
// Reads the `length` bytes of a text that do not all lie in the stream's buffer.
UTILITIES_EXPORT stream_window::Unread read_text_across(FILE* stream, const char* next, std::string& text,
                                                        std::size_t length);
// Writes the bytes of a run; throws ArchiveError naming the first scalar that cannot be written whole.
UTILITIES_EXPORT stream_window::Room write_across(const Archive& archive, char* next, const char* from,
                                                  const Run& run);
// Writes the bytes of a text, unchecked.
UTILITIES_EXPORT stream_window::Room write_text_across(FILE* stream, char* next, const std::string& text);
[[noreturn]] UTILITIES_EXPORT void negative(const Archive& archive, const char* what, int value);
[[noreturn]] UTILITIES_EXPORT void too_long(const Archive& archive, const char* what, std::size_t value);

// The scalars T... as they follow one another on the stream.
template <class... T>
struct Items {
  static constexpr auto items = [] {
    std::array<Item, (Elements<T>::count + ...)> all{};
    Item* next = all.data();
    ((next =
          std::fill_n(next, Elements<T>::count,
                      Item{wire_size<typename Elements<T>::type>, Wire<typename Elements<T>::type>::name})),
     ...);
    return all;
  }();
  static constexpr Run run = {items.data(), items.size()};
  static constexpr std::size_t size = (wire_size<T> + ...);
};

inline constexpr std::size_t short_text = 16;

// The length of a text of `length` bytes up to its first NUL, where sixteen bytes can be looked at: most
// texts are that short, and two words are compared at once instead of calling strnlen.
inline std::size_t length_to_nul(const char* sixteen_bytes, std::size_t length) {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  constexpr std::uint64_t tops = 0x8080808080808080U;
  std::uint64_t words[2];
  std::memcpy(words, sixteen_bytes, sizeof words);
  for (std::size_t word = 0; word < 2; ++word) {
    const std::uint64_t value = little_endian(words[word]);
    const std::uint64_t nuls = (value - ones) & ~value & tops;  // its lowest bit marks the first NUL
    if (nuls != 0) return std::min(length, 8 * word + static_cast<std::size_t>(std::countr_zero(nuls)) / 8);
  }
  return length;
}

// memcpy for a text, without a call where it is short; never a byte more than `size`.
inline void copy_text(char* to, const char* from, std::size_t size) {
  if (size > short_text) {
    std::memcpy(to, from, size);
  } else if (size >= 8) {
    std::uint64_t head, tail;
    std::memcpy(&head, from, 8);
    std::memcpy(&tail, from + size - 8, 8);
    std::memcpy(to, &head, 8);
    std::memcpy(to + size - 8, &tail, 8);
  } else if (size >= 4) {
    std::uint32_t head, tail;
    std::memcpy(&head, from, 4);
    std::memcpy(&tail, from + size - 4, 4);
    std::memcpy(to, &head, 4);
    std::memcpy(to + size - 4, &tail, 4);
  } else if (size > 0) {
    to[0] = from[0];
    to[size / 2] = from[size / 2];
    to[size - 1] = from[size - 1];
  }
}

}  // namespace stream_cursor

class ReadCursor {
 public:
  explicit ReadCursor(Archive& archive)
      : archive_(archive), window_(stream_window::unread(archive.stream())) {}
  ReadCursor(const ReadCursor&) = delete;
  ReadCursor& operator=(const ReadCursor&) = delete;
  ~ReadCursor() { release(); }

  // Scalars that follow one another, in one look at the buffer or one call. Each is stored before the next;
  // where the stream ends, those that came whole are stored.
  template <stream_cursor::ScalarOrArray... T>
  void read_run(T&... values) {
    using Items = stream_cursor::Items<T...>;
    if (available() >= Items::size) [[likely]] {
      const char* bytes = window_.next;
      window_.next += Items::size;
      (stream_cursor::decode(std::exchange(bytes, bytes + stream_cursor::wire_size<T>), values), ...);
      return;
    }
    char buffer[Items::size];
    const char* bytes = buffer;
    const stream_cursor::Read read =
        stream_cursor::read_across(archive_.stream(), window_.next, buffer, Items::size);
    window_ = read.after;
    const char* const end = buffer + read.got;
    const bool whole = (take(bytes, end, values) && ...);
    if (!whole) [[unlikely]] {
      release();
      stream_cursor::run_cut_short(archive_, Items::run, read);
    }
  }

  // The text up to its first NUL; all of its bytes are consumed. Where the stream ends first, the bytes that
  // came. The length is what came before: read it as the last scalar of a run and pass it through
  // checked_count.
  void read_text(std::string& text, std::size_t length) {
    if (length < stream_cursor::short_text && available() >= stream_cursor::short_text) [[likely]] {
      if (length == 0) {
        text.clear();
      } else {
        text.assign(window_.next, stream_cursor::length_to_nul(window_.next, length));
      }
      window_.next += length;
    } else if (length <= available()) {
      text.assign(window_.next, strnlen(window_.next, length));
      window_.next += length;
    } else {
      const char* next = window_.next;
      window_ = {};  // read_text_across has put the position back when it throws
      const auto after = stream_cursor::read_text_across(archive_.stream(), next, text, length);
      window_ = after;
    }
  }

  // A count or a length that was just read. Throws ArchiveError, naming it as `what`, when it is negative.
  std::size_t checked_count(int value, const char* what) {
    if (value < 0) [[unlikely]] {
      release();
      stream_cursor::negative(archive_, what, value);
    }
    return static_cast<std::size_t>(value);
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

  template <class T>
  static bool take(const char*& bytes, const char* end, T& value) {
    if constexpr (!stream_cursor::Scalar<T>) {
      return std::all_of(value.begin(), value.end(),
                         [&](auto& element) { return take(bytes, end, element); });
    } else {
      if (static_cast<std::size_t>(end - bytes) < stream_cursor::wire_size<T>) return false;
      stream_cursor::decode(std::exchange(bytes, bytes + stream_cursor::wire_size<T>), value);
      return true;
    }
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

  // Scalars that follow one another. Throws ArchiveError naming the first that cannot be written whole.
  template <stream_cursor::ScalarOrArray... T>
  void write_run(const T&... values) {
    using Items = stream_cursor::Items<T...>;
    if (room() >= Items::size) [[likely]] {
      window_.next = put(window_.next, values...);
      return;
    }
    char buffer[Items::size];
    put(buffer, values...);
    char* next = window_.next;
    window_ = {};  // write_across has put the position back when it throws
    const auto after = stream_cursor::write_across(archive_, next, buffer, Items::run);
    window_ = after;
  }

  // The bytes of a text, whose arrival is not checked here: flush() sees a stream that has failed.
  void write_text(const std::string& text) {
    if (room() >= text.size()) [[likely]] {
      stream_cursor::copy_text(window_.next, text.data(), text.size());
      window_.next += text.size();
    } else {
      window_ = stream_cursor::write_text_across(archive_.stream(), window_.next, text);
    }
  }

  // A count or a length that is about to be written. Throws ArchiveError beyond 2^31 - 1, which could not be
  // read back.
  unsigned int checked_count(std::size_t value, const char* what) {
    if (value > 0x7FFFFFFF) [[unlikely]] {
      release();
      stream_cursor::too_long(archive_, what, value);
    }
    return static_cast<unsigned int>(value);
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

  template <class... T>
  static char* put(char* to, const T&... values) {
    (stream_cursor::encode(std::exchange(to, to + stream_cursor::wire_size<T>), values), ...);
    return to;
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
