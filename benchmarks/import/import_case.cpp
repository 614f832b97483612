#include "import/import_case.h"

#include <benchmark/benchmark.h>
#include <exchange/cif_reader.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <tools/files/input_files.h>
#include <tools/files/memory_archive.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <vector>

#include "import/parsing_alone.h"

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

// The bytes of all entries that come of the files.
std::size_t import_files(const std::vector<std::string>& files) {
  MemoryArchive memory;
  std::size_t size = 0;
  for (const std::string& file : files) {
    const std::string text = InputFile(file).bytes();
    CifReader reader(text);
    while (const auto result = reader.next()) {
      if (result->status == ImportResult::imported) size += memory.bytes_of(*result->entry).size();
    }
  }
  return size;
}

}  // namespace

void add_import_cases(Suite& suite, const std::string& dbentry, const std::string& cif_folder,
                      const std::string& archive) {
  run_import(dbentry, cif_folder, archive);
  const std::vector<std::string> files = input_files({cif_folder}, is_cif_name, ".cif");
  const std::string count = std::to_string(files.size()) + " CIF files";
  suite.measure_elapsed("import of " + count + " by one process, per file", Suite::own, files.size(),
                        [dbentry, cif_folder, archive] { run_import(dbentry, cif_folder, archive); });
  suite.measure_elapsed("import of " + count + " by one process, per file", "not handed to the disk",
                        files.size(),
                        [dbentry, cif_folder] { run_import(dbentry, cif_folder, "/dev/null"); });
  const std::string entries_case = "entries of " + count + ", per file";
  suite.measure(entries_case, Suite::own, files.size(), 0,
                [files] { benchmark::DoNotOptimize(import_files(files)); });
  suite.measure(entries_case, "gemmi, parsing alone", files.size(), 0,
                [files] { benchmark::DoNotOptimize(parse_cif_files(files)); });
  suite.expect(entries_case, {"gemmi, parsing alone", Goal::at_most_times, 1.2});
}
