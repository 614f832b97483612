// Writes the fields of one component with the stream's position held in registers.
// Internal: callers want utilities/archive.h.
//
//   WriteCursor cursor(archive);
//   cursor.write_run(z, z_prime);      // int, bool, double, enumerations
//   cursor.write_text(color, year);    // a scalar, then a text
//
// field_list.h cuts any list of fields into such steps; cursor.h says what a cursor is for.
#pragma once

#include <utilities/archiving/cursor.h>
#include <utilities/archiving/short_text.h>
#include <utilities/archiving/stream_calls.h>

namespace archiving {

// The space for the scalars T... and a short text, copied as sixteen bytes whatever its length.
template <class... T>
inline constexpr std::ptrdiff_t space_for_short_text = std::ptrdiff_t(Items<T...>::size + short_text);

class WriteCursor : Cursor<WriteWindow> {
 public:
  explicit WriteCursor(Archive& archive)
      : Cursor(archive, write_window(archive.stream(), archive.is_file())) {}
  ~WriteCursor() { release(); }

  // Scalars that follow one another. Throws ArchiveError naming the first that cannot be written whole.
  template <ScalarOrArray... T>
  void write_run(const T&... values) {
    if (window_.size() >= Items<T...>::size) [[likely]] {
      window_.next = encode_all(window_.next, values...);
    } else {
      go_on(write_run_across(archive_, taken(), values...));
    }
  }

  // A text with the scalars and the length before it, which are checked as in a run. The arrival of its own
  // bytes is not checked here: flush() sees a stream that has failed.
  template <ScalarOrArray... T>
  void write_text(const std::string& text, const T&... before) {
    const std::size_t size = text.size();
    // uncovered: the layout of strings is a constant
    if (strings_hold_short_texts && size <= short_text &&
        window_.loose_size() >= space_for_short_text<T..., unsigned int>) [[likely]] {
      window_.next = encode_all(window_.next, before..., static_cast<unsigned int>(size));
      // A string has sixteen bytes to look at, however short it is.
      std::memcpy(window_.next, text.data(), short_text);
      window_.next += size;
    } else if (window_.size() >= Items<T..., unsigned int>::size + size) {
      window_.next = encode_all(window_.next, before..., checked_count(size, "length"));
      copy_text(window_.next, text.data(), size);
      window_.next += size;
    } else {
      checked_count(size, "length");
      go_on(write_text_across(archive_, taken(), text, before...));
    }
  }

  // A count or a length that is about to be written. Throws ArchiveError beyond 2^31 - 1, which could not be
  // read back.
  unsigned int checked_count(std::size_t value, const char* what) {
    if (value > 0x7FFFFFFF) [[unlikely]] {
      release();
      too_long(archive_, what, value);
    }
    return static_cast<unsigned int>(value);
  }

  template <class Work>
  void detached(Work&& work) {
    release();
    work(archive_);
    window_ = write_window(archive_.stream(), archive_.is_file());
  }

 private:
  void release() { set_write_window(archive_.stream(), taken()); }
};

}  // namespace archiving
