// What the cursors for reading and for writing have in common.
// Internal: callers want utilities/archive.h.
//
// An entry is read by the million, and most of that time would go into storing and loading the position of
// the stream. A cursor takes the position once, moves it in a local variable, and puts it back when it goes,
// also when an exception leaves. Whatever is not in the stream's own buffer goes through the C library.
// So the bytes, the position, the end of file and the errors are those of one fread or fwrite per item.
//
// While a cursor lives nobody else may touch the stream; detached() gives it free for the length of one call.
// The slow calls take the window by value and give it back by value: a cursor whose address escaped could not
// live in registers.
#pragma once

#include <utilities/archive.h>

namespace archiving {

// An archive, and the part of its stream's buffer that the cursor works in.
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

}  // namespace archiving
