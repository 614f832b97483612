// The library as its users meet it: entries that were put together by setters, every component in memory of
// its own, and a new entry for each that is read.
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <utilities/archive.h>

#include <memory>
#include <stdexcept>
#include <vector>

#include "storages/storages.h"

namespace {

using Entry = CrystalStructureImmediateDatabaseEntry;

template <class T>
THandle<T> copy_of(const THandle<T>& original) {
  return THandle<T>(new T(*original));
}

THandle<CrystalMaker> copy_of(const THandle<CrystalMaker>& original) {
  return THandle<CrystalMaker>(new CrystalMaker(copy_of(original->cell()), original->atoms()));
}

std::unique_ptr<Entry> put_together(const Entry& read) {
  ComponentHandles fixed;
  for_each_component([&](auto component) {
    if constexpr (component.archived && !component.has_setter)
      fixed[component] = copy_of(component.get(read));
  });
  auto entry = std::make_unique<Entry>(Entry::from(read.identifier(), fixed));
  for_each_component([&](auto component) {
    if constexpr (component.archived && component.has_setter)
      component.set(*entry, copy_of(component.get(read)));
  });
  return entry;
}

// As a program makes one to read into.
Entry new_entry() {
  return {DatabaseEntryIdentifier(), THandle<CrystalMaker>(new CrystalMaker)};
}

class SeparateStorage : public Storage {
 public:
  explicit SeparateStorage(const StoredEntries& stored) {
    FILE* const file = file_in_memory();
    std::fwrite(stored.bytes.data(), 1, stored.bytes.size(), file);
    std::rewind(file);
    Archive archive(file);
    for (std::size_t index = 0; index < stored.size(); ++index) {
      Entry entry = new_entry();
      entry.read(archive);
      entries_.push_back(put_together(entry));
    }
    std::rewind(file);
    write_file(file);
    std::rewind(file);
    std::string written(stored.bytes.size(), '\0');
    if (std::fread(written.data(), 1, written.size(), file) != written.size() || written != stored.bytes) {
      throw std::logic_error("the library writes other bytes than it has read");
    }
    std::fclose(file);
  }

  void write_file(FILE* file) override {
    Archive archive(file);
    for (const std::unique_ptr<Entry>& entry : entries_) entry->write(archive);
    archive.flush();
  }

  void read_file(FILE* file) override {
    Archive archive(file);
    for (std::size_t index = 0; index < entries_.size(); ++index) {
      Entry entry = new_entry();
      entry.read(archive);
    }
  }

  // The cases of entries in memory of their own are about files.
  void write_memory() override { throw std::logic_error("not measured"); }
  void read_memory() override { throw std::logic_error("not measured"); }

 private:
  std::vector<std::unique_ptr<Entry>> entries_;
};

}  // namespace

std::unique_ptr<Storage> separate_storage(const StoredEntries& entries) {
  return std::make_unique<SeparateStorage>(entries);
}
