// Stream buffers over memory, for the libraries that write to standard streams.
#pragma once

#include <streambuf>
#include <string_view>
#include <vector>

// Takes what is written into memory that is used again after clear().
class OutputBuffer : public std::streambuf {
 public:
  OutputBuffer() : memory_(1 << 20) { clear(); }
  void clear() { setp(memory_.data(), memory_.data() + memory_.size()); }
  [[nodiscard]] std::string_view bytes() const {
    return {pbase(), static_cast<std::size_t>(pptr() - pbase())};
  }

 private:
  std::vector<char> memory_;
};

// Gives out bytes that stay where they are.
class InputBuffer : public std::streambuf {
 public:
  void assign(std::string_view bytes) {
    char* begin = const_cast<char*>(bytes.data());
    setg(begin, begin, begin + bytes.size());
  }
};
