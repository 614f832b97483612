// What disks, other programs and the end of a process do to a SQLite store: an entry is there whole or not at
// all.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stores/entry_store.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "stores/failing_vfs.h"
#include "stores/linked_entry.h"
#include "stores/places.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

DatabaseEntryIdentifier named(const std::string& text) {
  return DatabaseEntryIdentifier(text);
}

std::string file_contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void write_file(const std::string& path, const std::string& contents) {
  std::ofstream(path, std::ios::binary) << contents;
}

// The store without its log, as a copy of one file.
std::string contents_of_store(const std::string& path) {
  EXPECT_FALSE(fs::exists(path + "-wal"));
  return file_contents(path);
}

// What a store holds: the archive bytes of each entry, and what is wrong.
std::map<std::string, std::string> state_of(const std::string& path) {
  const auto store = open_entry_store(path);
  for (const auto& problem : store->verify().problems) {
    ADD_FAILURE() << problem.entry << " " << problem.component << ": " << problem.text;
  }
  std::map<std::string, std::string> state;
  for (const auto& identifier : store->select({}))
    state[identifier.text()] = archived(*store->entry(identifier));
  return state;
}

class SqliteFaults : public testing::Test {
 protected:
  // A store of two entries, and what becomes of it when one is replaced, one removed and one added.
  void SetUp() override {
    {
      const auto store = init_entry_store(path_);
      store->put(entry_of_year("A", 1999), {"a.cif", "x"}, OnDuplicate::refuse);
      store->put(linked_entry("B"), {"b.cif", "x"}, OnDuplicate::refuse);
    }
    before_bytes_ = contents_of_store(path_);
    before_ = state_of(path_);
    work(*open_entry_store(path_));
    after_ = state_of(path_);
    restore();
  }

  static void work(EntryStore& store) {
    const Entries entries = {entry_of_year("A", 2001), linked_entry("C")};
    static_cast<void>(store.put_all(puts_of(entries), OnDuplicate::replace));
  }

  void restore() const {
    for (const char* ending : {"-wal", "-shm", "-journal"}) fs::remove(path_ + ending);
    write_file(path_, before_bytes_);
  }

  StoreFolder folder_;
  std::string path_ = folder_.file("faults.db");
  std::string before_bytes_;
  std::map<std::string, std::string> before_;
  std::map<std::string, std::string> after_;
};

TEST_F(SqliteFaults, LeaveAWriteWholeOrUndoneWhicheverCallFails) {
  FailingVfs files;
  for (const FailingVfs::Kind kind : {FailingVfs::once, FailingVfs::always}) {
    int undone = 0;
    for (int call = 1;; ++call) {
      restore();
      bool is_done = false;
      files.fail_at(call, kind);
      try {
        const auto store = open_entry_store(path_);
        work(*store);
        is_done = true;
      } catch (const EntryStoreError&) {
        ++undone;
      }
      const bool was_reached = files.calls() >= call;
      files.never_fail();
      const auto state = state_of(path_);
      if (is_done) {
        EXPECT_EQ(state, after_) << "call " << call;
      } else {
        EXPECT_TRUE(state == before_ || state == after_) << "call " << call;
      }
      if (!was_reached) break;
    }
    EXPECT_GT(undone, 20);
  }
}

TEST_F(SqliteFaults, NeverGiveWrongComponentsWhicheverReadFails) {
  FailingVfs files;
  int failures = 0;
  for (int call = 1;; ++call) {
    files.fail_at(call, FailingVfs::once);
    try {
      const auto store = open_entry_store(path_);
      for (const auto& [identifier, bytes] : before_) {
        try {
          EXPECT_EQ(archived(*store->entry(named(identifier))), bytes);
        } catch (const EntryStoreError&) {
          ++failures;
          // It is asked again, and there.
          EXPECT_EQ(archived(*store->entry(named(identifier))), bytes);
        }
      }
    } catch (const EntryStoreError&) {
      ++failures;
    }
    if (files.calls() < call) break;
  }
  EXPECT_GT(failures, 5);
}

