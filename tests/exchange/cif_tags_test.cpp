#include <exchange/cif_tags.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::HasSubstr;

// A line for each field, with its tags, as the page has it.
std::string table_of_tags() {
  std::vector<std::pair<std::string, std::string>> fields;
  for (const CifTagRow& row : cif_tags()) {
    auto field = std::find_if(fields.begin(), fields.end(),
                              [&](const auto& known) { return known.first == row.field; });
    if (field == fields.end()) field = fields.insert(field, {std::string(row.field), ""});
    field->second += "`" + std::string(row.tag) + "` ";
  }
  std::string table = "\n| field | tags |\n| --- | --- |\n";
  for (const auto& [field, tags] : fields) table += "| `" + field + "` | " + tags + "|\n";
  return table + "\n";
}

TEST(PageOfTheProgram, HasTheTableOfTags) {
  std::ifstream file(PAGE_OF_THE_PROGRAM);
  ASSERT_TRUE(file) << PAGE_OF_THE_PROGRAM;
  const std::string page((std::istreambuf_iterator<char>(file)), {});
  EXPECT_THAT(page, HasSubstr("\n## Which CIF tag goes where\n"));
  EXPECT_THAT(page, HasSubstr(table_of_tags()));
}

}  // namespace
