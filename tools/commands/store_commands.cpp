// The commands that only stores know: init, reindex, upgrade.
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <ostream>

#include "tools/commands/commands.h"
#include "tools/files/collection.h"
#include "tools/output/counted.h"
#include "tools/output/progress.h"

namespace {

std::unique_ptr<EntryStore> open_for_change(const std::string& command, const std::string& place) {
  auto store = open_store(place);
  if (store->is_read_only()) {
    throw ToolError(ExitCode::usage, fmt::format("{}: {} is a stored archive, not a store", command, place));
  }
  return store;
}

}  // namespace

ExitCode init_command(const StoreOptions& options, Terminal& terminal) {
  const auto store = with_store_errors([&] { return init_entry_store(options.store); });
  fmt::print(terminal.out, "{}: a new store; entries come by: dbentry import PATH --into {}\n",
             store->place(), options.store);
  return ExitCode::done;
}

ExitCode reindex_command(const StoreOptions& options, Terminal& terminal) {
  const auto store = open_for_change("reindex", options.store);
  Progress progress(terminal, 0, "entries");
  const StoreReport report = with_store_errors([&] {
    return store->reindex([&](std::uint64_t done, std::uint64_t) {
      progress.show(static_cast<std::size_t>(done));
      return true;
    });
  });
  progress.clear();
  for (const StoreProblem& problem : report.problems) {
    fmt::print(terminal.messages, "{}: {}: {}\n", store->place(), entry_name(0, problem.entry), problem.text);
  }
  fmt::print(terminal.out, "{}: {}, what they are found by is made anew, {}\n", store->place(),
             counted(report.entries, "entry", "entries"),
             counted(report.problems.size(), "problem", "problems"));
  return report.problems.empty() ? ExitCode::done : ExitCode::damaged;
}

ExitCode upgrade_command(const StoreOptions& options, Terminal& terminal) {
  const int before = with_store_errors([&] { return upgrade_entry_store(options.store); });
  fmt::print(terminal.out, "{}: schema version {} before, the present one now\n", options.store, before);
  return ExitCode::done;
}
