#include <fmt/format.h>
#include <fmt/ostream.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <ostream>

#include "tools/commands/commands.h"
#include "tools/files/atomic_file.h"
#include "tools/files/entry_file.h"
#include "tools/files/memory_archive.h"

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
  EntryFile file(options.file);
  std::unique_ptr<AtomicFile> copy;
  if (!options.output.empty()) copy = std::make_unique<AtomicFile>(options.output);
  int different = 0;
  long size = 0;
  for (auto entry = file.next(); !entry.is_null(); entry = file.next()) {
    const std::string stored = file.bytes(file.offset(), file.end());
    const std::string rewritten = archived([&](Archive& archive) { entry->write(archive); });
    size = file.end();
    if (copy != nullptr &&
        std::fwrite(rewritten.data(), 1, rewritten.size(), copy->stream()) != rewritten.size()) {
      throw system_error(options.output, "write", errno);
    }
    if (stored == rewritten) continue;
    ++different;
    const std::size_t place = first_difference(stored, rewritten);
    fmt::print(terminal.messages,
               "{}: {} differs when rewritten, first at offset {} of the file: {} is stored, {} written\n",
               options.file, entry_name(file.number(), identifier_of(*entry)),
               file.offset() + static_cast<long>(place), byte_text(stored, place),
               byte_text(rewritten, place));
  }
  if (copy != nullptr) copy->commit();
  fmt::print(terminal.out, "{}: {} entries, {} bytes, {}\n", options.file, file.number(), size,
             different == 0 ? "rewritten byte for byte" : fmt::format("{} differ when rewritten", different));
  return different == 0 ? ExitCode::done : ExitCode::damaged;
}
