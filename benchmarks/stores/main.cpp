// Measures stores: looking up, finding and putting, beside others that do the same, and closes with one
// table.
//
//   stores_benchmark --dbentry=PROGRAM --crystals=FOLDER --archive=FILE [--ase=PEER] [--few=COUNT]
//   [--many=COUNT]
//   [--keep=FOLDER] [--json=FILE]
//
// FILE is a stored archive of the entries that are repeated; PEER is ase_peer.py, where ASE is installed.
// --keep leaves the filled stores in a folder, and takes those that are there. Flags of Google Benchmark are
// taken too.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <map>

#include "report/suite.h"
#include "stores/store_cases.h"

namespace {

namespace fs = std::filesystem;

using Options = std::map<std::string, std::string>;

// Takes away what Google Benchmark is not to see.
Options take_options(std::vector<std::string>& arguments) {
  Options options = {{"dbentry", ""}, {"crystals", ""}, {"archive", ""},  {"ase", ""},
                     {"keep", ""},    {"json", ""},     {"few", "50000"}, {"many", "500000"}};
  std::vector<std::string> others;
  for (const std::string& argument : arguments) {
    const std::size_t equals = argument.find('=');
    const std::string name = argument.starts_with("--") ? argument.substr(2, equals - 2) : "";
    if (equals != std::string::npos && options.contains(name)) {
      options[name] = argument.substr(equals + 1);
    } else {
      others.push_back(argument);
    }
  }
  arguments = others;
  return options;
}

void initialize_google_benchmark(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin() + 1, {"--benchmark_enable_random_interleaving=true",
                                           "--benchmark_min_time=0.02", "--benchmark_repetitions=7"});
  static std::vector<std::string> kept;
  kept = std::move(arguments);
  std::vector<char*> pointers;
  for (std::string& argument : kept) pointers.push_back(argument.data());
  int count = static_cast<int>(pointers.size());
  pointers.push_back(nullptr);
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) std::exit(2);
}

FilledStore filled_store(const RepeatedEntries& entries, std::size_t count, const std::string& folder) {
  const std::string path = folder + '/' + std::to_string(count) + ".db";
  const bool is_there = fs::exists(path);
  if (!is_there) std::cerr << "putting " << count << " entries into " << path << '\n';
  FilledStore filled = {count, is_there ? open_entry_store(path) : init_entry_store(path)};
  if (!is_there) entries.put(*filled.store, 0, count);
  if (filled.store->count() != count) throw std::runtime_error(path + " is not full; remove it");
  return filled;
}

void run(std::vector<std::string> arguments) {
  Options options = take_options(arguments);
  initialize_google_benchmark(arguments);
  std::string folder = options["keep"];
  if (folder.empty()) folder = fs::temp_directory_path() / ("stores." + std::to_string(getpid()));
  fs::create_directories(folder);
  const std::string work = folder + "/work." + std::to_string(getpid());
  fs::create_directories(work);
  const RepeatedEntries entries(options["archive"]);
  Suite suite;
  suite.note("The entries are those of " + options["crystals"] +
             ", repeated with changed cells, years and elements.");
  {
    const FilledStore small = filled_store(entries, std::stoul(options["few"]), folder);
    const FilledStore large = filled_store(entries, std::stoul(options["many"]), folder);
    add_fetch_cases(suite, entries, small, large, work);
    if (options["ase"].empty()) {
      suite.note("ASE is not installed (python3-ase), so it has no rows.");
    } else {
      add_ase_cases(suite, entries, small, options["ase"], work);
    }
    add_query_cases(suite, small, large);
    add_postgresql_cases(suite, entries, small.count / 10);
    if (!options["dbentry"].empty())
      add_store_import_cases(suite, options["dbentry"], options["crystals"], work);
    suite.run();
  }
  suite.print(std::cout);
  suite.write_json(options["json"]);
  fs::remove_all(options["keep"].empty() ? folder : work);
}

}  // namespace

std::string FilledStore::size() const {
  std::string digits = std::to_string(count);
  for (std::size_t place = digits.size(); place > 3; place -= 3) digits.insert(place - 3, ",");
  return digits;
}

int main(int argc, char** argv) {
  try {
    run({argv, argv + argc});
  } catch (const std::exception& error) {
    std::cerr << "stores_benchmark: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
