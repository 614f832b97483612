// A PostgreSQL server for tests, in a temporary folder, on a Unix socket in it, as a user of its own.
//
//   PostgresqlServer& server = PostgresqlServer::shared();    // started when first asked for, stopped at the
//   end if (!server.is_installed()) GTEST_SKIP(); init_entry_store(server.new_database());
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

class PostgresqlServer {
 public:
  // Starts nothing yet.
  PostgresqlServer();
  PostgresqlServer(const PostgresqlServer&) = delete;
  PostgresqlServer& operator=(const PostgresqlServer&) = delete;
  ~PostgresqlServer();

  static PostgresqlServer& shared();

  [[nodiscard]] bool is_installed() const { return !programs_.empty(); }
  // Makes the cluster of databases where there is none. Throws std::runtime_error when the server does not
  // come up.
  void start(const std::vector<std::string>& settings = {});
  // Waits for its end: of what it does now, or at once and without a word to anybody.
  void stop();
  void kill();
  [[nodiscard]] bool is_running() const { return server_ > 0; }

  // The address of a database.
  [[nodiscard]] std::string address(const std::string& database) const;
  // The same database at a socket in another folder.
  [[nodiscard]] std::string through(const std::string& folder, std::string address) const;
  [[nodiscard]] std::string socket() const { return folder_ + "/.s.PGSQL.5432"; }
  // Starts the server where it does not run.
  [[nodiscard]] std::string new_database();
  // A statement in a database, as the owner of all.
  void run(const std::string& database, const std::string& sql) const;

 private:
  void end(int signal);

  std::string programs_;  // the folder; empty where they are not installed
  std::string folder_;
  pid_t server_ = 0;
  int databases_ = 0;
};
