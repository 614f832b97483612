// How many of something there are, in words: "1 entry", "2 entries".
#pragma once

#include <fmt/format.h>

#include <cstddef>
#include <string>

[[nodiscard]] inline std::string counted(std::size_t count, const char* one, const char* many) {
  return fmt::format("{} {}", count, count == 1 ? one : many);
}
