#include "import/import_case.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <stdexcept>

namespace {

// The program ends with 0 or, where some files were refused, with 1.
void run_import(std::string dbentry, std::string cif_folder, std::string archive) {
  std::string import = "import";
  std::string output = "-o";
  const std::array<char*, 6> arguments = {dbentry.data(), import.data(),  cif_folder.data(),
                                          output.data(),  archive.data(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const int error = posix_spawn(&child, dbentry.c_str(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  if (error != 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) > 1) {
    throw std::runtime_error(dbentry + " import " + cif_folder + " has failed");
  }
}

std::size_t cif_files_below(const std::string& folder) {
  std::size_t count = 0;
  for (const auto& file : std::filesystem::recursive_directory_iterator(folder)) {
    if (file.path().extension() == ".cif") ++count;
  }
  return count;
}

}  // namespace

void add_import_case(Suite& suite, const std::string& dbentry, const std::string& cif_folder,
                     const std::string& archive) {
  run_import(dbentry, cif_folder, archive);
  const std::size_t files = cif_files_below(cif_folder);
  const std::string case_name = "import of " + std::to_string(files) + " CIF files by one process, per file";
  suite.measure_elapsed(case_name, Suite::own, files,
                        [dbentry, cif_folder, archive] { run_import(dbentry, cif_folder, archive); });
}
