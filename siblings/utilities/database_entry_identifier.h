// The identifier of an entry: any text, kept as it came.
//
// Bytes: a string. Prints its text and nothing else.
#pragma once

#include <utilities/archive.h>
#include <utilities/export.h>
#include <utilities/fields.h>

#include <compare>
#include <iosfwd>
#include <string>
#include <tuple>

class UTILITIES_EXPORT DatabaseEntryIdentifier {
 public:
  // An empty text.
  DatabaseEntryIdentifier() = default;
  explicit DatabaseEntryIdentifier(const std::string& text) : text_(text) {}

  [[nodiscard]] const std::string& text() const& { return text_; }
  // A copy: `entry.identifier().text()` may be kept.
  [[nodiscard]] std::string text() const&& { return text_; }

  void write(Archive& archive) const;
  void read(Archive& archive);
  void print(std::ostream& os) const;

  // Byte by byte, as unsigned characters.
  friend bool operator==(const DatabaseEntryIdentifier&, const DatabaseEntryIdentifier&) = default;
  friend std::strong_ordering operator<=>(const DatabaseEntryIdentifier&,
                                          const DatabaseEntryIdentifier&) = default;

  // Archived as its text is.
  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"text", &DatabaseEntryIdentifier::text_}};
  }
  static constexpr bool archived_by_fields = true;

 private:
  std::string text_;
};
