// write_seeds FOLDER: writes the inputs of corpus/entry_read and corpus/record_read, which are made from
// valid archives, below FOLDER. Run it again when an archive form changes.
#include <reliability/support/subjects.h>

#include <filesystem>
#include <fstream>

namespace {

void write(const std::filesystem::path& folder, const std::string& name, const std::string& contents) {
  std::filesystem::create_directories(folder);
  std::ofstream file(folder / name, std::ios::binary);
  file << contents;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  const std::filesystem::path folder = arguments[1];
  const std::string entry = entry_layout().bytes();
  write(folder / "entry_read", "full", entry);
  write(folder / "entry_read", "half", entry.substr(0, entry.size() / 2));
  char index = 0;
  for (const Subject& subject : subjects()) {
    write(folder / "record_read", subject.name, std::string(1, index++) + subject.layout.bytes());
  }
  return 0;
}
