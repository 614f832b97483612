// make_pages FOLDER: writes the manual page of dbentry and the completions of shells, as the program
// describes itself. Run by the build.
#include <fstream>
#include <iostream>
#include <string>

#include "tools/commands/command_line.h"

namespace {

bool write(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text << std::flush;
  if (!file) std::cerr << "make_pages: " << path << " cannot be written\n";
  return file.good();
}

}  // namespace

int main(int argument_count, char** arguments) {
  if (argument_count != 2) {
    std::cerr << "usage: make_pages FOLDER\n";
    return 2;
  }
  const std::string folder = arguments[1];
  const bool done =
      write(folder + "/dbentry.1", manual_page()) && write(folder + "/dbentry.bash", completion("bash")) &&
      write(folder + "/_dbentry", completion("zsh")) && write(folder + "/dbentry.fish", completion("fish"));
  return done ? 0 : 1;
}
