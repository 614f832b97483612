// Reads the entries of a stored archive and prints them: usage: read_stored_archive FILE
//
// A stored archive is entries back to back, without a header: it ends where no further byte comes.
#include <database_entry/database_entry.h>

#include <cstdio>
#include <exception>
#include <iostream>

namespace {

bool at_end(FILE* file) {
  const int next = std::fgetc(file);
  if (next != EOF) std::ungetc(next, file);
  return next == EOF;
}

// begin read
void print_entries(FILE* file) {
  Archive archive(file);
  while (!at_end(file)) {
    CrystalStructureImmediateDatabaseEntry entry(DatabaseEntryIdentifier(),
                                                 THandle<CrystalMaker>(new CrystalMaker));
    entry.read(archive);
    entry.print(std::cout);
  }
}
// end read

}  // namespace

int main(int argc, char** argv) {
  FILE* const file = argc == 2 ? std::fopen(argv[1], "rb") : nullptr;
  if (file == nullptr) {
    std::cerr << "usage: read_stored_archive FILE, which must be readable\n";
    return 2;
  }
  int status = 0;
  try {
    print_entries(file);
  } catch (const std::exception& error) {
    std::cerr << "read_stored_archive: " << argv[1] << ": " << error.what() << '\n';
    status = 5;
  }
  std::fclose(file);
  return status;
}
