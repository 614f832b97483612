#include "tools/output/table_output.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tools/messages/tool_error.h"

namespace {

std::string output(OutputFormat format) {
  std::ostringstream os;
  TableOutput table(os, format, {"name", "count", "parts"});
  table.add({"Müller, \"A\"", 5, std::vector<std::string>{"x", "y"}});
  table.add({"two\tlines\n", nullptr, std::vector<std::string>{}});
  table.finish();
  return os.str();
}

TEST(TableOutput, SeparatesTextByTabsAndKeepsRowsOnTheirLines) {
  EXPECT_EQ(output(OutputFormat::text), "Müller, \"A\"\t5\tx, y\ntwo lines \t\t\n");
}

TEST(TableOutput, AlignsATableByCharactersAndNumbersToTheRight) {
  EXPECT_EQ(output(OutputFormat::table),
            "name         count  parts\n"
            "Müller, \"A\"      5  x, y\n"
            "two lines\n");
}

TEST(TableOutput, QuotesCsvWhereNeeded) {
  EXPECT_EQ(output(OutputFormat::csv),
            "name,count,parts\n"
            "\"Müller, \"\"A\"\"\",5,\"x, y\"\n"
            "\"two\tlines\n\",,\n");
}

TEST(TableOutput, WritesOneJsonObjectALine) {
  EXPECT_EQ(output(OutputFormat::jsonl),
            "{\"name\":\"Müller, \\\"A\\\"\",\"count\":5,\"parts\":[\"x\",\"y\"]}\n"
            "{\"name\":\"two\\tlines\\n\",\"count\":null,\"parts\":[]}\n");
}

TEST(TableOutput, WritesOneJsonArray) {
  const auto parsed = nlohmann::json::parse(output(OutputFormat::json));
  ASSERT_EQ(parsed.size(), 2U);
  EXPECT_EQ(parsed[0]["count"], 5);
}

TEST(TableOutput, WritesAnEmptyJsonArrayWithoutRows) {
  std::ostringstream os;
  TableOutput(os, OutputFormat::json, {"name"}).finish();
  EXPECT_EQ(os.str(), "[]\n");
}

TEST(TableOutput, ReplacesBytesThatAreNotUtf8InJson) {
  EXPECT_EQ(json_line("a\xFFz"), "\"a\xEF\xBF\xBDz\"");
}

TEST(OutputFormatOfAName, IsATableOnATerminalOnly) {
  std::ostringstream os;
  Terminal terminal{os, os, false, false};
  EXPECT_EQ(output_format("", terminal), OutputFormat::text);
  terminal.out_is_terminal = true;
  EXPECT_EQ(output_format("", terminal), OutputFormat::table);
}

TEST(OutputFormatOfAName, AnswersAMistypedNameWithTheNearest) {
  std::ostringstream os;
  const Terminal terminal{os, os, false, false};
  try {
    static_cast<void>(output_format("jsno", terminal));
    FAIL() << "no error";
  } catch (const ToolError& error) {
    EXPECT_EQ(error.code(), ExitCode::usage);
    EXPECT_STREQ(error.what(), "unknown format 'jsno'; did you mean 'json'?");
  }
}

}  // namespace
