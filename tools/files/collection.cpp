#include "tools/files/collection.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <set>

#include "tools/files/atomic_file.h"
#include "tools/files/file_kind.h"
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

constexpr std::size_t page_size = 1000;

// Calls `take` with each page of identifiers, in their order.
void for_each_page(EntryStore& store,
                   const std::function<void(const std::vector<DatabaseEntryIdentifier>&)>& take) {
  SelectOptions page;
  page.limit = page_size;
  while (true) {
    const std::vector<DatabaseEntryIdentifier> identifiers = store.select(EntryQuery(), page);
    if (!identifiers.empty()) take(identifiers);
    if (identifiers.size() < page_size) return;
    page.after = identifiers.back().text();
  }
}

// Those of the wanted that are there, or the first sentence about each that is not.
std::vector<DatabaseEntryIdentifier> found_in(EntryStore& store, const std::vector<std::string>& wanted,
                                              std::vector<std::string>& sentences) {
  std::vector<DatabaseEntryIdentifier> found;
  for (const std::string& text : std::set<std::string>(wanted.begin(), wanted.end())) {
    const DatabaseEntryIdentifier identifier(text);
    if (store.contains(identifier)) {
      found.push_back(identifier);
      continue;
    }
    std::string nearest;
    try {
      (void)store.origin(identifier);
    } catch (const EntryNotFound& error) {
      nearest = error.nearest();
    }
    sentences.push_back(fmt::format("{}: {}", store.place(), unknown_name("identifier", text, {nearest})));
  }
  return found;
}

using TakeStored = std::function<void(const THandle<StoredEntry>&, const EntryOrigin&)>;

std::size_t for_each_in_store(const std::string& place, const std::vector<std::string>& wanted,
                              const TakeStored& take) {
  const auto store = open_entry_store(place);
  const auto snapshot = store->snapshot();
  std::size_t count = 0;
  const auto take_all = [&](const std::vector<DatabaseEntryIdentifier>& identifiers) {
    for (const DatabaseEntryIdentifier& identifier : identifiers) {
      take(store->entry(identifier), store->origin(identifier));
      ++count;
    }
  };
  if (wanted.empty()) {
    for_each_page(*store, take_all);
    return count;
  }
  std::vector<std::string> sentences;
  take_all(found_in(*store, wanted, sentences));
  if (sentences.empty()) return count;
  throw ToolError(ExitCode::not_found, fmt::format("{}", fmt::join(sentences, "\n")));
}

std::size_t for_each_in_archive(const std::string& place, const std::vector<std::string>& wanted,
                                const TakeStored& take) {
  Wanted identifiers(place, wanted);
  EntryFile entries(place);
  for (auto entry = entries.next(); !entry.is_null(); entry = entries.next()) {
    const std::string identifier = identifier_of(*entry);
    if (identifiers.is_wanted(identifier)) take(entry, {place == "-" ? "" : place, identifier, "", 0});
  }
  identifiers.check();
  return static_cast<std::size_t>(entries.number());
}

void change_store(const std::string& place, const std::vector<std::string>& wanted,
                  const EntryChange& change) {
  const auto store = open_entry_store(place);
  const auto change_all = [&](const std::vector<DatabaseEntryIdentifier>& identifiers) {
    for (const DatabaseEntryIdentifier& identifier : identifiers) {
      const THandle<StoredEntry> entry = store->entry(identifier);
      const THandle<StoredEntry> result = change(entry);
      if (result.is_null()) {
        store->remove(identifier);
      } else if (!(result == entry)) {
        store->put(*result, store->origin(identifier), OnDuplicate::replace);
      }
    }
  };
  if (wanted.empty()) {
    for_each_page(*store, change_all);
    return;
  }
  std::vector<std::string> sentences;
  const std::vector<DatabaseEntryIdentifier> found = found_in(*store, wanted, sentences);
  if (!sentences.empty()) throw ToolError(ExitCode::not_found, fmt::format("{}", fmt::join(sentences, "\n")));
  change_all(found);
}

}  // namespace

bool is_url(const std::string& place) {
  return place.find("://") != std::string::npos;
}

bool is_store(const std::string& place) {
  return is_url(place) || (place != "-" && kind_of_file(place) == FileKind::store);
}

std::unique_ptr<EntryStore> open_store(const std::string& place) {
  // What is neither is named by what it is.
  if (!is_store(place) && kind_of_file(place) != FileKind::empty) (void)EntryFile(place).next();
  return with_store_errors([&] { return open_entry_store(place); });
}

ToolError store_failure(const EntryStoreError& error) {
  if (const auto* missing = dynamic_cast<const EntryNotFound*>(&error))
    return {ExitCode::not_found, missing->what()};
  if (dynamic_cast<const DamagedStore*>(&error) != nullptr) return {ExitCode::damaged, error.what()};
  if (dynamic_cast<const EntryAlreadyStored*>(&error) != nullptr) return {ExitCode::problems, error.what()};
  return {ExitCode::cannot_open, error.what()};
}

std::size_t for_each_entry_and_origin(const std::string& place, const std::vector<std::string>& wanted,
                                      const TakeStored& take) {
  if (!is_store(place)) return for_each_in_archive(place, wanted, take);
  return with_store_errors([&] { return for_each_in_store(place, wanted, take); });
}

std::size_t for_each_entry(const std::string& place, const std::vector<std::string>& wanted,
                           const std::function<void(const StoredEntry&)>& take) {
  return for_each_entry_and_origin(
      place, wanted, [&](const THandle<StoredEntry>& entry, const EntryOrigin&) { take(*entry); });
}

void for_each_columns(const std::string& place, const std::function<void(const EntryColumns&)>& take) {
  if (!is_store(place)) {
    for_each_entry_and_origin(place, {}, [&](const THandle<StoredEntry>& entry, const EntryOrigin& origin) {
      take(entry_columns(*entry, origin));
    });
    return;
  }
  with_store_errors([&] {
    const auto store = open_entry_store(place);
    SelectOptions page;
    page.limit = page_size;
    while (true) {
      const std::vector<EntryColumns> columns = store->select_columns(EntryQuery(), page);
      for (const EntryColumns& entry : columns) take(entry);
      if (columns.size() < page_size) return;
      page.after = columns.back().identifier;
    }
  });
}

void change_entries(const std::string& place, const std::vector<std::string>& wanted,
                    const EntryChange& change) {
  if (place == "-") {
    throw ToolError(ExitCode::usage, "standard input cannot be changed: name the file of the archive");
  }
  if (is_store(place)) {
    with_store_errors([&] { change_store(place, wanted, change); });
    return;
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
