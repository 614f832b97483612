// The manual page and the completions of shells, made from the description of the command line.
// Internal: callers want commands/command_line.h.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

// In the macros of man(7).
[[nodiscard]] std::string manual_page_of(const CLI::App& app, const std::string& version);

// A script for bash, zsh or fish.
[[nodiscard]] std::string completion_of(const CLI::App& app, const std::string& shell);
