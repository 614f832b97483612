#include <fmt/format.h>
#include <fmt/ostream.h>

#include <algorithm>
#include <memory>
#include <ostream>

#include "tools/commands/commands.h"
#include "tools/files/atomic_file.h"
#include "tools/files/digest.h"
#include "tools/files/entry_file.h"
#include "tools/files/memory_archive.h"
#include "tools/files/outputs.h"
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
  EntryFile file(options.collection, EntryFile::Access::anywhere);
  std::unique_ptr<AtomicFile> copy;
  if (!options.output.empty()) copy = std::make_unique<AtomicFile>(options.output);
  std::ostream& out = options.output == "-" || options.digest == "-" ? terminal.messages : terminal.out;
  Progress progress(terminal, 0, "entries");
  Digest digest;
  int different = 0;
  long size = 0;
  for (auto entry = file.next(); !entry.is_null(); entry = file.next()) {
    progress.show(static_cast<std::size_t>(file.number()));
    const std::string stored = file.bytes(file.offset(), file.end());
    const std::string rewritten = archived([&](Archive& archive) { entry->write(archive); });
    digest.add(stored);
    size = file.end();
    if (copy != nullptr) copy->write(rewritten);
    if (stored == rewritten) continue;
    ++different;
    progress.clear();
    const std::size_t place = first_difference(stored, rewritten);
    fmt::print(terminal.messages,
               "{}: {} differs when rewritten, first at offset {} of the file: {} is stored, {} written\n",
               name, entry_name(file.number(), identifier_of(*entry)),
               file.offset() + static_cast<long>(place), byte_text(stored, place),
               byte_text(rewritten, place));
  }
  progress.clear();
  if (copy != nullptr) copy->commit();
  const std::string found = digest.text();
  fmt::print(out, "{}: {} entries, {} bytes, {}\n", name, file.number(), size,
             different == 0 ? "rewritten byte for byte" : fmt::format("{} differ when rewritten", different));
  fmt::print(out, "SHA-256 {}\n", found);
  if (options.digest.empty()) return different == 0 ? ExitCode::done : ExitCode::damaged;
  if (expected.empty()) {
    AtomicFile kept(options.digest);
    kept.write(fmt::format("{}  {}\n", found, options.collection));
    kept.commit();
    return different == 0 ? ExitCode::done : ExitCode::damaged;
  }
  if (found == expected) {
    fmt::print(out, "the same as in {}\n", options.digest);
    return different == 0 ? ExitCode::done : ExitCode::damaged;
  }
  throw ToolError(ExitCode::damaged,
                  fmt::format("{}: not the bytes of the digest in {}, which is {}; after a change that was "
                              "meant, --force keeps the new digest",
                              name, options.digest, expected));
}
