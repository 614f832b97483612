#include <stores/engines/sqlite/connection.h>
#include <stores/entry_store_error.h>

#include <utility>
#include <variant>

namespace {

// The file as a URI, which alone can say that it does not change.
std::string unchanging_file(const std::string& path) {
  constexpr const char* digits = "0123456789abcdef";
  std::string uri = "file:";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    uri += {'%', digits[byte >> 4], digits[byte & 0xF]};
  }
  return uri + "?immutable=1";
}

}  // namespace

SqliteStatement::~SqliteStatement() {
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
}

void SqliteStatement::bind(int index, std::int64_t value) {
  if (const int code = sqlite3_bind_int64(statement_, index, value)) connection_.fail(code);
}
void SqliteStatement::bind(int index, double value) {
  if (const int code = sqlite3_bind_double(statement_, index, value)) connection_.fail(code);
}
void SqliteStatement::bind(int index, std::string_view bytes) {
  // A null pointer would be NULL, not an empty text.
  const char* const data = bytes.data() == nullptr ? "" : bytes.data();
  if (const int code = sqlite3_bind_blob64(statement_, index, data, bytes.size(), SQLITE_STATIC))
    connection_.fail(code);
}
void SqliteStatement::bind(int index, const SqlValue& value) {
  std::visit([&](const auto& alternative) { bind(index, alternative); }, value);
}
void SqliteStatement::bind_null(int index) {
  if (const int code = sqlite3_bind_null(statement_, index)) connection_.fail(code);
}

bool SqliteStatement::step() {
  const int code = sqlite3_step(statement_);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  connection_.fail(code);
}

void SqliteStatement::run() {
  while (step()) continue;
  sqlite3_reset(statement_);
}

bool SqliteStatement::is_null(int column) const {
  return sqlite3_column_type(statement_, column) == SQLITE_NULL;
}
std::int64_t SqliteStatement::integer(int column) const {
  return sqlite3_column_int64(statement_, column);
}
double SqliteStatement::number(int column) const {
  return sqlite3_column_double(statement_, column);
}
std::string_view SqliteStatement::bytes(int column) const {
  const void* const data = sqlite3_column_blob(statement_, column);
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
  return data == nullptr ? std::string_view() : std::string_view(static_cast<const char*>(data), size);
}

SqliteConnection::SqliteConnection(const std::string& path, Access access) : path_(path) {
  // Nobody else uses the connection at the same time, and a file name is never taken for a URI by itself.
  int flags = SQLITE_OPEN_NOMUTEX;
  switch (access) {
    case Access::read:
      flags |= SQLITE_OPEN_READONLY;
      break;
    case Access::unchanging:
      flags |= SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
      break;
    case Access::write:
      flags |= SQLITE_OPEN_READWRITE;
      break;
    case Access::create:
      flags |= SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
      break;
  }
  const std::string name = access == Access::unchanging ? unchanging_file(path) : path;
  const int code = sqlite3_open_v2(name.c_str(), &database_, flags, nullptr);
  try {
    if (code != SQLITE_OK) fail(code);
    sqlite3_extended_result_codes(database_, 1);
    constexpr int longest_wait = 60'000;  // milliseconds, for another writer
    sqlite3_busy_timeout(database_, longest_wait);
    sqlite3_db_config(database_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    run("PRAGMA trusted_schema = OFF");
    run("PRAGMA mmap_size = 1099511627776");
    run("PRAGMA cache_size = -65536");
    run("PRAGMA temp_store = MEMORY");
  } catch (...) {
    sqlite3_close_v2(database_);
    throw;
  }
}

SqliteConnection::~SqliteConnection() {
  statements_.clear();
  sqlite3_close_v2(database_);
}

SqliteStatement SqliteConnection::statement(const std::string& sql) {
  auto found = statements_.find(sql);
  if (found == statements_.end()) {
    // Queries are as many as their askers think of; our own statements are few.
    constexpr std::size_t most_kept = 200;
    if (statements_.size() >= most_kept) statements_.clear();
    sqlite3_stmt* prepared = nullptr;
    const int code = sqlite3_prepare_v3(database_, sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    if (code != SQLITE_OK) fail(code);
    found = statements_.emplace(sql, std::shared_ptr<sqlite3_stmt>(prepared, sqlite3_finalize)).first;
  }
  return {*this, found->second};
}

void SqliteConnection::run(const std::string& sql) {
  const int code = sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) fail(code);
}

std::int64_t SqliteConnection::value_of(const std::string& sql) {
  SqliteStatement one = statement(sql);
  return one.step() ? one.integer(0) : 0;
}

void SqliteConnection::transaction(const std::function<void()>& work) {
  run("BEGIN IMMEDIATE");
  try {
    work();
    run("COMMIT");
  } catch (...) {
    roll_back();
    throw;
  }
}

void SqliteConnection::begin_snapshot() {
  statement("BEGIN").run();
  try {
    // The state is that of the first read.
    statement("SELECT 1 FROM entry LIMIT 1").run();
  } catch (...) {
    roll_back();
    throw;
  }
}
void SqliteConnection::end_snapshot() noexcept {
  roll_back();
}

std::vector<std::string> SqliteConnection::faults() {
  std::vector<std::string> found;
  SqliteStatement check = statement("PRAGMA integrity_check(100)");
  while (check.step()) {
    if (check.bytes(0) != "ok") found.emplace_back(check.bytes(0));
  }
  return found;
}

// A transaction may have ended itself.
void SqliteConnection::roll_back() noexcept {
  if (sqlite3_get_autocommit(database_) == 0) sqlite3_exec(database_, "ROLLBACK", nullptr, nullptr, nullptr);
}

bool SqliteConnection::is_read_only() const {
  return sqlite3_db_readonly(database_, "main") != 0;
}

void SqliteConnection::fail(int code) const {
  std::string reason = database_ == nullptr ? sqlite3_errstr(code) : sqlite3_errmsg(database_);
  switch (code & 0xFF) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      throw DamagedStore({path_, "", ""}, reason + "; what can be read still can, see docs/stores.md");
    case SQLITE_NOMEM:
      throw std::bad_alloc();
    case SQLITE_FULL:
      reason += "; free some space and do it again, nothing has changed";
      break;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      reason += "; another program has been writing for a minute";
      break;
    case SQLITE_READONLY:
      reason += "; the file and its folder must be writable";
      break;
    default:
      break;
  }
  throw EntryStoreError({path_, "", ""}, reason);
}