TEST_F(SqliteFaults, LeaveNothingAtThePlaceOfAStoreThatCouldNotBeMade) {
  FailingVfs files;
  const std::string place = folder_.file("new.db");
  int failures = 0;
  for (int call = 1;; ++call) {
    files.fail_at(call, FailingVfs::always);
    try {
      init_entry_store(place).reset();
      if (files.calls() < call) break;
    } catch (const EntryStoreError&) {
      ++failures;
    }
    files.never_fail();
    // Either nothing, or a whole store that could not be opened at once.
    if (fs::exists(place)) {
      EXPECT_EQ(open_entry_store(place)->count(), 0U);
    }
    for (const auto& file : fs::directory_iterator(fs::path(place).parent_path())) {
      EXPECT_THAT(file.path().filename().string(), testing::Not(HasSubstr("making"))) << "call " << call;
    }
    for (const char* ending : {"", "-wal", "-shm"}) fs::remove(place + ending);
  }
  EXPECT_GT(failures, 20);
}

TEST_F(SqliteFaults, OfAFullDiskAreNamedAndChangeNothing) {
  // Two pages more than the store has: the log cannot grow, nor can the file.
  struct rlimit old = {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
  const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit small = old;
  small.rlim_cur = 40'000;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  std::string message;
  {
    const auto store = open_entry_store(path_);
    Entries entries;
    for (int index = 0; index < 200; ++index) entries.push_back(linked_entry("N" + std::to_string(index)));
    message = message_of<EntryStoreError>(
        [&] { static_cast<void>(store->put_all(puts_of(entries), OnDuplicate::refuse)); });
  }
  ::setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, ignored);
  EXPECT_THAT(message, HasSubstr(path_ + ": "));
  EXPECT_THAT(message, testing::AnyOf(HasSubstr("full"), HasSubstr("disk I/O error")));
  EXPECT_EQ(state_of(path_), before_);
}

// Each page of a store is overwritten in turn. What is read is right or refused; verify() names what is
// wrong.

std::string damaged(std::string page, const std::string& how, std::size_t seed) {
  if (how == "zeros") return std::string(page.size(), '\0');
  if (how == "noise") {
    for (char& byte : page)
      byte = static_cast<char>((seed = seed * 6364136223846793005U + 1442695040888963407U) >> 56);
    return page;
  }
  // One byte in seven is changed.
  for (std::size_t at = seed % 7; at < page.size(); at += 7) page[at] = static_cast<char>(page[at] ^ 0x41);
  return page;
}

class SqliteDamage : public testing::TestWithParam<const char*> {
 protected:
  StoreFolder folder_;
};

TEST_P(SqliteDamage, IsRefusedOrNamedAtEveryPage) {
  constexpr std::size_t page_size = 4096;
  const std::string path = folder_.file("damage.db");
  std::map<std::string, std::string> expected;
  {
    const auto store = init_entry_store(path, {.compress = false});
    Entries entries;
    for (int index = 0; index < 40; ++index) entries.push_back(linked_entry("ENTRY" + std::to_string(index)));
    static_cast<void>(store->put_all(puts_of(entries), OnDuplicate::refuse));
    for (const auto& entry : entries) expected[entry.identifier().text()] = archived(entry);
  }
  const std::string sound = contents_of_store(path);
  std::size_t read = 0;
  for (std::size_t begin = 0; begin < sound.size(); begin += page_size) {
    for (const char* ending : {"-wal", "-shm"}) fs::remove(path + ending);
    std::string bytes = sound;
    bytes.replace(begin, page_size, damaged(sound.substr(begin, page_size), GetParam(), begin));
    write_file(path, bytes);
    std::size_t problems = 0;
    try {
      const auto store = open_entry_store(path);
      for (const auto& [identifier, archive_bytes] : expected) {
        try {
          EXPECT_EQ(archived(*store->entry(named(identifier))), archive_bytes) << "page at " << begin;
          ++read;
        } catch (const EntryStoreError&) {
          ++problems;
        }
      }
      problems += store->verify().problems.size();
    } catch (const EntryStoreError&) {
      ++problems;
    }
    EXPECT_GT(problems, 0U) << "page at " << begin;
  }
  // A page of the index or of other entries is no reason not to give this one.
  EXPECT_GT(read, expected.size() * sound.size() / page_size / 3);
}

