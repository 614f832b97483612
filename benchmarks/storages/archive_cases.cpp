#include "storages/archive_cases.h"

#include <benchmark/benchmark.h>
#include <sys/mman.h>

#include <memory>
#include <stdexcept>

#include "entries/plain_archive.h"
#include "storages/storages.h"

namespace {

const char* const portable = "database_entry, portable streams";
const char* const bare = "bare copy (reading: and the bare allocations)";

struct Subject {
  const char* name;
  MakeStorage make;
};

const std::vector<Subject>& subjects() {
  static const std::vector<Subject> all = {
      {Suite::own, archive_storage},
      {portable, portable_archive_storage},
      {bare, bare_storage},
      {"archive form by hand, plain values", hand_written_storage},
#ifdef WITH_FLATBUFFERS
      {"FlatBuffers, object interface", flatbuffers_storage},
#endif
#ifdef WITH_BOOST
      {"Boost.Serialization, binary", boost_storage},
#endif
#ifdef WITH_CAPNPROTO
      {"Cap'n Proto, into objects", capnproto_storage},
#endif
#ifdef WITH_CEREAL
      {"cereal, binary", cereal_storage},
#endif
#ifdef WITH_PROTOBUF
      {"protobuf, arena", protobuf_arena_storage},
      {"protobuf, heap", protobuf_heap_storage},
#endif
#ifdef WITH_MSGPACK
      {"msgpack", msgpack_storage},
#endif
  };
  return all;
}

// One file to write over and one to read, so that every round finds its pages in place. They are closed with
// the program.
void measure_files(Suite& suite, const std::string& write_case, const std::string& read_case,
                   const char* subject, const std::shared_ptr<Storage>& storage,
                   const StoredEntries& entries) {
  FILE* written = file_in_memory();
  FILE* read = file_in_memory();
  storage->write_file(read);
  suite.measure(write_case, subject, entries.size(), entries.bytes.size(), [storage, written] {
    std::rewind(written);
    storage->write_file(written);
    std::fflush(written);
  });
  suite.measure(read_case, subject, entries.size(), entries.bytes.size(), [storage, read] {
    std::rewind(read);
    storage->read_file(read);
  });
}

void add_deep_copy(Suite& suite, const std::string& case_name, const StoredEntries& entries) {
  auto values = std::make_shared<std::vector<plain::Entry>>();
  for (std::size_t index = 0; index < entries.size(); ++index) {
    values->push_back(plain::read_entry(entries.entry(index)));
  }
  suite.measure(case_name, "deep copy of the plain values", entries.size(), entries.bytes.size(), [values] {
    for (const plain::Entry& entry : *values) benchmark::DoNotOptimize(plain::Entry(entry));
  });
}

}  // namespace

FILE* file_in_memory() {
  FILE* file = fdopen(memfd_create("entries", MFD_CLOEXEC), "w+");
  if (file == nullptr) throw std::runtime_error("a file in memory could not be made");
  return file;
}

void add_archive_cases(Suite& suite, const std::string& kind, const StoredEntries& entries, bool with_goals) {
  const std::string write_file = "write to a file, " + kind;
  const std::string read_file = "read from a file, " + kind;
  const std::string write_memory = "write to memory, " + kind;
  const std::string read_memory = "read from memory, " + kind;
  for (const Subject& subject : subjects()) {
    const std::shared_ptr<Storage> storage = subject.make(entries);
    measure_files(suite, write_file, read_file, subject.name, storage, entries);
    const auto measure = [&](const std::string& case_name, auto pass) {
      suite.measure(case_name, subject.name, entries.size(), entries.bytes.size(), pass);
    };
    measure(write_memory, [storage] { storage->write_memory(); });
    measure(read_memory, [storage] { storage->read_memory(); });
  }
  add_deep_copy(suite, read_memory, entries);
  if (!with_goals) return;

  for (const std::string& case_name : {write_file, read_file}) {
    suite.expect(case_name, {"protobuf, arena", Goal::at_least_times_faster, 1.0, portable});
  }
  suite.expect(write_file, {bare, Goal::at_most_times, 1.7});
  suite.expect(write_file, {"msgpack", Goal::at_least_times_faster, 1.6});
  suite.expect(write_file, {"protobuf, arena", Goal::at_least_times_faster, 2.4});
  suite.expect(write_memory, {bare, Goal::at_most_times, 1.75});
  suite.expect(read_file, {bare, Goal::at_most_times, 2.0});
  suite.expect(read_file, {"protobuf, arena", Goal::at_least_times_faster, 2.0});
  suite.expect(read_file, {"Boost.Serialization, binary", Goal::at_least_times_faster, 1.5});
  suite.expect(read_file, {"FlatBuffers, object interface", Goal::at_least_times_faster, 1.2});
}

void add_separate_entry_cases(Suite& suite, const StoredEntries& entries) {
  const std::string write = "write to a file, each in memory of its own";
  const std::string read = "read from a file into new entries";
  for (const Subject& subject : subjects()) {
    if (subject.name == portable) continue;
    const MakeStorage make = subject.make == archive_storage ? separate_storage : subject.make;
    measure_files(suite, write, read, subject.name, make(entries), entries);
  }
  suite.expect(write, {"msgpack", Goal::at_least_times_faster, 1.2});
  suite.expect(write, {"msgpack", Goal::at_least_times_faster, 1.3});
  suite.expect(write, {"Boost.Serialization, binary", Goal::at_least_times_faster, 1.65});
  suite.expect(write, {"Boost.Serialization, binary", Goal::at_least_times_faster, 1.8});
  suite.expect(read, {"FlatBuffers, object interface", Goal::at_least_times_faster, 1.0});
  suite.expect(read, {"FlatBuffers, object interface", Goal::at_least_times_faster, 1.15});
  suite.expect(read, {"Boost.Serialization, binary", Goal::at_least_times_faster, 1.3});
  suite.expect(read, {"Boost.Serialization, binary", Goal::at_least_times_faster, 1.45});
  suite.expect(read, {"protobuf, arena", Goal::at_least_times_faster, 1.6});
  suite.expect(read, {"protobuf, arena", Goal::at_least_times_faster, 1.75});
}
