// A query in the filter language. What is taken reads back as itself, and is judged and said to a database;
// what is refused is refused within the text.
#include "query_findings.h"

void take(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  take_query(text, [&] { return EntryQuery::from_filter(text); });
}
