// The rule for everything that a command writes, so that nothing that somebody has is lost.
//
//   Outputs outputs(options.force);
//   outputs.read("a.cif");
//   outputs.written("-o", options.output, FileKind::archive);
//   outputs.written("--report", options.report, FileKind::json);
//   outputs.check();                                  // before any work is done
//
// Refused, with ToolError (usage) that names the option and the way out:
//   an output that is an input, also through symbolic and hard links, or as the file of a standard stream
//   two outputs that are the same file, or both standard output
//   a target that holds something of another kind, unless it is to be replaced by force
//   an archive or a picture on a terminal
// A target that is empty, missing or no regular file (/dev/full, a pipe) is replaced or written to.
#pragma once

#include <string>
#include <vector>

#include "tools/files/file_kind.h"

class Outputs {
 public:
  explicit Outputs(bool by_force) : by_force_(by_force) {}

  // A file that the command reads; "-" is standard input.
  void read(const std::string& path) { inputs_.push_back(path); }
  // A file that the command writes; "-" is standard output; the empty name is no file.
  void written(const std::string& option, const std::string& path, FileKind kind) {
    if (!path.empty()) outputs_.push_back({option, path, kind});
  }

  // A store that the command puts entries into: what it holds stays.
  void changed(const std::string& option, const std::string& path) {
    if (!path.empty()) outputs_.push_back({option, path, FileKind::unknown});
  }

  void check() const;

 private:
  struct Output {
    std::string option;
    std::string path;
    FileKind kind;
  };

  void check_kind(const Output& output) const;

  bool by_force_;
  std::vector<std::string> inputs_;
  std::vector<Output> outputs_;
};
