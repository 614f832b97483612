#include "tools/commands/pages.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace {

// ---- The manual page

// A line that begins with a dot or an apostrophe would be a request, a backslash an escape.
std::string roff(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '\\') {
      result += "\\e";
    } else if (c == '-') {
      result += "\\-";
    } else if ((c == '.' || c == '\'') && (result.empty() || result.back() == '\n')) {
      result += "\\&";
      result += c;
    } else {
      result += c;
    }
  }
  return result;
}

// An empty line of a text begins a paragraph.
std::string paragraphs(const std::string& text) {
  std::string result;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    result += end == begin ? ".PP\n" : roff(text.substr(begin, end - begin)) + "\n";
    begin = end + 1;
  }
  return result;
}

std::vector<const CLI::Option*> positionals(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::vector<const CLI::Option*> named_options(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return option->nonpositional(); });
}

// "-o FILE, --output FILE"
std::string option_heading(const CLI::Option& option) {
  std::vector<std::string> names;
  const std::string type = option.get_type_name();
  const auto add = [&](const std::string& name) {
    names.push_back(type.empty() ? fmt::format("\\fB{}\\fR", roff(name))
                                 : fmt::format("\\fB{}\\fR \\fI{}\\fR", roff(name), roff(type)));
  };
  for (const std::string& name : option.get_snames()) add("-" + name);
  for (const std::string& name : option.get_lnames()) add("--" + name);
  return fmt::format("{}", fmt::join(names, ", "));
}

std::string options_section(const CLI::App& app) {
  std::string text;
  for (const CLI::Option* option : positionals(app)) {
    text +=
        fmt::format(".TP\n\\fI{}\\fR\n{}\n", roff(option->get_name(true)), roff(option->get_description()));
  }
  for (const CLI::Option* option : named_options(app)) {
    text += fmt::format(".TP\n{}\n{}\n", option_heading(*option), roff(option->get_description()));
  }
  return text;
}

void add_commands(const CLI::App& app, const std::string& prefix, std::string& text) {
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    const std::string name = prefix + command->get_name();
    std::string usage = fmt::format("\\fB{}\\fR [\\fIoptions\\fR]", roff(name));
    for (const CLI::Option* option : positionals(*command))
      usage += fmt::format(" [\\fI{}\\fR]", roff(option->get_name(true)));
    text += fmt::format(".SS {}\n{}.\n.PP\n{}\n{}", usage, roff(command->get_description()), ".RS",
                        options_section(*command));
    text += ".RE\n";
    if (!command->get_footer().empty() && command->get_footer() != app.get_footer())
      text += ".PP\n" + paragraphs(command->get_footer());
    add_commands(*command, name + " ", text);
  }
}

// ---- Completion

std::vector<std::string> option_names(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : named_options(app)) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    for (const std::string& name : option->get_snames()) names.push_back("-" + name);
  }
  return names;
}

std::vector<const CLI::App*> commands_of(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<std::string> command_names(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : commands_of(app)) names.push_back(command->get_name());
  return names;
}

std::string bash_completion(const CLI::App& app) {
  std::string cases;
  for (const CLI::App* command : commands_of(app)) {
    const std::vector<std::string> further =
        command->get_name() == "help" ? command_names(app) : command_names(*command);
    cases += fmt::format("    {}) options='{}' words='{}' ;;\n", command->get_name(),
                         fmt::join(option_names(*command), " "), fmt::join(further, " "));
  }
  return fmt::format(R"(# bash completion of dbentry
_dbentry() {{
  local current=${{COMP_WORDS[COMP_CWORD]}} options words
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    COMPREPLY=($(compgen -W '{} {}' -- "$current"))
    return
  fi
  case ${{COMP_WORDS[1]}} in
{}  esac
  if [[ $current == -* ]]; then
    COMPREPLY=($(compgen -W "$options" -- "$current"))
  elif [ -n "$words" ]; then
    COMPREPLY=($(compgen -W "$words" -- "$current"))
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}}
complete -F _dbentry dbentry
)",
                     fmt::join(command_names(app), " "), fmt::join(option_names(app), " "), cases);
}

// Within single quotes of a shell, and of the messages of zsh's _arguments.
std::string quoted(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '\'') {
      result += "'\\''";
    } else if (c == '[' || c == ']' || c == ':') {
      result += std::string("\\") + c;
    } else {
      result += c;
    }
  }
  return result;
}

std::string zsh_completion(const CLI::App& app) {
  std::string commands;
  std::string cases;
  for (const CLI::App* command : commands_of(app)) {
    commands += fmt::format("    '{}:{}'\n", command->get_name(), quoted(command->get_description()));
    std::string arguments;
    for (const CLI::Option* option : named_options(*command)) {
      const std::string value =
          option->get_type_name().empty() ? "" : fmt::format(":{}:_files", quoted(option->get_type_name()));
      for (const std::string& name : option->get_snames())
        arguments += fmt::format(" '-{}[{}]{}'", name, quoted(option->get_description()), value);
      for (const std::string& name : option->get_lnames())
        arguments += fmt::format(" '--{}[{}]{}'", name, quoted(option->get_description()), value);
    }
    cases += fmt::format("    {}) _arguments{} '*:file:_files' ;;\n", command->get_name(), arguments);
  }
  return fmt::format(R"(#compdef dbentry
_dbentry() {{
  local -a commands
  commands=(
{}  )
  if (( CURRENT == 2 )); then
    _describe command commands
    return
  fi
  local command=$words[2]
  shift words
  (( CURRENT-- ))
  case $command in
{}  esac
}}
_dbentry "$@"
)",
                     commands, cases);
}

std::string fish_quoted(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '\'' || c == '\\') result += '\\';
    result += c;
  }
  return result;
}

std::string fish_completion(const CLI::App& app) {
  std::string text = "# fish completion of dbentry\n";
  for (const CLI::App* command : commands_of(app)) {
    text += fmt::format("complete -c dbentry -n __fish_use_subcommand -a {} -d '{}'\n", command->get_name(),
                        fish_quoted(command->get_description()));
    for (const CLI::Option* option : named_options(*command)) {
      text += fmt::format("complete -c dbentry -n '__fish_seen_subcommand_from {}'", command->get_name());
      for (const std::string& name : option->get_snames()) text += " -s " + name;
      for (const std::string& name : option->get_lnames()) text += " -l " + name;
      text += fmt::format("{} -d '{}'\n", option->get_type_name().empty() ? "" : " -r",
                          fish_quoted(option->get_description()));
    }
  }
  return text;
}

}  // namespace

std::string manual_page_of(const CLI::App& app, const std::string& version) {
  std::string commands;
  add_commands(app, "", commands);
  return fmt::format(
      ".TH DBENTRY 1 \"\" \"dbentry {}\" \"User Commands\"\n"
      ".SH NAME\ndbentry \\- {}\n"
      ".SH SYNOPSIS\n\\fBdbentry\\fR \\fIcommand\\fR [\\fIoptions\\fR] [\\fIarguments\\fR]\n"
      ".SH DESCRIPTION\n{}"
      ".SH OPTIONS\n{}"
      ".SH COMMANDS\n{}"
      ".SH ENVIRONMENT\n.TP\nDBENTRY_COLLECTION\nThe collection of a command that names none.\n",
      version, roff(app.get_description()), paragraphs(app.get_footer()), options_section(app), commands);
}

std::string completion_of(const CLI::App& app, const std::string& shell) {
  if (shell == "bash") return bash_completion(app);
  if (shell == "zsh") return zsh_completion(app);
  if (shell == "fish") return fish_completion(app);
  throw std::invalid_argument("no completion is known for " + shell);
}
