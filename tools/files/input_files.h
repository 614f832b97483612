// What an import reads: files, folders of files, standard input; compressed by gzip or not.
//
//   for (const std::string& file : input_files({"folder", "more.cif"}, is_cif_name)) read(text_of(file));
#pragma once

#include <string>
#include <vector>

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

// The bytes of a file or of standard input, and what they say when they are not compressed any more. Throws
// ToolError (cannot_open).
[[nodiscard]] std::string bytes_of(const std::string& path);
[[nodiscard]] std::string uncompressed(const std::string& path, std::string bytes);
