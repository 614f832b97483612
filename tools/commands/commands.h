// The subcommands of dbentry: each does its work and says how it ended. What ends one early is thrown:
// ToolError for what has an exit code of its own.
#pragma once

#include <string>
#include <vector>

#include "tools/messages/tool_error.h"
#include "tools/output/terminal.h"

struct ImportOptions {
  std::vector<std::string> paths;  // files, and folders with all *.cif below them
  std::string output;              // may be empty for a dry run
  std::string report;              // empty: none
  bool dry_run = false;            // everything but the output
  bool strict = false;             // no output when there was an error or a warning
};
ExitCode import_command(const ImportOptions& options, Terminal& terminal);

struct ShowOptions {
  std::string file;
  std::vector<std::string> identifiers;  // none: all entries
  std::string format;
};
ExitCode show_command(const ShowOptions& options, Terminal& terminal);

struct ListOptions {
  std::string file;
  std::string columns;  // names separated by commas; empty: a few
  std::string format;
};
ExitCode list_command(const ListOptions& options, Terminal& terminal);

struct RelatedOptions {
  std::string file;
  std::string identifier;
  std::string format;
};
ExitCode related_command(const RelatedOptions& options, Terminal& terminal);

struct DepositionsOptions {
  std::string file;
  std::string identifier;
  std::string kind;  // empty: all
  std::string format;
};
ExitCode depositions_command(const DepositionsOptions& options, Terminal& terminal);

struct VerifyOptions {
  std::string file;
  std::string output;  // where the rewritten archive is kept; empty: nowhere
};
ExitCode verify_command(const VerifyOptions& options, Terminal& terminal);

struct JournalsOptions {
  std::vector<std::string> codens;  // numbers or international CODENs; none: all journals
  std::string format;
};
ExitCode journals_command(const JournalsOptions& options, Terminal& terminal);

struct DiffOptions {
  std::string first;
  std::string second;
  std::string format;
};
ExitCode diff_command(const DiffOptions& options, Terminal& terminal);

// The columns that `list` knows, for its help.
[[nodiscard]] std::vector<std::string> list_columns();
