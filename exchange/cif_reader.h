// Entries from the text of a CIF file, one for each data block that is a structure.
//
//   CifReader reader(text);
//   while (const auto result = reader.next())
//     if (result->status == ImportResult::imported) result->entry->write(archive);
//
// Which tag goes where: exchange/cif_tags.h. A block is a structure when it has a cell or atoms. What a
// structure does not say itself is taken from the blocks of its file that have neither, wherever they are;
// where two of these disagree, the nearest before it is taken, and that is a warning. Everything else is
// skipped with a reason: dictionaries, monomer libraries, macromolecules, reflections.
//
// What the file does not say stays at the default of its record, and '?' and '.' say nothing. Nothing is
// repaired: what looks wrong is taken as it is and warned of. Without symmetry operators those of the Hall
// name are taken, else those of the Hermann-Mauguin name or the number in the setting that the cell tells,
// else none (never P 1).
//
// Texts become one line of UTF-8, the markup of CIF and of HTML becomes characters.
// CIF 1.1, and CIF 2.0 of which every value is one of CIF 1.1 as well: a file that says it is CIF 2.0 and has
// a list, a table or a text in triple quotes is one error, which names the first of these. Line ends may be
// LF, CRLF or CR.
//
// Memory: the text and, as values, one block and those that are shared.
#pragma once

#include <exchange/entry_reader.h>

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

class EXCHANGE_EXPORT CifReader : public EntryReader {
 public:
  // The text must stay as long as the reader.
  explicit CifReader(std::string_view text, const ReaderOptions& options = ReaderOptions());
  ~CifReader() override;

  [[nodiscard]] std::optional<ImportResult> next() override;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

// All results at once.
[[nodiscard]] EXCHANGE_EXPORT std::vector<ImportResult> read_cif(
    std::string_view text, const ReaderOptions& options = ReaderOptions());
