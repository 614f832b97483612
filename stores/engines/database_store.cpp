#include <stores/engines/store_engine.h>
#include <stores/engines/stored_entry_source.h>

#include <utility>

namespace {

class EngineSnapshot : public EntrySnapshot {
 public:
  explicit EngineSnapshot(std::shared_ptr<StoreEngine> engine) : engine_(std::move(engine)) {
    engine_->begin_snapshot();
  }
  EngineSnapshot(const EngineSnapshot&) = delete;
  EngineSnapshot& operator=(const EngineSnapshot&) = delete;
  ~EngineSnapshot() override { engine_->end_snapshot(); }

 private:
  std::shared_ptr<StoreEngine> engine_;
};

std::uint64_t sum_of(const EntryHead& head, const EntryColumns& columns) {
  std::uint64_t sum = 0;
  for_each_text_row(columns, [&](const TextRow& row) { sum += row_sum(head.number, row); });
  for (const ElementCount& element : columns.elements) {
    sum += row_sum(head.number, element.symbol, element.count, element_ratio(columns, element));
  }
  return sum;
}

// One pass over all entries of a store: what is wrong with each, and what the whole is to be compared with.
class Inspection {
 public:
  Inspection(StoreEngine& engine, const StoreProgress& progress) : engine_(engine), progress_(progress) {}

  // Calls `good(head, entry, origin, columns)` for each entry that can be read; `columns` are those that are
  // stored.
  template <class Good>
  StoreReport run(const Good& good) {
    constexpr std::size_t page = 200;
    const std::uint64_t total = engine_.count({});
    std::int64_t last = 0;
    for (;;) {
      const std::vector<StoreEngine::Row> rows = engine_.rows_after(last, page);
      for (const StoreEngine::Row& row : rows) {
        ++report_.entries;
        inspect(row, good);
        last = row.head.number;
      }
      if (rows.size() < page) break;
      if (progress_ && !progress_(report_.entries, total)) {
        report_.stopped = true;
        break;
      }
    }
    return report_;
  }

  void problem(const std::string& entry, const std::string& component, const std::string& text) {
    report_.problems.push_back({entry, component, text});
  }
  StoreReport& report() { return report_; }

 private:
  template <class Good>
  void inspect(const StoreEngine::Row& row, const Good& good) {
    const EntryHead& head = row.head;
    if (!row.fault.empty()) return problem(head.identifier, "", row.fault);
    EntryBytes bytes;
    bytes.identifier = head.identifier;
    bool is_whole = true;
    for_each_component([&](auto component) {
      if (!head.has(component.kind)) return;
      ++report_.components;
      std::string fault;
      std::optional<std::string> found;
      try {
        found = engine_.component(head, component.kind);
        if (!found) fault = "its bytes are missing or cannot be unpacked";
      } catch (const EntryStoreError& error) {
        fault = error.reason();
      }
      if (found && component_hash(component.kind, *found) != head.hashes[slot(component.kind)]) {
        fault = "its bytes are not those that were stored (their hash differs)";
      }
      if (found) report_.bytes += found->size();
      if (!fault.empty()) {
        problem(head.identifier, component.label, fault);
        is_whole = false;
      }
      bytes.components[slot(component.kind)] = std::move(found);
    });
    if (!is_whole) return;
    try {
      const auto entry = decode(bytes, engine_.streams());
      const EntryBytes again = encode(*entry, engine_.streams());
      for_each_component([&](auto component) {
        if (again.components[slot(component.kind)] == bytes.components[slot(component.kind)]) return;
        problem(head.identifier, component.label, "written again it gives other bytes");
      });
      good(head, *entry, row.origin, row.columns);
    } catch (const ComponentFault& fault) {
      problem(head.identifier, component_label(fault.kind()), fault.what());
    }
  }

  StoreEngine& engine_;
  const StoreProgress& progress_;
  StoreReport report_;
};

class DatabaseStore : public EntryStore {
 public:
  explicit DatabaseStore(std::shared_ptr<StoreEngine> engine) : engine_(std::move(engine)) {}

  [[nodiscard]] std::string place() const override { return engine_->place(); }
  [[nodiscard]] bool is_read_only() const override { return engine_->is_read_only(); }

  [[nodiscard]] THandle<CrystalStructureDatabaseEntryDataSource> source(
      const DatabaseEntryIdentifier& identifier, Prefetch prefetch) override {
    return make_source(engine_, identifier.text(), prefetch);
  }
  [[nodiscard]] THandle<CrystalStructureImmediateDatabaseEntry> entry(
      const DatabaseEntryIdentifier& identifier) override {
    return make_entry(*engine_, identifier.text());
  }
  [[nodiscard]] bool contains(const DatabaseEntryIdentifier& identifier) override {
    return engine_->find(identifier.text()).has_value();
  }
  [[nodiscard]] EntryOrigin origin(const DatabaseEntryIdentifier& identifier) override {
    return naming(identifier.text(), "", [&] { return engine_->origin(found(identifier)); });
  }
  [[nodiscard]] EntryColumns columns(const DatabaseEntryIdentifier& identifier) override {
    return naming(identifier.text(), "", [&] { return engine_->columns(found(identifier)); });
  }

  [[nodiscard]] std::vector<StoreResult> put_all(const std::vector<Put>& entries, OnDuplicate rule) override {
    refuse_read_only();
    const std::int64_t now = current_time();
    std::vector<StoredEntry> prepared;
    prepared.reserve(entries.size());
    for (const Put& put : entries) {
      prepared.push_back(prepare(*put.entry, put.origin, engine_->place(), now, engine_->streams()));
    }
    std::vector<StoreResult> results;
    engine_->transaction([&] {
      results.clear();
      for (const StoredEntry& entry : prepared) {
        results.push_back(naming(entry.head.identifier, "", [&] { return put_one(entry, rule); }));
      }
    });
    return results;
  }

