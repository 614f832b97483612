#include <stores/engines/postgresql/connection.h>
#include <stores/entry_columns.h>
#include <stores/entry_store_error.h>

#include <bit>
#include <chrono>
#include <thread>
#include <utility>
#include <variant>

namespace {

// The types of the server that are used.
constexpr Oid bytea = 17;
constexpr Oid int8 = 20;
constexpr Oid float8 = 701;

// The server asks to run the transaction again.
class RunAgain : public EntryStoreError {
 public:
  using EntryStoreError::EntryStoreError;
};

// Nothing is there at the other end.
class ConnectionLost : public EntryStoreError {
 public:
  using EntryStoreError::EntryStoreError;
};

std::string big_endian(std::uint64_t value) {
  std::string bytes;
  for (int shift = 56; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

std::uint64_t from_big_endian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (const char c : bytes) value = value << 8 | static_cast<unsigned char>(c);
  return value;
}

// ?1 is $1 here. None of our texts has a question mark for anything else.
std::string with_dollars(std::string sql) {
  for (char& c : sql) {
    if (c == '?') c = '$';
  }
  return sql;
}

int column_number(std::string_view sql_name) {
  int number = 0;
  for_each_entry_column([&](const auto& column) {
    if (column.sql_name == sql_name) number = column.number;
  });
  return number;
}

std::string trimmed(const char* message) {
  std::string text = message == nullptr ? "" : message;
  while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
  for (char& c : text) {
    if (c == '\n') c = ' ';
  }
  return text;
}

}  // namespace

const std::string PostgresqlConnection::more_names = ", identifier_head, identifier_sum, origin_sum";
// The columns of an entry come after its number and its time.
const std::string PostgresqlConnection::more_values = [] {
  const std::string identifier = "?" + std::to_string(2 + column_number("identifier"));
  const std::string source = "?" + std::to_string(2 + column_number("source"));
  return ", substring(" + identifier + " from 1 for 500), md5(" + identifier + "), md5(" + source + ")";
}();

PostgresqlStatement::~PostgresqlStatement() {
  if (is_open_) connection_.drain();
}

PostgresqlStatement::Parameter& PostgresqlStatement::parameter(int index) {
  const auto position = static_cast<std::size_t>(index) - 1;
  if (position >= parameters_.size()) parameters_.resize(position + 1);
  return parameters_[position];
}

void PostgresqlStatement::bind(int index, std::int64_t value) {
  parameter(index) = {int8, false, big_endian(static_cast<std::uint64_t>(value))};
}
void PostgresqlStatement::bind(int index, double value) {
  parameter(index) = {float8, false, big_endian(std::bit_cast<std::uint64_t>(value))};
}
void PostgresqlStatement::bind(int index, std::string_view bytes) {
  parameter(index) = {bytea, false, std::string(bytes)};
}
void PostgresqlStatement::bind(int index, const SqlValue& value) {
  std::visit([&](const auto& alternative) { bind(index, alternative); }, value);
}

bool PostgresqlStatement::step() {
  if (!is_begun_) {
    connection_.begin(*this);
    is_begun_ = true;
  }
  if (!is_open_) return ++row_ < PQntuples(result_.get());
  // One row at a time.
  result_.reset(PQgetResult(connection_.connection_));
  row_ = 0;
  if (PQresultStatus(result_.get()) == PGRES_SINGLE_TUPLE) return true;
  is_open_ = false;
  const bool is_end = PQresultStatus(result_.get()) == PGRES_TUPLES_OK;
  const PostgresqlResult last = std::move(result_);
  connection_.drain();
  if (!is_end) connection_.fail(last.get());
  return false;
}

void PostgresqlStatement::run() {
  if (connection_.is_pipeline_) {
    connection_.send(*this);
    return;
  }
  while (step()) continue;
}

bool PostgresqlStatement::is_null(int column) const {
  return PQgetisnull(result_.get(), row_, column) != 0;
}
std::int64_t PostgresqlStatement::integer(int column) const {
  const std::string_view value = bytes(column);
  const std::uint64_t bits = from_big_endian(value);
  if (value.size() == 4) return static_cast<std::int32_t>(static_cast<std::uint32_t>(bits));
  return static_cast<std::int64_t>(bits);
}
double PostgresqlStatement::number(int column) const {
  return std::bit_cast<double>(from_big_endian(bytes(column)));
}
std::string_view PostgresqlStatement::bytes(int column) const {
  return {PQgetvalue(result_.get(), row_, column),
          static_cast<std::size_t>(PQgetlength(result_.get(), row_, column))};
}

PostgresqlConnection::PostgresqlConnection(const std::string& address, const std::string& place)
    : address_(address), place_(place) {
  try {
    connect();
  } catch (...) {
    PQfinish(connection_);
    throw;
  }
}

PostgresqlConnection::~PostgresqlConnection() {
  PQfinish(connection_);
}

void PostgresqlConnection::connect() {
  PQfinish(connection_);
  prepared_.clear();
  sent_ = 0;
  is_pipeline_ = false;
  connection_ = PQconnectdb(address_.c_str());
  if (connection_ == nullptr) throw std::bad_alloc();
  if (is_lost()) throw ConnectionLost({place_, "", ""}, trimmed(PQerrorMessage(connection_)));
  PQsetNoticeProcessor(
      connection_, [](void*, const char*) {}, nullptr);
  run("SET search_path = dbentry; SET statement_timeout = 0");
}

void PostgresqlConnection::make_ready() {
  if (is_lost() && !is_in_snapshot_) connect();
}

void PostgresqlConnection::fail(const PGresult* result) {
  const char* const state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
  const char* const primary = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
  const std::string code = state == nullptr ? "" : state;
  const std::string reason = primary == nullptr ? trimmed(PQerrorMessage(connection_)) : trimmed(primary);
  const EntryStoreError::Place place = {place_, "", ""};
  if (code == "40001" || code == "40P01") throw RunAgain(place, reason);
  if (code == "3F000" || code == "42P01") {
    throw EntryStoreError(place, "there is no store in this database (dbentry init makes one): " + reason);
  }
  if (code == "42P06") throw EntryStoreError(place, "there is a store in this database already");
  if (code == "53100")
    throw EntryStoreError(place, reason + "; free some space and do it again, nothing has changed");
  if (code == "XX001" || code == "XX002") throw DamagedStore(place, reason);
  // 57P01 to 57P03: the server is stopped, or starts.
  if (is_lost() || code.starts_with("57P") || code.starts_with("08")) throw ConnectionLost(place, reason);
  throw EntryStoreError(place, code.empty() ? reason : reason + " (SQLSTATE " + code + ")");
}

void PostgresqlConnection::run(const std::string& sql) {
  const PostgresqlResult result(PQexec(connection_, sql.c_str()));
  const ExecStatusType status = PQresultStatus(result.get());
  if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK && status != PGRES_EMPTY_QUERY)
    fail(result.get());
}

