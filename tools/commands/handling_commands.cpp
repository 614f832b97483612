// The commands that make collections of collections: extract, merge, remove.
#include <fmt/format.h>
#include <fmt/ostream.h>

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

void need_output(const std::string& command, const std::string& output) {
  if (output.empty()) {
    throw ToolError(ExitCode::usage, fmt::format("{}: -o FILE says where the entries go", command));
  }
}

std::string entries_text(std::size_t count) {
  return fmt::format("{} {}", count, count == 1 ? "entry" : "entries");
}

}  // namespace

ExitCode extract_command(const ExtractOptions& options, Terminal& terminal) {
  need_output("extract", options.output);
  if (options.identifiers.empty()) {
    throw ToolError(ExitCode::usage, "extract: which entries? Name at least one identifier");
  }
  Outputs outputs(options.force);
  outputs.read(options.collection);
  outputs.written("-o", options.output, FileKind::archive);
  outputs.check();
  // Nothing goes to standard output before every identifier has been found.
  const auto sink = open_archive_sink(options.output, Duplicates::both, true);
  std::size_t count = 0;
  for_each_entry(options.collection, options.identifiers, [&](const StoredEntry& entry) {
    sink->put(entry);
    ++count;
  });
  const std::string written = sink->commit();
  fmt::print(closing_stream(options.output, terminal), "{}; {}\n", entries_text(count), written);
  return ExitCode::done;
}

ExitCode merge_command(const MergeOptions& options, Terminal& terminal) {
  need_output("merge", options.output);
  const Duplicates rule = duplicates_rule(options.on_duplicate, Duplicates::refuse);
  Outputs outputs(options.force);
  for (const std::string& collection : options.collections) outputs.read(collection);
  outputs.written("-o", options.output, FileKind::archive);
  outputs.check();
  const auto sink = open_archive_sink(options.output, rule);
  Progress progress(terminal, options.collections.size(), "collections");
  std::size_t added = 0;
  std::size_t unchanged = 0;
  std::size_t replaced = 0;
  std::size_t kept = 0;
  std::size_t refused = 0;
  std::size_t done = 0;
  for (const std::string& collection : options.collections) {
    for_each_entry(collection, {}, [&](const StoredEntry& entry) {
      switch (sink->put(entry, {collection, identifier_of(entry)})) {
        case PutResult::added:
          ++added;
          break;
        case PutResult::unchanged:
          ++unchanged;
          break;
        case PutResult::replaced:
          ++replaced;
          break;
        case PutResult::kept:
          ++kept;
          break;
        case PutResult::refused:
          ++refused;
          progress.clear();
          fmt::print(
              terminal.messages,
              "{}: error: another entry {} was there before; --on-duplicate keep or replace says which "
              "of the two stays\n",
              collection, identifier_of(entry));
      }
    });
    progress.show(++done);
  }
  progress.clear();
  std::ostream& closing = closing_stream(options.output, terminal);
  if (refused > 0) {
    fmt::print(closing, "{} refused; {} is left as it was\n", entries_text(refused), options.output);
    return ExitCode::problems;
  }
  const std::string written = sink->commit();
  fmt::print(closing, "{} added, {} the same again, {} replaced, {} not taken; {}\n", entries_text(added),
             unchanged, replaced, kept, written);
  return ExitCode::done;
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
