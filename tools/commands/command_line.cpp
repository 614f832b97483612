#include "tools/commands/command_line.h"

#include <fmt/format.h>
#include <fmt/ostream.h>
#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/messages/nearest_name.h"
#include "tools/output/standard_output.h"

namespace {

// The subcommands with their options, and the one that was chosen.
class CommandLine {
 public:
  explicit CommandLine(Terminal& terminal) : terminal_(terminal) {
    app_.set_version_flag("--version", "dbentry " DBENTRY_VERSION, "Print the version and stop");
    app_.set_help_flag("-h,--help", "Print this help and stop");
    app_.get_formatter()->column_width(28);
    app_.require_subcommand(1);
    app_.footer(
        "A stored archive is entries back to back. dbentry COMMAND --help tells more of a command.\n\n"
        "Exit codes: 0 done, 1 done with problems, 2 usage, 3 identifier not found, 4 cannot open,\n"
        "5 stored data damaged.");
    add_import();
    add_show();
    add_list();
    add_related();
    add_depositions();
    add_verify();
    add_journals();
    add_diff();
  }

  ExitCode run(int argument_count, const char* const* arguments) {
    arguments_.assign(arguments, arguments + argument_count);
    if (argument_count > 1) check_first(arguments[1]);
    try {
      app_.parse(argument_count, arguments);
    } catch (const CLI::ParseError& error) {
      return answer(error);
    }
    return command_();
  }

 private:
  // A command, or an option of the program itself.
  void check_first(const std::string& name) {
    const bool is_option = name.starts_with('-');
    const std::vector<std::string> names = is_option ? option_names(app_) : command_names();
    if (std::find(names.begin(), names.end(), name) != names.end()) return;
    throw ToolError(ExitCode::usage, unknown_name(is_option ? "option" : "command", name, names));
  }

  std::vector<std::string> command_names() {
    std::vector<std::string> names;
    for (const CLI::App* command : app_.get_subcommands({})) names.push_back(command->get_name());
    return names;
  }

  static std::vector<std::string> option_names(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
      for (const std::string& name : option->get_snames()) names.push_back("-" + name);
    }
    return names;
  }

  // Help and the version are asked for in the same way as mistakes are told.
  ExitCode answer(const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream messages;
    const int code = app_.exit(error, out, messages);
    terminal_.out << out.str();
    if (code == 0) return ExitCode::done;
    throw ToolError(ExitCode::usage, error.what() + unknown_option_hint(error));
  }

