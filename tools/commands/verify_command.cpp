#include <fmt/format.h>
#include <fmt/ostream.h>

#include <algorithm>
#include <memory>
#include <ostream>

#include "tools/commands/commands.h"
#include "tools/files/archivable.h"
#include "tools/files/atomic_file.h"
#include "tools/files/collection.h"
#include "tools/files/digest.h"
#include "tools/files/memory_archive.h"
#include "tools/files/outputs.h"
#include "tools/output/counted.h"
#include "tools/output/progress.h"

namespace {

// Where two texts differ first; the length of the shorter one when it is the beginning of the other.
std::size_t first_difference(const std::string& a, const std::string& b) {
  const auto end = a.begin() + static_cast<std::ptrdiff_t>(std::min(a.size(), b.size()));
  return static_cast<std::size_t>(std::mismatch(a.begin(), end, b.begin()).first - a.begin());
}

std::string byte_text(const std::string& bytes, std::size_t place) {
  return place < bytes.size() ? fmt::format("{:02x}", static_cast<unsigned char>(bytes[place])) : "nothing";
}

// What reading a collection gave.
struct Verified {
  std::size_t entries = 0;
  std::string text;  // of the closing line
  std::size_t problems = 0;
  std::string digest;
};

Verified verify_archive(const VerifyOptions& options, const std::string& name, AtomicFile* copy,
                        Terminal& terminal) {
  EntryFile file(options.collection, EntryFile::Access::anywhere);
  Progress progress(terminal, 0, "entries");
  Digest digest;
  Verified result;
  long size = 0;
  for (auto entry = file.next(); !entry.is_null(); entry = file.next()) {
    progress.show(static_cast<std::size_t>(file.number()));
    const std::string stored = file.bytes(file.offset(), file.end());
    const std::string rewritten = archived([&](Archive& archive) { entry->write(archive); });
    digest.add(stored);
    size = file.end();
    if (copy != nullptr) copy->write(rewritten);
    if (stored == rewritten) continue;
    ++result.problems;
    progress.clear();
    const std::size_t place = first_difference(stored, rewritten);
    fmt::print(terminal.messages,
               "{}: {} differs when rewritten, first at offset {} of the file: {} is stored, {} written\n",
               name, entry_name(file.number(), identifier_of(*entry)),
               file.offset() + static_cast<long>(place), byte_text(stored, place),
               byte_text(rewritten, place));
  }
  result.digest = digest.text();
  result.text = fmt::format("{}: {}, {} bytes, {}", name,
                            counted(static_cast<std::size_t>(file.number()), "entry", "entries"), size,
                            result.problems == 0 ? "rewritten byte for byte"
                                                 : fmt::format("{} differ when rewritten", result.problems));
  return result;
}

// Hashes, decoding, encoding byte for byte and derived columns are the store's to check. The digest is that
// of the archive that an export makes.
Verified verify_store(const VerifyOptions& options, AtomicFile* copy, Terminal& terminal) {
  const auto store = open_store(options.collection);
  Progress progress(terminal, 0, "entries");
  const StoreReport report = store->verify([&](std::uint64_t done, std::uint64_t) {
    progress.show(static_cast<std::size_t>(done));
    return true;
  });
  progress.clear();
  for (const StoreProblem& problem : report.problems) {
    fmt::print(terminal.messages, "{}: {}{}{}\n", store->place(),
               problem.entry.empty() ? "" : entry_name(0, problem.entry) + ": ",
               problem.component.empty() ? "" : problem.component + ": ", problem.text);
  }
  Verified result;
  result.problems = report.problems.size();
  if (result.problems == 0) {
    Digest digest;
    std::string without_digest;
    for_each_entry(options.collection, {}, [&](const StoredEntry& entry) {
      const std::string reason = why_not_archived(entry);
      if (!reason.empty() && without_digest.empty())
        without_digest = entry_name(0, identifier_of(entry)) + ": " + reason;
      if (!without_digest.empty()) return;
      const std::string bytes = archived([&](Archive& archive) { entry.write(archive); });
      digest.add(bytes);
      if (copy != nullptr) copy->write(bytes);
    });
    if (without_digest.empty()) result.digest = digest.text();
    if (!without_digest.empty())
      fmt::print(terminal.messages, "{}: no digest, which is that of an archive: {}\n", store->place(),
                 without_digest);
  }
  result.text = fmt::format(
      "{}: {}, {} components, {} bytes, {}", store->place(), counted(report.entries, "entry", "entries"),
      report.components, report.bytes,
      result.problems == 0 ? "all as they were put" : fmt::format("{} problems", result.problems));
  return result;
}

}  // namespace

ExitCode verify_command(const VerifyOptions& options, Terminal& terminal) {
  const std::string name = options.collection == "-" ? "standard input" : options.collection;
  std::string expected;
  if (!options.digest.empty() && kind_of_file(options.digest) == FileKind::digest && !options.force) {
    expected = kept_digest(options.digest);
  }
  Outputs outputs(options.force);
  outputs.read(options.collection);
  outputs.written("-o", options.output, FileKind::archive);
  outputs.written("--digest", options.digest, FileKind::digest);
  outputs.check();
  std::unique_ptr<AtomicFile> copy;
  if (!options.output.empty()) copy = std::make_unique<AtomicFile>(options.output);
  std::ostream& out = options.output == "-" || options.digest == "-" ? terminal.messages : terminal.out;
  const Verified found = is_store(options.collection) ? verify_store(options, copy.get(), terminal)
                                                      : verify_archive(options, name, copy.get(), terminal);
  const ExitCode code = found.problems == 0 ? ExitCode::done : ExitCode::damaged;
  if (copy != nullptr && !found.digest.empty()) copy->commit();
  fmt::print(out, "{}\n", found.text);
  if (found.digest.empty()) {
    const bool was_asked = !options.digest.empty() || copy != nullptr;
    return code == ExitCode::done && was_asked ? ExitCode::problems : code;
  }
  fmt::print(out, "SHA-256 {}\n", found.digest);
  if (options.digest.empty()) return code;
  if (expected.empty()) {
    AtomicFile kept(options.digest);
    kept.write(fmt::format("{}  {}\n", found.digest, options.collection));
    kept.commit();
    return code;
  }
  if (found.digest == expected) {
    fmt::print(out, "the same as in {}\n", options.digest);
    return code;
  }
  throw ToolError(ExitCode::damaged,
                  fmt::format("{}: not the bytes of the digest in {}, which is {}; after a change that was "
                              "meant, --force keeps the new digest",
                              name, options.digest, expected));
}
