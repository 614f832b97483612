// docs/queries.md: every example is read, every name is there.
#include <gtest/gtest.h>
#include <stores/entry_query.h>
#include <support/file_contents.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

// The lines of the code block of a language.
std::vector<std::string> examples(const std::string& language) {
  std::vector<std::string> lines;
  std::istringstream text(contents_of_file(QUERY_PAGE));
  bool within = false;
  for (std::string line; std::getline(text, line);) {
    if (line.starts_with("```")) {
      within = line == "```" + language;
    } else if (within) {
      lines.push_back(line);
    }
  }
  return lines;
}

}  // namespace

TEST(QueryPage, HasExamplesOfTheShortFormThatAreRead) {
  EXPECT_GT(examples("short-form").size(), 10U);
  for (const std::string& example : examples("short-form")) {
    EXPECT_NO_THROW(static_cast<void>(EntryQuery::from_text(example))) << example;
  }
}

TEST(QueryPage, HasExamplesOfFiltersThatAreRead) {
  EXPECT_GT(examples("filter").size(), 10U);
  for (const std::string& example : examples("filter")) {
    EXPECT_NO_THROW(static_cast<void>(EntryQuery::from_filter(example))) << example;
  }
}

TEST(QueryPage, HasEveryName) {
  const std::string text = contents_of_file(QUERY_PAGE);
  for_each_entry_column([&](const auto& column) {
    EXPECT_NE(text.find("`" + std::string(column.filter_name) + "`"), std::string::npos)
        << column.filter_name;
    if (*column.short_name == '\0') return;
    EXPECT_NE(text.find("`" + std::string(column.short_name) + "`"), std::string::npos) << column.short_name;
  });
}