  void remove(const DatabaseEntryIdentifier& identifier) override {
    refuse_read_only();
    naming(identifier.text(), "", [&] {
      engine_->transaction([&] {
        const EntryHead head = found(identifier);
        const EntryOrigin origin = engine_->origin(head);
        engine_->erase(head);
        if (!origin.file.empty()) engine_->forget_imported(origin.file);
      });
    });
  }

  [[nodiscard]] bool has_imported(const std::string& file, const std::string& sha256) override {
    return engine_->has_imported(file, sha256);
  }
  using EntryStore::set_imported;
  void set_imported(const std::vector<ImportedFile>& files) override {
    refuse_read_only();
    engine_->transaction([&] {
      for (const ImportedFile& one : files) engine_->set_imported(one.file, one.sha256);
    });
  }

  [[nodiscard]] std::vector<DatabaseEntryIdentifier> select(const EntryQuery& query,
                                                            const SelectOptions& options) override {
    const std::vector<std::string> found = engine_->select(query, options);
    return {found.begin(), found.end()};
  }
  [[nodiscard]] std::vector<EntryColumns> select_columns(const EntryQuery& query,
                                                         const SelectOptions& options) override {
    return engine_->select_columns(query, options);
  }
  [[nodiscard]] std::uint64_t count(const EntryQuery& query) override { return engine_->count(query); }
  [[nodiscard]] std::vector<std::pair<std::string, std::uint64_t>> tally(const std::string& column,
                                                                         const EntryQuery& query) override {
    if (auto counted = engine_->tally(column, query)) return std::move(*counted);
    return EntryStore::tally(column, query);
  }

  [[nodiscard]] std::unique_ptr<EntrySnapshot> snapshot() override {
    return std::make_unique<EngineSnapshot>(engine_);
  }

  [[nodiscard]] StoreReport verify(const StoreProgress& progress) override {
    const EngineSnapshot one_state(engine_);
    Inspection inspection(*engine_, progress);
    for (const std::string& fault : engine_->faults()) inspection.problem("", "", fault);
    std::uint64_t expected = 0;
    try {
      inspection.run([&](const EntryHead& head, const auto& entry, const EntryOrigin& origin,
                         const EntryColumns& stored) {
        const EntryColumns made = entry_columns(entry, origin);
        expected += sum_of(head, made);
        if (made == stored) return;
        inspection.problem(head.identifier, "",
                           "the columns that it is found by are not its own; reindex makes them anew");
      });
      StoreReport& report = inspection.report();
      if (!report.stopped && report.problems.empty() && engine_->index_sum().value_or(expected) != expected) {
        inspection.problem(
            "", "", "the tables that entries are found by do not fit the entries; reindex makes them anew");
      }
    } catch (const EntryStoreError& error) {
      inspection.problem(error.place().entry, error.place().component, error.reason());
    }
    return inspection.report();
  }

  StoreReport reindex(const StoreProgress& progress) override {
    refuse_read_only();
    StoreReport report;
    engine_->transaction([&] {
      Inspection inspection(*engine_, progress);
      engine_->clear_columns();
      inspection.run([&](const EntryHead& head, const auto& entry, const EntryOrigin& origin,
                         const EntryColumns&) { engine_->set_columns(head, entry_columns(entry, origin)); });
      report = inspection.report();
      if (report.stopped)
        throw EntryStoreError({place(), "", ""}, "reindexing was stopped; nothing has changed");
    });
    return report;
  }

 private:
  EntryHead found(const DatabaseEntryIdentifier& identifier) {
    auto head = engine_->find(identifier.text());
    if (!head) throw_not_found(*engine_, identifier.text());
    return *head;
  }

  void refuse_read_only() const {
    if (is_read_only()) throw EntryStoreError({place(), "", ""}, "it is open for reading only");
  }

  StoreResult put_one(const StoredEntry& entry, OnDuplicate rule) {
    const auto named = engine_->find(entry.head.identifier);
    const auto from_there = entry.origin.file.empty()
                                ? std::nullopt
                                : engine_->find_origin(entry.origin.file, entry.origin.block);
    const auto& old = from_there ? from_there : named;
    if (!old) {
      engine_->insert(entry);
      return StoreResult::added;
    }
    if (old->is_like(entry.head) && has_the_bytes_of(*old, entry)) return StoreResult::unchanged;
    if (rule == OnDuplicate::keep) return StoreResult::kept;
    if (rule == OnDuplicate::refuse) {
      throw EntryAlreadyStored({place(), entry.head.identifier, ""},
                               from_there ? "an entry of the same file and block is there already"
                                          : "an entry of this identifier is there already");
    }
    if (named && named->number != old->number) {
      throw EntryStoreError(
          {place(), entry.head.identifier, ""},
          "it would replace \"" + old->identifier +
              "\", which is of the same file and block, but its identifier is that of another entry");
    }
    engine_->replace(*old, entry);
    return StoreResult::replaced;
  }

  // Equal hashes are as good as equal bytes, but not the same.
  bool has_the_bytes_of(const EntryHead& old, const StoredEntry& entry) {
    bool is_same = true;
    for_each_component([&](auto component) {
      if (is_same && old.has(component.kind)) {
        is_same = engine_->component(old, component.kind) == entry.bytes.components[slot(component.kind)];
      }
    });
    return is_same;
  }

  std::shared_ptr<StoreEngine> engine_;
};

}  // namespace

std::unique_ptr<EntryStore> store_over(std::shared_ptr<StoreEngine> engine) {
  return std::make_unique<DatabaseStore>(std::move(engine));
}
