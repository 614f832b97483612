#include <database_entry/foundations/enum_range.h>
#include <database_entry/foundations/enum_text_table.h>
#include <database_entry/foundations/sequence_text.h>
#include <database_entry/references/deposition_info.h>
#include <database_entry/references/regex_grep.h>
#include <utilities/archiving/field_list.h>
#include <utilities/trim.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <ostream>
#include <tuple>
#include <utility>
#include <vector>

namespace {

constexpr EnumTextMapping<DepositionInfo::DepositionType>::Initialiser type_texts[] = {
    {DepositionInfo::vorn, "VORN"},
    {DepositionInfo::fiz, "FIZ"},
    {DepositionInfo::contributor, "CONTRIBUTOR"},
    {DepositionInfo::iucr_validation_code, "IUCR Validation Code"},
    {DepositionInfo::iucr_coeditor_code, "IUCR Coeditor Code"},
    {DepositionInfo::jds, "JDS"},
    {DepositionInfo::russian, "RUSSIAN"},
    {DepositionInfo::archive, "ARCHIVE"},
    {DepositionInfo::msd_bib, "MSD BIB"},
    {DepositionInfo::nbs_id, "NBS ID"},
    {DepositionInfo::nbs_cd, "NBS CD"},
    {DepositionInfo::mrv_refcode, "MRV Refcode"},
};

struct DepositionPattern {
  Regex expression;
  unsigned int number_group;  // 0 is the whole match
};

// Marks a kind whose codes have no form: its expression is never searched.
constexpr unsigned int no_group = std::numeric_limits<unsigned int>::max();

// A match may start anywhere after the position of the search; the value is for the expressions to
// interpret.
constexpr unsigned int number_search_flags = 4096;

// By type. Built when the library is loaded (below) and destroyed when it is unloaded; in a function so that
// a static object of another file, which may be made earlier, can use it as well.
const DepositionPattern& deposition_pattern(DepositionInfo::DepositionType type) {
  static const std::string never_searched = "z?";
  static const std::array<DepositionPattern, std::size(type_texts)> patterns{{
      {Regex("VORN\\s(\\d+)"), 1},
      {Regex("MRV\\s(\\d+)"), 1},
      {Regex(never_searched), no_group},
      {Regex("IUC\\d+"), 0},
      {Regex("IUC(r|R)\\s(\\w+)"), 2},
      {Regex("\\d+/\\d+"), 0},
      {Regex("R\\d+"), 0},
      {Regex("\\d+[A-Z]{0,1}"), 0},
      {Regex("\\d+"), 0},
      {Regex("\\d+"), 0},
      {Regex("\\d+"), 0},
      // The whole match, not the group: white space around the refcode is collected with it.
      {Regex("^\\s*([A-Z]{6}[0-9]{0,2})\\s*$"), 0},
  }};
  return patterns[static_cast<std::size_t>(type)];
}

[[maybe_unused]] const DepositionPattern& patterns_at_load = deposition_pattern(DepositionInfo::vorn);

class CollectDepositionNumbers {
 public:
  CollectDepositionNumbers(std::vector<std::string>& numbers, unsigned int group)
      : numbers_(&numbers), group_(group) {}

  void operator()(const RegexResults& results) const { numbers_->push_back(results.match(group_).str()); }

 private:
  std::vector<std::string>* numbers_;
  unsigned int group_;
};

struct DepositionValueLess {
  bool operator()(const DepositionInfo::Deposition& a, const DepositionInfo::Deposition& b) const {
    return a.first < b.first;
  }
};

using Depositions = std::vector<DepositionInfo::Deposition>;

void write_deposition(archiving::WriteCursor& cursor, const DepositionInfo::Deposition& deposition) {
  archiving::write_from(cursor, std::tie(deposition.first, deposition.second));
}

// The type is checked before the text is looked at: the stream is then right after a bad one.
void read_deposition(archiving::ReadCursor& cursor, DepositionInfo::Deposition& deposition) {
  archiving::read_from(cursor, std::tie(deposition.first));
  DepositionInfo::validate_deposition_type(deposition.first);
  archiving::read_from(cursor, std::tie(deposition.second));
}

}  // namespace

