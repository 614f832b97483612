#include "tools/files/entry_file.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utilities/archive.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <set>

#include "tools/messages/nearest_name.h"
#include "tools/messages/tool_error.h"

EntryFile::EntryFile(const std::string& name) : name_(name), file_(std::fopen(name.c_str(), "rb")) {
  if (file_ == nullptr) throw system_error(name_, "open", errno);
  struct stat status = {};
  if (::fstat(::fileno(file_.get()), &status) == 0 && S_ISDIR(status.st_mode)) {
    throw ToolError(
        ExitCode::cannot_open,
        fmt::format("{}: is a folder; a stored archive is wanted (dbentry import makes one)", name_));
  }
}

THandle<StoredEntry> EntryFile::next() {
  errno = 0;
  const int first_byte = std::fgetc(file_.get());
  if (first_byte == EOF) {
    if (std::ferror(file_.get()) != 0) throw system_error(name_, "read", errno);
    return THandle<StoredEntry>();
  }
  std::ungetc(first_byte, file_.get());
  offset_ = std::ftell(file_.get());
  ++number_;
  THandle<StoredEntry> entry = empty_entry();
  std::string reason;
  try {
    Archive archive(file_.get());
    entry->read(archive);
    // A text whose bytes are missing is no error of the archive: the next item would tell. The last text of
    // the last entry has no next item.
    if (std::feof(file_.get()) != 0) reason = "its last text is cut short";
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    reason = error.what();
  }
  if (std::ferror(file_.get()) != 0) throw system_error(name_, "read", errno);
  if (!reason.empty()) {
    throw ToolError(ExitCode::damaged,
                    fmt::format("{}: {} at offset {} is damaged: {} (reading had come to offset {})", name_,
                                entry_name(number_, identifier_of(*entry)), offset_, reason, end()));
  }
  return entry;
}

long EntryFile::end() const {
  return std::ftell(file_.get());
}

std::string EntryFile::bytes(long begin, long end) const {
  std::string result(static_cast<std::size_t>(end - begin), '\0');
  std::size_t done = 0;
  while (done < result.size()) {
    const ssize_t count = ::pread(::fileno(file_.get()), result.data() + done, result.size() - done,
                                  begin + static_cast<long>(done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw system_error(name_, "read a second time", errno);
    if (count == 0) throw ToolError(ExitCode::cannot_open, name_ + ": became shorter while it was read");
    done += static_cast<std::size_t>(count);
  }
  return result;
}

void EntryFile::go_to(long offset) {
  if (std::fseek(file_.get(), offset, SEEK_SET) != 0) throw system_error(name_, "go back in", errno);
}

std::string identifier_of(const CrystalStructureDatabaseEntry& entry) {
  const DatabaseEntryIdentifier identifier = entry.identifier();
  return identifier.text();
}

THandle<StoredEntry> empty_entry() {
  return THandle<StoredEntry>(new StoredEntry(DatabaseEntryIdentifier(), {}, {}, {}, {}, {}, {}, {}, {}, {},
                                              {}, {}, {}, {}, {}, {}, {}));
}

std::string entry_name(int number, const std::string& identifier) {
  constexpr std::size_t longest = 40;
  std::string shown = identifier.substr(0, longest);
  std::replace_if(
      shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; },
      '?');
  if (identifier.size() > longest) shown += "...";
  return shown.empty() ? fmt::format("entry {}", number) : fmt::format("entry {} ({})", number, shown);
}

int for_each_entry(const std::string& file, const std::vector<std::string>& wanted,
                   const std::function<void(const StoredEntry&)>& take) {
  std::vector<std::string> present;
  std::set<std::string> missing(wanted.begin(), wanted.end());
  const std::set<std::string> asked = missing;
  EntryFile entries(file);
  for (auto entry = entries.next(); !entry.is_null(); entry = entries.next()) {
    const std::string identifier = identifier_of(*entry);
    if (!asked.empty()) present.push_back(identifier);
    missing.erase(identifier);
    if (asked.empty() || asked.count(identifier) != 0) take(*entry);
  }
  if (missing.empty()) return entries.number();
  std::vector<std::string> sentences;
  for (const std::string& identifier : missing) {
    sentences.push_back(fmt::format("{}: {}", file, unknown_name("identifier", identifier, present)));
  }
  throw ToolError(ExitCode::not_found, fmt::format("{}", fmt::join(sentences, "\n")));
}