INSTANTIATE_TEST_SUITE_P(Pages, SqliteDamage, testing::Values("zeros", "noise", "changes"));

// Runs `work` in a process of its own; gives its number.
pid_t started(const std::function<void()>& work) {
  const pid_t child = ::fork();
  if (child != 0) return child;
  try {
    work();
    std::_Exit(0);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    std::_Exit(1);
  }
}

bool ended_well(pid_t child) {
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

constexpr int batch_size = 5;

std::string batch_identifier(int batch, int index) {
  return "B" + std::to_string(batch) + "-" + std::to_string(index);
}

// One process of an import: stores batch after batch, those that are there already too, and tells of each
// that is there for good.
void import(const std::string& path, int batches, int told) {
  const auto store = open_entry_store(path);
  for (int batch = 0; batch < batches; ++batch) {
    const std::string file = std::to_string(batch) + ".cif";
    if (!store->has_imported(file, "sum")) {
      Entries entries;
      for (int index = 0; index < batch_size; ++index)
        entries.push_back(linked_entry(batch_identifier(batch, index)));
      std::vector<EntryStore::Put> puts = puts_of(entries);
      for (int index = 0; index < batch_size; ++index) {
        puts[static_cast<std::size_t>(index)].origin = {file, std::to_string(index)};
      }
      static_cast<void>(store->put_all(puts, OnDuplicate::keep));
      store->set_imported(file, "sum");
    }
    if (::write(told, &batch, sizeof batch) != sizeof batch) std::_Exit(2);
  }
}

TEST(SqliteImport, KilledAtTwoHundredMomentsGoesOnWhereItStoppedAndLosesNothing) {
  constexpr int batches = 150;
  const StoreFolder folder;
  const std::string path = folder.file("killed.db");
  init_entry_store(path).reset();
  int acknowledged = -1;
  for (int kill = 0; kill < 200; ++kill) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t child = started([&] { import(path, batches, pipe[1]); });
    ::close(pipe[1]);
    // It gets one batch further than the one before, and then some more microseconds.
    int batch = -1;
    while (batch < std::min(kill * batches / 200, batches - 1)) {
      if (::read(pipe[0], &batch, sizeof batch) != sizeof batch) break;
    }
    ::usleep(static_cast<useconds_t>(kill * 7919 % 4000));
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    while (::read(pipe[0], &batch, sizeof batch) == sizeof batch) continue;
    ::close(pipe[0]);
    acknowledged = std::max(acknowledged, batch);

    const auto store = open_entry_store(path);
    EXPECT_EQ(store->count() % batch_size, 0U) << "kill " << kill;
    EXPECT_GE(store->count(), static_cast<std::uint64_t>(acknowledged + 1) * batch_size) << "kill " << kill;
    if (acknowledged >= 0) {
      EXPECT_TRUE(store->contains(named(batch_identifier(acknowledged, batch_size - 1))));
    }
    if (kill % 20 == 19) {
      EXPECT_TRUE(store->verify().problems.empty()) << "kill " << kill;
    }
  }
  const int nobody = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  import(path, batches, nobody);
  ::close(nobody);
  const auto store = open_entry_store(path);
  EXPECT_EQ(store->count(), std::uint64_t{batches} * batch_size);
  EXPECT_TRUE(store->verify().problems.empty());
}

