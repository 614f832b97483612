// What a file holds, byte for byte; empty where there is none.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

inline std::string contents_of_file(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}
