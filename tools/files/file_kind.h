// What a file holds, by its content: names and extensions are no promise.
//
//   if (kind_of_file("some.cif") == FileKind::cif) ...     // "some.cif: is a CIF, not a collection"
//
// Reads a few kilobytes, and one entry of what may be an archive. What cannot be opened is FileKind::unknown.
#pragma once

#include <string>

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

// With its article: "a stored archive", "a CIF"; "something else" for FileKind::unknown.
[[nodiscard]] std::string kind_text(FileKind kind);
