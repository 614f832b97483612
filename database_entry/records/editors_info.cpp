#include <database_entry/foundations/enum_range.h>
#include <database_entry/foundations/enum_text_table.h>
#include <database_entry/foundations/field_text.h>
#include <database_entry/records/editors_info.h>
#include <utilities/archiving/field_list.h>

#include <ostream>
#include <tuple>

namespace {

constexpr EnumTextMapping<EditorsInfo::EntryCategory>::Initialiser categories[] = {
    {EditorsInfo::unknown, "unknown"},
    {EditorsInfo::unit_cell_only, "unit cell only"},
    {EditorsInfo::qualitative, "qualitative"},
    {EditorsInfo::full_structure, "full structure"},
    {EditorsInfo::pdb_structure, "pdb structure"},
    {EditorsInfo::database_use, "database use"}};

constexpr EnumTextMapping<EditorsInfo::AserMatchFlag>::Initialiser aser_match_flags[] = {
    {EditorsInfo::inapplicable, "inapplicable"},   {EditorsInfo::not_attempted, "not attempted"},
    {EditorsInfo::not_matched, "not matched"},     {EditorsInfo::partial_match, "partial match"},
    {EditorsInfo::perfect_match, "perfect match"}, {EditorsInfo::impossible_match, "impossible match"}};

constexpr EnumTextMapping<EditorsInfo::AuthorCorrespondence>::Initialiser author_correspondences[] = {
    {EditorsInfo::no_correspondence, "no correspondence"},
    {EditorsInfo::referred_problem, "referred problem"},
    {EditorsInfo::received_correction, "received correction"}};

constexpr EnumTextMapping<EditorsInfo::IgnoredErrors>::Initialiser ignored_error_kinds[] = {
    {EditorsInfo::no_errors_ignored, "no errors ignored"},
    {EditorsInfo::valency_errors_ignored, "valency errors ignored"},
    {EditorsInfo::all_errors_ignored, "all errors ignored"}};

}  // namespace

EditorsInfo::EditorsInfo(const Date& the_accession_date, const Date& the_modification_date,
                         EntryCategory the_category, double the_bonding_tolerance,
                         const std::string& the_previous_refcode, AserMatchFlag the_aser_match_flag,
                         const std::string& the_connectivity_comment, int the_batch,
                         const std::string& the_memo, const std::string& the_remarks,
                         AuthorCorrespondence the_author_correspondence, IgnoredErrors the_ignored_errors)
    : accession_date(the_accession_date),
      modification_date(the_modification_date),
      category(the_category),
      bonding_tolerance(the_bonding_tolerance),
      previous_refcode(the_previous_refcode),
      aser_match_flag(the_aser_match_flag),
      connectivity_comment(the_connectivity_comment),
      batch(the_batch),
      memo(the_memo),
      remarks(the_remarks),
      author_correspondence(the_author_correspondence),
      ignored_errors(the_ignored_errors) {}

EditorsInfo::EntryCategory EditorsInfo::int_to_entry_category(int value) {
  require_enum_range(value, unknown, database_use, "Invalid EntryCategory conversion");
  return static_cast<EntryCategory>(value);
}

EditorsInfo::AserMatchFlag EditorsInfo::int_to_aser_match_flag(int value) {
  require_enum_range(value, inapplicable, impossible_match, "Invalid AserMatchFlag conversion");
  return static_cast<AserMatchFlag>(value);
}

THandle<EnumTextMapping<EditorsInfo::EntryCategory>> EditorsInfo::category_text() {
  return new_text_mapping<EntryCategory>(categories);
}

THandle<EnumTextMapping<EditorsInfo::AserMatchFlag>> EditorsInfo::aser_match_flag_text() {
  return new_text_mapping<AserMatchFlag>(aser_match_flags);
}

THandle<EnumTextMapping<EditorsInfo::AuthorCorrespondence>> EditorsInfo::author_correspondence_text() {
  return new_text_mapping<AuthorCorrespondence>(author_correspondences);
}

THandle<EnumTextMapping<EditorsInfo::IgnoredErrors>> EditorsInfo::ignored_errors_text() {
  return new_text_mapping<IgnoredErrors>(ignored_error_kinds);
}

void EditorsInfo::write(Archive& archive) const {
  write_all_fields(archive, *this);
}

void EditorsInfo::read(Archive& archive) {
  const auto read = read_all_fields_but_enumerations(archive, *this);
  category = int_to_entry_category(std::get<EntryCategory>(read));
  aser_match_flag = int_to_aser_match_flag(std::get<AserMatchFlag>(read));
  author_correspondence = std::get<AuthorCorrespondence>(read);
  ignored_errors = std::get<IgnoredErrors>(read);
}

void EditorsInfo::print(std::ostream& os) const {
  print_fields(os, *this);
}

bool EditorsInfo::operator==(const EditorsInfo& other) const {
  return equal_fields(*this, other);
}
