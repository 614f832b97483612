// A data source of one's own: a folder that holds one archive a component, read when it is first wanted.
// usage: folder_data_source FOLDER, which is made and filled for the purpose
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>

#include "sample_entry.h"

namespace {

namespace fs = std::filesystem;

struct CloseFile {
  void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

// begin source
class Folder : public CrystalStructureDatabaseEntryDataSource {
 public:
  explicit Folder(const fs::path& path) : path_(path) {}

  DatabaseEntryIdentifier identifier() const override {
    return DatabaseEntryIdentifier(path_.filename().string());
  }
  THandle<CrystalMaker> crystal_maker() const override { return load<CrystalMaker>("crystal_maker"); }
  THandle<Publication> publication() const override { return load<Publication>("publication"); }

 private:
  // A component without a file is a null handle: the entry remembers that too.
  template <class Component>
  THandle<Component> load(const char* name) const {
    const File file(std::fopen((path_ / name).string().c_str(), "rb"));
    std::cout << "(asked for " << name << (file ? ")\n" : ": there is none)\n");
    THandle<Component> component;
    if (file == nullptr) return component;
    Archive archive(file.get());
    archive >> component;
    return component;
  }

  fs::path path_;
};
// end source

template <class Component>
void store(const fs::path& path, const THandle<Component>& component) {
  const File file(std::fopen(path.string().c_str(), "wb"));
  if (file == nullptr) throw std::runtime_error("cannot write " + path.string());
  Archive archive(file.get());
  archive << component;
  archive.flush();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: folder_data_source FOLDER\n";
    return 2;
  }
  try {
    const fs::path folder = fs::path(argv[1]) / "ABCDEF01";
    fs::create_directories(folder);
    store(folder / "crystal_maker", sample_crystal_maker());

    const CrystalStructureDeferredDatabaseEntry entry(
        THandle<CrystalStructureDatabaseEntryDataSource>(new Folder(folder)));
    entry.identifier().print(std::cout);
    std::cout << '\n';
    for (const char* time : {"first", "second"}) {
      const THandle<CrystalMaker> crystal_maker = entry.crystal_maker();
      std::cout << time << " look, atoms: " << crystal_maker->atoms().size() << '\n';
    }
    const bool is_published = !entry.publication().is_null();
    std::cout << "publication: " << (is_published ? "known" : "not known") << '\n';
  } catch (const std::exception& error) {
    std::cerr << "folder_data_source: " << error.what() << '\n';
    return 1;
  }
}
