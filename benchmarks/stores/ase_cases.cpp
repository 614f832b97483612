#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <stdexcept>

#include "stores/store_cases.h"

namespace {

// A program that does what a line says and answers with one.
class Peer {
 public:
  explicit Peer(std::vector<std::string> command) {
    std::array<int, 2> to_peer{};
    std::array<int, 2> from_peer{};
    if (::pipe(to_peer.data()) != 0 || ::pipe(from_peer.data()) != 0) throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, to_peer[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, from_peer[1], STDOUT_FILENO);
    for (const int end : {to_peer[0], to_peer[1], from_peer[0], from_peer[1]})
      posix_spawn_file_actions_addclose(&actions, end);
    std::vector<char*> arguments;
    for (std::string& argument : command) arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    const int error = posix_spawn(&child_, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(to_peer[0]);
    ::close(from_peer[1]);
    tasks_ = ::fdopen(to_peer[1], "w");
    answers_ = ::fdopen(from_peer[0], "r");
    if (error != 0) throw std::runtime_error(command.front() + " cannot be started");
    wait_for_answer();
  }
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;
  ~Peer() {
    std::fclose(tasks_);
    std::fclose(answers_);
    ::waitpid(child_, nullptr, 0);
  }

  void ask(const std::string& task) {
    std::fprintf(tasks_, "%s\n", task.c_str());
    std::fflush(tasks_);
    wait_for_answer();
  }

 private:
  void wait_for_answer() {
    std::array<char, 64> line{};
    if (std::fgets(line.data(), line.size(), answers_) == nullptr)
      throw std::runtime_error("the program beside us has ended; its message is above");
  }

  pid_t child_ = 0;
  FILE* tasks_ = nullptr;
  FILE* answers_ = nullptr;
};

void write_structures(const RepeatedEntries& entries, std::size_t count, const std::string& path) {
  std::ofstream file(path);
  for (std::size_t index = 0; index < count; ++index) {
    const auto entry = entries.entry(index);
    const THandle<CrystalMaker> crystal = entry.crystal_maker();
    const Cell& cell = *crystal->cell();
    nlohmann::json structure = {
        {"code", entry.identifier().text()},
        {"year", entry.publication()->year},
        {"cell", {cell.a(), cell.b(), cell.c(), cell.alpha(), cell.beta(), cell.gamma()}},
        {"symbols", nlohmann::json::array()},
        {"positions", nlohmann::json::array()}};
    for (const auto& atom : crystal->atoms()) {
      // ASE knows deuterium as hydrogen of another mass, and nothing that is no element.
      const std::string symbol = atom->element == "D" ? "H" : atom->element.empty() ? "X" : atom->element;
      structure["symbols"].push_back(symbol);
      structure["positions"].push_back({atom->position.x, atom->position.y, atom->position.z});
    }
    file << structure << '\n';
  }
  if (!file.flush()) throw std::runtime_error(path + " cannot be written");
}

}  // namespace

void add_ase_cases(Suite& suite, const RepeatedEntries& entries, const FilledStore& small,
                   const std::string& peer, const std::string& folder) {
  const std::string structures = folder + "/structures.jsonl";
  write_structures(entries, small.count, structures);
  const auto ase = std::make_shared<Peer>(
      std::vector<std::string>{"/usr/bin/python3", peer, structures, folder + "/ase.db"});
  const std::string name = "ASE's database";
  const auto compare = [&](const std::string& what, double times) {
    suite.compare_with(what, "SQLite");
    suite.expect(what, {name, Goal::at_least_times_faster, times});
  };

  const std::string get = "one of " + small.size() + " entries by its code, with its atoms";
  constexpr std::size_t gets = 200;
  const auto engine = std::make_shared<std::mt19937_64>();
  suite.measure_elapsed(get, "SQLite", gets, [entries, engine, small] {
    for (std::size_t index = 0; index < gets; ++index) {
      const DatabaseEntryIdentifier identifier(entries.identifier((*engine)() % small.count));
      static_cast<void>(small.store->source(identifier)->crystal_maker()->atoms().size());
    }
  });
  suite.measure_elapsed(get, name, 2, [ase] { ase->ask("get 2"); });
  compare(get, 1000);

  const std::string select = "elements, cell and years, of " + small.size() + " entries";
  const EntryQuery query = EntryQuery::from_text("Ti,O,year=1950..1990,cell=3.97 3.97 3.97 90 90 90");
  suite.measure_elapsed(select, "SQLite", 1,
                        [small, query] { static_cast<void>(small.store->select_columns(query)); });
  suite.measure_elapsed(select, name, 1, [ase] { ase->ask("select 1"); });
  compare(select, 500);

  const std::string writing = "writing entries, 500 in a transaction";
  constexpr std::size_t together = 500;
  const std::shared_ptr<EntryStore> written = init_entry_store(folder + "/written.db");
  const auto next = std::make_shared<std::size_t>(0);
  suite.measure_elapsed(writing, "SQLite", together, [entries, written, next] {
    entries.put(*written, *next, *next + together);
    *next += together;
  });
  suite.measure_elapsed(writing, name, together, [ase] { ase->ask("write 500"); });
  compare(writing, 10);
}
