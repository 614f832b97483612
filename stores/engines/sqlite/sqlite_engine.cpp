#include <stores/engines/sql_text.h>
#include <stores/engines/sqlite/connection.h>
#include <stores/engines/sqlite/sqlite_engine.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <system_error>
#include <utility>

namespace {

// "dben", for file(1) and for us.
constexpr std::int64_t application_id = 0x6462656E;
constexpr std::int64_t schema_version = 1;

std::string schema(const InitOptions& options) {
  std::string columns;
  for_each_entry_column([&](const auto& column) {
    using Column = std::remove_cvref_t<decltype(column)>;
    columns += std::string(",\n  ") + column.sql_name +
               (Column::is_number    ? " REAL"
                : Column::is_integer ? " INTEGER"
                                     : " BLOB");
    if (column.number == 1) columns += " NOT NULL";
  });
  return "CREATE TABLE setting (name TEXT PRIMARY KEY, value INTEGER NOT NULL) WITHOUT ROWID;\n"
         "INSERT INTO setting VALUES ('next_number', 1), ('compress', " +
         std::to_string(options.compress ? 1 : 0) +
         ");\n"
         "CREATE TABLE entry (\n  number INTEGER PRIMARY KEY,\n  origin_time INTEGER NOT NULL" +
         columns +
         ");\n"
         "CREATE UNIQUE INDEX entry_identifier ON entry (identifier);\n"
         "CREATE INDEX entry_origin ON entry (source, block);\n"
         "CREATE INDEX entry_year ON entry (year);\n"
         "CREATE INDEX entry_volume ON entry (volume);\n"
         "CREATE INDEX entry_reduced ON entry (reduced_a, reduced_volume);\n"
         "CREATE INDEX entry_space_group ON entry (space_group);\n"
         "CREATE TABLE component (key INTEGER PRIMARY KEY, bytes BLOB NOT NULL);\n"
         "CREATE TABLE entry_element (\n  symbol BLOB NOT NULL,\n  entry INTEGER NOT NULL,\n  count REAL NOT "
         "NULL,\n"
         "  ratio REAL NOT NULL,\n  PRIMARY KEY (symbol, entry)) WITHOUT ROWID;\n"
         "CREATE TABLE entry_text (\n  \"column\" INTEGER NOT NULL,\n  hash INTEGER NOT NULL,\n  entry "
         "INTEGER NOT NULL,\n"
         "  position INTEGER NOT NULL,\n  folded BLOB NOT NULL,\n  value BLOB,\n"
         "  PRIMARY KEY (\"column\", hash, entry, position)) WITHOUT ROWID;\n"
         "CREATE TABLE imported (file BLOB PRIMARY KEY, sha256 BLOB NOT NULL) WITHOUT ROWID;\n";
}

constexpr std::int64_t kinds_per_entry = 32;

std::int64_t component_key(std::int64_t number, ComponentKind kind) {
  return number * kinds_per_entry + static_cast<std::int64_t>(kind);
}

// A head is where a component of kind 0 would be.
const std::string head_names = "e.number, e.identifier, h.bytes";
const std::string entry_with_head = " FROM entry e LEFT JOIN component h ON h.key = e.number * 32 ";

// Throws EntryStoreError unless the connection is to a store; gives its version.
std::int64_t checked_version(Connection& connection, const std::string& path) {
  if (connection.value_of("PRAGMA application_id") != application_id) {
    throw EntryStoreError({path, "", ""},
                          "it is a SQLite file, but not a store of entries (dbentry init makes one)");
  }
  return connection.value_of("PRAGMA user_version");
}

void check_version(Connection& connection, const std::string& path) {
  const std::int64_t version = checked_version(connection, path);
  if (version == schema_version) return;
  throw EntryStoreError({path, "", ""},
                        "it has schema version " + std::to_string(version) + ", and " +
                            std::to_string(schema_version) + " is known here; " +
                            (version < schema_version ? "dbentry upgrade brings it to that"
                                                      : "a newer version of this library reads it"));
}

// Readers of a file that others write lock it in a second file beside it. Where that cannot be made and there
// is none, nobody has the store open, as on a medium that cannot be written to.
Connection::Access access_to(const std::string& path) {
  if (::access(path.c_str(), W_OK) == 0) return Connection::Access::write;
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  const bool is_open = ::access((path + "-wal").c_str(), F_OK) == 0;
  return is_open || ::access(folder.c_str(), W_OK) == 0 ? Connection::Access::read
                                                        : Connection::Access::unchanging;
}

class SqliteEngine : public StoreEngine {
 public:
  explicit SqliteEngine(const std::string& path) : path_(path), reader_(path, access_to(path)) {
    check_version(reader_, path);
    compresses_ = setting(reader_, "compress") != 0;
  }
  SqliteEngine(const SqliteEngine&) = delete;
  SqliteEngine& operator=(const SqliteEngine&) = delete;
  ~SqliteEngine() override {
    reader_.roll_back();
    if (writer_) writer_->roll_back();
  }

