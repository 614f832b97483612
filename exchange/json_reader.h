// Entries from JSON: one object, a list of objects, or one object after another (JSON lines).
//
//   JsonReader reader(text);
//   while (const auto result = reader.next()) ...
//
// The objects are what entry_json() makes (exchange/entry_json.h). What a component or a field does not say
// stays at its default; a name that means nothing is warned of. An object that is no entry is an error, and
// what follows it is read all the same; a text that is not JSON ends the reading.
// Memory: the text and one entry.
#pragma once

#include <exchange/entry_reader.h>

#include <optional>
#include <string_view>

class EXCHANGE_EXPORT JsonReader : public EntryReader {
 public:
  // The text must stay as long as the reader.
  explicit JsonReader(std::string_view text, const ReaderOptions& options = ReaderOptions());
  ~JsonReader() override;

  [[nodiscard]] std::optional<ImportResult> next() override;

 private:
  [[nodiscard]] bool skip_separators();
  [[nodiscard]] std::size_t end_of_value() const;
  [[nodiscard]] ImportResult result_of(std::string_view value) const;
  [[nodiscard]] ImportResult fault(std::size_t place, const std::string& reason);

  std::string_view text_;
  ReaderOptions options_;
  std::size_t place_ = 0;
  int line_ = 1;  // of place_
  std::size_t line_begin_ = 0;
  bool in_list_ = false;
  bool has_begun_ = false;
};
