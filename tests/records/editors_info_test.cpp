#include <database_entry/records/editors_info.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "support/sample_records.h"

namespace {

constexpr const char* bad_category = "Invalid EntryCategory conversion";
constexpr const char* bad_flag = "Invalid AserMatchFlag conversion";

// A stored record with the date 2001-02-03 twice, texts "t", and the enumerations as given.
std::string stored_with(int category, int flag, int correspondence, int errors) {
  const std::string date = bytes(int32(2001), int32(2), int32(3));
  return bytes(date, date, int32(category), float64(1), text("t"), int32(flag), text("t"), int32(-9),
               text("t"), text("t"), int32(correspondence), int32(errors));
}

TEST(EditorsInfo, TakesTheConstructorsArgumentsInFieldOrder) {
  const EditorsInfo info = Sample<EditorsInfo>::filled();
  EXPECT_EQ(info.accession_date, Date(2003, 5, 17));
  EXPECT_EQ(info.modification_date, Date(2011, 12, 31));
  EXPECT_EQ(info.category, EditorsInfo::full_structure);
  EXPECT_EQ(info.bonding_tolerance, 0.4);
  EXPECT_EQ(info.previous_refcode, "OLDREF");
  EXPECT_EQ(info.aser_match_flag, EditorsInfo::perfect_match);
  EXPECT_EQ(info.connectivity_comment, "as published");
  EXPECT_EQ(info.batch, 77);
  EXPECT_EQ(info.memo, "memo");
  EXPECT_EQ(info.remarks, "remarks");
  EXPECT_EQ(info.author_correspondence, EditorsInfo::received_correction);
  EXPECT_EQ(info.ignored_errors, EditorsInfo::valency_errors_ignored);
}

TEST(EditorsInfo, IsMadeWithAnyEnumerationValue) {
  const EditorsInfo info(Date(), Date(), static_cast<EditorsInfo::EntryCategory>(6), 0.0, "",
                         static_cast<EditorsInfo::AserMatchFlag>(-2), "", 0, "", "",
                         static_cast<EditorsInfo::AuthorCorrespondence>(INT_MIN),
                         static_cast<EditorsInfo::IgnoredErrors>(INT_MAX));
  EXPECT_EQ(info.category, 6);
  EXPECT_EQ(info.aser_match_flag, -2);
  EXPECT_EQ(info.author_correspondence, INT_MIN);
  EXPECT_EQ(info.ignored_errors, INT_MAX);
}

TEST(EditorsInfo, ByDefaultHasNoDatesZerosAndAnInapplicableMatch) {
  EXPECT_EQ(bytes_of(EditorsInfo()),
            bytes(std::string(6 * 4, '\0'), int32(0), float64(0), text(""), int32(-1), text(""), int32(0),
                  text(""), text(""), int32(0), int32(0)));
}

TEST(EditorsInfo, ByDefaultPrintsTheInapplicableMatchAsMinusOne) {
  EXPECT_EQ(printed(EditorsInfo()),
            "accession date: 0000-00-00, modification date: 0000-00-00, category: 0, bonding_tolerance: 0, "
            "previous refcode: , aser_match_flag: -1, connectivity_comment: , batch: 0, memo: , remarks: , "
            "author correspondence: 0, ignored errors: 0");
}

TEST(EditorsInfo, PrintsEnumerationsAsIntegersAndNoLineEnd) {
  EXPECT_EQ(printed(Sample<EditorsInfo>::filled()),
            "accession date: 2003-05-17, modification date: 2011-12-31, category: 3, "
            "bonding_tolerance: 0.4, previous refcode: OLDREF, aser_match_flag: 3, "
            "connectivity_comment: as published, batch: 77, memo: memo, remarks: remarks, "
            "author correspondence: 2, ignored errors: 1");
}

TEST(EditorsInfo, ConvertsZeroToFiveToCategories) {
  for (int value = 0; value <= 5; ++value) EXPECT_EQ(EditorsInfo::int_to_entry_category(value), value);
}

TEST(EditorsInfo, RefusesEveryOtherCategory) {
  for (const int value : {-1, 6, INT_MIN, INT_MAX}) {
    EXPECT_EQ(message_of<std::invalid_argument>(
                  [&] { static_cast<void>(EditorsInfo::int_to_entry_category(value)); }),
              bad_category);
  }
}

TEST(EditorsInfo, ConvertsMinusOneToFourToMatchFlags) {
  EXPECT_EQ(EditorsInfo::int_to_aser_match_flag(-1), EditorsInfo::inapplicable);
  for (int value = -1; value <= 4; ++value) EXPECT_EQ(EditorsInfo::int_to_aser_match_flag(value), value);
}

TEST(EditorsInfo, RefusesEveryOtherMatchFlag) {
  for (const int value : {-2, 5, INT_MIN, INT_MAX}) {
    EXPECT_EQ(message_of<std::invalid_argument>(
                  [&] { static_cast<void>(EditorsInfo::int_to_aser_match_flag(value)); }),
              bad_flag);
  }
}

template <class E>
std::vector<std::pair<int, std::string>> by_value(const THandle<EnumTextMapping<E>>& mapping) {
  std::vector<std::pair<int, std::string>> rows(mapping->begin(), mapping->end());
  std::sort(rows.begin(), rows.end());
  return rows;
}
using Rows = std::vector<std::pair<int, std::string>>;

TEST(EditorsInfo, GivesTheTextsOfTheCategories) {
  EXPECT_EQ(by_value(EditorsInfo::category_text()), (Rows{{0, "unknown"},
                                                          {1, "unit cell only"},
                                                          {2, "qualitative"},
                                                          {3, "full structure"},
                                                          {4, "pdb structure"},
                                                          {5, "database use"}}));
}

TEST(EditorsInfo, GivesTheTextsOfTheMatchFlags) {
  EXPECT_EQ(by_value(EditorsInfo::aser_match_flag_text()), (Rows{{-1, "inapplicable"},
                                                                 {0, "not attempted"},
                                                                 {1, "not matched"},
                                                                 {2, "partial match"},
                                                                 {3, "perfect match"},
                                                                 {4, "impossible match"}}));
}

TEST(EditorsInfo, GivesTheTextsOfTheAuthorCorrespondence) {
  EXPECT_EQ(by_value(EditorsInfo::author_correspondence_text()),
            (Rows{{0, "no correspondence"}, {1, "referred problem"}, {2, "received correction"}}));
}

TEST(EditorsInfo, GivesTheTextsOfTheIgnoredErrors) {
  EXPECT_EQ(by_value(EditorsInfo::ignored_errors_text()),
            (Rows{{0, "no errors ignored"}, {1, "valency errors ignored"}, {2, "all errors ignored"}}));
}

TEST(EditorsInfo, MakesItsTextsAnewForEachCall) {
  const auto first = EditorsInfo::ignored_errors_text();
  const auto second = EditorsInfo::ignored_errors_text();
  EXPECT_NE(first.get(), second.get());
}

TEST(EditorsInfo, KeepsAllItsOldEnumerationsAtABadCategory) {
  EditorsInfo info = Sample<EditorsInfo>::filled();
  EXPECT_EQ(failed_read<std::invalid_argument>(info, stored_with(6, 5, 0, 0)), bad_category);
  EXPECT_EQ(info.category, EditorsInfo::full_structure);
  EXPECT_EQ(info.aser_match_flag, EditorsInfo::perfect_match);
  EXPECT_EQ(info.author_correspondence, EditorsInfo::received_correction);
  EXPECT_EQ(info.accession_date, Date(2001, 2, 3));
  EXPECT_EQ(info.remarks, "t");
  EXPECT_EQ(info.batch, -9);
}

TEST(EditorsInfo, KeepsTheNewCategoryAtABadMatchFlag) {
  EditorsInfo info = Sample<EditorsInfo>::filled();
  EXPECT_EQ(failed_read<std::invalid_argument>(info, stored_with(1, -2, 0, 0)), bad_flag);
  EXPECT_EQ(info.category, EditorsInfo::unit_cell_only);
  EXPECT_EQ(info.aser_match_flag, EditorsInfo::perfect_match);
  EXPECT_EQ(info.author_correspondence, EditorsInfo::received_correction);
  EXPECT_EQ(info.ignored_errors, EditorsInfo::valency_errors_ignored);
}

TEST(EditorsInfo, ReadsAnyCorrespondenceAndIgnoredErrors) {
  EditorsInfo info;
  const std::string stored = stored_with(5, 4, 9, INT_MIN);
  read_from(stored, [&](Archive& archive) { info.read(archive); });
  EXPECT_EQ(info.author_correspondence, 9);
  EXPECT_EQ(info.ignored_errors, INT_MIN);
  EXPECT_EQ(bytes_of(info), stored);
}

TEST(EditorsInfo, KeepsItsEnumerationsWhenTheStreamEndsBeforeTheLast) {
  EditorsInfo info = Sample<EditorsInfo>::filled();
  const std::string stored = stored_with(1, 1, 1, 1);
  failed_read<ArchiveError>(info, stored.substr(0, stored.size() - 1));
  EXPECT_EQ(info.category, EditorsInfo::full_structure);
  EXPECT_EQ(info.author_correspondence, EditorsInfo::received_correction);
  EXPECT_EQ(info.memo, "t");
}

TEST(EditorsInfo, ReadsBackEqual) {
  EditorsInfo back;
  read_from(bytes_of(Sample<EditorsInfo>::filled()), [&](Archive& archive) { back.read(archive); });
  EXPECT_TRUE(back == Sample<EditorsInfo>::filled());
}

TEST(EditorsInfo, WithANaNIsUnequalToItsOwnCopy) {
  EditorsInfo info;
  info.bonding_tolerance = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(info == EditorsInfo(info));
}

TEST(EditorsInfo, DiffersInEachField) {
  using Change = void (*)(EditorsInfo&);
  const std::vector<std::pair<const char*, Change>> changes = {
      {"accession_date", [](EditorsInfo& info) { info.accession_date = Date(); }},
      {"modification_date", [](EditorsInfo& info) { info.modification_date = Date(); }},
      {"category", [](EditorsInfo& info) { info.category = EditorsInfo::unknown; }},
      {"bonding_tolerance by a trifle", [](EditorsInfo& info) { info.bonding_tolerance += 1e-12; }},
      {"previous_refcode", [](EditorsInfo& info) { info.previous_refcode += ' '; }},
      {"aser_match_flag", [](EditorsInfo& info) { info.aser_match_flag = EditorsInfo::not_matched; }},
      {"connectivity_comment", [](EditorsInfo& info) { info.connectivity_comment += ' '; }},
      {"batch", [](EditorsInfo& info) { ++info.batch; }},
      {"memo", [](EditorsInfo& info) { info.memo += ' '; }},
      {"remarks", [](EditorsInfo& info) { info.remarks += ' '; }},
      {"author_correspondence",
       [](EditorsInfo& info) { info.author_correspondence = EditorsInfo::no_correspondence; }},
      {"ignored_errors", [](EditorsInfo& info) { info.ignored_errors = EditorsInfo::no_errors_ignored; }}};
  for (const auto& [reason, change] : changes) {
    EditorsInfo other = Sample<EditorsInfo>::filled();
    change(other);
    EXPECT_FALSE(Sample<EditorsInfo>::filled() == other) << reason;
  }
}

}  // namespace