std::int64_t PostgresqlConnection::value_of(const std::string& sql) {
  auto one = statement(sql);
  return one.step() && !one.is_null(0) ? one.integer(0) : 0;
}

// Sends a statement, with its preparation where that is still to be done.
void PostgresqlConnection::send(PostgresqlStatement& statement) {
  std::string key = statement.sql_;
  std::vector<Oid> types;
  std::vector<const char*> values;
  std::vector<int> lengths;
  for (const auto& parameter : statement.parameters_) {
    key += ' ' + std::to_string(parameter.type);
    types.push_back(parameter.type);
    values.push_back(parameter.is_null ? nullptr : parameter.bytes.data());
    lengths.push_back(static_cast<int>(parameter.bytes.size()));
  }
  const std::vector<int> binary(types.size(), 1);
  const int count = static_cast<int>(types.size());
  const auto sent = [this](int result) {
    if (result == 0) fail(nullptr);
  };
  const std::string sql = with_dollars(statement.sql_);
  auto known = prepared_.find(key);
  // Queries are as many as their askers think of; our own statements are few.
  constexpr std::size_t most_kept = 100;
  if (known == prepared_.end() && prepared_.size() < most_kept) {
    const std::string name = "s" + std::to_string(++statement_count_);
    if (is_pipeline_) {
      sent(PQsendPrepare(connection_, name.c_str(), sql.c_str(), count, types.data()));
      ++sent_;
    } else {
      const PostgresqlResult result(PQprepare(connection_, name.c_str(), sql.c_str(), count, types.data()));
      if (PQresultStatus(result.get()) != PGRES_COMMAND_OK) fail(result.get());
    }
    known = prepared_.emplace(key, name).first;
  }
  if (known == prepared_.end()) {
    sent(PQsendQueryParams(connection_, sql.c_str(), count, types.data(), values.data(), lengths.data(),
                           binary.data(), 1));
  } else {
    sent(PQsendQueryPrepared(connection_, known->second.c_str(), count, values.data(), lengths.data(),
                             binary.data(), 1));
  }
  if (!is_pipeline_) return;
  // Answers that nobody takes would fill the line.
  constexpr int most_sent = 500;
  if (++sent_ >= most_sent) static_cast<void>(answers());
}

void PostgresqlConnection::begin(PostgresqlStatement& statement) {
  const auto ask = [&] {
    make_ready();
    send(statement);
    if (statement.is_stream_ && !is_pipeline_) {
      PQsetSingleRowMode(connection_);
      statement.is_open_ = true;
    } else {
      statement.result_ = answers();
    }
  };
  const bool stands_alone = !is_pipeline_ && !is_in_snapshot_;
  try {
    ask();
  } catch (const ConnectionLost&) {
    if (!stands_alone) throw;
    ask();
  }
}

