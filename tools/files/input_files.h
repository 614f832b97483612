// What an import reads: files, folders of files, standard input; compressed by gzip or not.
//
//   for (const std::string& file : input_files({"folder", "more.cif"}, is_cif_name)) read(file);
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/files/file_kind.h"

// By its name: .cif, .mcif, also with .gz; .json, .jsonl, also with .gz. Letters of either case are equal.
[[nodiscard]] bool is_cif_name(const std::string& path);
[[nodiscard]] bool is_json_name(const std::string& path);

// "1010588" for folder/1010588.cif.gz; "stdin" for "-".
[[nodiscard]] std::string stem_of(const std::string& path);

// Files as they were named, and for a folder those below it that `is_wanted`, by name, so that the same
// folder always gives the same archive. "-" and URLs stay. Throws ToolError (cannot_open) for what is not
// there, and for a folder without such files.
[[nodiscard]] std::vector<std::string> input_files(const std::vector<std::string>& paths,
                                                   bool (*is_wanted)(const std::string&), const char* wanted);

// A file, or standard input by the name "-", which is opened once: the beginning tells what it holds, and
// what holds entries beside one another is not read whole.
//
//   InputFile input(path);
//   if (input.kind() != FileKind::archive) read(uncompressed(path, input.bytes()));
class InputFile {
 public:
  // Throws ToolError (cannot_open), as bytes() does.
  explicit InputFile(const std::string& path);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  // FileKind::unknown for what is no regular file.
  [[nodiscard]] FileKind kind() const { return kind_; }

  // All of it, once.
  [[nodiscard]] std::string bytes();

 private:
  void read_at_most(std::size_t size);

  std::string name_;
  int descriptor_;
  bool is_at_end_ = false;
  std::string bytes_;
  std::size_t expected_ = 0;
  FileKind kind_ = FileKind::unknown;
};

// What the bytes of a file say when they are not compressed any more. Throws ToolError (cannot_open).
[[nodiscard]] std::string uncompressed(const std::string& path, std::string bytes);