  std::string unknown_option_hint(const CLI::ParseError& error) {
    const CLI::App* command = app_.get_subcommands().empty() ? &app_ : app_.get_subcommands().front();
    const std::string help =
        fmt::format("; see: dbentry {}--help", command == &app_ ? "" : command->get_name() + " ");
    if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::ExtrasError)) return help;
    const std::vector<std::string> names = option_names(*command);
    for (const std::string& argument : arguments_) {
      if (!argument.starts_with("--")) continue;
      const std::string option = argument.substr(0, argument.find('='));
      if (std::find(names.begin(), names.end(), option) != names.end()) continue;
      if (const auto nearest = nearest_name(option, names))
        return fmt::format("; did you mean '{}'?", *nearest);
    }
    return help;
  }

  // `options` lives in this object, as long as the parsed values are needed.
  template <class Options>
  CLI::App* add(const char* name, const char* description, Options& options,
                ExitCode (*command)(const Options&, Terminal&)) {
    CLI::App* app = app_.add_subcommand(name, description);
    app->set_help_flag("-h,--help", "Print this help and stop");
    app->callback([this, &options, command] {
      command_ = [this, &options, command] { return command(options, terminal_); };
    });
    return app;
  }

  static void add_format(CLI::App* app, std::string& format, const char* formats) {
    app->add_option(
           "-f,--format", format,
           fmt::format("{} (default: table on a terminal, otherwise text: cells separated by tabs)", formats))
        ->type_name("FORMAT");
  }

  static CLI::Option* add_file(CLI::App* app, std::string& file, const char* name = "FILE") {
    return app->add_option(name, file, "A stored archive")->required()->type_name("");
  }

  void add_import() {
    CLI::App* app =
        add("import", "Make a stored archive of the structures in CIF files", import_, import_command);
    app->add_option("PATH", import_.paths, "CIF files, and folders with .cif files at any depth")
        ->required()
        ->type_name("");
    app->add_option("-o,--output", import_.output,
                    "The stored archive to write; an old one is replaced when the new one is whole")
        ->type_name("FILE");
    app->add_option("--report", import_.report,
                    "Write what was found and what was absent, one JSON object an entry")
        ->type_name("FILE");
    app->add_flag("--dry-run", import_.dry_run, "Read and report, but write no archive");
    app->add_flag("--strict", import_.strict, "Write no archive when there is an error or a warning");
  }

  void add_show() {
    CLI::App* app = add("show", "Print the summaries of entries", show_, show_command);
    add_file(app, show_.file);
    app->add_option("ID", show_.identifiers, "Identifiers (default: all entries)")->type_name("");
    app->add_option("-f,--format", show_.format, "text, json or jsonl (default: text)")->type_name("FORMAT");
  }

  void add_list() {
    CLI::App* app = add("list", "Print one line an entry", list_, list_command);
    add_file(app, list_.file);
    app->add_option("-c,--columns", list_.columns, "Names separated by commas")->type_name("COLUMNS");
    app->footer(fmt::format("Columns: {}", fmt::join(list_columns(), ", ")));
    add_format(app, list_.format, "text, table, json, jsonl or csv");
  }

  void add_related() {
    CLI::App* app = add("related", "Print the identifiers of the entries that an entry refers to", related_,
                        related_command);
    add_file(app, related_.file);
    app->add_option("ID", related_.identifier, "An identifier")->required()->type_name("");
    add_format(app, related_.format, "text, table, json, jsonl or csv");
  }

  void add_depositions() {
    CLI::App* app = add("depositions", "Print the deposition codes of an entry and the numbers in them",
                        depositions_, depositions_command);
    add_file(app, depositions_.file);
    app->add_option("ID", depositions_.identifier, "An identifier")->required()->type_name("");
    app->add_option("--kind", depositions_.kind, "Only this kind, such as \"IUCR Coeditor Code\"")
        ->type_name("KIND");
    add_format(app, depositions_.format, "text, table, json, jsonl or csv");
  }

  void add_verify() {
    CLI::App* app =
        add("verify", "Read an archive, rewrite it in memory and compare the bytes", verify_, verify_command);
    add_file(app, verify_.file);
    app->add_option("-o,--output", verify_.output, "Keep the rewritten archive")->type_name("FILE");
  }

  void add_journals() {
    CLI::App* app = add("journals", "Print the journals of the built-in list", journals_, journals_command);
    app->add_option("CODEN", journals_.codens,
                    "Numbers or international CODENs (default: all journals with a title)")
        ->type_name("");
    add_format(app, journals_.format, "text, table, json, jsonl or csv");
  }

  void add_diff() {
    CLI::App* app = add("diff", "Print which components of which entries differ", diff_, diff_command);
    add_file(app, diff_.first, "FILE1");
    add_file(app, diff_.second, "FILE2");
    add_format(app, diff_.format, "text, table, json, jsonl or csv");
  }

  Terminal& terminal_;
  CLI::App app_{"Makes, reads and compares stored archives of crystal-structure entries.", "dbentry"};
  ImportOptions import_;
  ShowOptions show_;
  ListOptions list_;
  RelatedOptions related_;
  DepositionsOptions depositions_;
  VerifyOptions verify_;
  JournalsOptions journals_;
  DiffOptions diff_;
  std::vector<std::string> arguments_;
  std::function<ExitCode()> command_;
};

// Every line of a message begins alike.
void write_message(Terminal& terminal, const std::string& message) {
  std::istringstream lines(message);
  for (std::string line; std::getline(lines, line);) terminal.messages << "dbentry: " << line << '\n';
}

// What came of a piece of the work; no message where nothing is to be told.
struct Result {
  ExitCode code;
  std::string message = {};
};

template <class Action>
Result attempt(const Action& action) {
  try {
    return {action()};
  } catch (const ClosedPipe&) {
    return {ExitCode::done};  // whoever reads the output has had enough
  } catch (const ToolError& error) {
    return {error.code(), error.what()};
  } catch (const std::bad_alloc&) {
    return {ExitCode::problems, "not enough memory"};
  } catch (const std::exception& error) {
    return {ExitCode::problems, error.what()};
  }
}

}  // namespace

ExitCode run_command_line(int argument_count, const char* const* arguments, Terminal& terminal) {
  const Result command = attempt([&] { return CommandLine(terminal).run(argument_count, arguments); });
  // What was printed comes before the message of the command, unless it is the output that has failed.
  const Result output = attempt([&] {
    if (terminal.out.good()) terminal.out.flush();
    return ExitCode::done;
  });
  write_message(terminal, output.message);
  write_message(terminal, command.message);
  return std::max(command.code, output.code);  // the graver has the higher number
}
