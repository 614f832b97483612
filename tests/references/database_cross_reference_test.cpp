#include <database_entry/references/database_cross_reference.h>
#include <gtest/gtest.h>

#include <limits>

#include "support/bytes.h"

namespace {

using Type = DatabaseCrossReference::CrossReferenceType;
using Texts = std::vector<std::string>;

constexpr const char* bad_type = "Invalid DatabaseCrossReference type";

DatabaseCrossReference racemate(const std::string& text) {
  return DatabaseCrossReference(DatabaseCrossReference::racemate, text);
}

Texts texts_of(const std::vector<DatabaseEntryIdentifier>& identifiers) {
  Texts texts;
  for (const DatabaseEntryIdentifier& identifier : identifiers) texts.push_back(identifier.text());
  return texts;
}

Texts identifiers_in(const std::string& text) {
  std::vector<DatabaseEntryIdentifier> identifiers;
  racemate(text).identifiers(identifiers);
  return texts_of(identifiers);
}

TEST(DatabaseCrossReference, IsOfTypeUnknownWithoutTextByDefault) {
  const DatabaseCrossReference reference;
  EXPECT_EQ(reference.type(), 0);
  EXPECT_EQ(reference.text(), "");
}

TEST(DatabaseCrossReference, TakesATypeAlone) {
  const DatabaseCrossReference reference(DatabaseCrossReference::isomer);
  EXPECT_EQ(reference.type(), 3);
  EXPECT_EQ(reference.text(), "");
}

TEST(DatabaseCrossReference, KeepsTheGivenText) {
  EXPECT_EQ(racemate(" two  blanks ").text(), " two  blanks ");
}

TEST(DatabaseCrossReference, AppendsOneIdentifierInBrackets) {
  const DatabaseCrossReference reference(DatabaseCrossReference::racemate, "Racemate of",
                                         DatabaseEntryIdentifier("X1234567"));
  EXPECT_EQ(reference.text(), "Racemate of [X1234567]");
  std::vector<DatabaseEntryIdentifier> identifiers;
  reference.identifiers(identifiers);
  EXPECT_EQ(texts_of(identifiers), Texts{"X1234567"});
}

TEST(DatabaseCrossReference, AppendsSeveralIdentifiersWithCommas) {
  const std::vector<DatabaseEntryIdentifier> related{DatabaseEntryIdentifier("ABCDEF"),
                                                     DatabaseEntryIdentifier("GHIJKL01")};
  EXPECT_EQ(DatabaseCrossReference(DatabaseCrossReference::racemate, "Racemate of", related).text(),
            "Racemate of [ABCDEF], [GHIJKL01]");
}

TEST(DatabaseCrossReference, AppendsTheBlankEvenWithoutIdentifiers) {
  const std::vector<DatabaseEntryIdentifier> none;
  EXPECT_EQ(DatabaseCrossReference(DatabaseCrossReference::racemate, "Racemate of", none).text(),
            "Racemate of ");
}

TEST(DatabaseCrossReference, RefusesEveryTypeOutside1To6InEveryConstructor) {
  for (const int value : {0, 7, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    const auto type = static_cast<Type>(value);
    const std::vector<DatabaseEntryIdentifier> none;
    EXPECT_EQ(message_of<std::invalid_argument>([&] { DatabaseCrossReference{type}; }), bad_type) << value;
    EXPECT_EQ(message_of<std::invalid_argument>([&] { DatabaseCrossReference(type, "x"); }), bad_type);
    EXPECT_EQ(message_of<std::invalid_argument>(
                  [&] { DatabaseCrossReference(type, "x", DatabaseEntryIdentifier("ABCDEF")); }),
              bad_type);
    EXPECT_EQ(message_of<std::invalid_argument>([&] { DatabaseCrossReference(type, "x", none); }), bad_type);
  }
}

TEST(DatabaseCrossReference, AcceptsTheTypes1To6) {
  for (int value = 1; value <= 6; ++value) {
    EXPECT_EQ(DatabaseCrossReference(static_cast<Type>(value), "x").type(), value);
  }
}

TEST(DatabaseCrossReference, FindsTheIdentifiersThatStandInItsText) {
  const struct {
    const char* text;
    Texts expected;
    const char* reason;
  } cases[] = {
      {"[abcdef] [Z1234567] [ABCDEF12]", {"abcdef", "ABCDEF12", "Z1234567"}, "refcodes first; any case"},
      {"[AZazAZ09] [a0987654] [z0000000]",
       {"AZazAZ09", "a0987654", "z0000000"},
       "the first and the last of letters and digits"},
      {"[ABCDEF], [ABCDEF]", {"ABCDEF", "ABCDEF"}, "repeated ones are kept"},
      {"[ABCDEF][GHIJKL01]", {"ABCDEF", "GHIJKL01"}, "nothing need stand between"},
      {"[[ABCDEF]]", {"ABCDEF"}, "an extra bracket is text"},
      {"[ABCDEF123]", {}, "after two digits the bracket must close"},
      {"[ABCDEFG]", {}, "seven letters"},
      {"[ABCDE1]", {}, "five letters and a digit"},
      {"[ABCDEF1]", {}, "one digit is neither none nor two"},
      {"[X123456]", {}, "six digits"},
      {"[X12345678]", {}, "eight digits"},
      {"[XY1234567]", {}, "two letters"},
      {"[ABCDEF ]", {}, "a blank inside the brackets"},
      {"[\xc4"
       "BCDEF]",
       {},
       "letters are ASCII"},
      {"ABCDEF X1234567", {}, "no brackets"},
      {"", {}, "no text"},
  };
  for (const auto& each : cases) EXPECT_EQ(identifiers_in(each.text), each.expected) << each.reason;
}

TEST(DatabaseCrossReference, AppendsIdentifiersAfterWhatIsThere) {
  std::vector<DatabaseEntryIdentifier> identifiers{DatabaseEntryIdentifier("old")};
  racemate("[ABCDEF]").identifiers(identifiers);
  EXPECT_EQ(texts_of(identifiers), (Texts{"old", "ABCDEF"}));
}

TEST(DatabaseCrossReference, FindsNothingInAMillionDigitsInNoTime) {
  EXPECT_TRUE(identifiers_in("[X" + std::string(1'000'000, '7')).empty());
}

TEST(DatabaseCrossReference, IsEqualByTypeAndText) {
  EXPECT_TRUE(racemate("x") == racemate("x"));
  EXPECT_FALSE(racemate("x") == racemate("x "));
  EXPECT_FALSE(racemate("x") == DatabaseCrossReference(DatabaseCrossReference::isomer, "x"));
  EXPECT_FALSE(racemate(std::string("x\0y", 3)) == racemate(std::string("x\0z", 3)));
}

TEST(DatabaseCrossReference, PrintsItsTypeAsANumberAndNoBlankAfterIt) {
  EXPECT_EQ(printed(racemate("Racemate of [ABCDEF]")), "type: 1text: Racemate of [ABCDEF]");
}

TEST(DatabaseCrossReference, IsArchivedAsTypeAndText) {
  const std::string stored = written([](Archive& archive) { racemate("x [ABCDEF]").write(archive); });
  EXPECT_EQ(stored, bytes(int32(1), text("x [ABCDEF]")));
  DatabaseCrossReference back;
  read_from(stored, [&](Archive& archive) { back.read(archive); });
  EXPECT_EQ(back, racemate("x [ABCDEF]"));
}

TEST(DatabaseCrossReference, KeepsABadTypeAndTheNewTextAfterAFailedRead) {
  for (const int value : {0, 7, -1, std::numeric_limits<int>::min()}) {
    DatabaseCrossReference reference = racemate("old");
    const auto read = [&] {
      read_from(bytes(int32(value), text("new")), [&](Archive& archive) { reference.read(archive); });
    };
    EXPECT_EQ(message_of<std::invalid_argument>(read), bad_type);
    EXPECT_EQ(reference.type(), value);
    EXPECT_EQ(reference.text(), "new");
  }
}

TEST(DatabaseCrossReference, ChecksTheTypeAfterTheText) {
  DatabaseCrossReference reference;
  EXPECT_THROW(read_from(int32(9), [&](Archive& archive) { reference.read(archive); }), ArchiveError);
  EXPECT_EQ(reference.type(), 9);
}

TEST(DatabaseCrossReference, NamesItsTypes) {
  const auto texts = DatabaseCrossReference::cross_reference_type_text();
  const char* const expected[] = {
      "unknown",        "RACEMATE", "STEREOMER", "ISOMER", "REINTERPRETATION_OF", "REINTERPRETATION_SEE",
      "COORDINATES_SEE"};
  ASSERT_EQ(texts->size(), 7U);
  for (int value = 0; value < 7; ++value) EXPECT_EQ(texts->text(static_cast<Type>(value)), expected[value]);
}

TEST(DatabaseCrossReference, MakesItsTextsAnewAtEachCall) {
  EXPECT_NE(DatabaseCrossReference::cross_reference_type_text(),
            DatabaseCrossReference::cross_reference_type_text());
}

TEST(DatabaseCrossReference, IsInScopeForTheFormsOfOneCompound) {
  for (const int value : {1, 2, 3}) EXPECT_TRUE(DatabaseCrossReference::scope(static_cast<Type>(value)));
  for (const int value : {0, 4, 5, 6, 7, -1}) {
    EXPECT_FALSE(DatabaseCrossReference::scope(static_cast<Type>(value))) << value;
  }
}

}  // namespace
