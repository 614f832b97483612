// What atoms say: perceive fills components, check asks what an editor asks.
#include <fmt/format.h>
#include <fmt/ostream.h>
#include <fmt/ranges.h>
#include <perception/components.h>
#include <perception/entry_check.h>

#include <chrono>
#include <ostream>
#include <set>

#include "tools/commands/commands.h"
#include "tools/files/collection.h"
#include "tools/output/counted.h"
#include "tools/output/progress.h"
#include "tools/output/table_output.h"

namespace {

int present_year() {
  const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
  return static_cast<int>(std::chrono::year_month_day(today).year());
}

std::string moieties_text(const PerceptionReport& report) {
  static constexpr const char* kinds[] = {"", " (chain)", " (layer)", " (framework)"};
  std::vector<std::string> texts;
  for (const PerceivedMoiety& moiety : report.moieties) {
    texts.push_back(moiety.formula + kinds[static_cast<std::size_t>(moiety.dimension) % 4]);
  }
  return fmt::format("{}", fmt::join(texts, ", "));
}

}  // namespace

ExitCode perceive_command(const PerceiveOptions& options, Terminal& terminal) {
  TableOutput table(terminal, output_format(options.format, terminal),
                    {"identifier", "filled", "bonds", "moieties", {"notes", "; "}});
  Progress progress(terminal, 0, "entries");
  std::size_t done = 0;
  const auto perceive = [&](const StoredEntry& entry) {
    const PerceivedEntry perceived = perceive_components(entry);
    const PerceptionReport& report = perceived.report;
    table.add({identifier_of(entry), report.filled, report.bonds, moieties_text(report), report.notes});
    progress.show(++done);
    return perceived;
  };
  if (options.dry_run) {
    for_each_entry(options.collection, options.identifiers,
                   [&](const StoredEntry& entry) { (void)perceive(entry); });
  } else {
    change_entries(options.collection, options.identifiers, [&](const THandle<StoredEntry>& entry) {
      const PerceivedEntry perceived = perceive(*entry);
      if (perceived.report.filled.empty()) return entry;
      return THandle<StoredEntry>(new StoredEntry(perceived.entry));
    });
  }
  progress.clear();
  table.finish();
  return ExitCode::done;
}

ExitCode check_command(const CheckCommandOptions& options, Terminal& terminal) {
  std::set<std::string> identifiers;
  for_each_columns(options.collection,
                   [&](const EntryColumns& entry) { identifiers.insert(entry.identifier); });
  CheckOptions asked;
  asked.year = present_year();
  asked.is_there = [&](const DatabaseEntryIdentifier& identifier) {
    return identifiers.count(identifier.text()) != 0;
  };
  const std::set<std::string> wanted(options.identifiers.begin(), options.identifiers.end());
  TableOutput table(terminal, output_format(options.format, terminal),
                    {"identifier", "number", "where", "finding"});
  Progress progress(terminal, identifiers.size(), "entries");
  DuplicateSearch duplicates;
  std::size_t findings = 0;
  std::size_t done = 0;
  const auto check = [&](const StoredEntry& entry) {
    std::vector<Finding> found = check_entry(entry, asked);
    if (wanted.empty()) {
      for (Finding& finding : duplicates.add(entry)) found.push_back(std::move(finding));
    }
    for (const Finding& finding : found) {
      table.add({identifier_of(entry), finding.number, finding.where, finding.sentence});
    }
    findings += found.size();
    progress.show(++done);
  };
  for_each_entry(options.collection, options.identifiers, check);
  progress.clear();
  table.finish();
  fmt::print(terminal.messages, "dbentry: {} in {}\n", counted(findings, "finding", "findings"),
             counted(done, "entry", "entries"));
  return findings == 0 ? ExitCode::done : ExitCode::problems;
}