  [[nodiscard]] std::string place() const override { return path_; }
  [[nodiscard]] bool is_read_only() const override { return reader_.is_read_only(); }
  [[nodiscard]] bool compresses() const override { return compresses_; }

  [[nodiscard]] std::optional<EntryHead> find(const std::string& identifier) override {
    Statement statement = connection().statement(find_sql_);
    statement.bind(1, identifier);
    if (!statement.step()) return std::nullopt;
    return head(statement);
  }

  [[nodiscard]] std::optional<std::int64_t> number_of(const std::string& identifier) override {
    Statement statement = connection().statement(number_sql_);
    statement.bind(1, identifier);
    if (!statement.step()) return std::nullopt;
    return statement.integer(0);
  }

  [[nodiscard]] std::optional<First> first(std::int64_t number, const std::string& identifier,
                                           ComponentKind kind) override {
    Statement statement = connection().statement(first_sql_);
    statement.bind(1, number * kinds_per_entry);
    statement.bind(2, component_key(number, kind));
    if (!statement.step()) return std::nullopt;
    First first;
    first.head.number = number;
    first.head.identifier = identifier;
    if (statement.integer(0) != number * kinds_per_entry) damaged(no_head);
    static_cast<void>(digest_of_head(statement.bytes(1), first.head));
    if (statement.step()) first.bytes = unpacked(statement.bytes(1));
    return first;
  }

  [[nodiscard]] std::optional<std::string> component(const EntryHead& head, ComponentKind kind) override {
    Statement statement = connection().statement(component_sql_);
    statement.bind(1, component_key(head.number, kind));
    if (!statement.step()) return std::nullopt;
    return unpacked(statement.bytes(0));
  }

  [[nodiscard]] std::optional<Whole> find_whole(const std::string& identifier) override {
    Statement statement = connection().statement(
        "SELECT e.number, c.key & 31, c.bytes FROM entry e LEFT JOIN component c ON c.key >= e.number * 32 "
        "AND c.key < "
        "e.number * 32 + 32 WHERE e.identifier = ?1 ORDER BY c.key");
    statement.bind(1, identifier);
    if (!statement.step()) return std::nullopt;
    Whole whole;
    whole.head.number = statement.integer(0);
    whole.head.identifier = whole.bytes.identifier = identifier;
    if (statement.is_null(1) || statement.integer(1) != 0) damaged(no_head);
    static_cast<void>(digest_of_head(statement.bytes(2), whole.head));
    while (statement.step()) {
      const auto kind = static_cast<ComponentKind>(statement.integer(1));
      if (whole.head.has(kind)) whole.bytes.components[slot(kind)] = unpacked(statement.bytes(2));
    }
    return whole;
  }

  [[nodiscard]] std::vector<std::string> neighbours(const std::string& identifier, int count) override {
    std::vector<std::string> found;
    for (const char* side : {"< ?1 ORDER BY identifier DESC", "> ?1 ORDER BY identifier"}) {
      Statement statement = connection().statement(
          std::string("SELECT identifier FROM entry WHERE identifier ") + side + " LIMIT ?2");
      statement.bind(1, identifier);
      statement.bind(2, std::int64_t{count});
      while (statement.step()) found.emplace_back(statement.bytes(0));
    }
    return found;
  }

