// C++17: clang++ refuses the parser's headers as C++20, which hold vectors of classes that are not complete.
#include "import/parsing_alone.h"

#include <gemmi/cif.hpp>
#include <stdexcept>

std::size_t parse_cif_files(const std::vector<std::string>& files) {
  std::size_t blocks = 0;
  for (const std::string& file : files) {
    try {
      blocks += gemmi::cif::read_file(file).blocks.size();
    } catch (const std::exception&) {
      // What is no CIF takes its time too, here as in an import.
    }
  }
  return blocks;
}
