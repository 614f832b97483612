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
#include "tools/commands/pages.h"
#include "tools/files/collection.h"
#include "tools/files/collection_place.h"
#include "tools/messages/nearest_name.h"
#include "tools/output/list_columns.h"
#include "tools/output/standard_output.h"

namespace {

// The subcommands with their options, and the one that was chosen.
class CommandLine {
 public:
  explicit CommandLine(Terminal& terminal) : terminal_(terminal) {
    app_.set_version_flag("-V,--version", "dbentry " DBENTRY_VERSION, "Print the version and stop");
    app_.set_help_flag("-h,--help", "Print this help and stop");
    app_.get_formatter()->column_width(28);
    app_.require_subcommand(1);
    app_.footer(
        "A COLLECTION is a stored archive (entries back to back), a SQLite store or a URL; it may be left "
        "out\n"
        "where the environment variable DBENTRY_COLLECTION names one. \"-\" is standard input or output.\n"
        "dbentry help COMMAND tells more of a command.\n\n"
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
    add_extract();
    add_merge();
    add_remove();
    add_stats();
    add_find();
    add_perceive();
    add_check();
    add_picture();
    add_export();
    add_set();
    add_stores();
    add_help();
  }

  [[nodiscard]] const CLI::App& description() const { return app_; }

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

  // `options` lives in this object, as long as the parsed values are needed. `prepare` makes of what was said
  // what the command takes.
  template <class Options>
  CLI::App* add(const char* name, const char* description, Options& options,
                ExitCode (*command)(const Options&, Terminal&), const std::function<void()>& prepare = {}) {
    CLI::App* app = app_.add_subcommand(name, description);
    app->set_help_flag("-h,--help", "Print this help and stop");
    app->callback([this, &options, command, prepare] {
      command_ = [this, &options, command, prepare] {
        if (prepare) prepare();
        return command(options, terminal_);
      };
    });
    return app;
  }

  static void add_format(CLI::App* app, std::string& format,
                         const char* formats = "text, table, json, jsonl or csv") {
    app->add_option(
           "-f,--format", format,
           fmt::format("{} (default: table on a terminal, otherwise text: cells separated by tabs)", formats))
        ->type_name("FORMAT");
  }

  static void add_collection(CLI::App* app, std::string& collection, const char* name = "COLLECTION") {
    app->add_option(name, collection, "A stored archive, a SQLite store or a URL")->type_name("");
  }

  static void add_identifiers(CLI::App* app, std::vector<std::string>& identifiers, const char* description) {
    app->add_option("ID", identifiers, description)->type_name("");
  }

  static void add_output(CLI::App* app, std::string& output, const char* description) {
    app->add_option("-o,--output", output, description)->type_name("FILE");
  }

  static void add_into(CLI::App* app, std::string& into) {
    app->add_option("--into", into, "The store to put the entries into, which dbentry init has made")
        ->type_name("STORE");
  }

  static void add_force(CLI::App* app, bool& force) {
    app->add_flag("--force", force, "Replace files of another kind too, but never an input");
  }

  static void add_on_duplicate(CLI::App* app, std::string& rule, const char* usual) {
    app->add_option("--on-duplicate", rule,
                    fmt::format("What becomes of an entry that is there already: keep it, replace it by the "
                                "new one, or refuse the new one (default: {})",
                                usual))
        ->type_name("RULE");
  }

  void add_import() {
    CLI::App* app =
        add("import", "Put the structures in CIF files into an archive or a store", import_, import_command);
    app->add_option(
           "PATH", import_.paths,
           "CIF files, folders with .cif, .mcif and .cif.gz files at any depth, and collections, which "
           "are copied whole")
        ->required()
        ->type_name("");
    add_output(app, import_.output,
               "The stored archive to write; an old one is replaced when the new one is whole");
    add_into(app, import_.into);
    app->add_option("--report", import_.report,
                    "Write what was found and what was absent, one JSON object an entry")
        ->type_name("FILE");
    add_on_duplicate(app, import_.on_duplicate, "an archive takes both, a store refuses");
    app->add_option(
           "--id-from", import_.id_from,
           "What entries are called by: code (the database's code, else the name of the block), name "
           "(of the block) or file (its stem); when it is given, what would clash gets -2, -3")
        ->type_name("WHAT");
    app->add_option("--from", import_.from, "cif or json (default: as the file looks)")->type_name("FORMAT");
    app->add_flag("--perceive", import_.perceive, "Find bonds, molecules and diagrams as well");
    app->add_flag("--dry-run", import_.dry_run, "Read and report, but write no entries");
    app->add_flag("--strict", import_.strict,
                  "Write no archive when there is an error, a warning or a skipped block; a store takes the "
                  "files without");
    add_force(app, import_.force);
  }

  void add_show() {
    CLI::App* app = add("show", "Print the summaries of entries", show_, show_command,
                        [this] { take_collection("show", {&show_.collection}, &show_.identifiers); });
    add_collection(app, show_.collection);
    add_identifiers(app, show_.identifiers, "Identifiers (default: all entries)");
    app->add_option("-f,--format", show_.format,
                    "pretty, text (the library's own summary), json or jsonl (default: pretty on a "
                    "terminal, otherwise text)")
        ->type_name("FORMAT");
  }

  void add_list() {
    CLI::App* app = add("list", "Print one line an entry", list_, list_command,
                        [this] { take_collection("list", {&list_.collection}, nullptr); });
    add_collection(app, list_.collection);
    app->add_option("-c,--columns", list_.columns, "Names separated by commas")->type_name("COLUMNS");
    app->footer(fmt::format("Columns: {}", fmt::join(list_columns(), ", ")));
    add_format(app, list_.format);
  }

  void add_find() {
    CLI::App* app = add("find", "Find entries by a query, a filter or a cell", find_, find_command, [this] {
      take_collection("find", {&find_.collection, &find_.query}, nullptr);
    });
    add_collection(app, find_.collection);
    app->add_option("QUERY", find_.query, "Conditions separated by commas, such as Ti>=1,O,year=1960..1990")
        ->type_name("");
    app->add_option("--filter", find_.filter, "A filter, such as elements HAS ALL \"Ti\",\"O\"")
        ->type_name("FILTER");
    app->add_option("--cell", find_.cell, "A cell, in whatever setting: a,b,c,alpha,beta,gamma")
        ->type_name("CELL");
    app->add_option("--centring", find_.centring, "Of that cell: P, A, B, C, I, F, R or H (default: P)")
        ->type_name("LETTER");
    app->add_option("--tolerance", find_.tolerance, "How far a cell may be off (default: 1.5)")
        ->type_name("PERCENT");
    app->add_option("-c,--columns", find_.columns, "Names separated by commas, as list has them")
        ->type_name("COLUMNS");
    add_format(app, find_.format);
    app->add_option("--sort", find_.sort, "By this column (default: identifier)")->type_name("COLUMN");
    app->add_option("--after", find_.after, "Only identifiers after this one")->type_name("ID");
    app->add_option("--limit", find_.limit, "At most so many")->type_name("N");
    app->add_flag("--count", find_.count, "Print only how many");
    app->footer(
        "Names in queries: id, formula, reduced, nelements, natoms, name, author, journal, coden, year,\n"
        "volume_number, page, a, b, c, alpha, beta, gamma, volume, density, r_factor, temperature, sg,\n"
        "deposition, refers_to, source.");
  }

  void add_perceive() {
    CLI::App* app =
        add("perceive", "Fill what atoms say: bonds, molecules, diagrams", perceive_, perceive_command,
            [this] { take_collection("perceive", {&perceive_.collection}, &perceive_.identifiers); });
    add_collection(app, perceive_.collection);
    add_identifiers(app, perceive_.identifiers, "Identifiers (default: all entries)");
    app->add_flag("--dry-run", perceive_.dry_run, "Report, but change nothing");
    add_format(app, perceive_.format);
  }

  void add_set() {
    CLI::App* app =
        add("set", "Change fields of an entry, and print the old values", set_, set_command, [this] {
          take_collection("set", {&set_.collection, &set_.identifier}, &set_.assignments);
        });
    add_collection(app, set_.collection);
    app->add_option("ID", set_.identifier, "An identifier")->type_name("");
    app->add_option(
           "FIELD=VALUE", set_.assignments,
           "A field by its name in JSON, such as publication.year, or year where only one component "
           "has it; parts of a list are separated by semicolons; an empty value is what is not known")
        ->type_name("");
    app->add_flag("--dry-run", set_.dry_run, "Print what would change, but change nothing");
    add_format(app, set_.format);
  }

  void add_export() {
    CLI::App* app =
        add("export", "Write entries in a format that other programs read", export_, export_command,
            [this] { take_collection("export", {&export_.collection}, &export_.identifiers); });
    add_collection(app, export_.collection);
    add_identifiers(app, export_.identifiers, "Identifiers (default: all entries)");
    app->add_option("--where", export_.where, "Only entries that a query finds")->type_name("QUERY");
    app->add_option("--to", export_.to, fmt::format("{}", fmt::join(export_formats(), ", ")))
        ->type_name("FORMAT");
    add_output(app, export_.output, "The file to write");
    app->add_option("-c,--columns", export_.columns, "Of CSV, as list has them")->type_name("COLUMNS");
    app->add_flag("--packed", export_.packed, "Of XYZ: all atoms of the cell, by its operators");
    add_force(app, export_.force);
  }

  void add_picture() {
    CLI::App* app =
        add("picture", "Draw the diagram, the cell or the molecules of entries", picture_, picture_command,
            [this] { take_collection("picture", {&picture_.collection}, &picture_.identifiers); });
    add_collection(app, picture_.collection);
    add_identifiers(app, picture_.identifiers, "Identifiers; more than one make a sheet");
    add_output(app, picture_.output, "The picture: its name ends in .svg, .png or .pdf");
    app->add_flag("--diagram", picture_.diagram,
                  "The chemical diagram (default; the cell where there is none)");
    app->add_flag("--cell", picture_.cell, "The unit cell with its atoms");
    app->add_flag("--molecule", picture_.molecule, "The molecules");
    app->add_option("--view", picture_.view, "Look along a, b, c or x,y,z")->type_name("VIEW");
    app->add_flag("--labels", picture_.labels, "With the labels of atoms");
    app->add_flag("--sheet", picture_.sheet, "A sheet of pictures (default: of all entries)");
    app->add_option("--columns", picture_.columns, "Of the sheet")->type_name("N");
    app->add_option("--width", picture_.width, "Of one picture (default: 800)")->type_name("N");
    app->add_option("--height", picture_.height, "Of one picture (default: 600)")->type_name("N");
    add_force(app, picture_.force);
  }

  void add_check() {
    CLI::App* app =
        add("check", "Ask of entries what an editor asks before they are accepted", check_, check_command,
            [this] { take_collection("check", {&check_.collection}, &check_.identifiers); });
    add_collection(app, check_.collection);
    add_identifiers(app, check_.identifiers, "Identifiers (default: all entries, and which are the same)");
    add_format(app, check_.format);
  }

  void add_extract() {
    CLI::App* app = add("extract", "Copy some entries into a new archive", extract_, extract_command, [this] {
      take_collection("extract", {&extract_.collection}, &extract_.identifiers);
    });
    add_collection(app, extract_.collection);
    add_identifiers(app, extract_.identifiers, "Identifiers of the entries to copy");
    add_output(app, extract_.output, "The stored archive to write");
    add_into(app, extract_.into);
    add_force(app, extract_.force);
  }

  void add_merge() {
    CLI::App* app =
        add("merge", "Copy all entries of several collections into a new archive", merge_, merge_command);
    app->add_option("COLLECTION", merge_.collections, "Stored archives, SQLite stores or URLs")
        ->required()
        ->type_name("");
    add_output(app, merge_.output, "The stored archive to write");
    add_into(app, merge_.into);
    add_on_duplicate(app, merge_.on_duplicate, "refuse");
    add_force(app, merge_.force);
  }

  void add_remove() {
    CLI::App* app = add("remove", "Take entries out of a collection", remove_, remove_command,
                        [this] { take_collection("remove", {&remove_.collection}, &remove_.identifiers); });
    add_collection(app, remove_.collection);
    add_identifiers(app, remove_.identifiers, "Identifiers of the entries to remove");
  }

  void add_related() {
    CLI::App* app =
        add("related", "Print the identifiers of the entries that an entry refers to", related_,
            related_command, [this] { take_pair("related", related_.collection, related_.identifier); });
    add_collection(app, related_.collection);
    app->add_option("ID", related_.identifier, "An identifier")->type_name("");
    app->add_flag("--reverse", related_.reverse, "The entries that refer to it instead");
    app->add_option("--depth", related_.depth, "Follow references so many times (default: 1)")
        ->type_name("N");
    add_format(app, related_.format);
  }

  void add_depositions() {
    CLI::App* app =
        add("depositions", "Print the deposition codes of entries and the numbers in them", depositions_,
            depositions_command, [this] {
              take_collection("depositions", {&depositions_.collection, &depositions_.identifier}, nullptr);
            });
    add_collection(app, depositions_.collection);
    app->add_option("ID", depositions_.identifier, "An identifier (default: all entries)")->type_name("");
    app->add_option("--kind", depositions_.kind, "Only this kind, such as \"IUCR Coeditor Code\"")
        ->type_name("KIND");
    app->add_option("--number", depositions_.number, "Only the codes with this number")->type_name("TEXT");
    add_format(app, depositions_.format);
  }

  void add_stats() {
    CLI::App* app = add("stats", "Count entries by element, year, journal, space group or author", stats_,
                        stats_command, [this] { take_collection("stats", {&stats_.collection}, nullptr); });
    add_collection(app, stats_.collection);
    app->add_option("--by", stats_.by,
                    fmt::format("{} (default: element)", fmt::join(stats_questions(), ", ")))
        ->type_name("WHAT");
    app->add_option("--svg", stats_.svg, "Draw a bar chart into this file as well")->type_name("FILE");
    add_format(app, stats_.format);
    add_force(app, stats_.force);
  }

  void add_stores() {
    CLI::App* init = add("init", "Make a new store without entries", init_, init_command);
    init->add_option("STORE", init_.store, "A file that is not there yet, or a URL")
        ->required()
        ->type_name("");
    CLI::App* reindex = add("reindex", "Make what entries are found by anew", reindex_, reindex_command,
                            [this] { take_collection("reindex", {&reindex_.store}, nullptr); });
    reindex->add_option("STORE", reindex_.store, "A SQLite store or a URL")->type_name("");
    CLI::App* upgrade =
        add("upgrade", "Bring a store to the schema of this version", upgrade_, upgrade_command,
            [this] { take_collection("upgrade", {&upgrade_.store}, nullptr); });
    upgrade->add_option("STORE", upgrade_.store, "A SQLite store or a URL")->type_name("");
  }

  void add_verify() {
    CLI::App* app =
        add("verify", "Read a collection, rewrite it in memory and compare the bytes", verify_,
            verify_command, [this] { take_collection("verify", {&verify_.collection}, nullptr); });
    add_collection(app, verify_.collection);
    add_output(app, verify_.output, "Keep the rewritten archive");
    app->add_option("--digest", verify_.digest,
                    "Keep the SHA-256 of the archive in this file; compare it when the file is there")
        ->type_name("FILE");
    add_force(app, verify_.force);
    app->footer(
        "What is damaged in its structure, and what is written differently, is found by itself. A number or "
        "a\n"
        "letter that was changed in place is found by its digest only: keep one beside the archive.");
  }

  void add_journals() {
    CLI::App* app = add("journals", "Print the journals of the built-in list", journals_, journals_command);
    app->add_option("CODEN", journals_.codens,
                    "Numbers or international CODENs (default: all journals with a title)")
        ->type_name("");
    add_format(app, journals_.format);
  }

  void add_diff() {
    CLI::App* app = add("diff", "Print which entries differ, in which fields, with both values", diff_,
                        diff_command, [this] { take_pair("diff", diff_.first, diff_.second); });
    add_collection(app, diff_.first, "COLLECTION1");
    add_collection(app, diff_.second, "COLLECTION2");
    add_format(app, diff_.format);
  }

  void add_help() {
    CLI::App* app = app_.add_subcommand("help", "Print the help of a command");
    app->add_option("COMMAND", help_about_, "Its name (default: all commands)")->type_name("");
    app->set_help_flag("-h,--help", "Print this help and stop");
    app->callback([this] { command_ = [this] { return help(); }; });
  }

  // As if the help had been asked for by its option.
  ExitCode help() {
    std::vector<const char*> arguments = {"dbentry"};
    for (const std::string& word : help_about_) arguments.push_back(word.c_str());
    arguments.push_back("--help");
    return CommandLine(terminal_).run(static_cast<int>(arguments.size()), arguments.data());
  }

  // Commands that take a collection and one argument more.
  static void take_pair(const std::string& command, std::string& collection, std::string& other) {
    take_collection(command, {&collection, &other}, nullptr);
    if (other.empty()) {
      throw ToolError(ExitCode::usage,
                      fmt::format("{}: an argument is missing; see: dbentry help {}", command, command));
    }
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
  ExtractOptions extract_;
  MergeOptions merge_;
  RemoveOptions remove_;
  FindOptions find_;
  PerceiveOptions perceive_;
  CheckCommandOptions check_;
  ExportOptions export_;
  SetOptions set_;
  PictureCommandOptions picture_;
  StoreOptions init_;
  StoreOptions reindex_;
  StoreOptions upgrade_;
  StatsOptions stats_;
  std::vector<std::string> help_about_;
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
  } catch (const EntryStoreError& error) {
    return {store_failure(error).code(), error.what()};
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

namespace {

// The description as it is, without a command.
template <class Make>
std::string described(const Make& make) {
  std::ostringstream nowhere;
  Terminal terminal{nowhere, nowhere};
  return make(CommandLine(terminal).description());
}

}  // namespace

std::string manual_page() {
  return described([](const CLI::App& app) { return manual_page_of(app, DBENTRY_VERSION); });
}

std::string completion(const std::string& shell) {
  return described([&](const CLI::App& app) { return completion_of(app, shell); });
}
