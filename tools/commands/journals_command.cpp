#include <database_entry/records/journal.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <string>

#include "tools/commands/commands.h"
#include "tools/messages/nearest_name.h"
#include "tools/output/table_output.h"

namespace {

const char* state_text(const Journal& journal) {
  return journal.state() == Journal::current ? "current" : "discontinued";
}

std::vector<Journal> known_journals() {
  std::vector<Journal> journals;
  for (int coden = 1; coden <= Journal::max_vorn_coden(); ++coden) {
    if (Journal::state(coden) != Journal::unknown) journals.emplace_back(coden);
  }
  return journals;
}

// By number or by international CODEN.
bool is_called(const Journal& journal, const std::string& name) {
  return journal.international_coden() == name || std::to_string(journal.coden()) == name;
}

}  // namespace

ExitCode journals_command(const JournalsOptions& options, Terminal& terminal) {
  const std::vector<Journal> journals = known_journals();
  TableOutput table(terminal, output_format(options.format, terminal), {"number", "coden", "state", "name"});
  const auto add = [&](const Journal& journal) {
    table.add({journal.coden(), journal.international_coden(), state_text(journal), journal.name()});
  };
  std::vector<std::string> missing;
  if (options.codens.empty()) std::for_each(journals.begin(), journals.end(), add);
  for (const std::string& name : options.codens) {
    const auto found = std::find_if(journals.begin(), journals.end(),
                                    [&](const Journal& journal) { return is_called(journal, name); });
    if (found != journals.end()) {
      add(*found);
      continue;
    }
    std::vector<std::string> codens;
    for (const Journal& journal : journals) codens.push_back(journal.international_coden());
    missing.push_back(unknown_name("journal", name, codens));
  }
  table.finish();
  if (missing.empty()) return ExitCode::done;
  throw ToolError(ExitCode::not_found, fmt::format("{}", fmt::join(missing, "\n")));
}
