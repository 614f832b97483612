// The journal in which a structure was published.
//
//   Journal journal(4);
//   journal.name();             // "J.Am.Chem.Soc."
//   journal.state();            // Journal::current
//   const Journal other = Journal::from("Struct.Lett.", 0, "STRLE9");    // one that the list does not have
//
// Journals are numbered from 1: the coden number is the line of the journal list that is built in. A number
// after the list, or of a line without a title, is a journal whose two texts are "Unknown".
// No equality: a Publication compares the international CODEN of its journal and nothing else.
// Threads: the list is constant data; a journal is a plain value.
#pragma once

#include <database_entry/export.h>
#include <utilities/archive.h>
#include <utilities/fields.h>

#include <cstdint>
#include <iosfwd>
#include <string>
#include <tuple>

class DATABASE_ENTRY_EXPORT Journal {
 public:
  enum State : std::int32_t { current = 0, discontinued = 1, unknown = 2 };

  // No default constructor: a journal is made from its number, or read.
  // Throws std::runtime_error, "Journal::Journal: Invalid VORN coden.", below 1.
  explicit Journal(int coden);

  // A journal with this name, number and CODEN, whatever the list says of them; so a publication can name a
  // journal that the list does not have. Nothing is checked: state() of a number below 1 throws.
  [[nodiscard]] static Journal from(std::string name, int coden, std::string international_coden);

  // The number of lines of the list, 1418.
  [[nodiscard]] static int max_vorn_coden();

  // A State. Throws std::runtime_error, "Journal::discontinued: Invalid VORN coden.", below 1.
  [[nodiscard]] static int state(int coden);
  // The same for this journal's number, which may be any when the journal was read or made by from().
  [[nodiscard]] int state() const { return state(coden_); }

  [[nodiscard]] int coden() const { return coden_; }
  // Six letters and digits as a rule; "Unknown" for an unknown journal.
  [[nodiscard]] const std::string& international_coden() const& { return international_coden_; }
  [[nodiscard]] std::string international_coden() && { return international_coden_; }
  // The abbreviated title; "Unknown" for an unknown journal.
  [[nodiscard]] const std::string& name() const& { return name_; }
  [[nodiscard]] std::string name() && { return name_; }

  void write(Archive& archive) const;
  // Takes number and texts as they were written, whatever the list says of them. Throws ArchiveError where
  // the stream ends; what was read before it stays.
  void read(Archive& archive);
  // The name alone.
  void print(std::ostream& os) const;

  // In archive order.
  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"name", &Journal::name_}, ReadOnlyField{"coden", &Journal::coden_},
                      ReadOnlyField{"international_coden", &Journal::international_coden_}};
  }
  static constexpr bool archived_by_fields = true;

 private:
  Journal(int coden, std::string international_coden, std::string name);

  int coden_;
  std::string international_coden_;
  std::string name_;
};
