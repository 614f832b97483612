// Many entries beside one another, kept in a file, in a database or in memory.
//
//   const auto store = init_entry_store("known.db");
//   store->put(entry, {"1010588.cif", "1010588"}, OnDuplicate::replace);
//   for (const auto& identifier : store->select(EntryQuery::from_text("Ti,O"), {}))
//     store->entry(identifier)->print(std::cout);
//   CrystalStructureDeferredDatabaseEntry lazy(store->source(identifier, Prefetch::none));
//
// Places: a file that is a SQLite store or a stored archive (read only), `postgresql://...`, and `memory:`
// for a store that goes with its object. Only init_entry_store() makes a store.
//
// Fails: EntryStoreError and its kinds, which name the store, the entry and the component; a put or a removal
// that fails has changed nothing. Threads: a store, its sources and the entries they give belong to one
// thread at a time; any number of stores, in any number of processes, may be open at one place.
#pragma once

#include <database_entry/entries/crystal_structure_database_entry_data_source.h>
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <stores/entry_columns.h>
#include <stores/entry_origin.h>
#include <stores/entry_query.h>
#include <stores/entry_store_error.h>
#include <stores/export.h>
#include <utilities/database_entry_identifier.h>
#include <utilities/t_handle.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// What becomes of an entry that is there already.
enum class OnDuplicate {
  keep,     // the stored one stays
  replace,  // the new one takes its place
  refuse,   // EntryAlreadyStored is thrown
};

enum class StoreResult { added, replaced, unchanged, kept };

// Whether a source asks for one component at a time, or for all with the first question.
enum class Prefetch { none, all };

struct ImportedFile {
  std::string file;
  std::string sha256;
};

struct SelectOptions {
  std::optional<std::string> after;  // only identifiers after this one
  std::optional<std::size_t> limit;  // at most so many
};

// What is wrong with what is stored. Entry and component are empty where it is about neither.
struct StoreProblem {
  std::string entry;
  std::string component;
  std::string text;
};

struct StoreReport {
  std::uint64_t entries = 0;
  std::uint64_t components = 0;
  std::uint64_t bytes = 0;  // of the components, as they are in an archive
  bool stopped = false;     // by the progress function
  std::vector<StoreProblem> problems;
};

// Told of long work now and then: entries done, and how many there are. Gives false to stop it at a whole
// entry.
using StoreProgress = std::function<bool(std::uint64_t done, std::uint64_t total)>;

// While it lives, its store reads one state of what is stored, and faster; what is put in the meantime, also
// by the store itself, is not seen. It must go before its store.
class STORES_EXPORT EntrySnapshot {
 public:
  EntrySnapshot(const EntrySnapshot&) = delete;
  EntrySnapshot& operator=(const EntrySnapshot&) = delete;
  virtual ~EntrySnapshot();

 protected:
  EntrySnapshot() = default;
};

class STORES_EXPORT EntryStore {
 public:
  EntryStore(const EntryStore&) = delete;
  EntryStore& operator=(const EntryStore&) = delete;
  virtual ~EntryStore();

  // As errors name it; never with a password.
  [[nodiscard]] virtual std::string place() const = 0;
  // Whether put, remove and reindex are refused.
  [[nodiscard]] virtual bool is_read_only() const = 0;

  // The components of one entry, asked for one by one or all at once. Atoms and bonds that two components
  // share are the same objects in both. The source may outlive the store. A component of an entry that was
  // replaced after the source was made throws EntryStoreError, unless it is the first that the source gives.
  // Throws EntryNotFound.
  [[nodiscard]] virtual THandle<CrystalStructureDatabaseEntryDataSource> source(
      const DatabaseEntryIdentifier& identifier, Prefetch prefetch = Prefetch::none) = 0;
  // The whole entry, in memory. Throws EntryNotFound.
  [[nodiscard]] virtual THandle<CrystalStructureImmediateDatabaseEntry> entry(
      const DatabaseEntryIdentifier& identifier) = 0;
  [[nodiscard]] virtual bool contains(const DatabaseEntryIdentifier& identifier) = 0;
  // Throw EntryNotFound.
  [[nodiscard]] virtual EntryOrigin origin(const DatabaseEntryIdentifier& identifier) = 0;
  [[nodiscard]] virtual EntryColumns columns(const DatabaseEntryIdentifier& identifier) = 0;

  // An entry to be stored, which is only read.
  struct Put {
    const CrystalStructureDatabaseEntry* entry;
    EntryOrigin origin;
  };
  // All or none, in their order, in one transaction. A stored entry is the same as a new one when it has the
  // same origin (file and block, the file not empty), else when it has the same identifier. Throws
  // EntryStoreError for an identifier of more than 10,000 bytes, for a component that cannot be archived or
  // read back, and for a replacement that would give two entries one identifier.
  [[nodiscard]] virtual std::vector<StoreResult> put_all(const std::vector<Put>& entries,
                                                         OnDuplicate rule) = 0;
  StoreResult put(const CrystalStructureDatabaseEntry& entry, const EntryOrigin& origin, OnDuplicate rule);
  // Throws EntryNotFound.
  virtual void remove(const DatabaseEntryIdentifier& identifier) = 0;

  // Files of which every entry has been stored, so that an import that was stopped goes on where it was.
  // Removing an entry forgets its file.
  [[nodiscard]] virtual bool has_imported(const std::string& file, const std::string& sha256) = 0;
  // In one transaction.
  virtual void set_imported(const std::vector<ImportedFile>& files) = 0;
  void set_imported(const std::string& file, const std::string& sha256);

  // In the order of identifiers, by bytes.
  [[nodiscard]] virtual std::vector<DatabaseEntryIdentifier> select(const EntryQuery& query,
                                                                    const SelectOptions& options = {}) = 0;
  [[nodiscard]] virtual std::vector<EntryColumns> select_columns(const EntryQuery& query,
                                                                 const SelectOptions& options = {}) = 0;
  [[nodiscard]] virtual std::uint64_t count(const EntryQuery& query = {}) = 0;
  // How many of the entries found have each value of a column (by its short name; `element` for the
  // elements), in the order of the values. An entry counts once for each different value of a list. Throws
  // std::invalid_argument for an unknown name.
  [[nodiscard]] virtual std::vector<std::pair<std::string, std::uint64_t>> tally(
      const std::string& column, const EntryQuery& query = {});

  [[nodiscard]] virtual std::unique_ptr<EntrySnapshot> snapshot() = 0;

  // Reads everything: hashes, decoding, encoding again byte for byte, derived columns made anew. Throws only
  // when nothing more can be read.
  [[nodiscard]] virtual StoreReport verify(const StoreProgress& progress = {}) = 0;
  // Makes the derived columns of every entry anew. What cannot be read is a problem of the report, and stays.
  virtual StoreReport reindex(const StoreProgress& progress = {}) = 0;

 protected:
  EntryStore() = default;
};

// Opens what is there. Throws EntryStoreError for a place that is empty, that holds something else, or that
// has a schema version which this library does not know.
[[nodiscard]] STORES_EXPORT std::unique_ptr<EntryStore> open_entry_store(const std::string& place);

// How a new store keeps components.
struct InitOptions {
  bool compress = true;  // those that get smaller, with zstd
};

// Makes a store and opens it. Throws EntryStoreError for a place that is taken.
STORES_EXPORT std::unique_ptr<EntryStore> init_entry_store(const std::string& place,
                                                           const InitOptions& options = {});

// Brings a store of an older schema version to the present one, whole or not at all. Gives the version it
// had.
STORES_EXPORT int upgrade_entry_store(const std::string& place);
