// How long the library itself takes for the archive that is its argument: reading every entry of it, and
// writing every entry and reading it again. Prints the best of several rounds, microseconds of processor time
// an entry.
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <utilities/archive.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <limits>
#include <memory>
#include <vector>

namespace {

using Entry = CrystalStructureImmediateDatabaseEntry;

struct CloseFile {
  void operator()(FILE* file) const { static_cast<void>(std::fclose(file)); }
};
using File = std::unique_ptr<FILE, CloseFile>;

bool is_at_end(FILE* file) {
  const int byte = std::fgetc(file);
  if (byte != EOF) std::ungetc(byte, file);
  return byte == EOF;
}

std::vector<THandle<Entry>> all_entries(FILE* file) {
  std::vector<THandle<Entry>> entries;
  Archive archive(file);
  while (!is_at_end(file)) {
    THandle<Entry> entry(new Entry(Entry::from(DatabaseEntryIdentifier(), ComponentHandles())));
    entry->read(archive);
    entries.push_back(entry);
  }
  return entries;
}

template <class Work>
double best_seconds(const Work& work) {
  double best = std::numeric_limits<double>::max();
  for (int round = 0; round < 7; ++round) {
    const std::clock_t start = std::clock();
    work();
    best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return best;
}

}  // namespace

int main(int argc, char** argv) {
  const File file(argc == 2 ? std::fopen(argv[1], "rb") : nullptr);
  if (file == nullptr) {
    std::cerr << "usage: archive_speed ARCHIVE\n";
    return 2;
  }
  std::size_t count = 0;
  const double reading = best_seconds([&] {
    std::rewind(file.get());
    count = all_entries(file.get()).size();
  });
  std::rewind(file.get());
  const auto entries = all_entries(file.get());
  const double there_and_back = best_seconds([&] {
    char* bytes = nullptr;
    std::size_t size = 0;
    {
      const File memory(::open_memstream(&bytes, &size));
      Archive archive(memory.get());
      for (const THandle<Entry>& entry : entries) entry->write(archive);
    }
    const std::unique_ptr<char, decltype(&std::free)> kept(bytes, &std::free);
    const File memory(::fmemopen(bytes, size, "rb"));
    if (all_entries(memory.get()).size() != count) std::abort();
  });
  const double microseconds = 1e6 / static_cast<double>(count);
  std::cout << count << ' ' << reading * microseconds << ' ' << there_and_back * microseconds << '\n';
}
