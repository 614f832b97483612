// C streams that do what a sound program seldom meets: give their bytes in pieces, are interrupted at every
// call, fail at a chosen byte.
#pragma once

#include <support/bytes.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

// Gives `contents` in pieces of `piece` bytes; with `interrupted`, every other call ends with EINTR.
class TricklingInput {
 public:
  TricklingInput(const std::string& contents, std::size_t piece, bool interrupted)
      : contents_(contents), piece_(piece), interrupts_(interrupted) {}

  [[nodiscard]] File open() {
    cookie_io_functions_t functions{};
    functions.read = [](void* self, char* into, std::size_t size) {
      return static_cast<TricklingInput*>(self)->read(into, size);
    };
    return File(fopencookie(this, "r", functions));
  }

 private:
  ssize_t read(char* into, std::size_t size) {
    interrupted_ = interrupts_ && !interrupted_;
    if (interrupted_) {
      errno = EINTR;
      return -1;
    }
    const std::size_t count = std::min({size, piece_, contents_.size() - position_});
    std::memcpy(into, contents_.data() + position_, count);
    position_ += count;
    return static_cast<ssize_t>(count);
  }

  std::string contents_;
  std::size_t piece_;
  bool interrupts_;
  bool interrupted_ = false;
  std::size_t position_ = 0;
};

// Takes `room` bytes and then fails as a full disk does.
class FullOutput {
 public:
  explicit FullOutput(std::size_t room) : room_(room) {}

  [[nodiscard]] File open() {
    cookie_io_functions_t functions{};
    functions.write = [](void* self, const char* from, std::size_t size) {
      return static_cast<FullOutput*>(self)->write(from, size);
    };
    return File(fopencookie(this, "w", functions));
  }
  [[nodiscard]] const std::string& taken() const { return taken_; }

 private:
  ssize_t write(const char* from, std::size_t size) {
    const std::size_t count = std::min(size, room_ - taken_.size());
    taken_.append(from, count);
    if (count == 0) errno = ENOSPC;
    return static_cast<ssize_t>(count);  // 0 is how a cookie tells of a failure
  }

  std::size_t room_;
  std::string taken_;
};
