// The subcommands of dbentry: each does its work and says how it ended. What ends one early is thrown:
// ToolError for what has an exit code of its own.
//
// A collection is a stored archive, a SQLite store or a URL; "-" is an archive on standard input.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/messages/tool_error.h"
#include "tools/output/terminal.h"

struct ImportOptions {
  std::vector<std::string> paths;  // files, folders with CIF files below them, and collections
  std::string output;              // an archive to write; empty: none
  std::string into;                // a store to put entries into; empty: none
  std::string report;              // empty: none
  std::string on_duplicate;        // keep, replace, refuse; empty: as the target has it
  std::string id_from;             // code, name, file; empty: code, and clashes stay
  std::string from;                // cif, json; empty: by the name of the file
  bool perceive = false;           // finds bonds and molecules as well
  bool dry_run = false;            // everything but the output
  bool strict = false;             // no output when there was an error, a warning or a skipped block
  bool force = false;
};
ExitCode import_command(const ImportOptions& options, Terminal& terminal);

struct ShowOptions {
  std::string collection;
  std::vector<std::string> identifiers;  // none: all entries
  std::string format;
};
ExitCode show_command(const ShowOptions& options, Terminal& terminal);

struct ListOptions {
  std::string collection;
  std::string columns;  // names separated by commas; empty: a few
  std::string format;
};
ExitCode list_command(const ListOptions& options, Terminal& terminal);

struct RelatedOptions {
  std::string collection;
  std::string identifier;
  bool reverse = false;  // the entries that refer to it
  int depth = 1;         // how many references away
  std::string format;
};
ExitCode related_command(const RelatedOptions& options, Terminal& terminal);

struct DepositionsOptions {
  std::string collection;
  std::string identifier;  // empty: of all entries
  std::string kind;        // empty: all
  std::string number;      // empty: all
  std::string format;
};
ExitCode depositions_command(const DepositionsOptions& options, Terminal& terminal);

struct StatsOptions {
  std::string collection;
  std::string by = "element";
  std::string svg;  // where a bar chart goes; empty: nowhere
  std::string format;
  bool force = false;
};
ExitCode stats_command(const StatsOptions& options, Terminal& terminal);

struct VerifyOptions {
  std::string collection;
  std::string output;  // where the rewritten archive is kept; empty: nowhere
  std::string digest;  // where the digest is kept or compared; empty: nowhere
  bool force = false;
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

struct ExtractOptions {
  std::string collection;
  std::vector<std::string> identifiers;
  std::string output;
  std::string into;
  bool force = false;
};
ExitCode extract_command(const ExtractOptions& options, Terminal& terminal);

struct MergeOptions {
  std::vector<std::string> collections;
  std::string output;
  std::string into;
  std::string on_duplicate;  // empty: refuse
  bool force = false;
};
ExitCode merge_command(const MergeOptions& options, Terminal& terminal);

struct RemoveOptions {
  std::string collection;
  std::vector<std::string> identifiers;
};
ExitCode remove_command(const RemoveOptions& options, Terminal& terminal);

struct StoreOptions {
  std::string store;
};
ExitCode init_command(const StoreOptions& options, Terminal& terminal);
ExitCode reindex_command(const StoreOptions& options, Terminal& terminal);
ExitCode upgrade_command(const StoreOptions& options, Terminal& terminal);

struct SetOptions {
  std::string collection;
  std::string identifier;
  std::vector<std::string> assignments;  // FIELD=VALUE
  std::string format;
  bool dry_run = false;
};
ExitCode set_command(const SetOptions& options, Terminal& terminal);

struct FindOptions {
  std::string collection;
  std::string query;      // the short form; empty: all entries
  std::string filter;     // the filter language; empty: all entries
  std::string cell;       // a,b,c,alpha,beta,gamma; empty: any
  std::string centring;   // of that cell; empty: P
  double tolerance = -1;  // in percent; negative: the usual one
  std::string columns;
  std::string format;
  std::string sort;    // a column; empty: identifiers
  std::string after;   // only identifiers after this one
  long limit = -1;     // negative: none
  bool count = false;  // only how many
};
ExitCode find_command(const FindOptions& options, Terminal& terminal);

struct PerceiveOptions {
  std::string collection;
  std::vector<std::string> identifiers;  // none: all entries
  std::string format;
  bool dry_run = false;
};
ExitCode perceive_command(const PerceiveOptions& options, Terminal& terminal);

struct CheckCommandOptions {
  std::string collection;
  std::vector<std::string> identifiers;  // none: all entries, and which are the same
  std::string format;
};
ExitCode check_command(const CheckCommandOptions& options, Terminal& terminal);

struct PictureCommandOptions {
  std::string collection;
  std::vector<std::string> identifiers;
  std::string output;  // its end says whether SVG, PNG or PDF
  bool diagram = false;
  bool cell = false;
  bool molecule = false;
  std::string view;  // a, b, c or x,y,z
  bool labels = false;
  bool sheet = false;
  std::size_t columns = 0;  // of the sheet; 0: about square
  int width = 800;
  int height = 600;
  bool force = false;
};
ExitCode picture_command(const PictureCommandOptions& options, Terminal& terminal);

struct ExportOptions {
  std::string collection;
  std::vector<std::string> identifiers;  // none: all entries
  std::string where;                     // a query in the short form; empty: all entries
  std::string to;                        // the format
  std::string output;
  std::string columns;  // of CSV
  bool packed = false;  // of XYZ: all atoms of the cell
  bool force = false;
};
ExitCode export_command(const ExportOptions& options, Terminal& terminal);

// What `export` can write, and what `stats` can be asked, for their help.
[[nodiscard]] std::vector<std::string> export_formats();
[[nodiscard]] std::vector<std::string> stats_questions();
