// Measures the library beside other libraries that do the same work, and closes with one table.
//
//   entry_benchmark [--json=FILE] [--dbentry=PROGRAM --crystals=FOLDER] [--archive=FILE] [--many=COUNT]
//   [--quick]
//
// --dbentry and --crystals measure the import of a folder of CIF files; the entries that come out of it, or
// those of a stored archive named by --archive, are measured beside the synthetic ones. --many is the size of
// the large file. --quick runs everything once, to see that it works. Flags of Google Benchmark are taken
// too:
// --benchmark_filter=REGEX, --benchmark_repetitions=ROUNDS.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "entries/synthetic_entries.h"
#include "expressions/expression_cases.h"
#include "records/record_cases.h"
#include "report/suite.h"
#include "scale/scale_cases.h"
#include "storages/archive_cases.h"
#ifdef WITH_IMPORT
#include "import/import_case.h"
#endif

namespace {

constexpr std::size_t entry_count = 1000;
// Far more than the caches of a processor hold.
constexpr std::size_t small_entry_count = 20'000;

struct Options {
  std::string json = {};
  std::string dbentry = {};
  std::string crystals = {};
  std::string archive = {};
  std::size_t many = 1'000'000;
  bool quick = false;
};

// Takes away what Google Benchmark is not to see.
Options take_options(std::vector<std::string>& arguments) {
  Options options;
  std::vector<std::string> others;
  for (const std::string& argument : arguments) {
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const std::string value = equals == std::string::npos ? "" : argument.substr(equals + 1);
    if (name == "--json") {
      options.json = value;
    } else if (name == "--dbentry") {
      options.dbentry = value;
    } else if (name == "--crystals") {
      options.crystals = value;
    } else if (name == "--archive") {
      options.archive = value;
    } else if (name == "--many") {
      options.many = std::stoul(value);
    } else if (name == "--quick") {
      options.quick = true;
    } else {
      others.push_back(argument);
    }
  }
  arguments = others;
  return options;
}

// Rounds of 20 ms, interleaved: long enough to time, short enough that all subjects meet the same
// disturbances.
void initialize_google_benchmark(std::vector<std::string> arguments, bool quick) {
  const std::vector<std::string> defaults = {
      "--benchmark_enable_random_interleaving=true",
      quick ? "--benchmark_min_time=0" : "--benchmark_min_time=0.02",
      quick ? "--benchmark_repetitions=1" : "--benchmark_repetitions=15",
  };
  arguments.insert(arguments.begin() + 1, defaults.begin(), defaults.end());
  static std::vector<std::string> kept;
  kept = arguments;
  std::vector<char*> pointers;
  for (std::string& argument : kept) pointers.push_back(argument.data());
  int count = static_cast<int>(pointers.size());
  pointers.push_back(nullptr);
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) std::exit(2);
}

void add_entries(Suite& suite, const std::string& kind, const StoredEntries& entries, bool with_goals) {
  suite.note("Entries " + kind + ": " + description(entries));
  add_archive_cases(suite, kind, entries, with_goals);
}

void run(std::vector<std::string> arguments) {
  Options options = take_options(arguments);
  initialize_google_benchmark(arguments, options.quick);
  const std::size_t count = options.quick ? 20 : entry_count;
  Suite suite;
  std::string temporary;
  if (!options.dbentry.empty() && !options.crystals.empty()) {
    if (options.archive.empty()) {
      temporary = std::filesystem::temp_directory_path() / ("entries." + std::to_string(getpid()));
      options.archive = temporary;
    }
#ifdef WITH_IMPORT
    add_import_cases(suite, options.dbentry, options.crystals, options.archive);
#endif
  }
  const StoredEntries plain = synthetic_entries(count, EntryForm::plain);
  add_entries(suite, "without atoms", plain, true);
  add_entries(suite, "with atoms", synthetic_entries(count, EntryForm::with_atoms), false);
  if (!options.archive.empty()) add_entries(suite, "imported", stored_entries(options.archive), false);
  const StoredEntries small = synthetic_entries(options.quick ? count : small_entry_count, EntryForm::small);
  suite.note("Entries each in memory of its own: " + description(small));
  add_separate_entry_cases(suite, small);
  add_scale_cases(suite, plain, options.quick ? 2 * count : options.many);
  add_expression_cases(suite);
  add_record_cases(suite);

  suite.run();
  suite.print(std::cout);
  suite.write_json(options.json);
  if (!temporary.empty()) std::filesystem::remove(temporary);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    run({argv, argv + argc});
  } catch (const std::exception& error) {
    std::cerr << "entry_benchmark: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
