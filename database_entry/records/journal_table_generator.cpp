// journal_table_generator LIST SOURCE: checks a journal list and writes the source of the constant table.
// Part of the build; exit codes: 0 written, 1 refused with the place on standard error, 2 wrong use.
#include <database_entry/records/journal_list_format.h>

#include <fstream>
#include <iostream>
#include <sstream>

namespace {

std::string contents_of(const std::string& file_name) {
  std::ifstream file(file_name, std::ios::binary);
  std::ostringstream contents;
  contents << file.rdbuf();
  if (!file || !contents) throw std::runtime_error(file_name + ": error: cannot be read, or is empty");
  return contents.str();
}

void write_whole(const std::string& file_name, const std::string& contents) {
  std::ofstream file(file_name, std::ios::binary);
  file << contents << std::flush;
  if (!file) throw std::runtime_error(file_name + ": error: cannot be written");
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::cerr << "usage: journal_table_generator LIST SOURCE\n";
    return 2;
  }
  try {
    const std::string list_name = arguments[1];
    const std::string list = contents_of(list_name);
    write_whole(arguments[2],
                journal_list_format::table_source(journal_list_format::lines_of(list, list_name)));
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
