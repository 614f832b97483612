// The components of an entry are listed in one place; the rest of the tree walks that list.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <support/file_contents.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

bool is_word(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

// The words of the code: texts in quotes and comments are none.
std::set<std::string> words_of(const std::string& code) {
  std::set<std::string> words;
  for (auto at = code.begin(); at != code.end();) {
    if (*at == '"') {
      for (++at; at != code.end() && *at != '"'; ++at) {
        if (*at == '\\' && at + 1 != code.end()) ++at;
      }
      if (at != code.end()) ++at;
    } else if (*at == '/' && at + 1 != code.end() && at[1] == '/') {
      at = std::find(at, code.end(), '\n');
    } else if (is_word(*at)) {
      const auto end = std::find_if_not(at, code.end(), is_word);
      words.emplace(at, end);
      at = end;
    } else {
      ++at;
    }
  }
  return words;
}

// The accessors, from the list itself.
std::set<std::string> component_names() {
  std::set<std::string> names;
  std::istringstream lines(contents_of_file(fs::path(PROJECT_TREE) / "database_entry/entries/components.h"));
  for (std::string line; std::getline(lines, line);) {
    const bool row = line.starts_with("  FIXED(") || line.starts_with("  SETTABLE(");
    if (!row) continue;
    const auto name = std::find_if(std::find(line.begin(), line.end(), ','), line.end(), is_word);
    names.emplace(name, std::find_if_not(name, line.end(), is_word));
  }
  return names;
}

std::size_t components_named_in(const std::string& code, const std::set<std::string>& names) {
  const std::set<std::string> words = words_of(code);
  return static_cast<std::size_t>(
      std::count_if(names.begin(), names.end(), [&](const auto& name) { return words.contains(name); }));
}

TEST(ComponentList, HasSixteenRows) {
  EXPECT_EQ(component_names().size(), 16U);
}

TEST(ComponentList, IsSeenInCodeAndNotInTextsOrComments) {
  const std::set<std::string> names{"cell", "publication"};
  EXPECT_EQ(components_named_in("entry.cell() /* */ + entry.publication()", names), 2U);
  EXPECT_EQ(components_named_in("\"cell \\\" cell\" // publication\nunit_cell", names), 0U);
}

// Their declarations are what a reader of the entry reads; a source that answers for each component names
// each.
const std::set<std::string> spelled_out = {
    "database_entry/entries/components.h",
    "database_entry/entries/crystal_structure_database_entry.h",
    "database_entry/entries/crystal_structure_database_entry_data_source.h",
    "database_entry/entries/crystal_structure_deferred_database_entry.h",
    "database_entry/entries/crystal_structure_immediate_database_entry.h",
    "exchange/cif/standard_tags.cpp",                                    // their order in a CIF
    "tests/entries/asked_accessors_test.cpp",                            // which are asked, in which order
    "tests/entries/components_test.cpp",                                 // the kinds, which never change
    "tests/entries/crystal_structure_deferred_database_entry_test.cpp",  // a source that counts
    "tests/exchange/entry_json_test.cpp",                                // their places in JSON
    "tests/exchange/full_entry.h",                                       // one of each
    "tests/entries/noting_entry.h",                                      // an entry that notes who asks
    "tests/reliability/source_faults_test.cpp",                          // a source that fails
    "tests/stores/store_suite_test.cpp",                                 // what a store keeps of each
    "tests/summaries/printables.cpp",                                    // one of each summary
    "exchange/cif/standard_tags.cpp",                                    // which tags say what of each
    "perception/entry_check.cpp",                                        // what can be wrong with each
};

TEST(ComponentList, IsSpelledByNobodyElse) {
  const fs::path root = PROJECT_TREE;
  const std::set<std::string> names = component_names();
  for (const char* top : {"database_entry", "siblings", "lattice", "exchange", "stores", "perception",
                          "bindings", "tools", "tests", "examples", "benchmarks", "fuzz"}) {
    if (!fs::exists(root / top)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root / top)) {
      const std::string path = fs::relative(entry.path(), root);
      const std::string extension = entry.path().extension();
      if ((extension != ".h" && extension != ".cpp") || spelled_out.contains(path)) continue;
      // A test of whole entries looks at many components, one after the other.
      const std::size_t a_list = path.starts_with("tests/") ? 13 : 10;
      EXPECT_LT(components_named_in(contents_of_file(entry.path()), names), a_list)
          << path << " lists the components; walk the table of database_entry/entries/components.h instead";
    }
  }
}

}  // namespace
