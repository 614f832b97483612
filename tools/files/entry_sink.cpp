#include "tools/files/entry_sink.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <unordered_map>
#include <vector>

#include "tools/files/atomic_file.h"
#include "tools/files/entry_file.h"
#include "tools/files/memory_archive.h"
#include "tools/messages/nearest_name.h"
#include "tools/messages/tool_error.h"

namespace {

class ArchiveSink : public EntrySink {
 public:
  ArchiveSink(const std::string& path, Duplicates duplicates, bool held)
      : path_(path),
        duplicates_(duplicates),
        file_(path, held || duplicates != Duplicates::both ? AtomicFile::Streams::held
                                                           : AtomicFile::Streams::direct) {}

  PutResult put(const StoredEntry& entry, const PutOrigin& /*origin*/) override {
    const std::string bytes = archived([&](Archive& archive) { entry.write(archive); });
    if (duplicates_ == Duplicates::both) {
      append(bytes);
      return PutResult::added;
    }
    const auto [earlier, is_new] = by_identifier_.emplace(identifier_of(entry), places_.size());
    if (is_new) {
      places_.push_back({size_, bytes.size()});
      append(bytes);
      return PutResult::added;
    }
    Place& place = places_[earlier->second];
    if (bytes_at(place) == bytes) return PutResult::unchanged;
    if (duplicates_ == Duplicates::keep) return PutResult::kept;
    if (duplicates_ == Duplicates::refuse) return PutResult::refused;
    place = {size_, bytes.size()};
    append(bytes);
    has_gaps_ = true;
    return PutResult::replaced;
  }

  std::string commit() override {
    if (has_gaps_) return in_words(commit_without_gaps());
    return in_words(file_.commit());
  }

 private:
  struct Place {
    std::size_t offset;
    std::size_t size;
  };

  void append(const std::string& bytes) {
    file_.write(bytes);
    size_ += bytes.size();
  }

  // The stream of an AtomicFile can be read as well, except for streams that are written to directly.
  std::string bytes_at(const Place& place) {
    if (std::fflush(file_.stream()) != 0) file_.fail_to_write();
    std::string bytes(place.size, '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t count = ::pread(::fileno(file_.stream()), bytes.data() + done, bytes.size() - done,
                                    static_cast<off_t>(place.offset + done));
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) throw system_error(path_, "read again", errno);
      done += static_cast<std::size_t>(count);
    }
    return bytes;
  }

  // What was replaced is left out.
  long commit_without_gaps() {
    AtomicFile whole(path_);
    for (const Place& place : places_) whole.write(bytes_at(place));
    return whole.commit();
  }

  [[nodiscard]] std::string in_words(long bytes) const {
    const std::string name = path_ == "-" ? "standard output" : path_;
    return bytes < 0 ? fmt::format("written to {}", name) : fmt::format("{} bytes in {}", bytes, name);
  }

  std::string path_;
  Duplicates duplicates_;
  AtomicFile file_;
  std::unordered_map<std::string, std::size_t> by_identifier_;  // the index of its place
  std::vector<Place> places_;
  std::size_t size_ = 0;
  bool has_gaps_ = false;
};

struct NamedRule {
  const char* name;
  Duplicates rule;
};
constexpr std::array rules = {NamedRule{"keep", Duplicates::keep}, NamedRule{"replace", Duplicates::replace},
                              NamedRule{"refuse", Duplicates::refuse}};

}  // namespace

std::unique_ptr<EntrySink> open_archive_sink(const std::string& path, Duplicates duplicates, bool held) {
  return std::make_unique<ArchiveSink>(path, duplicates, held);
}

Duplicates duplicates_rule(const std::string& name, Duplicates usual) {
  if (name.empty()) return usual;
  std::vector<std::string> names;
  for (const NamedRule& rule : rules) {
    if (rule.name == name) return rule.rule;
    names.emplace_back(rule.name);
  }
  throw ToolError(ExitCode::usage, unknown_name("rule for duplicates", name, names));
}