  void transaction(const std::function<void()>& work) override {
    if (!writer_) {
      writer_ = std::make_unique<Connection>(path_, Connection::Access::write);
      writer_->run("PRAGMA synchronous = FULL");
    }
    writer_->run("BEGIN IMMEDIATE");
    is_writing_ = true;
    try {
      work();
      flush();
      if (next_number_) run("UPDATE setting SET value = ?1 WHERE name = 'next_number'", *next_number_);
      writer_->run("COMMIT");
      next_number_.reset();
    } catch (...) {
      is_writing_ = false;
      next_number_.reset();
      forget_pending();
      writer_->roll_back();
      throw;
    }
    is_writing_ = false;
  }

  std::int64_t insert(const StoredEntry& entry) override {
    if (!next_number_) next_number_ = checked_next_number(*writer_);
    write_entry(entry, *next_number_);
    return (*next_number_)++;
  }

  void replace(const EntryHead& old, const StoredEntry& entry) override {
    erase(old);
    write_entry(entry, old.number);
  }

  void erase(const EntryHead& old) override {
    flush();
    erase_index(old);
    run("DELETE FROM component WHERE key >= ?1 * 32 AND key < ?1 * 32 + 32", old.number);
    run("DELETE FROM entry WHERE number = ?1", old.number);
  }

  void set_imported(const std::string& file, const std::string& sha256) override {
    Statement statement =
        writer_->statement("INSERT OR REPLACE INTO imported (file, sha256) VALUES (?1, ?2)");
    statement.bind(1, file);
    statement.bind(2, sha256);
    statement.run();
  }

  void forget_imported(const std::string& file) override {
    Statement statement = writer_->statement("DELETE FROM imported WHERE file = ?1");
    statement.bind(1, file);
    statement.run();
  }

  void clear_columns() override {
    writer_->run("DELETE FROM entry_text");
    writer_->run("DELETE FROM entry_element");
  }

  void set_columns(const EntryHead& head, const EntryColumns& columns) override {
    std::string assignments;
    int parameter = 2;
    for_each_entry_column([&](const auto& column) {
      assignments += (assignments.empty() ? "" : ", ") + std::string(column.sql_name) + " = ?" +
                     std::to_string(parameter++);
    });
    std::vector<std::string> kept;
    Statement statement = writer_->statement("UPDATE entry SET " + assignments + " WHERE number = ?1");
    statement.bind(1, head.number);
    bind_columns(statement, 2, columns, kept);
    statement.run();
    write_index(head.number, columns);
  }

  [[nodiscard]] std::optional<EntryHead> find_origin(const std::string& file,
                                                     const std::string& block) override {
    Statement statement = connection().statement("SELECT " + head_names + entry_with_head +
                                                 "WHERE e.source = ?1 AND e.block IS ?2 LIMIT 1");
    statement.bind(1, file);
    if (!block.empty()) statement.bind(2, block);
    if (!statement.step()) return std::nullopt;
    return head(statement);
  }

  [[nodiscard]] EntryOrigin origin(const EntryHead& head) override {
    Statement statement =
        connection().statement("SELECT origin_time, source, block, sha256 FROM entry WHERE number = ?1");
    statement.bind(1, head.number);
    if (!statement.step()) gone();
    return origin(statement, 0);
  }

  [[nodiscard]] EntryColumns columns(const EntryHead& head) override {
    Statement statement =
        connection().statement("SELECT " + entry_column_names("e.") + " FROM entry e WHERE e.number = ?1");
    statement.bind(1, head.number);
    if (!statement.step()) gone();
    return columns(statement, 0);
  }

  [[nodiscard]] bool has_imported(const std::string& file, const std::string& sha256) override {
    Statement statement = connection().statement("SELECT 1 FROM imported WHERE file = ?1 AND sha256 = ?2");
    statement.bind(1, file);
    statement.bind(2, sha256);
    return statement.step();
  }

