// The end of all symbolic links, also where nothing is there yet.
#pragma once

#include <filesystem>
#include <string>

[[nodiscard]] inline std::string end_of_links(const std::string& path) {
  constexpr int most_links = 40;  // as Linux follows
  std::filesystem::path end = path;
  std::error_code error;
  for (int i = 0; i < most_links && std::filesystem::is_symlink(end, error); ++i) {
    end = end.parent_path() / std::filesystem::read_symlink(end, error);
  }
  const auto resolved = std::filesystem::weakly_canonical(end, error);
  return error ? path : resolved.string();
}
