#include <stores/engines/memory_engine.h>
#include <stores/engines/scanning_engine.h>

#include <algorithm>
#include <map>

namespace {

using Kept = std::shared_ptr<const StoredEntry>;

class MemoryEngine : public ScanningEngine {
 public:
  [[nodiscard]] std::string place() const override { return "memory:"; }
  [[nodiscard]] bool is_read_only() const override { return false; }
  [[nodiscard]] bool compresses() const override { return false; }

  [[nodiscard]] std::optional<EntryHead> find(const std::string& identifier) override {
    const Kept entry = kept(identifier);
    if (entry == nullptr) return std::nullopt;
    return entry->head;
  }
  [[nodiscard]] std::optional<std::string> component(const EntryHead& head, ComponentKind kind) override {
    const Kept entry = kept(head.identifier);
    return entry == nullptr ? std::nullopt : entry->bytes.components[slot(kind)];
  }
  [[nodiscard]] std::optional<Whole> find_whole(const std::string& identifier) override {
    const Kept entry = kept(identifier);
    if (entry == nullptr) return std::nullopt;
    return Whole{entry->head, entry->bytes};
  }
  [[nodiscard]] std::vector<std::string> neighbours(const std::string& identifier, int count) override {
    std::vector<std::string> found;
    const Entries& all = entries();
    auto before = all.lower_bound(identifier);
    for (int index = 0; index < count && before != all.begin(); ++index) found.push_back((--before)->first);
    auto after = all.upper_bound(identifier);
    for (int index = 0; index < count && after != all.end(); ++index) found.push_back((after++)->first);
    return found;
  }

  void transaction(const std::function<void()>& work) override {
    is_writing_ = true;
    undo_.clear();
    try {
      work();
    } catch (...) {
      for (; !undo_.empty(); undo_.pop_back()) undo_.back()();
      is_writing_ = false;
      throw;
    }
    is_writing_ = false;
  }
  std::int64_t insert(const StoredEntry& entry) override {
    put(entry, ++last_number_);
    return last_number_;
  }
  void replace(const EntryHead& old, const StoredEntry& entry) override {
    erase(old);
    put(entry, old.number);
  }
  void erase(const EntryHead& old) override {
    const Kept entry = state_->entries.at(old.identifier);
    change(state_->by_origin, {entry->origin.file, entry->origin.block}, std::nullopt);
    change(state_->entries, old.identifier, std::nullopt);
  }
  void set_imported(const std::string& file, const std::string& sha256) override {
    change(state_->imported, file, std::optional(sha256));
  }
  void forget_imported(const std::string& file) override { change(state_->imported, file, std::nullopt); }
  void clear_columns() override {}
  void set_columns(const EntryHead& head, const EntryColumns& columns) override {
    StoredEntry changed = *state_->entries.at(head.identifier);
    changed.columns = columns;
    keep(std::move(changed));
  }

  [[nodiscard]] std::optional<EntryHead> find_origin(const std::string& file,
                                                     const std::string& block) override {
    const auto found = state_->by_origin.find({file, block});
    if (found == state_->by_origin.end()) return std::nullopt;
    return find(found->second);
  }
  [[nodiscard]] EntryOrigin origin(const EntryHead& head) override {
    return entries().at(head.identifier)->origin;
  }
  [[nodiscard]] EntryColumns columns(const EntryHead& head) override {
    return entries().at(head.identifier)->columns;
  }
  [[nodiscard]] bool has_imported(const std::string& file, const std::string& sha256) override {
    const auto found = state_->imported.find(file);
    return found != state_->imported.end() && found->second == sha256;
  }

  void begin_snapshot() override {
    if (snapshots_++ == 0) seen_ = std::make_shared<const State>(*state_);
  }
  void end_snapshot() noexcept override {
    if (--snapshots_ == 0) seen_.reset();
  }

  [[nodiscard]] std::vector<Row> rows_after(std::int64_t number, std::size_t limit) override {
    std::vector<Row> rows;
    for (const auto& [identifier, entry] : entries()) {
      if (entry->head.number > number) rows.push_back({entry->head, entry->origin, entry->columns, ""});
    }
    std::sort(rows.begin(), rows.end(),
              [](const Row& one, const Row& other) { return one.head.number < other.head.number; });
    if (rows.size() > limit) rows.resize(limit);
    return rows;
  }
  [[nodiscard]] std::vector<std::string> faults() override { return {}; }

 protected:
  void scan(const std::optional<std::string>& after,
            const std::function<bool(const EntryColumns&)>& look) override {
    const Entries& all = entries();
    for (auto entry = after ? all.upper_bound(*after) : all.begin(); entry != all.end(); ++entry) {
      if (!look(entry->second->columns)) break;
    }
  }

 private:
  using Entries = std::map<std::string, Kept>;
  struct State {
    Entries entries;
    std::map<std::pair<std::string, std::string>, std::string>
        by_origin;  // the identifier of a file and block
    std::map<std::string, std::string> imported;
  };

  const Entries& entries() const {
    return seen_ != nullptr && !is_writing_ ? seen_->entries : state_->entries;
  }

  Kept kept(const std::string& identifier) const {
    const auto found = entries().find(identifier);
    return found == entries().end() ? nullptr : found->second;
  }

  void put(const StoredEntry& entry, std::int64_t number) {
    StoredEntry numbered = entry;
    numbered.head.number = number;
    if (!entry.origin.file.empty()) {
      change(state_->by_origin, {entry.origin.file, entry.origin.block},
             std::optional(entry.head.identifier));
    }
    keep(std::move(numbered));
  }
  void keep(StoredEntry entry) {
    const std::string identifier = entry.head.identifier;
    change(state_->entries, identifier,
           std::optional<Kept>(std::make_shared<const StoredEntry>(std::move(entry))));
  }

  // Gives the key another value, or none, and notes how that is undone.
  template <class Map>
  void change(Map& map, const typename Map::key_type& key,
              const std::optional<typename Map::mapped_type>& value) {
    const auto set = [&map, key](const std::optional<typename Map::mapped_type>& to) {
      if (to) {
        map[key] = *to;
      } else {
        map.erase(key);
      }
    };
    const auto old = map.find(key);
    undo_.push_back(
        [set, before = old == map.end() ? std::nullopt : std::optional(old->second)] { set(before); });
    set(value);
  }

  std::shared_ptr<State> state_ = std::make_shared<State>();
  std::vector<std::function<void()>> undo_;  // of the transaction
  std::shared_ptr<const State> seen_;        // by the snapshots
  int snapshots_ = 0;
  bool is_writing_ = false;
  std::int64_t last_number_ = 0;
};

}  // namespace

std::shared_ptr<StoreEngine> make_memory_engine() {
  return std::make_shared<MemoryEngine>();
}