  [[nodiscard]] std::vector<std::string> select(const EntryQuery& query,
                                                const SelectOptions& options) override {
    std::vector<std::string> found;
    const SqlCondition condition = query.sql(SqlDialect::sqlite);
    if (condition.recheck) {
      for (EntryColumns& columns : select_columns(query, options))
        found.push_back(std::move(columns.identifier));
      return found;
    }
    each_selected("e.identifier", condition, options, [&](Statement& statement) {
      found.emplace_back(statement.bytes(0));
      return true;
    });
    return found;
  }

  [[nodiscard]] std::vector<EntryColumns> select_columns(const EntryQuery& query,
                                                         const SelectOptions& options) override {
    std::vector<EntryColumns> found;
    const SqlCondition condition = query.sql(SqlDialect::sqlite);
    if (options.limit == std::size_t{0}) return found;
    each_selected(entry_column_names("e."), condition, options, [&](Statement& statement) {
      EntryColumns columns = this->columns(statement, 0);
      if (!condition.recheck || query.matches(columns)) found.push_back(std::move(columns));
      return !options.limit || found.size() < *options.limit;
    });
    return found;
  }

  [[nodiscard]] std::uint64_t count(const EntryQuery& query) override {
    const SqlCondition condition = query.sql(SqlDialect::sqlite);
    if (condition.recheck) {
      std::uint64_t matching = 0;
      each_selected(entry_column_names("e."), condition, {}, [&](Statement& statement) {
        if (query.matches(columns(statement, 0))) ++matching;
        return true;
      });
      return matching;
    }
    Statement statement = connection().statement("SELECT count(*) FROM entry e WHERE " + condition.where);
    bind_parameters(statement, condition);
    return statement.step() ? static_cast<std::uint64_t>(statement.integer(0)) : 0;
  }

  void begin_snapshot() override {
    if (snapshots_++ > 0) return;
    try {
      reader_.run("BEGIN");
      // The state is that of the first read.
      reader_.run("SELECT 1 FROM entry LIMIT 1");
    } catch (...) {
      reader_.roll_back();
      snapshots_ = 0;
      throw;
    }
  }
  void end_snapshot() noexcept override {
    if (snapshots_ > 0 && --snapshots_ == 0) reader_.roll_back();
  }

  [[nodiscard]] std::vector<Row> rows_after(std::int64_t number, std::size_t limit) override {
    std::vector<Row> rows;
    Statement statement = connection().statement(
        "SELECT " + head_names + ", e.origin_time, e.source, e.block, e.sha256, " + entry_column_names("e.") +
        entry_with_head + "WHERE e.number > ?1 ORDER BY e.number LIMIT ?2");
    statement.bind(1, number);
    statement.bind(2, static_cast<std::int64_t>(limit));
    while (statement.step()) {
      Row& row = rows.emplace_back();
      row.head.number = statement.integer(0);
      row.head.identifier = statement.bytes(1);
      try {
        row.origin = origin(statement, 3);
        row.columns = columns(statement, 7);
        if (digest_of_head(statement.bytes(2), row.head) != row_digest(row.head, row.origin)) {
          row.fault = "its row is not what was stored (the digest differs)";
        }
      } catch (const DamagedStore& error) {
        row.fault = error.reason();
      }
    }
    return rows;
  }

  [[nodiscard]] std::optional<std::uint64_t> index_sum() override {
    std::uint64_t sum = 0;
    Statement texts =
        connection().statement("SELECT \"column\", hash, entry, position, folded, value FROM entry_text");
    while (texts.step()) {
      TextRow row;
      row.column = static_cast<int>(texts.integer(0));
      row.hash = texts.integer(1);
      row.position = static_cast<int>(texts.integer(3));
      row.folded = texts.bytes(4);
      if (!texts.is_null(5)) row.value = texts.bytes(5);
      sum += row_sum(texts.integer(2), row);
    }
    Statement elements = connection().statement("SELECT symbol, entry, count, ratio FROM entry_element");
    while (elements.step()) {
      sum += row_sum(elements.integer(1), elements.bytes(0), elements.number(2), elements.number(3));
    }
    return sum;
  }

