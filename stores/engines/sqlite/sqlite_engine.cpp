#include <stores/engines/entry_numbers.h>
#include <stores/engines/sql_engine.h>
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
constexpr std::int64_t schema_version = 2;
// Stores of these are read and written as they are; upgrade makes them faster.
constexpr std::int64_t oldest_version = 1;

// What version 2 has beside version 1: the entries of each element by their numbers, see entry_numbers.h, and
// identifiers, cells and years without the long rows.
const std::string since_version_2 =
    "CREATE TABLE element_block (\n  symbol BLOB NOT NULL,\n  block INTEGER NOT NULL,\n  numbers BLOB NOT "
    "NULL,\n"
    "  PRIMARY KEY (symbol, block)) WITHOUT ROWID;\n"
    "CREATE INDEX entry_name ON entry (number, identifier);\n"
    "DROP INDEX IF EXISTS entry_reduced;\n"
    "CREATE INDEX entry_lattice ON entry (reduced_volume, reduced_a, reduced_b, reduced_c, year);\n";

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
         "CREATE INDEX entry_space_group ON entry (space_group);\n"
         "CREATE TABLE component (key INTEGER PRIMARY KEY, bytes BLOB NOT NULL);\n"
         "CREATE TABLE entry_element (\n  symbol BLOB NOT NULL,\n  entry INTEGER NOT NULL,\n  count REAL NOT "
         "NULL,\n"
         "  ratio REAL NOT NULL,\n  PRIMARY KEY (symbol, entry)) WITHOUT ROWID;\n"
         "CREATE TABLE entry_text (\n  \"column\" INTEGER NOT NULL,\n  hash INTEGER NOT NULL,\n  entry "
         "INTEGER NOT NULL,\n"
         "  position INTEGER NOT NULL,\n  folded BLOB NOT NULL,\n  value BLOB,\n"
         "  PRIMARY KEY (\"column\", hash, entry, position)) WITHOUT ROWID;\n"
         "CREATE TABLE imported (file BLOB PRIMARY KEY, sha256 BLOB NOT NULL) WITHOUT ROWID;\n" +
         since_version_2;
}

// Throws EntryStoreError unless the connection is to a store; gives its version.
std::int64_t checked_version(SqliteConnection& connection, const std::string& path) {
  if (connection.value_of("PRAGMA application_id") != application_id) {
    throw EntryStoreError({path, "", ""},
                          "it is a SQLite file, but not a store of entries (dbentry init makes one)");
  }
  return connection.value_of("PRAGMA user_version");
}

void check_version(SqliteConnection& connection, const std::string& path) {
  const std::int64_t version = checked_version(connection, path);
  if (version >= oldest_version && version <= schema_version) return;
  throw EntryStoreError({path, "", ""}, "it has schema version " + std::to_string(version) + ", and " +
                                            std::to_string(schema_version) +
                                            " is known here; a newer version of this library reads it");
}

// From entry_element.
void fill_lists(SqliteConnection& connection) {
  std::string symbol;
  std::int64_t block = -1;
  NumberBlock numbers;
  const auto write = [&] {
    if (block < 0) return;
    const std::string bytes = numbers.packed();
    SqliteStatement list =
        connection.statement("INSERT INTO element_block (symbol, block, numbers) VALUES (?1, ?2, ?3)");
    list.bind(1, symbol);
    list.bind(2, block);
    list.bind(3, bytes);
    list.run();
  };
  SqliteStatement rows =
      connection.statement("SELECT symbol, entry FROM entry_element ORDER BY symbol, entry");
  while (rows.step()) {
    const std::int64_t number = rows.integer(1);
    if (rows.bytes(0) != symbol || number / NumberBlock::size != block) {
      write();
      symbol = rows.bytes(0);
      block = number / NumberBlock::size;
      numbers = {};
    }
    numbers.insert(static_cast<int>(number % NumberBlock::size));
  }
  write();
}

// Readers of a file that others write lock it in a second file beside it. Where that cannot be made and there
// is none, nobody has the store open, as on a medium that cannot be written to.
SqliteConnection::Access access_to(const std::string& path) {
  if (::access(path.c_str(), W_OK) == 0) return SqliteConnection::Access::write;
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  const bool is_open = ::access((path + "-wal").c_str(), F_OK) == 0;
  return is_open || ::access(folder.c_str(), W_OK) == 0 ? SqliteConnection::Access::read
                                                        : SqliteConnection::Access::unchanging;
}

}  // namespace

bool is_sqlite_file(const std::string& path) {
  constexpr std::string_view magic("SQLite format 3\0", 16);
  std::array<char, 16> first{};
  std::ifstream file(path, std::ios::binary);
  file.read(first.data(), first.size());
  return file.gcount() == 16 && std::string_view(first.data(), first.size()) == magic;
}

std::shared_ptr<StoreEngine> open_sqlite_engine(const std::string& path) {
  auto reader = std::make_unique<SqliteConnection>(path, access_to(path));
  check_version(*reader, path);
  return std::make_shared<SqlEngine<SqliteConnection>>(path, std::move(reader), [path] {
    auto writer = std::make_unique<SqliteConnection>(path, SqliteConnection::Access::write);
    writer->run("PRAGMA synchronous = FULL");
    return writer;
  });
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
    SqliteConnection connection(making, SqliteConnection::Access::create);
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
  SqliteConnection connection(path, SqliteConnection::Access::write);
  const std::int64_t version = checked_version(connection, path);
  check_version(connection, path);
  if (version < 2) {
    connection.run("PRAGMA synchronous = FULL");
    connection.transaction([&] {
      // Somebody else may have done it in the meantime.
      if (checked_version(connection, path) >= 2) return;
      connection.run(since_version_2);
      fill_lists(connection);
      connection.run("PRAGMA user_version = 2");
    });
  }
  return static_cast<int>(version);
}