template <>
struct archiving::CountedField<Depositions> {
  static constexpr const char* count_name = "count";
  static std::size_t count(const Depositions& depositions) { return depositions.size(); }
  static void write(archiving::WriteCursor& cursor, const Depositions& depositions) {
    for (const DepositionInfo::Deposition& deposition : depositions) write_deposition(cursor, deposition);
  }
  static void read(archiving::ReadCursor& cursor, Depositions& depositions, std::size_t count) {
    archiving::read_elements(depositions, count, [&cursor](DepositionInfo::Deposition& deposition) {
      read_deposition(cursor, deposition);
    });
  }
};

Archive& write(Archive& archive, const DepositionInfo::Deposition& deposition) {
  archiving::WriteCursor cursor(archive);
  write_deposition(cursor, deposition);
  return archive;
}

Archive& read(Archive& archive, DepositionInfo::Deposition& deposition) {
  archiving::ReadCursor cursor(archive);
  read_deposition(cursor, deposition);
  return archive;
}

Archive& operator<<(Archive& archive, const DepositionInfo::Deposition& deposition) {
  return write(archive, deposition);
}

Archive& operator>>(Archive& archive, DepositionInfo::Deposition& deposition) {
  return read(archive, deposition);
}

std::ostream& operator<<(std::ostream& os, const DepositionInfo::Deposition& deposition) {
  return os << static_cast<std::int32_t>(deposition.first) << ": " << deposition.second;
}

void DepositionInfo::set_text(DepositionType type, const std::string& text) {
  validate_deposition_type(type);
  std::string trimmed = trim(text, " \t");
  if (trimmed.empty()) {
    const auto found = first_of(type);
    if (found != depositions_.end()) depositions_.erase(found);
    return;
  }
  depositions_.emplace_back(type, std::move(trimmed));
  if (std::is_sorted(depositions_.begin(), depositions_.end(), DepositionValueLess())) return;
  // Stable, so that the text that was set first stays first. It cannot throw: it moves the pairs, and
  // sorts in place where it gets no memory.
  std::stable_sort(depositions_.begin(), depositions_.end(), DepositionValueLess());
}

bool DepositionInfo::has_text(DepositionType type) const {
  validate_deposition_type(type);
  return first_of(type) != depositions_.end();
}

std::string DepositionInfo::text(DepositionType type) const {
  validate_deposition_type(type);
  const auto found = first_of(type);
  return found == depositions_.end() ? std::string() : found->second;
}

void DepositionInfo::deposition_numbers(DepositionType type, std::vector<std::string>& numbers) const {
  validate_deposition_type(type);
  numbers.clear();
  const auto found = first_of(type);
  if (found == depositions_.end()) return;
  const DepositionPattern& pattern = deposition_pattern(type);
  if (pattern.number_group == no_group) return;
  regex_grep(pattern.expression, found->second, CollectDepositionNumbers(numbers, pattern.number_group),
             number_search_flags);
}

void DepositionInfo::write(Archive& to) const {
  write_fields(to, depositions_);
}

void DepositionInfo::read(Archive& from) {
  read_fields(from, depositions_);
}

void DepositionInfo::print(std::ostream& os) const {
  print_sequence(os, depositions_);
}

bool DepositionInfo::validate_deposition_code(DepositionType type, const std::string& code) {
  validate_deposition_type(type);
  const DepositionPattern& pattern = deposition_pattern(type);
  if (pattern.number_group == no_group) return true;
  RegexResults results;
  return pattern.expression.search(code, results, number_search_flags);
}

void DepositionInfo::validate_deposition_type(DepositionType type) {
  require_enum_range(type, vorn, mrv_refcode, "Invalid DepositionInfo::DepositionType");
}

THandle<EnumTextMapping<DepositionInfo::DepositionType>> DepositionInfo::deposition_type_text() {
  return new_text_mapping<DepositionType>(type_texts);
}

// One after the other: a list taken from an archive need not be sorted, and a binary search in it could miss
// a text, or find another one than the next search does. There are hardly ever more than a dozen.
std::vector<DepositionInfo::Deposition>::const_iterator DepositionInfo::first_of(DepositionType type) const {
  return std::find_if(depositions_.begin(), depositions_.end(),
                      [type](const Deposition& deposition) { return deposition.first == type; });
}
