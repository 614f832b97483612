#include <database_entry/foundations/enum_range.h>
#include <database_entry/foundations/enum_text_table.h>
#include <database_entry/records/editors_info.h>
#include <utilities/archiving/field_list.h>

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

// In archive order, which is the order of comparison too. The enumerations are handed in: reading keeps them
// aside until everything has been read.
template <class Record, class Category, class Flag, class Correspondence, class Errors>
auto fields(Record& record, Category& category, Flag& aser_match_flag, Correspondence& author_correspondence,
            Errors& ignored_errors) {
  return std::tie(record.accession_date, record.modification_date, category, record.bonding_tolerance,
                  record.previous_refcode, aser_match_flag, record.connectivity_comment, record.batch,
                  record.memo, record.remarks, author_correspondence, ignored_errors);
}

auto fields(const EditorsInfo& record) {
  return fields(record, record.category, record.aser_match_flag, record.author_correspondence,
                record.ignored_errors);
}

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
  write_fields(archive, fields(*this));
}

void EditorsInfo::read(Archive& archive) {
  int read_category = 0;
  int read_flag = 0;
  auto read_correspondence = no_correspondence;
  auto read_errors = no_errors_ignored;
  read_fields(archive, fields(*this, read_category, read_flag, read_correspondence, read_errors));
  category = int_to_entry_category(read_category);
  aser_match_flag = int_to_aser_match_flag(read_flag);
  author_correspondence = read_correspondence;
  ignored_errors = read_errors;
}

void EditorsInfo::print(std::ostream& os) const {
  os << "accession date: ";
  accession_date.print(os);
  os << ", modification date: ";
  modification_date.print(os);
  os << ", category: " << static_cast<int>(category) << ", bonding_tolerance: " << bonding_tolerance
     << ", previous refcode: " << previous_refcode
     << ", aser_match_flag: " << static_cast<int>(aser_match_flag)
     << ", connectivity_comment: " << connectivity_comment << ", batch: " << batch << ", memo: " << memo
     << ", remarks: " << remarks << ", author correspondence: " << static_cast<int>(author_correspondence)
     << ", ignored errors: " << static_cast<int>(ignored_errors);
}

bool EditorsInfo::operator==(const EditorsInfo& other) const {
  return fields(*this) == fields(other);
}
