// The commands that make collections of collections: extract, merge, remove.
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <map>
#include <memory>
#include <ostream>

#include "tools/commands/commands.h"
#include "tools/files/collection.h"
#include "tools/files/entry_sink.h"
#include "tools/files/outputs.h"
#include "tools/output/progress.h"

namespace {

// Where the closing line goes: never between the bytes of an archive.
std::ostream& closing_stream(const std::string& output, Terminal& terminal) {
  return output == "-" ? terminal.messages : terminal.out;
}

// The archive or the store that a command puts entries into.
struct Target {
  std::string output;
  std::string into;

  [[nodiscard]] const std::string& place() const { return into.empty() ? output : into; }

  void check(const std::string& command, const std::vector<std::string>& inputs, bool force) const {
    if (output.empty() == into.empty()) {
      throw ToolError(ExitCode::usage,
                      fmt::format("{}: -o FILE or --into STORE says where the entries go", command));
    }
    Outputs outputs(force);
    for (const std::string& input : inputs) outputs.read(input);
    outputs.written("-o", output, FileKind::archive);
    outputs.changed("--into", into);
    outputs.check();
  }

  [[nodiscard]] std::unique_ptr<EntrySink> open(Duplicates archive_rule, Duplicates store_rule) const {
    return into.empty() ? open_archive_sink(output, archive_rule, true) : open_store_sink(into, store_rule);
  }
};

void tell_refused(Terminal& terminal, const std::string& collection, const StoredEntry& entry) {
  fmt::print(
      terminal.messages,
      "{}: error: another entry {} was there before; --on-duplicate keep or replace says which of the two "
      "stays\n",
      collection, identifier_of(entry));
}

std::string entries_text(std::size_t count) {
  return fmt::format("{} {}", count, count == 1 ? "entry" : "entries");
}

}  // namespace

ExitCode extract_command(const ExtractOptions& options, Terminal& terminal) {
  if (options.identifiers.empty()) {
    throw ToolError(ExitCode::usage, "extract: which entries? Name at least one identifier");
  }
  const Target target = {options.output, options.into};
  target.check("extract", {options.collection}, options.force);
  // An archive, and standard output, get nothing before every identifier has been found.
  const auto sink = target.open(Duplicates::both, Duplicates::refuse);
  std::size_t count = 0;
  std::size_t refused = 0;
  for_each_entry_and_origin(options.collection, options.identifiers,
                            [&](const THandle<StoredEntry>& entry, const EntryOrigin& origin) {
                              ++count;
                              if (sink->put(*entry, origin) != PutResult::refused) return;
                              ++refused;
                              tell_refused(terminal, options.collection, *entry);
                            });
  const std::string written = sink->commit();
  fmt::print(closing_stream(options.output, terminal), "{}; {}\n", entries_text(count - refused), written);
  return refused == 0 ? ExitCode::done : ExitCode::problems;
}

ExitCode merge_command(const MergeOptions& options, Terminal& terminal) {
  const Duplicates rule = duplicates_rule(options.on_duplicate, Duplicates::refuse);
  const Target target = {options.output, options.into};
  target.check("merge", options.collections, options.force);
  const auto sink = target.open(rule, rule);
  Progress progress(terminal, options.collections.size(), "collections");
  std::map<PutResult, std::size_t> counts;
  std::size_t done = 0;
  for (const std::string& collection : options.collections) {
    for_each_entry_and_origin(collection, {},
                              [&](const THandle<StoredEntry>& entry, const EntryOrigin& origin) {
                                const PutResult result = sink->put(*entry, origin);
                                ++counts[result];
                                if (result != PutResult::refused) return;
                                progress.clear();
                                tell_refused(terminal, collection, *entry);
                              });
    progress.show(++done);
  }
  progress.clear();
  std::ostream& closing = closing_stream(options.output, terminal);
  const std::size_t refused = counts[PutResult::refused];
  if (refused > 0 && options.into.empty()) {
    fmt::print(closing, "{} refused; {} is left as it was\n", entries_text(refused), options.output);
    return ExitCode::problems;
  }
  const std::string written = sink->commit();
  fmt::print(closing, "{} added, {} the same again, {} replaced, {} not taken; {}\n",
             entries_text(counts[PutResult::added]), counts[PutResult::unchanged],
             counts[PutResult::replaced], counts[PutResult::kept] + refused, written);
  return refused == 0 ? ExitCode::done : ExitCode::problems;
}

ExitCode remove_command(const RemoveOptions& options, Terminal& terminal) {
  if (options.identifiers.empty()) {
    throw ToolError(ExitCode::usage, "remove: which entries? Name at least one identifier");
  }
  std::size_t count = 0;
  change_entries(options.collection, options.identifiers, [&](const THandle<StoredEntry>&) {
    ++count;
    return THandle<StoredEntry>();
  });
  fmt::print(terminal.out, "{} removed from {}\n", entries_text(count), options.collection);
  return ExitCode::done;
}
