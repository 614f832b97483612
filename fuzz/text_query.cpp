// A query in the short form. What is taken reads back as itself from both languages, and is judged and said
// to a database; what is refused is refused within the text.
#include "query_findings.h"

void take(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  take_query(text, [&] {
    const EntryQuery query = EntryQuery::from_text(text);
    require(query.text().has_value(), "the short form has no words for what it says itself");
    return query;
  });
}
