// The stores that the suites run on: each makes places for new stores, and fills them.
#pragma once

#include <stores/entry_store.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "stores/postgresql_server.h"
#include "support/bytes.h"

// A folder that goes with its object.
class StoreFolder {
 public:
  StoreFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "database-entry-store-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder could be made");
    path_ = name;
  }
  StoreFolder(const StoreFolder&) = delete;
  StoreFolder& operator=(const StoreFolder&) = delete;
  ~StoreFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  [[nodiscard]] std::string file(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

using Entries = std::vector<CrystalStructureImmediateDatabaseEntry>;

inline std::vector<EntryStore::Put> puts_of(const Entries& entries) {
  std::vector<EntryStore::Put> puts;
  for (const auto& entry : entries) puts.push_back({&entry, {}});
  return puts;
}

struct MemoryPlace {
  bool is_there() { return true; }
  std::unique_ptr<EntryStore> init() { return init_entry_store("memory:"); }
  std::unique_ptr<EntryStore> holding(const Entries& entries) {
    auto store = init();
    static_cast<void>(store->put_all(puts_of(entries), OnDuplicate::refuse));
    return store;
  }
};

struct SqlitePlace {
  StoreFolder folder;
  int count = 0;

  bool is_there() { return true; }
  std::unique_ptr<EntryStore> init() {
    return init_entry_store(folder.file(std::to_string(++count) + ".db"));
  }
  std::unique_ptr<EntryStore> holding(const Entries& entries) {
    auto store = init();
    static_cast<void>(store->put_all(puts_of(entries), OnDuplicate::refuse));
    return store;
  }
};

// A new database for each store. The tests are skipped where there is no server.
struct PostgresqlPlace {
  bool is_there() { return PostgresqlServer::shared().is_installed(); }
  std::unique_ptr<EntryStore> init() { return init_entry_store(PostgresqlServer::shared().new_database()); }
  std::unique_ptr<EntryStore> holding(const Entries& entries) {
    auto store = init();
    static_cast<void>(store->put_all(puts_of(entries), OnDuplicate::refuse));
    return store;
  }
};

// Holds the ten archived components only, and is read only.
struct ArchivePlace {
  StoreFolder folder;
  int count = 0;

  bool is_there() { return true; }
  std::unique_ptr<EntryStore> holding(const Entries& entries) {
    const std::string path = folder.file(std::to_string(++count) + ".dbe");
    const File file(std::fopen(path.c_str(), "wb"));
    Archive archive(file.get());
    for (const auto& entry : entries) entry.write(archive);
    archive.flush();
    return open_entry_store(path);
  }
};
