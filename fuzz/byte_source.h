// Turns the bytes of a fuzzer into values, so that any bytes make some record. Gives zeros when they run out.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

class ByteSource {
 public:
  ByteSource(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  [[nodiscard]] bool empty() const { return next_ == end_; }

  std::uint8_t byte() { return empty() ? std::uint8_t{0} : *next_++; }
  bool flag() { return byte() % 2 != 0; }

  template <class T>
  T scalar() {
    T value{};
    const std::size_t size = std::min(sizeof value, left());
    std::memcpy(&value, next_, size);
    next_ += size;
    return value;
  }

  // lowest to highest, both included.
  int between(int lowest, int highest) { return lowest + byte() % (highest - lowest + 1); }

  // Without a NUL, after which nothing would be read back.
  std::string text() {
    const std::size_t wanted = byte();  // before left() is asked, which it changes
    const std::size_t size = std::min(wanted, left());
    std::string value(reinterpret_cast<const char*>(next_), size);
    next_ += size;
    value.resize(std::strlen(value.c_str()));
    return value;
  }

  template <class Make>
  auto list(const Make& make) {
    std::vector<decltype(make())> result;
    for (int count = between(0, 5); count > 0; --count) result.push_back(make());
    return result;
  }

  std::string rest() {
    std::string value(reinterpret_cast<const char*>(next_), left());
    next_ = end_;
    return value;
  }

 private:
  [[nodiscard]] std::size_t left() const { return static_cast<std::size_t>(end_ - next_); }

  const std::uint8_t* next_;
  const std::uint8_t* end_;
};
