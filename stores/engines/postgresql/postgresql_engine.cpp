#include <stores/engines/postgresql/connection.h>
#include <stores/engines/postgresql/postgresql_engine.h>
#include <stores/engines/sql_engine.h>

#include <utility>

namespace {

constexpr std::int64_t schema_version = 1;

// No sequences, triggers or extensions: other servers that speak the protocol take these statements too.
std::string schema(const InitOptions& options) {
  std::string columns;
  for_each_entry_column([&](const auto& column) {
    using Column = std::remove_cvref_t<decltype(column)>;
    columns += std::string(",\n  ") + column.sql_name +
               (Column::is_number    ? " double precision"
                : Column::is_integer ? " bigint"
                                     : " bytea");
    if (column.number == 1) columns += " NOT NULL";
  });
  return "CREATE SCHEMA dbentry;\n"
         "SET search_path = dbentry;\n"
         "CREATE TABLE setting (name text PRIMARY KEY, value bigint NOT NULL);\n"
         "INSERT INTO setting VALUES ('schema_version', " +
         std::to_string(schema_version) + "), ('next_number', 1), ('compress', " +
         std::to_string(options.compress ? 1 : 0) +
         ");\n"
         "CREATE TABLE entry (\n  number bigint PRIMARY KEY,\n  origin_time bigint NOT NULL" +
         columns +
         ",\n  identifier_head bytea NOT NULL,\n  identifier_sum text NOT NULL,\n  origin_sum text);\n"
         "CREATE UNIQUE INDEX entry_identifier ON entry (identifier_head, identifier_sum);\n"
         "CREATE INDEX entry_origin ON entry (origin_sum);\n"
         "CREATE INDEX entry_year ON entry (year);\n"
         "CREATE INDEX entry_volume ON entry (volume);\n"
         "CREATE INDEX entry_reduced ON entry (reduced_a, reduced_volume);\n"
         "CREATE INDEX entry_space_group ON entry (space_group);\n"
         "CREATE TABLE component (key bigint PRIMARY KEY, bytes bytea NOT NULL);\n"
         "CREATE TABLE entry_element (\n  symbol bytea NOT NULL,\n  entry bigint NOT NULL,\n"
         "  count double precision NOT NULL,\n  ratio double precision NOT NULL,\n  PRIMARY KEY (symbol, "
         "entry));\n"
         "CREATE TABLE entry_text (\n  \"column\" bigint NOT NULL,\n  hash bigint NOT NULL,\n  entry bigint "
         "NOT NULL,\n"
         "  position bigint NOT NULL,\n  folded bytea NOT NULL,\n  value bytea,\n"
         "  PRIMARY KEY (\"column\", hash, entry, position));\n"
         "CREATE TABLE imported (sum text PRIMARY KEY, file bytea NOT NULL, sha256 bytea NOT NULL);\n";
}

// The address without its password, as errors have it.
std::string place_of(const std::string& address) {
  const std::size_t at = address.find('@');
  const std::size_t user = address.find("://");
  if (at == std::string::npos || user == std::string::npos || at < user) return address;
  const std::size_t colon = address.find(':', user + 3);
  return colon == std::string::npos || colon > at ? address : address.substr(0, colon) + address.substr(at);
}

std::int64_t version_of(PostgresqlConnection& connection) {
  return connection.value_of("SELECT value FROM setting WHERE name = 'schema_version'");
}

void check_version(PostgresqlConnection& connection, const std::string& place) {
  const std::int64_t version = version_of(connection);
  if (version == schema_version) return;
  throw EntryStoreError({place, "", ""},
                        "it has schema version " + std::to_string(version) + ", and " +
                            std::to_string(schema_version) + " is known here; " +
                            (version < schema_version ? "dbentry upgrade brings it to that"
                                                      : "a newer version of this library reads it"));
}

}  // namespace

bool is_postgresql_address(const std::string& place) {
  return place.starts_with("postgresql://") || place.starts_with("postgres://");
}

std::shared_ptr<StoreEngine> open_postgresql_engine(const std::string& address) {
  const std::string place = place_of(address);
  auto reader = std::make_unique<PostgresqlConnection>(address, place);
  check_version(*reader, place);
  return std::make_shared<SqlEngine<PostgresqlConnection>>(
      place, std::move(reader), [=] { return std::make_unique<PostgresqlConnection>(address, place); });
}

void init_postgresql_store(const std::string& address, const InitOptions& options) {
  PostgresqlConnection connection(address, place_of(address));
  // Several statements in one call are one transaction.
  connection.run(schema(options));
}

int upgrade_postgresql_store(const std::string& address) {
  PostgresqlConnection connection(address, place_of(address));
  check_version(connection, place_of(address));
  return static_cast<int>(version_of(connection));
}
