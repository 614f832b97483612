// Reads and writes the fields of one component with the stream's position held in registers.
// Internal: callers want utilities/archive.h.
//
//   ReadCursor cursor(archive);
//   cursor.read_run(z, z_prime);      // int, bool, double, enumerations
//   cursor.read_text(color, year);    // a scalar, then a text
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
// The slow calls take the window by value and give it back by value: a cursor whose address escaped could not
// live in registers.
#pragma once

#include <utilities/archive.h>
#include <utilities/stream_window.h>

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <memory>
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

// The room for the scalars T... and a short text, copied as sixteen bytes whatever its length.
template <class... T>
inline constexpr std::ptrdiff_t room_for_short_text = std::ptrdiff_t(Items<T...>::size + short_text);

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

// The text of `length` bytes, fewer than sixteen, up to its first NUL. Sixteen bytes can be looked at: copied
// as they are, and then cut, without a branch for each length.
inline void assign_short(std::string& text, const char* sixteen_bytes, std::size_t length) {
  std::destroy_at(&text);
  std::construct_at(&text, sixteen_bytes, short_text - 1);  // held in the string itself: cannot throw
  text.erase(length_to_nul(sixteen_bytes, length));
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

// The slow ways. They take a cursor's window by value, give the stream its true position before anything can
// throw, and give a new window back. Not inlined: the quick ways stand in a record once
// for every field, and the less room they take the sooner the processor has them at hand after a call of the
// system.

// A text of `length` bytes behind the window's position. Throws ArchiveError for a negative length.
UTILITIES_EXPORT stream_window::Unread read_long_text(const Archive& archive, stream_window::Unread window,
                                                      std::string& text, int length);
// The bytes of a text, unchecked.
UTILITIES_EXPORT stream_window::Room write_long_text(const Archive& archive, stream_window::Room window,
                                                     const std::string& text);

// Stores the value at `bytes` if all of it came.
template <ScalarOrArray T>
bool take(const char*& bytes, const char* end, T& value) {
  if constexpr (!Scalar<T>) {
    return std::all_of(value.begin(), value.end(), [&](auto& element) { return take(bytes, end, element); });
  } else {
    if (static_cast<std::size_t>(end - bytes) < wire_size<T>) return false;
    decode(std::exchange(bytes, bytes + wire_size<T>), value);
    return true;
  }
}

template <ScalarOrArray... T>
[[gnu::noinline]] stream_window::Unread read_run_across(const Archive& archive, stream_window::Unread window,
                                                        T&... values) {
  stream_window::set_unread(archive.stream(), window);
  char buffer[Items<T...>::size];
  const Read read = read_bytes(archive.stream(), buffer, sizeof buffer);
  const char* bytes = buffer;
  const bool whole = (take(bytes, buffer + read.got, values) && ...);
  if (!whole) run_cut_short(archive, Items<T...>::run, read);
  return stream_window::unread(archive.stream());
}

template <ScalarOrArray... T>
char* put(char* to, const T&... values) {
  (encode(std::exchange(to, to + wire_size<T>), values), ...);
  return to;
}

template <ScalarOrArray... T>
[[gnu::noinline]] stream_window::Room write_run_across(const Archive& archive, stream_window::Room window,
                                                       const T&... values) {
  stream_window::set_room(archive.stream(), window);
  char buffer[Items<T...>::size];
  put(buffer, values...);
  write_bytes(archive, buffer, Items<T...>::run);
  return stream_window::room(archive.stream(), archive.is_file());
}

// A text with the scalars and the length before it.
template <ScalarOrArray... T>
[[gnu::noinline]] stream_window::Room write_text_across(const Archive& archive, stream_window::Room window,
                                                        const std::string& text, const T&... before) {
  const auto length = static_cast<unsigned int>(text.size());
  if (window.size() >= Items<T..., unsigned int>::size) [[likely]] {
    window.next = put(window.next, before..., length);
  } else {
    window = write_run_across(archive, window, before..., length);
  }
  return write_long_text(archive, window, text);
}

// What both cursors are: an archive, and the part of its stream's buffer that they work in.
template <class Window>
class Cursor {
 public:
  Cursor(const Cursor&) = delete;
  Cursor& operator=(const Cursor&) = delete;

 protected:
  Cursor(Archive& archive, Window window) : archive_(archive), window_(window) {}
  ~Cursor() = default;

  // The window for somebody else to use. Once given away, its position is stale: forgotten, so that it is not
  // stored a second time when an exception leaves.
  Window taken() {
    const Window window = window_;
    window_ = {};
    return window;
  }
  void go_on(Window window) { window_ = window; }

  Archive& archive_;
  Window window_;
};

}  // namespace stream_cursor

