#include "tools/files/entry_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utilities/archive.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <new>
#include <utility>

#include "tools/files/file_kind.h"
#include "tools/messages/tool_error.h"

namespace {

// What it is, and what to do with it, where the file begins like something that is known.
std::string way_out(const std::string& path) {
  const FileKind kind = kind_of_file(path);
  if (kind == FileKind::archive || kind == FileKind::unknown || kind == FileKind::empty) return "";
  std::string importing;
  if (kind == FileKind::cif || kind == FileKind::json || kind == FileKind::compressed) {
    importing = fmt::format("; an archive is made of it by: dbentry import {}{} -o {}", path,
                            kind == FileKind::json ? " --from json" : "",
                            std::filesystem::path(path).filename().replace_extension(".dbe").string());
  }
  return fmt::format("{}: is {}, not a stored archive{}", path, kind_text(kind), importing);
}

}  // namespace

EntryFile::EntryFile(const std::string& name, Access access)
    : name_(name == "-" ? "standard input" : name), path_(name == "-" ? "" : name) {
  if (path_.empty()) {
    const int descriptor = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);
    if (descriptor >= 0) file_.reset(::fdopen(descriptor, "rb"));
  } else {
    file_.reset(std::fopen(path_.c_str(), "rb"));
  }
  if (file_ == nullptr) throw system_error(name_, "open", errno);
  struct stat status = {};
  if (::fstat(::fileno(file_.get()), &status) == 0 && S_ISDIR(status.st_mode)) {
    throw ToolError(
        ExitCode::cannot_open,
        fmt::format("{}: is a folder; a stored archive is wanted (dbentry import makes one)", name_));
  }
  if (access == Access::anywhere && std::ftell(file_.get()) < 0) put_aside();
}

void EntryFile::put_aside() {
  std::unique_ptr<FILE, CloseFile> copy(std::tmpfile());
  if (copy == nullptr) throw system_error("a temporary file for " + name_, "make", errno);
  std::array<char, 1 << 16> buffer;
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file_.get())) {
    if (std::fwrite(buffer.data(), 1, count, copy.get()) != count)
      throw system_error("the temporary file for " + name_, "write", errno);
  }
  if (std::ferror(file_.get()) != 0) throw system_error(name_, "read", errno);
  std::rewind(copy.get());
  file_ = std::move(copy);
}

ToolError EntryFile::damage(const std::string& reason, const StoredEntry& entry) const {
  if (number_ == 1 && !path_.empty()) {
    if (const std::string other = way_out(path_); !other.empty()) return {ExitCode::cannot_open, other};
  }
  return {ExitCode::damaged,
          fmt::format("{}: {} at offset {} is damaged: {} (reading had come to offset {})", name_,
                      entry_name(number_, identifier_of(entry)), offset_, reason, end())};
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
  if (!reason.empty()) throw damage(reason, *entry);
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
  if (number == 0) return "entry " + shown;
  return shown.empty() ? fmt::format("entry {}", number) : fmt::format("entry {} ({})", number, shown);
}