TEST(SqliteProcesses, TwoWriteAndFourReadWithoutAnError) {
  const StoreFolder folder;
  const std::string path = folder.file("shared.db");
  init_entry_store(path)->put(entry_of_year("SHARED", 1900), {}, OnDuplicate::refuse);
  std::vector<pid_t> children;
  for (int writer = 0; writer < 2; ++writer) {
    children.push_back(started([&] {
      const auto store = open_entry_store(path);
      for (int round = 1; round <= 60; ++round) {
        const Entries entries = {entry_of_year("SHARED", 1900 + 2 * round + writer),
                                 entry_named(std::to_string(writer) + "-" + std::to_string(round))};
        static_cast<void>(store->put_all(puts_of(entries), OnDuplicate::replace));
      }
    }));
  }
  for (int reader = 0; reader < 4; ++reader) {
    children.push_back(started([&] {
      const auto store = open_entry_store(path);
      for (int round = 0; round < 300; ++round) {
        const auto snapshot = store->snapshot();
        if (store->entry(named("SHARED"))->publication()->year < 1900)
          throw std::runtime_error("a wrong year");
        if (store->count() != store->select({}).size())
          throw std::runtime_error("two states in one snapshot");
      }
    }));
  }
  for (const pid_t child : children) EXPECT_TRUE(ended_well(child));
  const auto store = open_entry_store(path);
  EXPECT_EQ(store->count(), 121U);
  EXPECT_TRUE(store->verify().problems.empty());
}

// Places that hold no store.
TEST(OpenEntryStore, SaysWhatIsWrongWithAPlace) {
  const StoreFolder folder;
  const auto refusal = [](const std::string& place) {
    return message_of<EntryStoreError>([&] { static_cast<void>(open_entry_store(place)); });
  };
  const std::string missing = folder.file("missing.db");
  EXPECT_EQ(refusal(missing), missing + ": No such file or directory; dbentry init makes a store");
  EXPECT_FALSE(fs::exists(missing));
  EXPECT_THAT(refusal(folder.file(".")), HasSubstr("a file is wanted"));
  EXPECT_THAT(refusal("memory:"), HasSubstr("a store in memory is made anew"));

  const std::string other = folder.file("other.db");
  sqlite3* database = nullptr;
  sqlite3_open(other.c_str(), &database);
  sqlite3_exec(database, "CREATE TABLE t (x)", nullptr, nullptr, nullptr);
  sqlite3_close(database);
  EXPECT_THAT(refusal(other), HasSubstr("it is a SQLite file, but not a store of entries"));

  const std::string newer = folder.file("newer.db");
  init_entry_store(newer).reset();
  sqlite3_open(newer.c_str(), &database);
  sqlite3_exec(database, "PRAGMA user_version = 7", nullptr, nullptr, nullptr);
  sqlite3_close(database);
  EXPECT_THAT(refusal(newer),
              HasSubstr("it has schema version 7, and 2 is known here; a newer version of this library"));
}

TEST(InitEntryStore, TouchesNothingThatIsThere) {
  const StoreFolder folder;
  const std::string place = folder.file("taken");
  write_file(place, "text");
  EXPECT_EQ(message_of<EntryStoreError>([&] { init_entry_store(place); }),
            place + ": there is a file already; a new store needs a new name");
  EXPECT_EQ(file_contents(place), "text");
}

TEST(UpgradeEntryStore, LeavesThePresentVersionAsItIs) {
  const StoreFolder folder;
  const std::string place = folder.file("present.db");
  init_entry_store(place)->put(sample_entry(), {}, OnDuplicate::refuse);
  const std::string before = contents_of_store(place);
  EXPECT_EQ(upgrade_entry_store(place), 2);
  EXPECT_EQ(contents_of_store(place), before);
}

TEST(UpgradeEntryStore, BringsVersionOneToTwoWithTheSameAnswers) {
  const StoreFolder folder;
  const std::string place = folder.file("kept.db");
  fs::copy_file(STORE_TEST_DATA "/store_version_1.db", place);
  const auto open_before = open_entry_store(place);
  const EntryQuery query = EntryQuery::from_text("C");
  const auto found = open_before->select(query);
  EXPECT_EQ(upgrade_entry_store(place), 1);
  EXPECT_EQ(upgrade_entry_store(place), 2);
  // A store that was open writes the lists from now on, too.
  open_before->put(entry_of_year("LATER", 1999), {}, OnDuplicate::refuse);
  const auto upgraded = open_entry_store(place);
  EXPECT_EQ(upgraded->count(query), found.size() + 1);
  EXPECT_EQ(upgraded->select(query), open_before->select(query));
  EXPECT_TRUE(upgraded->verify().problems.empty());
}

