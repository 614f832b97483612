// A folder for one test, gone with everything in it when the test ends.
#pragma once

#include <support/file_contents.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "dbentry-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder could be made");
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code nothing_to_be_done;
    std::filesystem::remove_all(path_, nothing_to_be_done);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }

  // Gives the path.
  std::string with(const std::string& name, const std::string& contents) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << contents;
    return file(name);
  }

  [[nodiscard]] std::size_t file_count() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_), {}));
  }

 private:
  std::filesystem::path path_;
};
