// One connection to a SQLite file, with its prepared statements kept.
// Internal: for sqlite_engine.h.
//
//   SqliteConnection connection(path, SqliteConnection::Access::write);
//   SqliteStatement statement = connection.statement("SELECT number FROM entry WHERE identifier = ?1");
//   statement.bind(1, identifier);
//   while (statement.step()) use(statement.integer(0));
//
// Fails: EntryStoreError in the words of SQLite with the way out, DamagedStore for a damaged file.
#pragma once

#include <sqlite3.h>
#include <stores/entry_query.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

class SqliteConnection;

// A prepared statement that is in use; it is reset when this goes.
class SqliteStatement {
 public:
  SqliteStatement(SqliteConnection& connection, std::shared_ptr<sqlite3_stmt> kept)
      : connection_(connection), kept_(std::move(kept)), statement_(kept_.get()) {}
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;
  ~SqliteStatement();

  // Texts are bound as bytes, which must outlive the statement.
  void bind(int index, std::int64_t value);
  void bind(int index, double value);
  void bind(int index, std::string_view bytes);
  void bind(int index, const std::string& bytes) { bind(index, std::string_view(bytes)); }
  void bind(int index, const char* bytes) = delete;
  template <class T>
  void bind(int index, const std::optional<T>& value) {
    if (value) {
      bind(index, *value);
    } else {
      bind_null(index);
    }
  }
  void bind(int index, const SqlValue& value);
  void bind_null(int index);

  // Rows are given as they are found, here always.
  void stream() {}
  // The next row, or false at the end.
  bool step();
  // Steps to the end, for the next values.
  void run();

  [[nodiscard]] bool is_null(int column) const;
  [[nodiscard]] std::int64_t integer(int column) const;
  [[nodiscard]] double number(int column) const;
  // Until the next step.
  [[nodiscard]] std::string_view bytes(int column) const;

 private:
  SqliteConnection& connection_;
  std::shared_ptr<sqlite3_stmt> kept_;
  sqlite3_stmt* statement_;
};

class SqliteConnection {
 public:
  using Statement = SqliteStatement;

  // `unchanging`: nobody writes to the file while it is open, so that nothing is locked beside it.
  enum class Access { read, unchanging, write, create };

  // Throws EntryStoreError when the file cannot be opened.
  SqliteConnection(const std::string& path, Access access);
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;
  ~SqliteConnection();

  [[nodiscard]] SqliteStatement statement(const std::string& sql);
  // Without a result, not kept.
  void run(const std::string& sql);
  [[nodiscard]] std::int64_t value_of(const std::string& sql);

  // Runs `work` as one transaction, which other writers wait for.
  void transaction(const std::function<void()>& work);
  // Until it ends, all reads see the state of now.
  void begin_snapshot();
  void end_snapshot() noexcept;
  // What is wrong with the file itself.
  [[nodiscard]] std::vector<std::string> faults();

  // Whether the table element_block is there.
  [[nodiscard]] bool has_element_lists() { return value_of("PRAGMA user_version") >= 2; }

  static constexpr SqlDialect dialect = SqlDialect::sqlite;
  static std::string identifier_is(const std::string& relation, const std::string& parameter) {
    return "e.identifier " + relation + " " + parameter;
  }
  static std::string identifier_order(bool descending) {
    return descending ? "e.identifier DESC" : "e.identifier";
  }
  static std::string origin_is(const std::string& file, const std::string& block) {
    return "e.source = " + file + " AND e.block IS " + block;
  }
  static std::string imported_is(const std::string& file) { return "file = " + file; }
  static constexpr const char* insert_imported =
      "INSERT OR REPLACE INTO imported (file, sha256) VALUES (?1, ?2)";
  static constexpr const char* more_names = "";
  static constexpr const char* more_values = "";

  // Whether it is open for reading only, asked for or not.
  [[nodiscard]] bool is_read_only() const;

  // For the answer of SQLite that is in `code`.
  [[noreturn]] void fail(int code) const;

 private:
  void roll_back() noexcept;

  std::string path_;
  sqlite3* database_ = nullptr;
  std::unordered_map<std::string, std::shared_ptr<sqlite3_stmt>> statements_;
};
