// Every byte at every place of the texts that the library's own expressions look for: letters, digits and
// white space are those of ASCII, and nothing ends a text before its end.
#include <database_entry/references/cross_reference_info.h>
#include <database_entry/references/deposition_info.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/all_bytes.h"

namespace {

using Texts = std::vector<std::string>;
using namespace ascii;
using namespace std::string_literals;

// The code of a kind with one place left open: "VORN" + byte + "7".
struct Place {
  DepositionInfo::DepositionType type;
  const char* before;
  const char* after;
  std::string bytes;
  const char* reason;
};

const Place places[] = {
    {DepositionInfo::vorn, "", "ORN 7", "V", "the first letter of a fixed word"},
    {DepositionInfo::vorn, "VORN", "7", white_space, "white space before the number"},
    {DepositionInfo::vorn, "VORN ", "", digits, "the number"},
    {DepositionInfo::fiz, "MR", " 7", "V", "the last letter of a fixed word"},
    {DepositionInfo::fiz, "MRV", "7", white_space, "white space before the number"},
    {DepositionInfo::fiz, "MRV ", "", digits, "the number"},
    {DepositionInfo::iucr_validation_code, "IU", "7", "C", "a fixed word"},
    {DepositionInfo::iucr_validation_code, "IUC", "", digits, "the number"},
    {DepositionInfo::iucr_coeditor_code, "IUC", " AB1", "Rr", "either case of one letter"},
    {DepositionInfo::iucr_coeditor_code, "IUCr", "AB1", white_space, "white space before the word"},
    {DepositionInfo::iucr_coeditor_code, "IUCr ", "", letters + digits + "_", "the word"},
    {DepositionInfo::jds, "", "/4", digits, "the first number"},
    {DepositionInfo::jds, "3", "4", "/", "the stroke"},
    {DepositionInfo::jds, "3/", "", digits, "the second number"},
    {DepositionInfo::russian, "", "7", "R", "the letter"},
    {DepositionInfo::russian, "R", "", digits, "the number"},
    {DepositionInfo::archive, "", "", digits, "a number"},
    {DepositionInfo::msd_bib, "", "", digits, "a number"},
    {DepositionInfo::nbs_id, "", "", digits, "a number"},
    {DepositionInfo::nbs_cd, "", "", digits, "a number"},
    {DepositionInfo::mrv_refcode, "", "BCDEF", capitals, "the first letter of six"},
    {DepositionInfo::mrv_refcode, "ABCDE", "", capitals, "the last letter of six"},
    {DepositionInfo::mrv_refcode, "ABCDEF", "", digits + white_space, "a digit, or white space at the end"},
    {DepositionInfo::mrv_refcode, "ABCDEF0", "", digits + white_space, "the second digit"},
    {DepositionInfo::mrv_refcode, "ABCDEF01", "", white_space, "nothing but white space after it"},
    {DepositionInfo::mrv_refcode, "", "ABCDEF", white_space, "nothing but white space before it"},
};

TEST(DepositionCodes, TakeOnlyAsciiAtEachPlace) {
  for (const Place& place : places) {
    const auto accepts = [&](char byte) {
      return DepositionInfo::validate_deposition_code(place.type,
                                                      place.before + std::string(1, byte) + place.after);
    };
    EXPECT_EQ(accepted(accepts), by_value(place.bytes)) << place.type << ": " << place.reason;
  }
}

TEST(DepositionCodes, OfAContributorTakeEveryByte) {
  const auto accepts = [&](char byte) {
    return DepositionInfo::validate_deposition_code(DepositionInfo::contributor, std::string(1, byte));
  };
  EXPECT_EQ(accepted(accepts), all_bytes());
}

// One code of each kind, and all kinds that take it for theirs.
TEST(DepositionCodes, AreOfTheKindsWhoseFormTheyHave) {
  const struct {
    const char* code;
    std::vector<int> kinds;
  } cases[] = {
      {"VORN 7", {0, 2, 7, 8, 9, 10}},
      {"MRV 7", {1, 2, 7, 8, 9, 10}},
      {"free", {2}},
      {"IUC7", {2, 3, 7, 8, 9, 10}},
      {"IUCr A", {2, 4}},
      {"1/2", {2, 5, 7, 8, 9, 10}},
      {"R7", {2, 6, 7, 8, 9, 10}},
      {"7A", {2, 7, 8, 9, 10}},
      {"ABCDEF", {2, 11}},
  };
  for (const auto& each : cases) {
    std::vector<int> kinds;
    for (int kind = 0; kind < 12; ++kind) {
      const auto type = static_cast<DepositionInfo::DepositionType>(kind);
      if (DepositionInfo::validate_deposition_code(type, each.code)) kinds.push_back(kind);
    }
    EXPECT_EQ(kinds, each.kinds) << each.code;
  }
}

Texts numbers_in(DepositionInfo::DepositionType type, const std::string& text) {
  DepositionInfo info;
  info.set_text(type, text);
  Texts numbers;
  info.deposition_numbers(type, numbers);
  return numbers;
}

TEST(DepositionNumbers, EndWhereAsciiEnds) {
  EXPECT_EQ(numbers_in(DepositionInfo::iucr_coeditor_code, "IUCr M\xfcller"), Texts{"M"});
  EXPECT_EQ(numbers_in(DepositionInfo::archive, "12\xc4"), Texts{"12"});
  EXPECT_EQ(numbers_in(DepositionInfo::msd_bib, "1\xb2"), Texts{"1"});
  EXPECT_EQ(numbers_in(DepositionInfo::vorn,
                       "VORN\xc2\xa0"
                       "7, VORN\xa0"
                       "8, VORN\x85"
                       "9"),
            Texts());
}

TEST(DepositionNumbers, AreFoundAfterANul) {
  EXPECT_EQ(numbers_in(DepositionInfo::vorn, "VORN 1\0VORN 2"s), (Texts{"1", "2"}));
  EXPECT_EQ(numbers_in(DepositionInfo::nbs_id, "\0007\0008\0"s), (Texts{"7", "8"}));
  EXPECT_EQ(numbers_in(DepositionInfo::mrv_refcode, "ABCDEF\0"s), Texts());
}

TEST(DepositionText, LosesBlanksAndTabsAtItsEndsAndNoOtherByte) {
  const auto is_cut = [](char byte) {
    DepositionInfo info;
    info.set_text(DepositionInfo::contributor, std::string(1, byte) + "x" + std::string(1, byte));
    return info.text(DepositionInfo::contributor) == "x";
  };
  EXPECT_EQ(accepted(is_cut), by_value(" \t"));
}

TEST(DepositionText, IsEmptyOnlyWhenItIsBlanksAndTabs) {
  const auto is_nothing = [](char byte) {
    DepositionInfo info;
    info.set_text(DepositionInfo::contributor, std::string(1, byte));
    return !info.has_text(DepositionInfo::contributor);
  };
  EXPECT_EQ(accepted(is_nothing), by_value(" \t"));
}

Texts identifiers_in(const std::string& text) {
  std::vector<DatabaseEntryIdentifier> identifiers;
  DatabaseCrossReference(DatabaseCrossReference::racemate, text).identifiers(identifiers);
  Texts texts;
  for (const DatabaseEntryIdentifier& identifier : identifiers) texts.push_back(identifier.text());
  return texts;
}

// Sets one place after the other of an identifier in brackets to every byte: `bytes` has those that each
// place takes.
void expect_at_each_place(const std::string& identifier, const Texts& bytes) {
  ASSERT_EQ(identifier.size(), bytes.size());
  for (std::size_t place = 0; place < bytes.size(); ++place) {
    std::string text = identifier;
    const auto accepts = [&](char byte) {
      text[place] = byte;
      return identifiers_in(text).size() == 1;
    };
    EXPECT_EQ(accepted(accepts), by_value(bytes[place])) << identifier << ", place " << place;
  }
}

TEST(Refcodes, TakeOnlyAsciiAtEachPlace) {
  expect_at_each_place("[ABCDEF]", {"[", letters, letters, letters, letters, letters, letters, "]"});
  // With a bracket in place of the first digit it is an identifier of six letters.
  expect_at_each_place(
      "[ABCDEF01]", {"[", letters, letters, letters, letters, letters, letters, digits + "]", digits, "]"});
}

TEST(LettersAndSevenDigits, TakeOnlyAsciiAtEachPlace) {
  expect_at_each_place("[X1234567]",
                       {"[", letters, digits, digits, digits, digits, digits, digits, digits, "]"});
}

TEST(Refcodes, AreFoundAfterANul) {
  EXPECT_EQ(identifiers_in("[ABCDEF]\0[GHIJKL01] [X1234567]"s), (Texts{"ABCDEF", "GHIJKL01", "X1234567"}));
}

}  // namespace
