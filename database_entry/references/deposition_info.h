// The deposition codes of a structure, one text a kind.
//
//   DepositionInfo info;
//   info.set_text(DepositionInfo::vorn, " VORN 123456 ");
//   info.text(DepositionInfo::vorn);                       // "VORN 123456"
//
//   std::vector<std::string> numbers;
//   info.deposition_numbers(DepositionInfo::vorn, numbers);   // {"123456"}
//
// Every operation that takes a type first throws std::invalid_argument unless it is 0 to 11, and has then
// changed nothing. Setting a kind that has a text already keeps the old text before it, where text() and the
// others see it; to replace it, set the empty text first.
// Bytes: the count, then each type and text. Threads: the const operations may run in several threads at
// once.
#pragma once

#include <database_entry/export.h>
#include <database_entry/foundations/archive_encodings.h>
#include <database_entry/foundations/component_text.h>
#include <database_entry/foundations/enum_text_mapping.h>
#include <utilities/archive.h>
#include <utilities/fields.h>
#include <utilities/t_handle.h>

#include <cstdint>
#include <iosfwd>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

class DATABASE_ENTRY_EXPORT DepositionInfo {
 public:
  enum DepositionType : std::int32_t {
    vorn = 0,         // the database's own depository number
    fiz = 1,          // a number from the FIZ depository
    contributor = 2,  // a contributor's code, free form
    iucr_validation_code = 3,
    iucr_coeditor_code = 4,
    jds = 5,      // n/m
    russian = 6,  // a number with a leading R
    archive = 7,  // a number with an optional letter
    msd_bib = 8,
    nbs_id = 9,
    nbs_cd = 10,
    mrv_refcode = 11  // an identifier of the database itself
  };
  using Deposition = std::pair<DepositionType, std::string>;

  // Stores the text without blanks and tabs at its ends, after those of the same type; the list is sorted by
  // type. A text of which nothing remains removes the first of its type. When it throws, nothing has changed.
  void set_text(DepositionType type, const std::string& text);
  [[nodiscard]] bool has_text(DepositionType type) const;
  // The first text of this type; empty when there is none.
  [[nodiscard]] std::string text(DepositionType type) const;
  // Replaces the contents of `numbers` by the numbers in that text. A contributor's code has none.
  void deposition_numbers(DepositionType type, std::vector<std::string>& numbers) const;

  void write(Archive& to) const;
  // Takes the list as it is, in any order: the first text of a kind is then the first in the archive. The
  // next set_text() of a text sorts the list by type, and keeps the order of texts of one type. Throws
  // std::invalid_argument at a type outside 0 to 11, which is stored, and ArchiveError at a negative count or
  // where the stream ends. The pairs before keep what was read; the list has grown as one of texts does
  // (foundations/archive_encodings.h), by pairs of vorn and an empty text.
  void read(Archive& from);
  // "0: 0: VORN 123456\t1: 6: R77\t": for each its index, its type as an integer, its text and a tab.
  void print(std::ostream& os) const;

  friend bool operator==(const DepositionInfo&, const DepositionInfo&) = default;

  // Whether the code has, somewhere in it, the form of its kind; a refcode must have it as a whole. Every
  // code is a contributor's code.
  [[nodiscard]] static bool validate_deposition_code(DepositionType type, const std::string& code);
  // Throws std::invalid_argument unless the type is 0 to 11.
  static void validate_deposition_type(DepositionType type);
  // A new mapping at each call.
  [[nodiscard]] static THandle<EnumTextMapping<DepositionType>> deposition_type_text();

  // The list of pairs, type and text.
  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"depositions", &DepositionInfo::depositions_}};
  }

 private:
  [[nodiscard]] std::vector<Deposition>::const_iterator first_of(DepositionType type) const;

  std::vector<Deposition> depositions_;
};

// One pair on an archive: the type as an int, the text. Reading stores the type before it checks it.
DATABASE_ENTRY_EXPORT Archive& write(Archive& archive, const DepositionInfo::Deposition& deposition);
DATABASE_ENTRY_EXPORT Archive& read(Archive& archive, DepositionInfo::Deposition& deposition);
DATABASE_ENTRY_EXPORT Archive& operator<<(Archive& archive, const DepositionInfo::Deposition& deposition);
DATABASE_ENTRY_EXPORT Archive& operator>>(Archive& archive, DepositionInfo::Deposition& deposition);

// "6: R77"
DATABASE_ENTRY_EXPORT std::ostream& operator<<(std::ostream& os,
                                               const DepositionInfo::Deposition& deposition);

template <>
inline constexpr bool is_archived_component<DepositionInfo> = true;
template <>
inline constexpr bool is_printed_component<DepositionInfo> = true;

template <>
inline constexpr auto enum_texts<DepositionInfo::DepositionType> = &DepositionInfo::deposition_type_text;