class ReadCursor : stream_cursor::Cursor<stream_window::Unread> {
 public:
  explicit ReadCursor(Archive& archive) : Cursor(archive, stream_window::unread(archive.stream())) {}
  ~ReadCursor() { release(); }

  // Scalars that follow one another, in one look at the buffer or one call. Each is stored before the next;
  // where the stream ends, those that came whole are stored.
  template <stream_cursor::ScalarOrArray... T>
  void read_run(T&... values) {
    if (window_.size() >= stream_cursor::Items<T...>::size) [[likely]] {
      take(values...);
    } else {
      go_on(stream_cursor::read_run_across(archive_, taken(), values...));
    }
  }

  // A text up to its first NUL, with the scalars and the length before it. All of its bytes are consumed;
  // where the stream ends first, the text is the bytes that came. Throws ArchiveError for a negative length.
  template <stream_cursor::ScalarOrArray... T>
  void read_text(std::string& text, T&... before) {
    int length = 0;
    if (window_.size() >= stream_cursor::Items<T..., int>::size + stream_cursor::short_text) [[likely]] {
      take(before..., length);
      if (static_cast<unsigned int>(length) < stream_cursor::short_text) [[likely]] {
        stream_cursor::assign_short(text, window_.next, static_cast<std::size_t>(length));
        window_.next += length;
        return;
      }
    } else {
      go_on(stream_cursor::read_run_across(archive_, taken(), before..., length));
    }
    go_on(stream_cursor::read_long_text(archive_, taken(), text, length));
  }

  // A count that was just read. Throws ArchiveError, naming it as `what`, when it is negative.
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
  template <class... T>
  void take(T&... values) {
    (stream_cursor::decode(std::exchange(window_.next, window_.next + stream_cursor::wire_size<T>), values),
     ...);
  }

  void release() { stream_window::set_unread(archive_.stream(), taken()); }
};

class WriteCursor : stream_cursor::Cursor<stream_window::Room> {
 public:
  explicit WriteCursor(Archive& archive)
      : Cursor(archive, stream_window::room(archive.stream(), archive.is_file())) {}
  ~WriteCursor() { release(); }

  // Scalars that follow one another. Throws ArchiveError naming the first that cannot be written whole.
  template <stream_cursor::ScalarOrArray... T>
  void write_run(const T&... values) {
    if (window_.size() >= stream_cursor::Items<T...>::size) [[likely]] {
      window_.next = stream_cursor::put(window_.next, values...);
    } else {
      go_on(stream_cursor::write_run_across(archive_, taken(), values...));
    }
  }

  // A text with the scalars and the length before it, which are checked as in a run. The arrival of its own
  // bytes is not checked here: flush() sees a stream that has failed.
  template <stream_cursor::ScalarOrArray... T>
  void write_text(const std::string& text, const T&... before) {
    const std::size_t size = text.size();
    if (size <= stream_cursor::short_text &&
        window_.loose_size() >= stream_cursor::room_for_short_text<T..., unsigned int>) [[likely]] {
      window_.next = stream_cursor::put(window_.next, before..., static_cast<unsigned int>(size));
      // A string has sixteen bytes to look at, however short it is: in itself or behind its pointer.
      std::memcpy(window_.next, text.data(), stream_cursor::short_text);
      window_.next += size;
    } else if (window_.size() >= stream_cursor::Items<T..., unsigned int>::size + size) {
      window_.next = stream_cursor::put(window_.next, before..., checked_count(size, "length"));
      stream_cursor::copy_text(window_.next, text.data(), size);
      window_.next += size;
    } else {
      checked_count(size, "length");
      go_on(stream_cursor::write_text_across(archive_, taken(), text, before...));
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
    window_ = stream_window::room(archive_.stream(), archive_.is_file());
  }

 private:
  void release() { stream_window::set_room(archive_.stream(), taken()); }
};