  [[nodiscard]] std::vector<std::string> faults() override {
    std::vector<std::string> found;
    try {
      Statement check = connection().statement("PRAGMA integrity_check(100)");
      while (check.step()) {
        if (check.bytes(0) != "ok") found.emplace_back(check.bytes(0));
      }
      const std::int64_t orphans = connection().value_of(
          "SELECT count(*) FROM component c LEFT JOIN entry e ON e.number = c.key / 32 WHERE e.number IS "
          "NULL");
      static_cast<void>(checked_next_number(connection()));
      if (orphans > 0) found.push_back(std::to_string(orphans) + " components belong to no entry");
    } catch (const DamagedStore& error) {
      found.push_back(error.reason());
    }
    return found;
  }

 private:
  Connection& connection() { return is_writing_ ? *writer_ : reader_; }

  std::int64_t setting(Connection& connection, const std::string& name) const {
    Statement statement = connection.statement("SELECT value FROM setting WHERE name = CAST(?1 AS TEXT)");
    statement.bind(1, name);
    if (!statement.step()) damaged("its setting " + name + " is missing");
    return statement.integer(0);
  }

  std::int64_t checked_next_number(Connection& connection) const {
    const std::int64_t number = setting(connection, "next_number");
    if (number <= connection.value_of("SELECT max(number) FROM entry")) {
      damaged("the number for the next entry is that of an entry");
    }
    return number;
  }

  [[noreturn]] void damaged(const std::string& reason) const { throw DamagedStore({path_, "", ""}, reason); }
  [[noreturn]] void gone() const {
    throw EntryStoreError({path_, "", ""}, "the entry was removed while it was read");
  }

  // From a row that begins with head_names.
  EntryHead head(const Statement& statement) const {
    EntryHead head;
    head.number = statement.integer(0);
    head.identifier = statement.bytes(1);
    static_cast<void>(digest_of_head(statement.bytes(2), head));
    return head;
  }

  std::uint64_t digest_of_head(std::string_view packed, EntryHead& head) const {
    const auto digest = unpack_head(packed, head);
    if (!digest) damaged(packed.empty() ? no_head : "its head is damaged");
    return *digest;
  }

  static EntryOrigin origin(const Statement& statement, int first) {
    return {std::string(statement.bytes(first + 1)), std::string(statement.bytes(first + 2)),
            std::string(statement.bytes(first + 3)), statement.integer(first)};
  }

  EntryColumns columns(const Statement& statement, int first) const {
    EntryColumns columns;
    for_each_entry_column([&](const auto& column) {
      using Column = std::remove_cvref_t<decltype(column)>;
      auto& member = columns.*column.member;
      const int index = first + column.number - 1;
      if (statement.is_null(index)) return;
      if constexpr (Column::is_list) {
        if (!unpack_list(statement.bytes(index), member)) {
          damaged(std::string("its row is damaged: the column ") + column.sql_name + " is no list");
        }
      } else if constexpr (Column::is_text) {
        member = std::string(statement.bytes(index));
      } else if constexpr (Column::is_integer) {
        member = statement.integer(index);
      } else {
        member = statement.number(index);
      }
    });
    return columns;
  }

  // Lists are packed into `kept`, which must outlive the statement.
  static void bind_columns(Statement& statement, int first, const EntryColumns& columns,
                           std::vector<std::string>& kept) {
    kept.reserve(static_cast<std::size_t>(entry_column_count()));
    for_each_entry_column([&](const auto& column) {
      using Column = std::remove_cvref_t<decltype(column)>;
      const auto& member = columns.*column.member;
      const int index = first + column.number - 1;
      if constexpr (Column::is_list) {
        if (member.empty()) return;
        statement.bind(index, kept.emplace_back(packed_list(member)));
      } else {
        statement.bind(index, member);
      }
    });
  }

  void run(const std::string& sql, std::int64_t parameter) {
    Statement statement = writer_->statement(sql);
    statement.bind(1, parameter);
    statement.run();
  }

  void write_entry(const StoredEntry& entry, std::int64_t number) {
    std::vector<std::string> kept;
    {
      Statement row = writer_->statement(insert_sql_);
      row.bind(1, number);
      row.bind(2, entry.origin.stored_at);
      bind_columns(row, 3, entry.columns, kept);
      row.run();
    }
    write_component(number * kinds_per_entry, packed_head(entry.head, entry.origin));
    for_each_component([&](auto component) {
      const auto& bytes = entry.bytes.components[slot(component.kind)];
      if (!bytes) return;
      write_component(component_key(number, component.kind), packed(*bytes, compresses_));
    });
    write_index(number, entry.columns);
  }