PostgresqlResult PostgresqlConnection::answers() {
  PostgresqlResult rows, failure;
  const auto take = [&](PostgresqlResult result) {
    const ExecStatusType status = PQresultStatus(result.get());
    if (status == PGRES_TUPLES_OK) {
      rows = std::move(result);
    } else if (status != PGRES_COMMAND_OK && status != PGRES_PIPELINE_ABORTED && failure == nullptr) {
      failure = std::move(result);
    }
  };
  if (!is_pipeline_) {
    while (PGresult* const result = PQgetResult(connection_)) take(PostgresqlResult(result));
    if (failure != nullptr) fail(failure.get());
    if (is_lost()) fail(nullptr);
    return rows;
  }
  if (PQpipelineSync(connection_) == 0) fail(nullptr);
  sent_ = 0;
  for (;;) {
    PGresult* const result = PQgetResult(connection_);
    // Between the answers of two statements there is a null pointer.
    if (result == nullptr) {
      if (is_lost()) break;
      continue;
    }
    if (PQresultStatus(result) == PGRES_PIPELINE_SYNC) {
      PQclear(result);
      break;
    }
    take(PostgresqlResult(result));
  }
  if (failure != nullptr) {
    // What was to be prepared after the failure was not.
    prepared_.clear();
    fail(failure.get());
  }
  if (is_lost()) fail(nullptr);
  return rows;
}

void PostgresqlConnection::drain() noexcept {
  if (PGcancel* const cancel = PQgetCancel(connection_)) {
    char ignored[256];
    if (PQtransactionStatus(connection_) == PQTRANS_ACTIVE) PQcancel(cancel, ignored, sizeof ignored);
    PQfreeCancel(cancel);
  }
  while (PGresult* const result = PQgetResult(connection_)) PQclear(result);
}

void PostgresqlConnection::roll_back() noexcept {
  try {
    if (is_pipeline_ && !is_lost()) {
      // Errors before are of no interest any more.
      PQpipelineSync(connection_);
      sent_ = 0;
      for (;;) {
        PGresult* const result = PQgetResult(connection_);
        if (result == nullptr) {
          if (is_lost()) break;
          continue;
        }
        const bool is_sync = PQresultStatus(result) == PGRES_PIPELINE_SYNC;
        PQclear(result);
        if (is_sync) break;
      }
      PQexitPipelineMode(connection_);
    }
    is_pipeline_ = false;
    if (!is_lost() && PQtransactionStatus(connection_) != PQTRANS_IDLE) run("ROLLBACK");
  } catch (const EntryStoreError&) {
    // The server ends the transaction with the connection.
    PQreset(connection_);
    prepared_.clear();
  }
}

void PostgresqlConnection::transaction(const std::function<void()>& work) {
  constexpr int most_attempts = 30;
  for (int attempt = 1;; ++attempt) {
    bool is_begun = false;
    bool is_committing = false;
    try {
      make_ready();
      run("BEGIN ISOLATION LEVEL READ COMMITTED");
      // Writers wait here for one another, so that what one of them reads is what the others have left.
      run("SELECT value FROM setting WHERE name = 'next_number' FOR UPDATE");
      is_begun = true;
      if (PQenterPipelineMode(connection_) == 0) fail(nullptr);
      is_pipeline_ = true;
      work();
      static_cast<void>(answers());
      PQexitPipelineMode(connection_);
      is_pipeline_ = false;
      is_committing = true;
      const PostgresqlResult result(PQexec(connection_, "COMMIT"));
      if (PQresultStatus(result.get()) != PGRES_COMMAND_OK) fail(result.get());
      if (std::string_view(PQcmdStatus(result.get())) != "COMMIT") {
        throw EntryStoreError({place_, "", ""}, "the server did not commit");
      }
      return;
    } catch (const RunAgain&) {
      roll_back();
      if (attempt == most_attempts) throw;
      std::this_thread::sleep_for(std::chrono::milliseconds(attempt * attempt));
    } catch (const ConnectionLost& error) {
      roll_back();
      if (is_committing) {
        throw EntryStoreError({place_, "", ""}, error.reason() +
                                                    "; whether it was stored is not known: put it again, "
                                                    "what is there stays unchanged");
      }
      if (is_begun || attempt > 1) throw;
    } catch (...) {
      roll_back();
      throw;
    }
  }
}

void PostgresqlConnection::begin_snapshot() {
  make_ready();
  run("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
  is_in_snapshot_ = true;
  // The state is that of the first read.
  run("SELECT 1 FROM setting LIMIT 1");
}
void PostgresqlConnection::end_snapshot() noexcept {
  is_in_snapshot_ = false;
  roll_back();
}
