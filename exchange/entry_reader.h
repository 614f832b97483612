// Entries of a file, one by one: each is handed out before the next one is made.
#pragma once

#include <exchange/export.h>
#include <exchange/import_result.h>

#include <cstdint>
#include <optional>
#include <string>

struct ReaderOptions {
  enum IdentifierFrom : std::int32_t {
    code = 0,  // the database's code, else the name of the block
    name = 1,  // the name of the block
    file = 2   // the stem of the file
  };

  IdentifierFrom identifier_from = code;
  // The identifier of a block without a name; of every block by `file`.
  std::string file_stem = "unnamed";
  // Whether ImportResult::not_kept is filled.
  bool list_not_kept = true;
};

class EXCHANGE_EXPORT EntryReader {
 public:
  EntryReader() = default;
  EntryReader(const EntryReader&) = delete;
  EntryReader& operator=(const EntryReader&) = delete;
  virtual ~EntryReader();

  // The next entry, or what became of a block that gives none; nothing at the end of the text. Bad input is
  // never thrown: it is a result.
  [[nodiscard]] virtual std::optional<ImportResult> next() = 0;
};