  void write_component(std::int64_t key, const std::string& bytes) {
    Statement statement = writer_->statement("INSERT INTO component (key, bytes) VALUES (?1, ?2)");
    statement.bind(1, key);
    statement.bind(2, bytes);
    statement.run();
  }

  // Rows of the index go to all places of it; in order they are written the faster.
  struct PendingText {
    std::int64_t entry;
    TextRow row;
  };
  struct PendingElement {
    std::string symbol;
    std::int64_t entry;
    double count;
    double ratio;
  };

  void write_index(std::int64_t number, const EntryColumns& columns) {
    for_each_text_row(columns, [&](TextRow& row) { texts_.push_back({number, std::move(row)}); });
    for (const ElementCount& element : columns.elements) {
      elements_.push_back({element.symbol, number, element.count, element_ratio(columns, element)});
    }
    constexpr std::size_t most_pending = 100'000;
    if (texts_.size() >= most_pending) flush();
  }

  void forget_pending() {
    texts_.clear();
    elements_.clear();
  }

  void flush() {
    const auto place = [](const PendingText& text) {
      return std::tuple(text.row.column, text.row.hash, text.entry, text.row.position);
    };
    std::sort(texts_.begin(), texts_.end(),
              [&](const auto& one, const auto& other) { return place(one) < place(other); });
    std::sort(elements_.begin(), elements_.end(), [](const auto& one, const auto& other) {
      return std::tie(one.symbol, one.entry) < std::tie(other.symbol, other.entry);
    });
    for (const PendingText& text : texts_) {
      Statement statement = writer_->statement(
          "INSERT INTO entry_text (\"column\", hash, entry, position, folded, value) VALUES (?1, ?2, ?3, ?4, "
          "?5, ?6)");
      statement.bind(1, std::int64_t{text.row.column});
      statement.bind(2, text.row.hash);
      statement.bind(3, text.entry);
      statement.bind(4, std::int64_t{text.row.position});
      statement.bind(5, text.row.folded);
      statement.bind(6, text.row.value);
      statement.run();
    }
    for (const PendingElement& element : elements_) {
      Statement statement = writer_->statement(
          "INSERT INTO entry_element (symbol, entry, count, ratio) VALUES (?1, ?2, ?3, ?4)");
      statement.bind(1, element.symbol);
      statement.bind(2, element.entry);
      statement.bind(3, element.count);
      statement.bind(4, element.ratio);
      statement.run();
    }
    forget_pending();
  }

  // The rows that the columns of an entry made; there is no index of them by entry.
  void erase_index(const EntryHead& old) {
    const EntryColumns known = columns(old);
    for_each_text_row(known, [&](const TextRow& row) {
      Statement statement = writer_->statement(
          "DELETE FROM entry_text WHERE \"column\" = ?1 AND hash = ?2 AND entry = ?3 AND position = ?4");
      statement.bind(1, std::int64_t{row.column});
      statement.bind(2, row.hash);
      statement.bind(3, old.number);
      statement.bind(4, std::int64_t{row.position});
      statement.run();
    });
    for (const ElementCount& element : known.elements) {
      Statement statement = writer_->statement("DELETE FROM entry_element WHERE symbol = ?1 AND entry = ?2");
      statement.bind(1, element.symbol);
      statement.bind(2, old.number);
      statement.run();
    }
  }

  static void bind_parameters(Statement& statement, const SqlCondition& condition) {
    int index = 0;
    for (const SqlValue& value : condition.parameters) statement.bind(++index, value);
  }

