// What a file holds, by its content: names and extensions are no promise.
//
//   if (kind_of_file("some.cif") == FileKind::cif) ...     // "some.cif: is a CIF, not a collection"
//
// Reads a few kilobytes, and one entry of what may be an archive. What cannot be opened is FileKind::unknown.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

enum class FileKind {
  empty,
  archive,
  store,
  cif,
  xyz,
  json,
  csv,
  svg,
  png,
  pdf,
  digest,
  compressed,
  unknown
};

[[nodiscard]] FileKind kind_of_file(const std::string& path);

// The same where the file is open already, and this many of its first bytes, or all of them, are known.
constexpr std::size_t longest_beginning = 8192;
[[nodiscard]] FileKind kind_of_beginning(const std::string& path, std::string_view beginning);

// With its article: "a stored archive", "a CIF"; "something else" for FileKind::unknown.
[[nodiscard]] std::string kind_text(FileKind kind);
