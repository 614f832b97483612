#include <exchange/entry_json.h>
#include <exchange/json_reader.h>
#include <gmock/gmock.h>

#include "exchange/full_entry.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::StartsWith;

// The identifier of each entry; place and reason of each error.
std::vector<std::string> outcomes(const std::string& text, const ReaderOptions& options = ReaderOptions()) {
  std::vector<std::string> texts;
  JsonReader reader(text, options);
  while (const auto result = reader.next()) {
    const bool is_entry = result->status == ImportResult::imported;
    texts.push_back(std::to_string(result->line) + ":" + std::to_string(result->column) + ": " +
                    (is_entry ? result->identifier : result->reason));
  }
  return texts;
}

TEST(JsonReader, ReadsOneObject) {
  EXPECT_THAT(outcomes(" {\"identifier\": \"a\"}\n"), ElementsAre("1:0: a"));
}

TEST(JsonReader, ReadsAList) {
  EXPECT_THAT(outcomes("[\n{\"identifier\": \"a\"},\n{\"identifier\":\n \"b\"}, {\"identifier\": \"]}\"}]\n"),
              ElementsAre("2:0: a", "3:0: b", "4:0: ]}"));
}

TEST(JsonReader, ReadsOneObjectAfterAnother) {
  EXPECT_THAT(outcomes("{\"identifier\": \"a\"}\n{\"identifier\": \"\\\"b\"}\n"),
              ElementsAre("1:0: a", "2:0: \"b"));
}

TEST(JsonReader, ReadsBackWhatIsWritten) {
  const std::string text = entry_json(full_entry()).dump(2);
  JsonReader reader(text);
  const auto result = reader.next();
  ASSERT_EQ(result->status, ImportResult::imported) << result->reason;
  EXPECT_EQ(archived(*result->entry), archived(full_entry()));
  EXPECT_EQ(reader.next(), std::nullopt);
}

TEST(JsonReader, GivesTheStemOfTheFileWhereThereIsNoIdentifier) {
  ReaderOptions options;
  options.file_stem = "stem";
  EXPECT_THAT(outcomes("{}", options), ElementsAre("1:0: stem"));
  options.identifier_from = ReaderOptions::file;
  EXPECT_THAT(outcomes("{\"identifier\": \"a\"}", options), ElementsAre("1:0: stem"));
}

TEST(JsonReader, KeepsAnEmptyIdentifierThatIsThere) {
  ReaderOptions options;
  options.file_stem = "stem";
  EXPECT_THAT(outcomes("{\"identifier\": \"\"}", options), ElementsAre("1:0: "));
}

TEST(JsonReader, WarnsOfANameThatMeansNothing) {
  JsonReader reader("\n{\"colour\": 1}");
  const auto result = reader.next();
  EXPECT_THAT(result->warnings, ElementsAre(Field(&ImportWarning::text, "unknown name colour")));
  EXPECT_EQ(result->warnings.front().line, 2);
}

TEST(JsonReader, GoesOnAfterAnObjectThatIsNoEntry) {
  EXPECT_THAT(outcomes("{\"cell\": 1}\n7\n{\"identifier\": \"a\"}"),
              ElementsAre("1:0: cell: an object is expected", "2:0: an object is expected", "3:0: a"));
}

TEST(JsonReader, EndsAtWhatIsNotJson) {
  EXPECT_THAT(outcomes("{\"identifier\": \"a\"}\n{\"identifier\": \n  b}\n{}"),
              ElementsAre("1:0: a", StartsWith("3:3: no JSON: syntax error")));
  EXPECT_THAT(outcomes("[{\"identifier\": \"a\"}, {\"ident"),
              ElementsAre("1:0: a", StartsWith("1:30: no JSON: ")));
  EXPECT_THAT(outcomes("}"), ElementsAre(StartsWith("1:1: no JSON: ")));
}

TEST(JsonReader, NamesATextThatHoldsNothing) {
  EXPECT_THAT(outcomes(""), ElementsAre("1:1: the file is empty"));
  EXPECT_THAT(outcomes(" \n"), ElementsAre("2:1: the file is empty"));
  EXPECT_THAT(outcomes("["), ElementsAre("1:2: the list does not end"));
  EXPECT_THAT(outcomes("[]"), ElementsAre());
}

TEST(JsonReader, MakesANumberThatIsTooLargeAnErrorAndReadsOn) {
  EXPECT_THAT(outcomes("{\"identifier\":\"a\",\"cell\":{\"a\":1e999}}\n{\"identifier\":\"b\"}\n"),
              ElementsAre("1:0: a number is too large", "2:0: b"));
}

}  // namespace
