#include "stores/postgresql_server.h"

#include <fcntl.h>
#include <libpq-fe.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace {

namespace fs = std::filesystem;

// The newest of the versions that are installed.
std::string installed_programs() {
  std::string newest;
  std::error_code error;
  for (const auto& version : fs::directory_iterator("/usr/lib/postgresql", error)) {
    const fs::path programs = version.path() / "bin";
    if (fs::exists(programs / "initdb") && programs.string() > newest) newest = programs;
  }
  return newest;
}

// The server does not run as root.
const passwd* server_user() {
  return ::geteuid() == 0 ? ::getpwnam("postgres") : nullptr;
}

// Ends with the test program, also when that is killed.
pid_t started(const std::vector<std::string>& command, const std::string& log) {
  const pid_t child = ::fork();
  if (child != 0) return child;
  const int output = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  ::dup2(output, 1);
  ::dup2(output, 2);
  if (const passwd* const user = server_user()) {
    if (::setgid(user->pw_gid) != 0 || ::setuid(user->pw_uid) != 0) std::_Exit(126);
  }
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::chdir("/") != 0) std::_Exit(126);
  std::vector<char*> arguments;
  for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  ::execv(arguments[0], arguments.data());
  std::_Exit(127);
}

}  // namespace

PostgresqlServer::PostgresqlServer() : programs_(installed_programs()) {}

PostgresqlServer::~PostgresqlServer() {
  kill();
  std::error_code ignored;
  if (!folder_.empty()) fs::remove_all(folder_, ignored);
}

PostgresqlServer& PostgresqlServer::shared() {
  static PostgresqlServer server;
  return server;
}

void PostgresqlServer::start(const std::vector<std::string>& settings) {
  if (is_running()) return;
  const std::string log = "/dev/null";
  if (folder_.empty()) {
    std::string name = (fs::temp_directory_path() / "dbentry-server-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder could be made");
    folder_ = name;
    if (const passwd* const user = server_user()) {
      if (::chown(name.c_str(), user->pw_uid, user->pw_gid) != 0) throw std::runtime_error("chown failed");
    }
    int status = 0;
    const pid_t maker = started({programs_ + "/initdb", "-D", folder_ + "/data", "-U", "owner", "-A", "trust",
                                 "-E", "UTF8", "--locale=C", "-N"},
                                log);
    if (::waitpid(maker, &status, 0) != maker || status != 0) throw std::runtime_error("initdb failed");
  }
  std::vector<std::string> command = {programs_ + "/postgres", "-D", folder_ + "/data", "-k", folder_, "-h",
                                      "",
                                      // Not every file of the cluster one by one, after a kill.
                                      "-c", "recovery_init_sync_method=syncfs"};
  for (const std::string& setting : settings) {
    command.insert(command.end(), {"-c", setting});
  }
  server_ = started(command, log);
  for (int attempt = 0; attempt < 600; ++attempt) {
    if (PQping(address("postgres").c_str()) == PQPING_OK) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  throw std::runtime_error("the server did not come up within a minute");
}

void PostgresqlServer::end(int signal) {
  if (!is_running()) return;
  ::kill(server_, signal);
  int status = 0;
  ::waitpid(server_, &status, 0);
  server_ = 0;
}

void PostgresqlServer::stop() {
  end(SIGINT);
}

void PostgresqlServer::kill() {
  end(SIGQUIT);
}

std::string PostgresqlServer::address(const std::string& database) const {
  return "postgresql:///" + database + "?host=" + folder_ + "&user=owner";
}

std::string PostgresqlServer::through(const std::string& folder, std::string address) const {
  return address.replace(address.find(folder_), folder_.size(), folder);
}

std::string PostgresqlServer::new_database() {
  start();
  const std::string name = "test" + std::to_string(::getpid()) + "_" + std::to_string(++databases_);
  run("postgres", "CREATE DATABASE " + name + " TEMPLATE template0");
  return address(name);
}

void PostgresqlServer::run(const std::string& database, const std::string& sql) const {
  PGconn* const connection = PQconnectdb(address(database).c_str());
  PGresult* const result = PQexec(connection, sql.c_str());
  const ExecStatusType status = PQresultStatus(result);
  const std::string message = PQerrorMessage(connection);
  PQclear(result);
  PQfinish(connection);
  if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) throw std::runtime_error(message);
}
