#include "searched_texts.h"

#include <database_entry/database_entry.h>

namespace {

std::size_t identifiers_in(const std::string& text) {
  std::vector<DatabaseEntryIdentifier> found;
  DatabaseCrossReference(DatabaseCrossReference::isomer, text).identifiers(found);
  return found.size();
}

std::size_t name_parts_in(const std::string& text) {
  ChemicalConnectivityDatabaseEntry entry;
  entry.set_identifier(DatabaseEntryIdentifier(text));
  return entry.name.empty() ? 0 : 1;
}

// Each is made for the expressions to run far before they fail, or to find as many matches as possible.
const char* const pieces_for_identifiers[] = {"[", "[ABCDEF", "[ABCDEF01", "[X123456", "[ABCDEF01]", "7"};
const char* const pieces_for_numbers[] = {"7",  "VORN ", "VORN 1", "MRV 12 ", "IUC1", "IUCr a",
                                          "1/", "1/1 ",  "R1",     "1A",      " ",    "ABCDEF"};
const char* const pieces_for_names[] = {"7", ".", "1 ", "7 a.", "1 a.qd", "A"};

struct HostileFamily {
  const char* pattern;
  const char* piece;
};

const HostileFamily hostile_families[] = {
    {"(a+)+b", "a"},
    {"(a|a)*b", "a"},
    {"(a|aa)+$", "ab"},
    {"a*a*a*a*a*b", "a"},
    {"(.*)*x", "y"},
    {"(x+x+)+y", "x"},
    {"^(\\s*a\\s*)*$", "a "},
    {"([a-z]+)*\\d", "abc"},
    {"(a?){20}a{20}b", "a"},
    {".*.*.*=", "x"},
    {"(?:(?:a|b)*c|d)*e", "abacd"},
    {"(\\d+)*[A-Z]", "0123"},
    {"(a*?)*?b", "a"},
    {"((((a|b)+)+)+)+c", "ab"},
};

}  // namespace

std::vector<Search> searches() {
  std::vector<Search> all;
  for (const char* piece : pieces_for_identifiers) {
    all.push_back({std::string("identifiers in ") + piece, piece, identifiers_in});
  }
  for (int value = 0; value <= 11; ++value) {
    const auto type = static_cast<DepositionInfo::DepositionType>(value);
    for (const char* piece : pieces_for_numbers) {
      const auto run = [type](const std::string& text) {
        DepositionInfo info;
        info.set_text(type, text);
        std::vector<std::string> numbers;
        info.deposition_numbers(type, numbers);
        return numbers.size() + (DepositionInfo::validate_deposition_code(type, text) ? 1 : 0);
      };
      all.push_back({"numbers of kind " + std::to_string(value) + " in " + piece, piece, run});
    }
  }
  for (const char* piece : pieces_for_names) {
    all.push_back({std::string("a name in ") + piece, piece, name_parts_in});
  }
  for (const HostileFamily& family : hostile_families) {
    const auto run = [pattern = std::string(family.pattern)](const std::string& text) {
      RegexResults results;
      return static_cast<std::size_t>(Regex(pattern).search(text, results, 0));
    };
    all.push_back({std::string(family.pattern) + " in " + family.piece, family.piece, run});
  }
  return all;
}

std::string repeated(const std::string& piece, std::size_t size) {
  std::string text;
  text.reserve(size + piece.size());
  while (text.size() < size) text += piece;
  text.resize(size);
  return text;
}
