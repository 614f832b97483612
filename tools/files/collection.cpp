#include "tools/files/collection.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <set>

#include "tools/files/atomic_file.h"
#include "tools/files/memory_archive.h"
#include "tools/messages/nearest_name.h"

namespace {

// Which of the wanted identifiers have been met.
class Wanted {
 public:
  Wanted(const std::string& place, const std::vector<std::string>& identifiers)
      : place_(place == "-" ? "standard input" : place),
        asked_(identifiers.begin(), identifiers.end()),
        missing_(asked_) {}

  bool is_wanted(const std::string& identifier) {
    if (asked_.empty()) return true;
    present_.push_back(identifier);
    missing_.erase(identifier);
    return asked_.count(identifier) != 0;
  }

  // After the last entry.
  void check() const {
    if (missing_.empty()) return;
    std::vector<std::string> sentences;
    for (const std::string& identifier : missing_) {
      sentences.push_back(fmt::format("{}: {}", place_, unknown_name("identifier", identifier, present_)));
    }
    throw ToolError(ExitCode::not_found, fmt::format("{}", fmt::join(sentences, "\n")));
  }

 private:
  std::string place_;
  std::set<std::string> asked_;
  std::set<std::string> missing_;
  std::vector<std::string> present_;
};

}  // namespace

int for_each_entry(const std::string& place, const std::vector<std::string>& wanted,
                   const std::function<void(const StoredEntry&)>& take) {
  Wanted identifiers(place, wanted);
  EntryFile entries(place);
  for (auto entry = entries.next(); !entry.is_null(); entry = entries.next()) {
    if (identifiers.is_wanted(identifier_of(*entry))) take(*entry);
  }
  identifiers.check();
  return entries.number();
}

void for_each_columns(const std::string& place, const std::function<void(const EntryColumns&)>& take) {
  for_each_entry(place, {}, [&](const StoredEntry& entry) { take(entry_columns(entry, {})); });
}

void change_entries(const std::string& place, const std::vector<std::string>& wanted,
                    const EntryChange& change) {
  if (place == "-") {
    throw ToolError(ExitCode::usage, "standard input cannot be changed: name the file of the archive");
  }
  Wanted identifiers(place, wanted);
  EntryFile entries(place, EntryFile::Access::anywhere);
  AtomicFile changed(place);
  for (auto entry = entries.next(); !entry.is_null(); entry = entries.next()) {
    if (!identifiers.is_wanted(identifier_of(*entry))) {
      changed.write(entries.bytes(entries.offset(), entries.end()));
      continue;
    }
    const THandle<StoredEntry> result = change(entry);
    if (result.is_null()) continue;
    changed.write(result == entry ? entries.bytes(entries.offset(), entries.end())
                                  : archived([&](Archive& archive) { result->write(archive); }));
  }
  identifiers.check();
  changed.commit();
}
