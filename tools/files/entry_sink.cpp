#include "tools/files/entry_sink.h"

#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <unordered_map>

#include "tools/files/archivable.h"
#include "tools/files/atomic_file.h"
#include "tools/files/collection.h"
#include "tools/files/entry_file.h"
#include "tools/files/memory_archive.h"
#include "tools/messages/nearest_name.h"
#include "tools/messages/tool_error.h"
#include "tools/output/counted.h"

namespace {

class ArchiveSink : public EntrySink {
 public:
  ArchiveSink(const std::string& path, Duplicates duplicates, bool held)
      : path_(path),
        duplicates_(duplicates),
        file_(path, held || duplicates != Duplicates::both ? AtomicFile::Streams::held
                                                           : AtomicFile::Streams::direct) {}

  std::vector<PutResult> put_all(const std::vector<Put>& entries) override {
    std::vector<PutResult> results;
    for (const Put& one : entries) results.push_back(put_one(*one.entry));
    return results;
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

  PutResult put_one(const StoredEntry& entry) {
    if (const std::string reason = why_not_archived(entry); !reason.empty())
      throw ToolError(ExitCode::problems, entry_name(0, identifier_of(entry)) + ": " + reason);
    const std::string_view bytes = memory_.bytes_of(entry);
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

  void append(std::string_view bytes) {
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
  MemoryArchive memory_;
  std::unordered_map<std::string, std::size_t> by_identifier_;  // the index of its place
  std::vector<Place> places_;
  std::size_t size_ = 0;
  bool has_gaps_ = false;
};

// Entries go to the store as they come: what was put stays, whatever happens later.
class StoreSink : public EntrySink {
 public:
  StoreSink(const std::string& place, Duplicates duplicates)
      : place_(place),
        store_(open_store(place)),
        rule_(duplicates == Duplicates::keep      ? OnDuplicate::keep
              : duplicates == Duplicates::replace ? OnDuplicate::replace
                                                  : OnDuplicate::refuse) {
    if (store_->is_read_only()) {
      throw ToolError(ExitCode::usage,
                      fmt::format("--into {0}: a stored archive takes no more entries: make a store of it "
                                  "(dbentry init, dbentry import {0} --into STORE), or merge (dbentry merge)",
                                  place));
    }
  }

  std::vector<PutResult> put_all(const std::vector<Put>& entries) override {
    std::vector<EntryStore::Put> puts;
    for (const Put& one : entries) puts.push_back({one.entry, one.origin});
    return with_store_errors([&] {
      try {
        return results_of(store_->put_all(puts, rule_));
      } catch (const EntryAlreadyStored&) {
        return one_by_one(puts);
      }
    });
  }

  bool has_imported(const std::string& file, const std::string& sha256) override {
    return rule_ != OnDuplicate::replace &&
           with_store_errors([&] { return store_->has_imported(file, sha256); });
  }
  void set_imported(const std::vector<ImportedFile>& files) override {
    with_store_errors([&] { store_->set_imported(files); });
  }

  std::string commit() override {
    return fmt::format("{} in {}", counted(store_->count(), "entry", "entries"), place_);
  }

 private:
  // All or none were put: so that those are known which are refused.
  std::vector<PutResult> one_by_one(const std::vector<EntryStore::Put>& puts) {
    std::vector<PutResult> results;
    for (const EntryStore::Put& one : puts) {
      try {
        results.push_back(results_of(store_->put_all({one}, rule_)).front());
      } catch (const EntryAlreadyStored&) {
        results.push_back(PutResult::refused);
      }
    }
    return results;
  }

  static std::vector<PutResult> results_of(const std::vector<StoreResult>& stored) {
    std::vector<PutResult> results;
    for (const StoreResult result : stored) {
      switch (result) {
        case StoreResult::added:
          results.push_back(PutResult::added);
          break;
        case StoreResult::replaced:
          results.push_back(PutResult::replaced);
          break;
        case StoreResult::unchanged:
          results.push_back(PutResult::unchanged);
          break;
        case StoreResult::kept:
          results.push_back(PutResult::kept);
      }
    }
    return results;
  }

  std::string place_;
  std::unique_ptr<EntryStore> store_;
  OnDuplicate rule_;
};

struct NamedRule {
  const char* name;
  Duplicates rule;
};
constexpr std::array rules = {NamedRule{"keep", Duplicates::keep}, NamedRule{"replace", Duplicates::replace},
                              NamedRule{"refuse", Duplicates::refuse}};

}  // namespace

bool EntrySink::has_imported(const std::string& /*file*/, const std::string& /*sha256*/) {
  return false;
}

void EntrySink::set_imported(const std::vector<ImportedFile>& /*files*/) {}

std::unique_ptr<EntrySink> open_archive_sink(const std::string& path, Duplicates duplicates, bool held) {
  return std::make_unique<ArchiveSink>(path, duplicates, held);
}

std::unique_ptr<EntrySink> open_store_sink(const std::string& place, Duplicates duplicates) {
  return std::make_unique<StoreSink>(place, duplicates);
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
