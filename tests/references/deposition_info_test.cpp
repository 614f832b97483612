#include <database_entry/references/deposition_info.h>
#include <gtest/gtest.h>

#include <limits>

#include "support/bytes.h"

namespace {

using Type = DepositionInfo::DepositionType;
using Numbers = std::vector<std::string>;

constexpr const char* bad_type = "Invalid DepositionInfo::DepositionType";
constexpr int bad_types[] = {12, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};

DepositionInfo info_with(const std::vector<std::pair<int, std::string>>& texts) {
  DepositionInfo info;
  for (const auto& [type, text] : texts) info.set_text(static_cast<Type>(type), text);
  return info;
}

std::string archived(const DepositionInfo& info) {
  return written([&](Archive& archive) { info.write(archive); });
}

// A list in the order in which the archive has it, as set_text never leaves it.
DepositionInfo info_from(const std::string& stored) {
  DepositionInfo info;
  read_from(stored, [&](Archive& archive) { info.read(archive); });
  return info;
}

Numbers numbers_of(const DepositionInfo& info, Type type) {
  Numbers numbers;
  info.deposition_numbers(type, numbers);
  return numbers;
}

Numbers numbers_in(Type type, const std::string& text) {
  DepositionInfo info;
  info.set_text(type, text);
  return numbers_of(info, type);
}

const DepositionInfo unsorted = info_from(bytes(int32(4), int32(9), text("9"), int32(6), text("R1"), int32(0),
                                                text("VORN 7"), int32(6), text("R2")));

TEST(DepositionInfo, HasNoTextsAtFirst) {
  EXPECT_FALSE(DepositionInfo().has_text(DepositionInfo::vorn));
  EXPECT_EQ(DepositionInfo().text(DepositionInfo::vorn), "");
  EXPECT_EQ(printed(DepositionInfo()), "");
}

TEST(DepositionInfo, StoresATextWithoutBlanksAndTabsAtItsEnds) {
  const DepositionInfo info = info_with({{0, " VORN 123456\t"}});
  EXPECT_EQ(info.text(DepositionInfo::vorn), "VORN 123456");
  EXPECT_EQ(numbers_of(info, DepositionInfo::vorn), Numbers{"123456"});
}

TEST(DepositionInfo, KeepsOtherWhiteSpace) {
  EXPECT_EQ(info_with({{2, "\n x \r"}}).text(DepositionInfo::contributor), "\n x \r");
}

TEST(DepositionInfo, RemovesATextWhenNothingRemainsOfTheNewOne) {
  for (const char* nothing : {"", "  ", "\t"}) {
    DepositionInfo info = info_with({{0, "VORN 1"}, {6, "R1"}});
    info.set_text(DepositionInfo::vorn, nothing);
    info.set_text(DepositionInfo::vorn, nothing);
    EXPECT_EQ(printed(info), "0: 6: R1\t");
  }
}

TEST(DepositionInfo, KeepsTheOlderOfTwoTextsInFront) {
  DepositionInfo info = info_with({{6, "R1"}, {6, "R2"}});
  EXPECT_EQ(info.text(DepositionInfo::russian), "R1");
  EXPECT_EQ(printed(info), "0: 6: R1\t1: 6: R2\t");
  info.set_text(DepositionInfo::russian, "");
  EXPECT_EQ(printed(info), "0: 6: R2\t");
}

TEST(DepositionInfo, KeepsTheOrderOfAnyNumberOfTextsOfOneType) {
  DepositionInfo info;
  std::string expected;
  for (int count = 0; count < 40; ++count) {
    info.set_text(DepositionInfo::nbs_cd, std::to_string(count));
    info.set_text(DepositionInfo::fiz, "MRV " + std::to_string(count));
  }
  for (int count = 0; count < 80; ++count) {
    expected +=
        std::to_string(count) + (count < 40 ? ": 1: MRV " : ": 10: ") + std::to_string(count % 40) + "\t";
  }
  EXPECT_EQ(printed(info), expected);
}

TEST(DepositionInfo, IsListedByType) {
  EXPECT_EQ(printed(info_with({{9, "9"}, {3, "IUC3"}})), "0: 3: IUC3\t1: 9: 9\t");
}

TEST(DepositionInfo, PrintsIndexTypeAndTextWithATabAfterEach) {
  EXPECT_EQ(printed(info_with({{0, "VORN 123456"}, {6, "R77"}})), "0: 0: VORN 123456\t1: 6: R77\t");
}

TEST(DepositionInfo, CollectsTheNumbersOfEachKind) {
  const struct {
    Type type;
    const char* text;
    Numbers expected;
    const char* reason;
  } cases[] = {
      {DepositionInfo::vorn, "VORN 12 and VORN 345", {"12", "345"}, "a match may start anywhere"},
      {DepositionInfo::vorn, "VORN12", {}, "the blank is needed"},
      {DepositionInfo::fiz, "FIZ 1, MRV\t54321", {"54321"}, "MRV, then any white space"},
      {DepositionInfo::contributor, "VORN 12", {}, "a contributor's code has no numbers"},
      {DepositionInfo::contributor, "zzz", {}, "its placeholder is never searched"},
      {DepositionInfo::iucr_validation_code, "xIUC0012 IUC7", {"IUC0012", "IUC7"}, "the whole match"},
      {DepositionInfo::iucr_coeditor_code, "IUCr AB1234", {"AB1234"}, "the word after the blank"},
      {DepositionInfo::iucr_coeditor_code, "IUCR XY12", {"XY12"}, "either case of the r"},
      {DepositionInfo::jds, "12/34", {"12/34"}, "both numbers and the stroke"},
      {DepositionInfo::russian, "R77, R", {"R77"}, "a lone R is none"},
      {DepositionInfo::archive, "12345A 678", {"12345A", "678"}, "a letter is optional"},
      {DepositionInfo::archive, "1A2Z3z", {"1A", "2Z", "3"}, "from A to Z, in capitals"},
      {DepositionInfo::archive, "12AB", {"12A"}, "one letter at most"},
      {DepositionInfo::msd_bib, "a1b23", {"1", "23"}, "numbers within text"},
      {DepositionInfo::nbs_id, "4.5", {"4", "5"}, "digits only"},
      {DepositionInfo::nbs_cd, "none", {}, "no digit"},
      {DepositionInfo::mrv_refcode, "\nABCDEF01\r", {"\nABCDEF01\r"}, "the whole match, white space too"},
      {DepositionInfo::mrv_refcode, "ABCDEF GHIJKL", {}, "nothing but one refcode"},
  };
  for (const auto& each : cases) EXPECT_EQ(numbers_in(each.type, each.text), each.expected) << each.reason;
}

TEST(DepositionInfo, ReplacesWhatTheVectorHeld) {
  Numbers numbers{"old"};
  DepositionInfo().deposition_numbers(DepositionInfo::vorn, numbers);
  EXPECT_TRUE(numbers.empty());
}

TEST(DepositionInfo, TellsWhetherACodeHasTheFormOfItsKind) {
  const struct {
    Type type;
    const char* code;
    bool valid;
    const char* reason;
  } cases[] = {
      {DepositionInfo::contributor, "", true, "every code is a contributor's"},
      {DepositionInfo::contributor, "\xff", true, "every code is a contributor's"},
      {DepositionInfo::mrv_refcode, "ABCDEF01", true, "six letters and two digits"},
      {DepositionInfo::mrv_refcode, "AZAZAZ90", true, "the first and the last of letters and digits"},
      {DepositionInfo::mrv_refcode, "ABCDEF", true, "six letters"},
      {DepositionInfo::mrv_refcode, "ABCDEF0", true, "one digit is accepted here"},
      {DepositionInfo::mrv_refcode, "ABCDEF012", false, "three digits"},
      {DepositionInfo::mrv_refcode, "abcdef", false, "lower case"},
      {DepositionInfo::mrv_refcode, "x ABCDEF", false, "anchored at the start"},
      {DepositionInfo::mrv_refcode, "ABCDEF x", false, "anchored at the end"},
      {DepositionInfo::vorn, "see VORN 12", true, "anywhere in the code"},
      {DepositionInfo::vorn, "12", false, "a bare number"},
      {DepositionInfo::iucr_coeditor_code, "IUCr ", false, "no word"},
      {DepositionInfo::jds, "12/", false, "no second number"},
      {DepositionInfo::msd_bib, "", false, "no digit"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(DepositionInfo::validate_deposition_code(each.type, each.code), each.valid) << each.reason;
  }
}

TEST(DepositionInfo, RefusesTypesOutside0To11AndChangesNothing) {
  for (const int value : bad_types) {
    const auto type = static_cast<Type>(value);
    DepositionInfo info = info_with({{0, "VORN 1"}});
    Numbers numbers{"kept"};
    EXPECT_EQ(message_of<std::invalid_argument>([&] { info.set_text(type, "x"); }), bad_type);
    EXPECT_EQ(message_of<std::invalid_argument>([&] { info.set_text(type, ""); }), bad_type);
    EXPECT_EQ(message_of<std::invalid_argument>([&] { static_cast<void>(info.has_text(type)); }), bad_type);
    EXPECT_EQ(message_of<std::invalid_argument>([&] { static_cast<void>(info.text(type)); }), bad_type);
    EXPECT_EQ(message_of<std::invalid_argument>([&] { info.deposition_numbers(type, numbers); }), bad_type);
    EXPECT_EQ(numbers, Numbers{"kept"});
    EXPECT_EQ(printed(info), "0: 0: VORN 1\t");
  }
}

TEST(DepositionInfo, RefusesCodesOfTypesOutside0To11) {
  for (const int value : bad_types) {
    const auto type = static_cast<Type>(value);
    EXPECT_EQ(message_of<std::invalid_argument>([&] { DepositionInfo::validate_deposition_type(type); }),
              bad_type);
    EXPECT_EQ(message_of<std::invalid_argument>(
                  [&] { static_cast<void>(DepositionInfo::validate_deposition_code(type, "1")); }),
              bad_type);
  }
}

TEST(DepositionInfo, IsEqualByTypesAndTextsInOrder) {
  EXPECT_TRUE(info_with({{0, "a"}, {6, "b"}}) == info_with({{6, "b"}, {0, "a"}}));
  EXPECT_FALSE(info_with({{0, "a"}}) == info_with({{0, "b"}}));
  EXPECT_FALSE(info_with({{0, "a"}}) == info_with({{1, "a"}}));
  EXPECT_FALSE(info_with({{0, "a"}}) == info_with({{0, "a"}, {0, "a"}}));
  EXPECT_FALSE(info_from(bytes(int32(2), int32(6), text("b"), int32(0), text("a"))) ==
               info_with({{0, "a"}, {6, "b"}}));
}

TEST(DepositionInfo, IsNotEqualBecauseItPrintsAlike) {
  EXPECT_EQ(printed(info_with({{0, "a"}, {0, "b"}})), printed(info_with({{0, "a\t1: 0: b"}})));
  EXPECT_FALSE(info_with({{0, "a"}, {0, "b"}}) == info_with({{0, "a\t1: 0: b"}}));
}

TEST(DepositionInfo, ComparesTextsBeyondANul) {
  EXPECT_FALSE(info_with({{0, {"a\0b", 3}}}) == info_with({{0, {"a\0c", 3}}}));
}

TEST(DepositionInfo, IsArchivedAsItsCountAndItsPairs) {
  const DepositionInfo info = info_with({{6, "R77"}, {0, "VORN 1"}});
  const std::string stored = bytes(int32(2), int32(0), text("VORN 1"), int32(6), text("R77"));
  EXPECT_EQ(archived(info), stored);
  EXPECT_EQ(info_from(stored), info);
}

TEST(DepositionInfo, IsReadAsItStandsWithItsOrderAndItsRepeats) {
  EXPECT_EQ(printed(unsorted), "0: 9: 9\t1: 6: R1\t2: 0: VORN 7\t3: 6: R2\t");
}

TEST(DepositionInfo, SeesTheFirstTextOfATypeAlsoInAnUnsortedList) {
  EXPECT_TRUE(unsorted.has_text(DepositionInfo::vorn));
  EXPECT_EQ(unsorted.text(DepositionInfo::vorn), "VORN 7");
  EXPECT_EQ(numbers_of(unsorted, DepositionInfo::vorn), Numbers{"7"});
  EXPECT_EQ(unsorted.text(DepositionInfo::russian), "R1");
  EXPECT_EQ(unsorted.text(DepositionInfo::nbs_id), "9");
  EXPECT_FALSE(unsorted.has_text(DepositionInfo::fiz));
}

TEST(DepositionInfo, RemovesTheFirstTextOfATypeAlsoFromAnUnsortedList) {
  DepositionInfo info = unsorted;
  info.set_text(DepositionInfo::russian, "");
  info.set_text(DepositionInfo::nbs_id, "");
  EXPECT_EQ(printed(info), "0: 0: VORN 7\t1: 6: R2\t");
}

TEST(DepositionInfo, IsSortedByTheNextTextThatIsSet) {
  DepositionInfo info = unsorted;
  info.set_text(DepositionInfo::russian, "R3");
  EXPECT_EQ(printed(info), "0: 0: VORN 7\t1: 6: R1\t2: 6: R2\t3: 6: R3\t4: 9: 9\t");
}

TEST(DepositionInfo, KeepsTheBlanksOfAnArchivedText) {
  const std::string stored = bytes(int32(1), int32(0), text(" VORN 2\t"));
  EXPECT_EQ(info_from(stored).text(DepositionInfo::vorn), " VORN 2\t");
  EXPECT_EQ(archived(info_from(stored)), stored);
}

TEST(DepositionInfo, SeesAnArchivedEmptyTextAsTheFirstOfItsType) {
  const DepositionInfo info = info_from(bytes(int32(2), int32(0), text(""), int32(0), text("VORN 2")));
  EXPECT_TRUE(info.has_text(DepositionInfo::vorn));
  EXPECT_EQ(info.text(DepositionInfo::vorn), "");
  EXPECT_TRUE(numbers_of(info, DepositionInfo::vorn).empty());
}

TEST(DepositionInfo, TruncatesToAShorterCountWhenRead) {
  DepositionInfo info = info_with({{0, "a"}, {6, "b"}});
  read_from(bytes(int32(1), int32(3), text("c")), [&](Archive& archive) { info.read(archive); });
  EXPECT_EQ(printed(info), "0: 3: c\t");
  read_from(int32(0), [&](Archive& archive) { info.read(archive); });
  EXPECT_EQ(printed(info), "");
}

TEST(DepositionInfo, StoresABadTypeKeepsItsTextAndIsAfterIt) {
  DepositionInfo info = info_with({{0, "old 0"}, {1, "old 1"}});
  const File file =
      file_with(bytes(int32(3), int32(6), text("new"), int32(12), text("unread"), int32(1), text("x")));
  Archive archive(file.get());
  EXPECT_EQ(message_of<std::invalid_argument>([&] { info.read(archive); }), bad_type);
  EXPECT_EQ(std::ftell(file.get()), 4 + 4 + 4 + 3 + 4);
  EXPECT_EQ(printed(info), "0: 6: new\t1: 12: old 1\t2: 0: \t");
}

TEST(DepositionInfo, RefusesANegativeCountAndKeepsItsList) {
  for (const int count : {-1, std::numeric_limits<int>::min()}) {
    DepositionInfo info = info_with({{0, "old"}});
    EXPECT_EQ(message_of<ArchiveError>(
                  [&] { read_from(int32(count), [&](Archive& archive) { info.read(archive); }); }),
              "Archive: negative count " + std::to_string(count) + " at offset 0");
    EXPECT_EQ(printed(info), "0: 0: old\t");
  }
}

TEST(DepositionInfo, ReportsTheEndOfAStreamThatPromisedMore) {
  DepositionInfo info;
  const std::string stored = bytes(int32(std::numeric_limits<int>::max()), int32(6), text(""));
  EXPECT_EQ(
      message_of<ArchiveError>([&] { read_from(stored, [&](Archive& archive) { info.read(archive); }); }),
      "Archive: end of the stream while reading an int at offset 12");
}

TEST(DepositionInfo, ReadsAListLongerThanAnyIsBelievedToBe) {
  std::string stored = int32(5000);
  for (int index = 0; index < 5000; ++index) {
    stored += bytes(int32(index % 12), text(std::to_string(index)));
  }
  const DepositionInfo info = info_from(stored);
  EXPECT_EQ(archived(info), stored);
}

TEST(DepositionInfo, SearchesAMillionDigitsForEveryKindInNoTime) {
  const std::string digits(1'000'000, '7');
  for (int type = 0; type <= 11; ++type) {
    const Numbers numbers = numbers_in(static_cast<Type>(type), digits);
    const bool whole = type >= 7 && type <= 10;
    EXPECT_EQ(numbers, whole ? Numbers{digits} : Numbers{}) << type;
    EXPECT_EQ(DepositionInfo::validate_deposition_code(static_cast<Type>(type), digits), whole || type == 2);
  }
}

TEST(Deposition, IsArchivedAsTypeAndText) {
  const DepositionInfo::Deposition deposition(DepositionInfo::russian, "R77");
  const std::string expected = bytes(int32(6), text("R77"));
  EXPECT_EQ(written([&](Archive& archive) { write(archive, deposition); }), expected);
  EXPECT_EQ(written([&](Archive& archive) { archive << deposition << deposition; }), expected + expected);
  DepositionInfo::Deposition first, second;
  read_from(expected + expected, [&](Archive& archive) { read(archive >> first, second); });
  EXPECT_EQ(first, deposition);
  EXPECT_EQ(second, deposition);
}

TEST(Deposition, StoresABadTypeBeforeItRefusesIt) {
  DepositionInfo::Deposition deposition(DepositionInfo::russian, "old");
  EXPECT_EQ(message_of<std::invalid_argument>([&] {
              read_from(bytes(int32(-1), text("new")), [&](Archive& archive) { archive >> deposition; });
            }),
            bad_type);
  EXPECT_EQ(deposition, DepositionInfo::Deposition(static_cast<Type>(-1), "old"));
}

TEST(Deposition, PrintsItsTypeAsAnIntegerAndItsText) {
  std::ostringstream os;
  os << DepositionInfo::Deposition(DepositionInfo::archive, "12A");
  EXPECT_EQ(os.str(), "7: 12A");
}

TEST(DepositionInfo, NamesItsTypes) {
  const auto texts = DepositionInfo::deposition_type_text();
  const char* const expected[] = {"VORN",
                                  "FIZ",
                                  "CONTRIBUTOR",
                                  "IUCR Validation Code",
                                  "IUCR Coeditor Code",
                                  "JDS",
                                  "RUSSIAN",
                                  "ARCHIVE",
                                  "MSD BIB",
                                  "NBS ID",
                                  "NBS CD",
                                  "MRV Refcode"};
  ASSERT_EQ(texts->size(), 12U);
  for (int value = 0; value < 12; ++value) EXPECT_EQ(texts->text(static_cast<Type>(value)), expected[value]);
  EXPECT_NE(texts, DepositionInfo::deposition_type_text());
}

}  // namespace
