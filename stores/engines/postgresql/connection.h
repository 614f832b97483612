// One connection to a PostgreSQL server, or to another that speaks its protocol.
// Internal: for postgresql_engine.h, see sqlite/connection.h for the use.
//
// Statements are prepared when they are first run and kept. In a transaction, statements without a result are
// sent and not waited for: the next one that reads, or the commit, takes their answers (pipeline mode). A
// connection that was lost is made again where nothing had been begun on it.
//
// Fails: EntryStoreError in the server's words.
#pragma once

#include <libpq-fe.h>
#include <stores/entry_query.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class PostgresqlConnection;

struct ClearResult {
  void operator()(PGresult* result) const { PQclear(result); }
};
using PostgresqlResult = std::unique_ptr<PGresult, ClearResult>;

class PostgresqlStatement {
 public:
  PostgresqlStatement(PostgresqlConnection& connection, std::string sql)
      : connection_(connection), sql_(std::move(sql)) {}
  PostgresqlStatement(const PostgresqlStatement&) = delete;
  PostgresqlStatement& operator=(const PostgresqlStatement&) = delete;
  ~PostgresqlStatement();

  // Values are copied.
  void bind(int index, std::int64_t value);
  void bind(int index, double value);
  void bind(int index, std::string_view bytes);
  void bind(int index, const std::string& bytes) { bind(index, std::string_view(bytes)); }
  void bind(int index, const char* bytes) = delete;
  void bind(int index, const SqlValue& value);
  template <class T>
  void bind(int index, const std::optional<T>& value) {
    bind(index, value.value_or(T()));
    if (!value) parameters_[static_cast<std::size_t>(index) - 1].is_null = true;
  }

  // Rows are given as they come: nothing else may be asked of the connection until the statement has gone.
  void stream() { is_stream_ = true; }
  bool step();
  void run();

  [[nodiscard]] bool is_null(int column) const;
  [[nodiscard]] std::int64_t integer(int column) const;
  [[nodiscard]] double number(int column) const;
  [[nodiscard]] std::string_view bytes(int column) const;

 private:
  friend class PostgresqlConnection;

  struct Parameter {
    Oid type = 0;
    bool is_null = true;
    std::string bytes;  // in the server's binary form
  };
  Parameter& parameter(int index);

  PostgresqlConnection& connection_;
  std::string sql_;
  std::vector<Parameter> parameters_;
  bool is_stream_ = false;
  bool is_begun_ = false;
  bool is_open_ = false;  // a stream that has not come to its end
  PostgresqlResult result_;
  int row_ = -1;
};

class PostgresqlConnection {
 public:
  using Statement = PostgresqlStatement;

  // The address is that of libpq. Throws EntryStoreError when there is no connection.
  PostgresqlConnection(const std::string& address, const std::string& place);
  PostgresqlConnection(const PostgresqlConnection&) = delete;
  PostgresqlConnection& operator=(const PostgresqlConnection&) = delete;
  ~PostgresqlConnection();

  [[nodiscard]] PostgresqlStatement statement(const std::string& sql) { return {*this, sql}; }
  // Without parameters and result; several statements with semicolons between them.
  void run(const std::string& sql);
  [[nodiscard]] std::int64_t value_of(const std::string& sql);
  [[nodiscard]] bool is_read_only() const { return false; }

  // Writers wait for one another. Where the server asks for it, `work` runs again.
  void transaction(const std::function<void()>& work);
  void begin_snapshot();
  void end_snapshot() noexcept;
  [[nodiscard]] std::vector<std::string> faults() { return {}; }
  [[nodiscard]] static bool has_element_lists() { return false; }

  // An index holds no key of more than 2,700 bytes: of an identifier it has the first 500, and the MD5 sum of
  // it.
  static constexpr SqlDialect dialect = SqlDialect::postgresql;
  static std::string identifier_is(const std::string& relation, const std::string& parameter) {
    const std::string head = "substring(" + parameter + " from 1 for 500)";
    return "(e.identifier_head, e.identifier) " + relation + " (" + head + ", " + parameter + ")";
  }
  static std::string identifier_order(bool descending) {
    return descending ? "e.identifier_head DESC, e.identifier DESC" : "e.identifier_head, e.identifier";
  }
  static std::string origin_is(const std::string& file, const std::string& block) {
    return "e.origin_sum = md5(" + file + ") AND e.source = " + file + " AND e.block IS NOT DISTINCT FROM " +
           block;
  }
  static std::string imported_is(const std::string& file) {
    return "sum = md5(" + file + ") AND file = " + file;
  }
  static constexpr const char* insert_imported =
      "INSERT INTO imported (sum, file, sha256) VALUES (md5(?1), ?1, ?2) "
      "ON CONFLICT (sum) DO UPDATE SET file = excluded.file, sha256 = excluded.sha256";
  static const std::string more_names;
  static const std::string more_values;

 private:
  friend class PostgresqlStatement;

  [[noreturn]] void fail(const PGresult* result);
  void connect();
  [[nodiscard]] bool is_lost() const { return PQstatus(connection_) != CONNECTION_OK; }
  // Before the first statement of a transaction, and before one that is alone.
  void make_ready();

  void begin(PostgresqlStatement& statement);
  void send(PostgresqlStatement& statement);
  // Takes the answers of all that was sent; gives the last result with rows.
  PostgresqlResult answers();
  void drain() noexcept;
  void roll_back() noexcept;

  std::string address_;
  std::string place_;
  PGconn* connection_ = nullptr;
  std::unordered_map<std::string, std::string> prepared_;  // the names of statements, by their text and types
  int statement_count_ = 0;
  bool is_pipeline_ = false;
  bool is_in_snapshot_ = false;
  int sent_ = 0;  // answers that were not taken
};
