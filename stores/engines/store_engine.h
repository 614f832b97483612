// What a store needs of an engine. A new engine is one class that derives from StoreEngine.
// Internal: callers want stores/entry_store.h.
//
// Failures are EntryStoreError, DamagedStore where stored data are not what was stored, with the place of the
// store; the entry and the component are named by the caller.
#pragma once

#include <stores/engines/stored_entry.h>
#include <stores/entry_query.h>
#include <stores/entry_store.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// Where the components of entries are read from.
class ComponentReader {
 public:
  ComponentReader() = default;
  ComponentReader(const ComponentReader&) = delete;
  ComponentReader& operator=(const ComponentReader&) = delete;
  virtual ~ComponentReader();

  // As errors name it.
  [[nodiscard]] virtual std::string place() const = 0;

  [[nodiscard]] virtual std::optional<EntryHead> find(const std::string& identifier) = 0;
  // The number alone, and the head of a number with the bytes of one component: what a source asks first. A
  // number is never given to another entry. One question each; here made of find() and component().
  [[nodiscard]] virtual std::optional<std::int64_t> number_of(const std::string& identifier);
  struct First {
    EntryHead head;
    std::optional<std::string> bytes;
  };
  [[nodiscard]] virtual std::optional<First> first(std::int64_t number, const std::string& identifier,
                                                   ComponentKind kind);
  // The archive bytes of one component, not checked; nothing where they are missing. One question.
  [[nodiscard]] virtual std::optional<std::string> component(const EntryHead& head, ComponentKind kind) = 0;
  // An entry with all components, as one state. One question. What is missing is missing there.
  struct Whole {
    EntryHead head;
    EntryBytes bytes;
    bool is_packed = false;  // the bytes of components are still as packed() gave them
  };
  [[nodiscard]] virtual std::optional<Whole> find_whole(const std::string& identifier) = 0;
  // Identifiers before and after this one in the order of bytes, up to `count` of each.
  [[nodiscard]] virtual std::vector<std::string> neighbours(const std::string& identifier, int count) = 0;

  // For decoding. The sources that share this reader share it too.
  [[nodiscard]] ByteStreams& streams() { return streams_; }

 private:
  ByteStreams streams_;
};

class StoreEngine : public ComponentReader {
 public:
  [[nodiscard]] virtual bool is_read_only() const = 0;
  // Whether new components are compressed.
  [[nodiscard]] virtual bool compresses() const = 0;

  // Runs `work` in a transaction; reads in it see its writes. Where the database asks for it, `work` runs
  // again from the start. When this returns, what was written is there for good; when it throws, nothing is.
  virtual void transaction(const std::function<void()>& work) = 0;
  // In a transaction only. insert() gives the number of the new entry; replace() keeps that of the old one.
  virtual std::int64_t insert(const StoredEntry& entry) = 0;
  virtual void replace(const EntryHead& old, const StoredEntry& entry) = 0;
  virtual void erase(const EntryHead& old) = 0;
  virtual void set_imported(const std::string& file, const std::string& sha256) = 0;
  virtual void forget_imported(const std::string& file) = 0;
  // Takes all rows that entries are found by away, to be written anew by set_columns().
  virtual void clear_columns() = 0;
  virtual void set_columns(const EntryHead& head, const EntryColumns& columns) = 0;

  [[nodiscard]] virtual std::optional<EntryHead> find_origin(const std::string& file,
                                                             const std::string& block) = 0;
  [[nodiscard]] virtual EntryOrigin origin(const EntryHead& head) = 0;
  [[nodiscard]] virtual EntryColumns columns(const EntryHead& head) = 0;
  [[nodiscard]] virtual bool has_imported(const std::string& file, const std::string& sha256) = 0;

  // In the order of identifiers.
  [[nodiscard]] virtual std::vector<std::string> select(const EntryQuery& query,
                                                        const SelectOptions& options) = 0;
  [[nodiscard]] virtual std::vector<EntryColumns> select_columns(const EntryQuery& query,
                                                                 const SelectOptions& options) = 0;
  [[nodiscard]] virtual std::uint64_t count(const EntryQuery& query) = 0;
  // As EntryStore::tally(), without an entry being fetched; nothing where that cannot be, and for an unknown
  // name.
  using Tally = std::vector<std::pair<std::string, std::uint64_t>>;
  [[nodiscard]] virtual std::optional<Tally> tally(const std::string& /*column*/,
                                                   const EntryQuery& /*query*/) {
    return std::nullopt;
  }

  virtual void begin_snapshot() = 0;
  virtual void end_snapshot() noexcept = 0;

  // For reading everything: the entries after a number, in the order of numbers, up to `limit`. A row that
  // cannot be read is there with what could be read and the reason.
  struct Row {
    EntryHead head;
    EntryOrigin origin;
    EntryColumns columns;
    std::string fault;
  };
  [[nodiscard]] virtual std::vector<Row> rows_after(std::int64_t number, std::size_t limit) = 0;
  // The sum of row_sum() over entry_text and over entry_element; nothing for an engine without these tables.
  [[nodiscard]] virtual std::optional<std::uint64_t> index_sum() = 0;
  // What the engine itself finds wrong: damaged pages, components without an entry.
  [[nodiscard]] virtual std::vector<std::string> faults() = 0;
};

// A store over an engine.
[[nodiscard]] std::unique_ptr<EntryStore> store_over(std::shared_ptr<StoreEngine> engine);
