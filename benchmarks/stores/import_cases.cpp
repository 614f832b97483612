#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "stores/store_cases.h"

namespace {

// The import ends with 0 or, where some files were refused, with 1.
void run(std::vector<std::string> command) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  std::vector<char*> arguments;
  for (std::string& argument : command) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  const int error = posix_spawn(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  if (error != 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) > 1)
    throw std::runtime_error(command.front() + ' ' + command[1] + " has failed");
}

}  // namespace

void add_store_import_cases(Suite& suite, const std::string& dbentry, const std::string& crystals,
                            const std::string& folder) {
  namespace fs = std::filesystem;
  const std::string name = "import of " + crystals + ", by one process";
  const std::string empty = folder + "/empty.db";
  const std::string store = folder + "/imported.db";
  const std::string archive = folder + "/imported.dbe";
  static_cast<void>(init_entry_store(empty));
  suite.measure_elapsed(name, "into SQLite, durable", 1, [=] {
    for (const char* const ending : {"", "-wal", "-shm"}) fs::remove(store + ending);
    fs::copy_file(empty, store);
    run({dbentry, "import", crystals, "--into", store});
  });
  suite.measure_elapsed(name, "into an archive", 1, [=] {
    run({dbentry, "import", crystals, "-o", archive});
  });
  suite.compare_with(name, "into SQLite, durable");
  suite.expect(name, {"into an archive", Goal::at_most_times, 2});
}
