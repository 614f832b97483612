// A typed pointer from one entry to others: a free text with their identifiers in brackets.
//
//   DatabaseCrossReference reference(DatabaseCrossReference::racemate, "Racemate of",
//                                    DatabaseEntryIdentifier("ABCDEF01"));
//   reference.text();             // "Racemate of [ABCDEF01]"
//
//   std::vector<DatabaseEntryIdentifier> related;
//   reference.identifiers(related);   // appends ABCDEF01
//
// The identifiers are not stored: they are found in the text when they are asked for.
// Bytes: the type as an int, the text. Threads: identifiers() may run in several threads at once.
#pragma once

#include <database_entry/export.h>
#include <database_entry/foundations/enum_text_mapping.h>
#include <utilities/archive.h>
#include <utilities/database_entry_identifier.h>
#include <utilities/fields.h>
#include <utilities/t_handle.h>

#include <cstdint>
#include <iosfwd>
#include <string>
#include <tuple>
#include <vector>

class DATABASE_ENTRY_EXPORT DatabaseCrossReference {
 public:
  enum CrossReferenceType : std::int32_t {
    unknown = 0,  // has a text, but is refused by validate_cross_reference
    racemate = 1,
    stereomer = 2,
    isomer = 3,
    reinterpretation_of = 4,
    reinterpretation_see = 5,
    coordinates_see = 6
  };

  // Of type unknown, which no other constructor takes, and without text.
  DatabaseCrossReference() = default;

  // These throw std::invalid_argument unless the type is 1 to 6.
  explicit DatabaseCrossReference(CrossReferenceType type);
  DatabaseCrossReference(CrossReferenceType type, const std::string& text);
  // "text [ABCDEF]"
  DatabaseCrossReference(CrossReferenceType type, const std::string& text,
                         const DatabaseEntryIdentifier& identifier);
  // "text [ABCDEF], [GHIJKL01]"; without any identifier the text and one blank.
  DatabaseCrossReference(CrossReferenceType type, const std::string& text,
                         const std::vector<DatabaseEntryIdentifier>& identifiers);

  [[nodiscard]] CrossReferenceType type() const { return type_; }
  [[nodiscard]] const std::string& text() const& { return text_; }
  [[nodiscard]] std::string text() const&& { return text_; }

  // Appends the identifiers in brackets in the text: first all of six letters with or without two
  // digits, then all of a letter and seven digits, each in the order of the text, repeated ones too.
  void identifiers(std::vector<DatabaseEntryIdentifier>& out) const;

  void write(Archive& archive) const;
  // Takes both fields, then throws std::invalid_argument unless the type is 1 to 6; the fields stay as read.
  void read(Archive& archive);
  // "type: 1text: Racemate of [ABCDEF]", without a line end. The missing blank is part of the format.
  void print(std::ostream& os) const;

  friend bool operator==(const DatabaseCrossReference&, const DatabaseCrossReference&) = default;

  // Throws std::invalid_argument unless the type is 1 to 6.
  static void validate_cross_reference(CrossReferenceType type);
  // A new mapping at each call.
  [[nodiscard]] static THandle<EnumTextMapping<CrossReferenceType>> cross_reference_type_text();
  // Whether the type relates different forms of one compound: stereomer, racemate and isomer do.
  [[nodiscard]] static bool scope(CrossReferenceType type);

  // In archive order.
  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"type", &DatabaseCrossReference::type_},
                      ReadOnlyField{"text", &DatabaseCrossReference::text_}};
  }
  static constexpr bool archived_by_fields = true;
  // What read() refuses.
  void check() const { validate_cross_reference(type_); }

 private:
  CrossReferenceType type_ = unknown;
  std::string text_;
};

template <>
inline constexpr auto enum_texts<DatabaseCrossReference::CrossReferenceType> =
    &DatabaseCrossReference::cross_reference_type_text;
