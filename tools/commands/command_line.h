// The command line of dbentry, from the arguments to the exit code.
#pragma once

#include <string>

#include "tools/messages/tool_error.h"
#include "tools/output/terminal.h"

// Runs the subcommand that the arguments name. Every failure becomes a message and an exit code, that of the
// output too; a reader of the output that has gone is no failure.
[[nodiscard]] ExitCode run_command_line(int argument_count, const char* const* arguments, Terminal& terminal);

// The manual page, and the completion of a shell (bash, zsh or fish), made from the same description of the
// commands as their help.
[[nodiscard]] std::string manual_page();
[[nodiscard]] std::string completion(const std::string& shell);
