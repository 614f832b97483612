// The literature reference of an entry.
//
//   Publication publication({"A.B.Smith", "C.Jones"}, Journal(4), "101", 1979, "2345");
//   publication.authors_comma_delimited();    // "A.B.Smith, C.Jones"
//   publication.print(std::cout);             // A.B.Smith, C.Jones, J.Am.Chem.Soc., 101, 2345, 1979
//
// A default publication names journal 1 of the list, not an unknown journal. Nothing is checked.
// Fails: read() throws ArchiveError where the stream ends; what was read before it stays.
// Threads: as every record, one at a time.
#pragma once

#include <database_entry/export.h>
#include <database_entry/foundations/archive_encodings.h>
#include <database_entry/foundations/component_text.h>
#include <database_entry/records/journal.h>
#include <utilities/fields.h>

#include <string>
#include <tuple>
#include <vector>

class DATABASE_ENTRY_EXPORT Publication {
 public:
  Publication() = default;
  Publication(const std::vector<std::string>& authors, const Journal& journal, const std::string& volume,
              int year, const std::string& page);

  // The authors joined by ", ".
  [[nodiscard]] std::string authors_comma_delimited() const;

  void write(Archive& archive) const;
  void read(Archive& archive);
  // One line with its end: the authors, each followed by ", ", then journal, volume, page and year.
  void print(std::ostream& os) const;

  // Of the journals only the international CODENs count: two unknown journals are the same.
  bool operator==(const Publication& other) const;

  Journal journal = Journal(1);
  std::vector<std::string> authors;  // in publication order
  std::string volume;
  int year = 0;
  std::string page;  // the first page, which may have letters

  // In archive order; summaries and comparison have orders of their own.
  static constexpr auto fields() {
    return std::tuple{Field{"journal", &Publication::journal}, Field{"authors", &Publication::authors},
                      Field{"volume", &Publication::volume}, Field{"year", &Publication::year},
                      Field{"page", &Publication::page}};
  }
};

template <>
inline constexpr bool is_archived_component<Publication> = true;
template <>
inline constexpr bool is_printed_component<Publication> = true;
