#include "tools/output/standard_output.h"

#include <unistd.h>

#include <cerrno>

#include "tools/messages/tool_error.h"

StandardOutput::StandardOutput(int descriptor) : descriptor_(descriptor), buffer_(1 << 16) {
  setp(buffer_.data(), buffer_.data() + buffer_.size());
}

StandardOutput::int_type StandardOutput::overflow(int_type byte) {
  sync();
  if (traits_type::eq_int_type(byte, traits_type::eof())) return traits_type::not_eof(byte);
  return sputc(traits_type::to_char_type(byte));
}

int StandardOutput::sync() {
  const char* next = pbase();
  const char* const end = pptr();
  // What cannot be written is not tried again.
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  while (next != end) {
    const ssize_t count = ::write(descriptor_, next, static_cast<std::size_t>(end - next));
    if (count >= 0) {
      next += count;
    } else if (errno == EPIPE) {
      throw ClosedPipe();
    } else if (errno != EINTR) {
      throw system_error("standard output", "write", errno);
    }
  }
  return 0;
}
