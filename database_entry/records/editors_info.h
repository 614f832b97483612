// What the editors of the database keep about an entry, beside what its publication says.
//
//   EditorsInfo editors;
//   editors.accession_date = Date(2003, 5, 17);
//   editors.category = EditorsInfo::full_structure;
//   editors.previous_refcode = "ABCDEF";
//
// The bonding tolerance is compared exactly: a record that holds a NaN is unequal to its own copy.
// Threads: as every record, one at a time.
#pragma once

#include <database_entry/export.h>
#include <database_entry/foundations/archive_encodings.h>
#include <database_entry/foundations/component_text.h>
#include <database_entry/foundations/enum_text_mapping.h>
#include <utilities/date.h>
#include <utilities/fields.h>

#include <cstdint>
#include <string>
#include <tuple>

class DATABASE_ENTRY_EXPORT EditorsInfo {
 public:
  enum EntryCategory : std::int32_t {
    unknown = 0,
    unit_cell_only = 1,
    qualitative = 2,
    full_structure = 3,
    pdb_structure = 4,
    database_use = 5
  };
  enum AserMatchFlag : std::int32_t {
    inapplicable = -1,
    not_attempted = 0,
    not_matched = 1,
    partial_match = 2,
    perfect_match = 3,
    impossible_match = 4
  };
  enum AuthorCorrespondence : std::int32_t {
    no_correspondence = 0,
    referred_problem = 1,
    received_correction = 2
  };
  enum IgnoredErrors : std::int32_t {
    no_errors_ignored = 0,
    valency_errors_ignored = 1,
    all_errors_ignored = 2
  };

  EditorsInfo() = default;
  // Takes every field as it is given.
  EditorsInfo(const Date& accession_date, const Date& modification_date, EntryCategory category,
              double bonding_tolerance, const std::string& previous_refcode, AserMatchFlag aser_match_flag,
              const std::string& connectivity_comment, int batch, const std::string& memo,
              const std::string& remarks, AuthorCorrespondence author_correspondence,
              IgnoredErrors ignored_errors);

  // Throw std::invalid_argument, "Invalid EntryCategory conversion" and "Invalid AserMatchFlag conversion",
  // for a value that is no member.
  [[nodiscard]] static EntryCategory int_to_entry_category(int value);
  [[nodiscard]] static AserMatchFlag int_to_aser_match_flag(int value);

  // The texts of the members, made anew by each call.
  [[nodiscard]] static THandle<EnumTextMapping<EntryCategory>> category_text();
  [[nodiscard]] static THandle<EnumTextMapping<AserMatchFlag>> aser_match_flag_text();
  [[nodiscard]] static THandle<EnumTextMapping<AuthorCorrespondence>> author_correspondence_text();
  [[nodiscard]] static THandle<EnumTextMapping<IgnoredErrors>> ignored_errors_text();

  void write(Archive& archive) const;
  // The enumerations are stored last: category, match flag, correspondence, ignored errors. A category or a
  // match flag that is no member throws std::invalid_argument; it and the later ones are then the old ones.
  // The two others and the dates take any value. ArchiveError where the stream ends; fields read before that
  // keep their new values.
  void read(Archive& archive);
  // Labels and values, without a line end; enumerations as integers.
  void print(std::ostream& os) const;

  bool operator==(const EditorsInfo& other) const;

  Date accession_date;
  Date modification_date;
  EntryCategory category = unknown;
  double bonding_tolerance = 0.0;
  std::string previous_refcode;
  AserMatchFlag aser_match_flag = inapplicable;
  std::string connectivity_comment;
  int batch = 0;
  std::string memo;
  std::string remarks;
  AuthorCorrespondence author_correspondence = no_correspondence;
  IgnoredErrors ignored_errors = no_errors_ignored;

  // In archive order, which is the order of comparison and of the summary too.
  static constexpr auto fields() {
    return std::tuple{
        Field{"accession_date", &EditorsInfo::accession_date, "accession date"},
        Field{"modification_date", &EditorsInfo::modification_date, "modification date"},
        Field{"category", &EditorsInfo::category},
        Field{"bonding_tolerance", &EditorsInfo::bonding_tolerance},
        Field{"previous_refcode", &EditorsInfo::previous_refcode, "previous refcode"},
        Field{"aser_match_flag", &EditorsInfo::aser_match_flag},
        Field{"connectivity_comment", &EditorsInfo::connectivity_comment},
        Field{"batch", &EditorsInfo::batch},
        Field{"memo", &EditorsInfo::memo},
        Field{"remarks", &EditorsInfo::remarks},
        Field{"author_correspondence", &EditorsInfo::author_correspondence, "author correspondence"},
        Field{"ignored_errors", &EditorsInfo::ignored_errors, "ignored errors"}};
  }
};

template <>
inline constexpr bool is_archived_component<EditorsInfo> = true;
template <>
inline constexpr bool is_printed_component<EditorsInfo> = true;

template <>
inline constexpr auto enum_texts<EditorsInfo::EntryCategory> = &EditorsInfo::category_text;
template <>
inline constexpr auto enum_texts<EditorsInfo::AserMatchFlag> = &EditorsInfo::aser_match_flag_text;
template <>
inline constexpr auto enum_texts<EditorsInfo::AuthorCorrespondence> =
    &EditorsInfo::author_correspondence_text;
template <>
inline constexpr auto enum_texts<EditorsInfo::IgnoredErrors> = &EditorsInfo::ignored_errors_text;
