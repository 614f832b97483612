#include <stores/engines/archive_engine.h>
#include <stores/engines/scanning_engine.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <map>
#include <system_error>
#include <unordered_map>

namespace {

struct CloseFile {
  void operator()(FILE* file) const { std::fclose(file); }
};

class ArchiveEngine : public ScanningEngine {
 public:
  explicit ArchiveEngine(const std::string& path) : path_(path), file_(std::fopen(path.c_str(), "rb")) {
    if (file_ == nullptr) fail(errno);
    read_index();
  }

  [[nodiscard]] std::string place() const override { return path_; }
  [[nodiscard]] bool is_read_only() const override { return true; }
  [[nodiscard]] bool compresses() const override { return false; }

  [[nodiscard]] std::optional<EntryHead> find(const std::string& identifier) override {
    const auto found = places_.find(identifier);
    if (found == places_.end()) {
      check_whole();
      return std::nullopt;
    }
    return head(found->first, found->second);
  }
  [[nodiscard]] std::optional<std::string> component(const EntryHead& head, ComponentKind kind) override {
    const auto found = places_.find(head.identifier);
    if (found == places_.end()) return std::nullopt;
    const Place& place = found->second;
    const std::size_t index = slot(kind);
    if (index >= archived_count) return std::nullopt;
    return bytes(place.begins[index], place.begins[index + 1]);
  }
  [[nodiscard]] std::optional<Whole> find_whole(const std::string& identifier) override {
    auto head = find(identifier);
    if (!head) return std::nullopt;
    return whole(*head, places_.at(identifier));
  }
  [[nodiscard]] std::vector<std::string> neighbours(const std::string& identifier, int count) override {
    std::vector<std::string> found;
    auto before = places_.lower_bound(identifier);
    for (int index = 0; index < count && before != places_.begin(); ++index)
      found.push_back((--before)->first);
    auto after = places_.upper_bound(identifier);
    for (int index = 0; index < count && after != places_.end(); ++index) found.push_back((after++)->first);
    return found;
  }

  void transaction(const std::function<void()>&) override { refuse(); }
  std::int64_t insert(const StoredEntry&) override { refuse(); }
  void replace(const EntryHead&, const StoredEntry&) override { refuse(); }
  void erase(const EntryHead&) override { refuse(); }
  void set_imported(const std::string&, const std::string&) override { refuse(); }
  void forget_imported(const std::string&) override { refuse(); }
  void clear_columns() override { refuse(); }
  void set_columns(const EntryHead&, const EntryColumns&) override { refuse(); }

  [[nodiscard]] std::optional<EntryHead> find_origin(const std::string&, const std::string&) override {
    return {};
  }
  [[nodiscard]] EntryOrigin origin(const EntryHead&) override { return {}; }
  [[nodiscard]] EntryColumns columns(const EntryHead& head) override {
    return columns_of(head.identifier, places_.at(head.identifier));
  }
  [[nodiscard]] bool has_imported(const std::string&, const std::string&) override { return false; }

  // The file does not change under its readers: dbentry writes a new one and gives it the name.
  void begin_snapshot() override {}
  void end_snapshot() noexcept override {}

  [[nodiscard]] std::vector<Row> rows_after(std::int64_t number, std::size_t limit) override {
    std::vector<Row> rows;
    for (auto index = static_cast<std::size_t>(number); index < in_file_order_.size() && rows.size() < limit;
         ++index) {
      const auto& [identifier, place] = *in_file_order_[index];
      Row& row = rows.emplace_back();
      row.head = head(identifier, place);
      try {
        row.columns = columns_of(identifier, place);
      } catch (const EntryStoreError& error) {
        row.fault = error.reason();
      }
    }
    return rows;
  }
  [[nodiscard]] std::vector<std::string> faults() override {
    std::vector<std::string> found = repeated_;
    if (!damage_.empty()) found.push_back(damage_);
    return found;
  }

  [[nodiscard]] std::uint64_t count(const EntryQuery& query) override {
    if (query.sql(SqlDialect::sqlite).where == SqlCondition().where && damage_.empty()) return places_.size();
    return ScanningEngine::count(query);
  }

 protected:
  void scan(const std::optional<std::string>& after,
            const std::function<bool(const EntryColumns&)>& look) override {
    check_whole();
    for (auto entry = after ? places_.upper_bound(*after) : places_.begin(); entry != places_.end();
         ++entry) {
      if (!look(columns_of(entry->first, entry->second))) break;
    }
  }

 private:
  // The kinds of the archived components are their places in the archive.
  static constexpr std::size_t archived_count = 10;
  static_assert([] {
    std::size_t count = 0;
    bool in_order = true;
    for_each_component_in_entry_order([&](auto component) {
      if (component.archived) in_order = in_order && slot(component.kind) == count++;
    });
    return in_order && count == archived_count;
  }());

  struct Place {
    std::int64_t number = 0;  // from 1, in the order of the file
    std::array<long, archived_count + 1> begins{};
    std::array<std::uint64_t, archived_count> hashes{};
  };
  using Places = std::map<std::string, Place>;

  [[noreturn]] void refuse() const {
    throw EntryStoreError({path_, "", ""},
                          "a stored archive is open for reading only (dbentry import --into takes it "
                          "into a store)");
  }
  [[noreturn]] void fail(int error) const {
    throw EntryStoreError({path_, "", ""}, std::generic_category().message(error));
  }
  void check_whole() const {
    if (!damage_.empty()) throw DamagedStore({path_, "", ""}, damage_);
  }