  // Calls `visit` with each row found, in the order of identifiers, until it gives false.
  template <class Visit>
  void each_selected(const std::string& names, const SqlCondition& condition, const SelectOptions& options,
                     const Visit& visit) {
    std::string sql = "SELECT " + names + " FROM entry e WHERE (" + condition.where + ")";
    int parameter = static_cast<int>(condition.parameters.size());
    if (options.after) sql += " AND e.identifier > ?" + std::to_string(++parameter);
    sql += " ORDER BY e.identifier";
    // Where entries are judged afterwards, nobody knows how many rows it takes.
    const bool is_limited = options.limit && !condition.recheck;
    if (is_limited) sql += " LIMIT ?" + std::to_string(++parameter);
    Statement statement = connection().statement(sql);
    bind_parameters(statement, condition);
    if (is_limited) {
      constexpr std::size_t most = 0x7FFFFFFFFFFFFFFF;
      statement.bind(parameter--, static_cast<std::int64_t>(std::min(*options.limit, most)));
    }
    if (options.after) statement.bind(parameter, *options.after);
    while (statement.step()) {
      if (!visit(statement)) break;
    }
  }

  static std::string insert_sql() {
    std::string places;
    for (int index = 1; index <= 2 + entry_column_count(); ++index)
      places += (index > 1 ? ", ?" : "?") + std::to_string(index);
    return "INSERT INTO entry (number, origin_time, " + entry_column_names("") + ") VALUES (" + places + ")";
  }

  static constexpr const char* no_head = "its head is missing";
  const std::string find_sql_ = "SELECT " + head_names + entry_with_head + "WHERE e.identifier = ?1";
  const std::string number_sql_ = "SELECT number FROM entry WHERE identifier = ?1";
  // The rows between the two are walked over, which takes less than to look for the second.
  const std::string first_sql_ =
      "SELECT key, bytes FROM component WHERE key >= ?1 AND key <= ?2 AND (+key = ?1 OR +key = ?2) ORDER BY "
      "key";
  const std::string component_sql_ = "SELECT bytes FROM component WHERE key = ?1";
  const std::string insert_sql_ = insert_sql();

  std::string path_;
  Connection reader_;
  std::unique_ptr<Connection> writer_;
  bool is_writing_ = false;
  bool compresses_ = true;
  int snapshots_ = 0;
  std::optional<std::int64_t> next_number_;  // in a transaction
  std::vector<PendingText> texts_;
  std::vector<PendingElement> elements_;
};

}  // namespace

bool is_sqlite_file(const std::string& path) {
  constexpr std::string_view magic("SQLite format 3\0", 16);
  std::array<char, 16> first{};
  std::ifstream file(path, std::ios::binary);
  file.read(first.data(), first.size());
  return file.gcount() == 16 && std::string_view(first.data(), first.size()) == magic;
}

std::shared_ptr<StoreEngine> open_sqlite_engine(const std::string& path) {
  return std::make_shared<SqliteEngine>(path);
}

// Made under another name, so that nothing half made is ever at the place; a link, which fails where
// something is.
void init_sqlite_store(const std::string& path, const InitOptions& options) {
  const std::string making = path + ".making-" + std::to_string(::getpid());
  const auto remove = [&] {
    for (const char* ending : {"", "-wal", "-shm", "-journal"}) std::remove((making + ending).c_str());
  };
  const auto fail = [&](int error) {
    remove();
    throw EntryStoreError({path, "", ""}, error == EEXIST
                                              ? "there is a file already; a new store needs a new name"
                                              : std::generic_category().message(error));
  };
  if (::access(path.c_str(), F_OK) == 0) fail(EEXIST);
  remove();
  try {
    Connection connection(making, Connection::Access::create);
    connection.run("BEGIN");
    connection.run("PRAGMA application_id = " + std::to_string(application_id));
    connection.run("PRAGMA user_version = " + std::to_string(schema_version));
    connection.run(schema(options));
    connection.run("COMMIT");
    connection.run("PRAGMA journal_mode = WAL");
  } catch (const EntryStoreError& error) {
    remove();
    throw EntryStoreError({path, "", ""}, error.reason());
  }
  if (::link(making.c_str(), path.c_str()) != 0) fail(errno);
  remove();
}

int upgrade_sqlite_store(const std::string& path) {
  Connection connection(path, Connection::Access::write);
  const std::int64_t version = checked_version(connection, path);
  // There is no older version yet.
  check_version(connection, path);
  return static_cast<int>(version);
}
