// The libraries can be built for another machine: their build runs CMake, and no program that it has made.
#include <gtest/gtest.h>
#include <support/file_contents.h>

#include <filesystem>
#include <regex>
#include <string>

namespace {

namespace fs = std::filesystem;

TEST(CrossBuild, RunsNothingButCMake) {
  const fs::path root = PROJECT_TREE;
  const std::regex command(R"(\n\s*COMMAND\s+(\S+))");
  int commands = 0;
  for (const char* top :
       {"cmake", "database_entry", "siblings", "lattice", "exchange", "stores", "perception"}) {
    if (!fs::exists(root / top)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root / top)) {
      const fs::path& path = entry.path();
      if (path.filename() != "CMakeLists.txt" && path.extension() != ".cmake") continue;
      const std::string text = contents_of_file(path);
      for (std::sregex_iterator match(text.begin(), text.end(), command), end; match != end; ++match) {
        EXPECT_EQ((*match)[1], "${CMAKE_COMMAND}") << path;
        ++commands;
      }
    }
  }
  EXPECT_GT(commands, 0);
}

}  // namespace
