// Reads the fields of one component with the stream's position held in registers.
// Internal: callers want utilities/archive.h.
//
//   ReadCursor cursor(archive);
//   cursor.read_run(z, z_prime);      // int, bool, double, enumerations
//   cursor.read_text(color, year);    // a scalar, then a text
//   cursor.detached([&](Archive& whole) { date.read(whole); });
//
// field_list.h cuts any list of fields into such steps; cursor.h says what a cursor is for.
#pragma once

#include <utilities/archiving/cursor.h>
#include <utilities/archiving/short_text.h>
#include <utilities/archiving/stream_calls.h>

namespace archiving {

class ReadCursor : Cursor<ReadWindow> {
 public:
  explicit ReadCursor(Archive& archive) : Cursor(archive, read_window(archive.stream())) {}
  ~ReadCursor() { release(); }

  // Scalars that follow one another, in one look at the buffer or one call. Each is stored before the next;
  // where the stream ends, those that came whole are stored.
  template <ScalarOrArray... T>
  void read_run(T&... values) {
    if (window_.size() >= Items<T...>::size) [[likely]] {
      take(values...);
    } else {
      go_on(read_run_across(archive_, taken(), values...));
    }
  }

  // A text up to its first NUL, with the scalars and the length before it. All of its bytes are consumed;
  // where the stream ends first, the text is the bytes that came. Throws ArchiveError for a negative length.
  template <ScalarOrArray... T>
  void read_text(std::string& text, T&... before) {
    int length = 0;
    if (window_.size() >= Items<T..., int>::size + short_text) [[likely]] {
      take(before..., length);
      if (static_cast<unsigned int>(length) < short_text) [[likely]] {
        assign_short(text, window_.next, static_cast<std::size_t>(length));
        window_.next += length;
        return;
      }
    } else {
      go_on(read_run_across(archive_, taken(), before..., length));
    }
    go_on(read_long_text(archive_, taken(), text, length));
  }

  // A count that was just read. Throws ArchiveError, naming it as `what`, when it is negative.
  std::size_t checked_count(int value, const char* what) {
    if (value < 0) [[unlikely]] {
      release();
      negative(archive_, what, value);
    }
    return static_cast<std::size_t>(value);
  }

  // Runs `work` with the stream in its true position, then goes on from wherever that left it.
  template <class Work>
  void detached(Work&& work) {
    release();
    work(archive_);
    window_ = read_window(archive_.stream());
  }

 private:
  template <class... T>
  void take(T&... values) {
    (decode(std::exchange(window_.next, window_.next + wire_size<T>), values), ...);
  }

  void release() { set_read_window(archive_.stream(), taken()); }
};

}  // namespace archiving