TEST(ListsOfElements, ThatDoNotFitAreFoundByVerifyAndMadeAnewByReindex) {
  for (const char* const damage :
       {"DELETE FROM element_block WHERE symbol = x'4E'", "UPDATE element_block SET numbers = x'0500'",
        "UPDATE element_block SET numbers = x'01'"}) {
    const StoreFolder folder;
    const std::string place = folder.file("lists.db");
    init_entry_store(place)->put(entry_of_year("A", 1999), {}, OnDuplicate::refuse);
    sqlite3* database = nullptr;
    sqlite3_open(place.c_str(), &database);
    EXPECT_EQ(sqlite3_exec(database, damage, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(database);
    const auto store = open_entry_store(place);
    const auto problems = store->verify().problems;
    ASSERT_EQ(problems.size(), 1U) << damage;
    EXPECT_THAT(problems[0].text, HasSubstr("reindex makes")) << damage;
    EXPECT_TRUE(store->reindex().problems.empty()) << damage;
    EXPECT_TRUE(store->verify().problems.empty()) << damage;
    EXPECT_EQ(store->count(EntryQuery::from_text("C,N")), 1U) << damage;
  }
}

// Made when the schema was new, from the linked entry and one without an origin. It is never made again.
TEST(KeptStore, OfSchemaVersionOneOpensForEver) {
  const StoreFolder folder;
  const std::string place = folder.file("kept.db");
  fs::copy_file(STORE_TEST_DATA "/store_version_1.db", place);
  const auto store = open_entry_store(place);
  const DatabaseEntryIdentifier plain(std::string("\xFF'a", 3));
  EXPECT_THAT(store->select({}), testing::ElementsAre(named("LINKED"), plain));
  EXPECT_EQ(archived(*store->entry(named("LINKED"))), archived(linked_entry()));
  EXPECT_EQ((*store->entry(named("LINKED"))->published_geometry()->bonds)[0]->length,
            UncertainValue(1.156, 0.004));
  EXPECT_EQ(store->origin(named("LINKED")),
            (EntryOrigin{"linked.cif", "one", std::string(64, '0'), 1700000000}));
  EXPECT_TRUE(store->has_imported("linked.cif", std::string(64, '0')));
  EXPECT_EQ(store->put(sample_entry(), {}, OnDuplicate::refuse), StoreResult::added);
  EXPECT_TRUE(store->reindex().problems.empty());
}

// Runs `work` as a user who may only read; root, who may everything, becomes nobody for that.
bool works_for_readers(const std::function<void()>& work) {
  return ended_well(started([&] {
    constexpr uid_t nobody = 65534;
    if (::geteuid() == 0 && ::setuid(nobody) != 0) std::_Exit(3);
    work();
  }));
}

TEST(ReadOnlyStore, GivesWhatItHoldsAndTakesNothing) {
  const StoreFolder folder;
  const std::string place = folder.file("read.db");
  init_entry_store(place)->put(sample_entry(), {}, OnDuplicate::refuse);
  fs::permissions(place, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  fs::permissions(folder.file("."), fs::perms::owner_all | fs::perms::group_all | fs::perms::others_all);
  EXPECT_TRUE(works_for_readers([&] {
    const auto store = open_entry_store(place);
    if (!store->is_read_only() || archived(*store->entry(named("ABCDEF"))) != sample_bytes()) std::_Exit(4);
    const std::string message = message_of<EntryStoreError>([&] { store->remove(named("ABCDEF")); });
    if (message != place + ": it is open for reading only") std::_Exit(5);
  }));
}

TEST(ReadOnlyStore, IsReadInAFolderThatIsReadOnlyToo) {
  const StoreFolder folder;
  const std::string place = folder.file("read.db");
  init_entry_store(place)->put(sample_entry(), {}, OnDuplicate::refuse);
  fs::permissions(place, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  fs::permissions(folder.file("."), fs::perms::all & ~fs::perms(0222));
  EXPECT_TRUE(works_for_readers([&] {
    const auto store = open_entry_store(place);
    if (archived(*store->entry(named("ABCDEF"))) != sample_bytes()) std::_Exit(4);
  }));
  fs::permissions(folder.file("."), fs::perms::owner_all);
}

}  // namespace
