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
  auto entry = std::make_unique<Entry>(
      read.identifier(), copy_of(read.crystal_maker()), copy_of(read.cell()), THandle<Publication>(),
      THandle<ExperimentalInfo>(), THandle<EditorsInfo>(), THandle<ChemicalInfo>(), THandle<CrystalInfo>(),
      THandle<ChemicalDiagram>(), copy_of(read.connectivity_info()), THandle<CrystalDiagramMatch>(),
      THandle<ConnectivityDiagramMatch>(), THandle<CrystalConnectivityMatch>(), THandle<CrossReferenceInfo>(),
      THandle<DepositionInfo>(), THandle<DisorderSelectors>(), THandle<PublishedGeometry>());
  entry->set_publication(copy_of(read.publication()));
  entry->set_experimental_info(copy_of(read.experimental_info()));
  entry->set_editors_info(copy_of(read.editors_info()));
  entry->set_chemical_info(copy_of(read.chemical_info()));
  entry->set_crystal_info(copy_of(read.crystal_info()));
  entry->set_cross_reference_info(copy_of(read.cross_reference_info()));
  entry->set_deposition_info(copy_of(read.deposition_info()));
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
