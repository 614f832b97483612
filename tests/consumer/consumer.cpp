// Writes a text through the library and reads it back: enough to need headers, symbols and siblings.
#include <database_entry/foundations/archive_encodings.h>

#include <cstdio>
#include <iostream>

int main() {
  FILE* const file = std::tmpfile();
  if (file == nullptr) return 1;
  Archive archive(file);
  archive << std::string("consumed");
  archive.flush();
  std::rewind(file);
  std::string text;
  archive >> text;
  std::fclose(file);
  std::cout << text << '\n';
}
