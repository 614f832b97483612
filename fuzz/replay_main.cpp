// Runs an entry point over the files named by the arguments, and over those in the folders named by them.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "entry_point.h"

namespace {

void run(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int count, char** arguments) {
  int runs = 0;
  for (int index = 1; index < count; ++index) {
    const std::filesystem::path path = arguments[index];
    if (!std::filesystem::is_directory(path)) {
      run(path);
      ++runs;
      continue;
    }
    for (const auto& file : std::filesystem::recursive_directory_iterator(path)) {
      if (!file.is_regular_file()) continue;
      run(file.path());
      ++runs;
    }
  }
  std::cout << runs << " inputs\n";
  return runs > 0 ? 0 : 1;  // an empty corpus tests nothing
}
