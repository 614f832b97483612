// One line of progress on the message stream, rewritten in place.
//
//   Progress progress(terminal, files.size(), "files");
//   progress.show(17);             // "17/510 files"
//   progress.clear();              // before anything else is written to the message stream
//
// Nothing is written unless a person watches the message stream; at most ten updates a second.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "tools/output/terminal.h"

class Progress {
 public:
  // A total of 0 is one that is not known: "17 entries".
  Progress(Terminal& terminal, std::size_t total, const std::string& what);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void show(std::size_t done);
  void clear();

 private:
  using Clock = std::chrono::steady_clock;

  Terminal& terminal_;
  std::size_t total_;
  std::string what_;
  Clock::time_point next_update_;
  bool line_stands_ = false;
};