  void read_index() {
    struct stat status = {};
    if (::fstat(::fileno(file_.get()), &status) != 0) fail(errno);
    if (!S_ISREG(status.st_mode)) {
      throw EntryStoreError({path_, "", ""},
                            "a file is wanted: a stored archive or a store (dbentry init makes one)");
    }
    Archive archive(file_.get());
    for (std::int64_t number = 1;; ++number) {
      const int first = std::fgetc(file_.get());
      if (first == EOF) break;
      std::ungetc(first, file_.get());
      const long begin = std::ftell(file_.get());
      DatabaseEntryIdentifier identifier;
      Place place;
      place.number = number;
      try {
        identifier.read(archive);
        read_place(archive, place);
      } catch (const std::bad_alloc&) {
        throw;
      } catch (const std::exception& error) {
        damage_ = "entry " + std::to_string(number) + " at offset " + std::to_string(begin) +
                  " is damaged: " + error.what() + "; it and those after it cannot be read";
        break;
      }
      const auto [entry, is_new] = places_.emplace(identifier.text(), place);
      if (is_new) {
        in_file_order_.push_back(&*entry);
      } else {
        repeated_.push_back("entry " + std::to_string(number) + " at offset " + std::to_string(begin) +
                            " has the identifier of entry " + std::to_string(entry->second.number) +
                            ", and only that is found");
      }
    }
    if (std::ferror(file_.get()) != 0) fail(errno);
  }

  void read_place(Archive& archive, Place& place) {
    place.begins[0] = std::ftell(file_.get());
    for_each_component([&](auto component) {
      if constexpr (component.archived) {
        auto handle = decltype(component.get(std::declval<const CrystalStructureDatabaseEntry&>()))::make();
        archive.name_component(component.label);
        handle->read(archive);
        place.begins[slot(component.kind) + 1] = std::ftell(file_.get());
      }
    });
    if (std::feof(file_.get()) != 0) throw ArchiveError("its last text is cut short");
    const std::string all = bytes(place.begins.front(), place.begins.back());
    for (std::size_t index = 0; index < archived_count; ++index) {
      const auto from = static_cast<std::size_t>(place.begins[index] - place.begins.front());
      const auto to = static_cast<std::size_t>(place.begins[index + 1] - place.begins.front());
      place.hashes[index] = component_hash(static_cast<ComponentKind>(index + 1),
                                           std::string_view(all).substr(from, to - from));
    }
  }

  [[nodiscard]] static EntryHead head(const std::string& identifier, const Place& place) {
    EntryHead head;
    head.number = place.number;
    head.identifier = identifier;
    for (std::size_t index = 0; index < archived_count; ++index) {
      head.components |= 1U << (index + 1);
      head.hashes[index] = place.hashes[index];
    }
    return head;
  }

  [[nodiscard]] Whole whole(const EntryHead& head, const Place& place) const {
    Whole whole;
    whole.head = head;
    whole.bytes.identifier = head.identifier;
    const std::string all = bytes(place.begins.front(), place.begins.back());
    for (std::size_t index = 0; index < archived_count; ++index) {
      const auto from = static_cast<std::size_t>(place.begins[index] - place.begins.front());
      const auto to = static_cast<std::size_t>(place.begins[index + 1] - place.begins.front());
      whole.bytes.components[index] = all.substr(from, to - from);
    }
    return whole;
  }

  // Making them takes much longer than reading an entry, so those of the first entries that are asked for are
  // kept.
  [[nodiscard]] EntryColumns columns_of(const std::string& identifier, const Place& place) {
    constexpr std::size_t most_kept = 20'000;
    const auto known = kept_columns_.find(place.number);
    if (known != kept_columns_.end()) return known->second;
    try {
      const auto entry = decode(whole(head(identifier, place), place).bytes, streams());
      EntryColumns columns = entry_columns(*entry, {});
      if (kept_columns_.size() < most_kept) kept_columns_.emplace(place.number, columns);
      return columns;
    } catch (const ComponentFault& fault) {
      throw DamagedStore({path_, identifier, component_label(fault.kind())}, fault.what());
    }
  }

  // What is in [begin, end) of the file; less where the file has become shorter.
  [[nodiscard]] std::string bytes(long begin, long end) const {
    std::string result(static_cast<std::size_t>(end - begin), '\0');
    std::size_t done = 0;
    while (done < result.size()) {
      const ssize_t count = ::pread(::fileno(file_.get()), result.data() + done, result.size() - done,
                                    begin + static_cast<long>(done));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) fail(errno);
      if (count == 0) break;
      done += static_cast<std::size_t>(count);
    }
    result.resize(done);
    return result;
  }

  std::string path_;
  std::unique_ptr<FILE, CloseFile> file_;
  Places places_;
  std::vector<const Places::value_type*> in_file_order_;
  std::unordered_map<std::int64_t, EntryColumns> kept_columns_;
  std::vector<std::string> repeated_;
  std::string damage_;
};

}  // namespace

std::shared_ptr<StoreEngine> open_archive_engine(const std::string& path) {
  return std::make_shared<ArchiveEngine>(path);
}
