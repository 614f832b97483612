// What ends a command early: a message for the reader and the exit code of the program.
#pragma once

#include <stdexcept>
#include <string>

enum class ExitCode { done = 0, problems = 1, usage = 2, not_found = 3, cannot_open = 4, damaged = 5 };

class ToolError : public std::runtime_error {
 public:
  ToolError(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}

  [[nodiscard]] ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

// "FILE: cannot ACTION: " and the system's reason for the error number, exit code 4.
ToolError system_error(const std::string& file, const std::string& action, int error_number);
