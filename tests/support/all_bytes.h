// Which of all 256 bytes a function accepts, told as a text in the order of their values.
//
//   EXPECT_EQ(accepted([](char byte) { return is_a_digit(byte); }), by_value(ascii::digits));
#pragma once

#include <string>

namespace ascii {

inline const std::string capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
inline const std::string letters = capitals + "abcdefghijklmnopqrstuvwxyz";
inline const std::string digits = "0123456789";
inline const std::string white_space = " \t\n\v\f\r";

}  // namespace ascii

inline std::string all_bytes() {
  std::string bytes;
  for (int value = 0; value < 256; ++value) bytes += static_cast<char>(value);
  return bytes;
}

// The bytes for which `accepts(byte)` holds.
template <class Accepts>
std::string accepted(const Accepts& accepts) {
  std::string bytes;
  for (const char byte : all_bytes()) {
    if (accepts(byte)) bytes += byte;
  }
  return bytes;
}

inline std::string by_value(const std::string& bytes) {
  return accepted([&](char byte) { return bytes.find(byte) != std::string::npos; });
}
