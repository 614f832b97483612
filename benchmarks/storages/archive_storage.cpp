// The library itself. This source is built twice: once for the program, and once more, together with all of
// the library, for the portable path (see portable_archive.map).
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <utilities/archive.h>

#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "storages/storages.h"

namespace {

struct CloseFile {
  void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

File opened(FILE* file) {
  if (file == nullptr) throw std::runtime_error("a stream in memory could not be opened");
  return File(file);
}

// An entry without any component, to read into.
CrystalStructureImmediateDatabaseEntry empty_entry() {
  return {DatabaseEntryIdentifier(), {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}};
}

class ArchiveStorage : public Storage {
 public:
  explicit ArchiveStorage(const StoredEntries& stored)
      : bytes_(stored.bytes),
        entries_(stored.size(), empty_entry()),
        reader_(opened(fmemopen(bytes_.data(), bytes_.size(), "r"))),
        writer_(opened(open_memstream(&written_, &written_size_))) {
    Archive archive(reader_.get());
    for (CrystalStructureImmediateDatabaseEntry& entry : entries_) entry.read(archive);
    write_memory();
    std::fflush(writer_.get());
    if (std::string_view(written_, written_size_) != bytes_) {
      throw std::logic_error("the library writes other bytes than it has read");
    }
  }
  ArchiveStorage(const ArchiveStorage&) = delete;
  ArchiveStorage& operator=(const ArchiveStorage&) = delete;
  ~ArchiveStorage() override {
    writer_.reset();
    std::free(written_);
  }

  void write_file(FILE* file) override {
    Archive archive(file);
    for (const CrystalStructureImmediateDatabaseEntry& entry : entries_) entry.write(archive);
  }

  void read_file(FILE* file) override {
    // Every read makes all components anew and lets go of those before.
    Archive archive(file);
    CrystalStructureImmediateDatabaseEntry entry = empty_entry();
    for (std::size_t index = 0; index < entries_.size(); ++index) entry.read(archive);
  }

  void write_memory() override {
    std::rewind(writer_.get());
    write_file(writer_.get());
  }

  void read_memory() override {
    std::rewind(reader_.get());
    read_file(reader_.get());
  }

 private:
  std::string bytes_;
  std::vector<CrystalStructureImmediateDatabaseEntry> entries_;
  char* written_ = nullptr;
  std::size_t written_size_ = 0;
  File reader_;
  File writer_;
};

}  // namespace

std::unique_ptr<Storage> DATABASE_ENTRY_BENCHMARK_STORAGE(const StoredEntries& entries) {
  return std::make_unique<ArchiveStorage>(entries);
}
