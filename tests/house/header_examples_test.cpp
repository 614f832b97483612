// The example of each public header of the library and its siblings is compiled, line by line, in
// header_examples.cpp.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

Lines lines_of(const fs::path& path) {
  Lines lines;
  std::ifstream file(path, std::ios::binary);
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

// The first block of the comment at the head that is set in by three blanks; a line of its own may be empty.
Lines example_in(const Lines& header) {
  Lines example;
  for (const std::string& line : header) {
    if (line.starts_with("//   ")) {
      example.push_back(line.substr(5));
    } else if (!example.empty() && line == "//") {
      example.emplace_back();
    } else if (!example.empty() || !line.starts_with("//")) {
      break;
    }
  }
  while (!example.empty() && example.back().empty()) example.pop_back();
  return example;
}

// The blocks between "// begin PATH" and "// end PATH", without their indent.
std::map<std::string, Lines> compiled_examples() {
  std::map<std::string, Lines> examples;
  std::string header;
  std::size_t indent = 0;
  for (const std::string& line : lines_of(fs::path(PROJECT_TREE) / "tests/house/header_examples.cpp")) {
    const std::size_t begin = line.find("// begin ");
    if (begin != std::string::npos) {
      header = line.substr(begin + 9);
      indent = begin;
      examples[header];
    } else if (line.find("// end ") != std::string::npos) {
      header.clear();
    } else if (!header.empty()) {
      examples[header].push_back(line.size() < indent ? "" : line.substr(indent));
    }
  }
  return examples;
}

TEST(HeaderExamples, AreThoseThatAreCompiled) {
  const auto examples = compiled_examples();
  EXPECT_GE(examples.size(), 31U);
  for (const auto& [header, lines] : examples) {
    EXPECT_EQ(example_in(lines_of(fs::path(PROJECT_TREE) / header)), lines) << header;
  }
}

// A line of data, a table's own way of being written, and texts of messages.
const std::set<std::string> not_code = {
    "database_entry/records/journal_table.h", "database_entry/foundations/enum_text_table.h",
    "database_entry/database_entry.h", "siblings/utilities/archive_error.h",
    "siblings/utilities/test_suite_helpers.h"};

class HeaderExamplesOf : public testing::TestWithParam<const char*> {};

TEST_P(HeaderExamplesOf, AreCompiledForEveryHeader) {
  const auto examples = compiled_examples();
  const fs::path root = PROJECT_TREE;
  for (const auto& entry : fs::recursive_directory_iterator(root / GetParam())) {
    const std::string path = fs::relative(entry.path(), root);
    if (entry.path().extension() != ".h" || not_code.contains(path)) continue;
    if (path.starts_with("siblings/utilities/archiving/")) continue;  // inner headers
    if (example_in(lines_of(entry.path())).empty()) continue;
    EXPECT_TRUE(examples.contains(path)) << path << ": its example is not in tests/house/header_examples.cpp";
  }
}
INSTANTIATE_TEST_SUITE_P(Folders, HeaderExamplesOf, testing::Values("database_entry", "siblings"));

}  // namespace
