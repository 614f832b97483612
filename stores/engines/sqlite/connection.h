// One connection to a SQLite file, with its prepared statements kept.
// Internal: for sqlite_engine.h.
//
//   Connection connection(path, Connection::Access::write);
//   Statement statement = connection.statement("SELECT number FROM entry WHERE identifier = ?1");
//   statement.bind(1, identifier);
//   while (statement.step()) use(statement.integer(0));
//
// Fails: EntryStoreError in the words of SQLite with the way out, DamagedStore for a damaged file.
#pragma once

#include <sqlite3.h>
#include <stores/entry_query.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

class Connection;

// A prepared statement that is in use; it is reset when this goes.
class Statement {
 public:
  Statement(Connection& connection, std::shared_ptr<sqlite3_stmt> kept)
      : connection_(connection), kept_(std::move(kept)), statement_(kept_.get()) {}
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement();

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
  Connection& connection_;
  std::shared_ptr<sqlite3_stmt> kept_;
  sqlite3_stmt* statement_;
};

class Connection {
 public:
  // `unchanging`: nobody writes to the file while it is open, so that nothing is locked beside it.
  enum class Access { read, unchanging, write, create };

  // Throws EntryStoreError when the file cannot be opened.
  Connection(const std::string& path, Access access);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  [[nodiscard]] Statement statement(const std::string& sql);
  // Without a result, not kept.
  void run(const std::string& sql);
  [[nodiscard]] std::int64_t value_of(const std::string& sql);
  // Ends a transaction as if it had never been, also where it has ended itself.
  void roll_back() noexcept;
  // Whether it is open for reading only, asked for or not.
  [[nodiscard]] bool is_read_only() const;

  // For the answer of SQLite that is in `code`.
  [[noreturn]] void fail(int code) const;

 private:
  std::string path_;
  sqlite3* database_ = nullptr;
  std::unordered_map<std::string, std::shared_ptr<sqlite3_stmt>> statements_;
};
