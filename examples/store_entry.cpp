// Makes an entry and stores it: usage: store_entry FILE
#include <cstdio>
#include <exception>
#include <iostream>

#include "sample_entry.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: store_entry FILE\n";
    return 2;
  }
  FILE* const file = std::fopen(argv[1], "wb");
  if (file == nullptr) {
    std::cerr << "store_entry: cannot write " << argv[1] << '\n';
    return 4;
  }
  int status = 0;
  try {
    Archive archive(file);
    sample_entry().write(archive);
    archive.flush();  // a full disk is seen here
  } catch (const std::exception& error) {
    std::cerr << "store_entry: " << argv[1] << ": " << error.what() << '\n';
    status = 1;
  }
  std::fclose(file);
  return status;
}
