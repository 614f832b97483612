#include "tools/files/outputs.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <optional>
#include <utility>

#include "tools/files/end_of_links.h"
#include "tools/messages/tool_error.h"

namespace {

// Two names are of one file when device and number agree, whatever links lead there.
using FileNumber = std::pair<dev_t, ino_t>;

// None where nothing that could be overwritten is there: a missing file, a pipe, a device.
std::optional<FileNumber> regular_file(const std::string& path, int standard_stream) {
  struct stat status = {};
  const int failed = path == "-" ? ::fstat(standard_stream, &status) : ::stat(path.c_str(), &status);
  if (failed != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return FileNumber(status.st_dev, status.st_ino);
}

bool is_character_device(const std::string& path) {
  struct stat status = {};
  return path != "-" && ::stat(path.c_str(), &status) == 0 && S_ISCHR(status.st_mode);
}

bool is_binary(FileKind kind) {
  return kind == FileKind::archive || kind == FileKind::png || kind == FileKind::pdf;
}

}  // namespace

void Outputs::check() const {
  std::map<FileNumber, std::string> inputs;
  if (!outputs_.empty()) {
    for (const std::string& input : inputs_) {
      if (const auto number = regular_file(input, STDIN_FILENO)) inputs.emplace(*number, input);
    }
  }
  std::map<FileNumber, const Output*> numbers;
  std::map<std::string, const Output*> places;
  for (const Output& output : outputs_) {
    const std::string name = fmt::format("{} {}", output.option, output.path);
    const auto number = regular_file(output.path, STDOUT_FILENO);
    if (number && inputs.count(*number) != 0) {
      const std::string& input = inputs[*number];
      throw ToolError(
          ExitCode::usage,
          fmt::format("{}: is {}; what is read is never overwritten: choose another name", name,
                      input == output.path ? "also an input" : "the same file as the input " + input));
    }
    const Output* twin = nullptr;
    if (number && !numbers.emplace(*number, &output).second) twin = numbers[*number];
    const std::string place = output.path == "-" ? "-" : end_of_links(output.path);
    if (!places.emplace(place, &output).second && !is_character_device(output.path)) twin = places[place];
    if (twin != nullptr) {
      throw ToolError(ExitCode::usage, fmt::format("{} and {} {} are the same file: choose two names", name,
                                                   twin->option, twin->path));
    }
    check_kind(output);
  }
}

void Outputs::check_kind(const Output& output) const {
  if (output.path == "-") {
    if (is_binary(output.kind) && ::isatty(STDOUT_FILENO) != 0) {
      throw ToolError(ExitCode::usage, fmt::format("{} -: {} is nothing for a terminal: name a file, or send "
                                                   "standard output to one",
                                                   output.option, kind_text(output.kind)));
    }
    return;
  }
  const bool is_changed_only = output.kind == FileKind::unknown;
  if (by_force_ || is_changed_only || !regular_file(output.path, STDOUT_FILENO)) return;
  const FileKind old = kind_of_file(output.path);
  if (old == FileKind::empty || old == output.kind) return;
  throw ToolError(ExitCode::usage,
                  fmt::format("{} {}: holds {}, which {} would replace: choose another name, or say --force",
                              output.option, output.path, kind_text(old), kind_text(output.kind)));
}
