#include <stores/entry_query_error.h>

#include <algorithm>

namespace {

int column_at(const std::string& query, std::size_t offset) {
  const auto end = query.begin() + static_cast<std::ptrdiff_t>(std::min(offset, query.size()));
  // Bytes 10xxxxxx go on with the character before them.
  const auto characters = std::count_if(
      query.begin(), end, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; });
  return static_cast<int>(characters) + 1;
}

}  // namespace

EntryQueryError::EntryQueryError(Kind kind, const std::string& query, std::size_t offset,
                                 const std::string& problem)
    : std::invalid_argument("column " + std::to_string(column_at(query, offset)) + ": " + problem),
      kind_(kind),
      column_(column_at(query, offset)),
      problem_(problem) {}

EntryQueryError::EntryQueryError(Kind kind, const std::string& problem)
    : std::invalid_argument(problem), kind_(kind), column_(0), problem_(problem) {}
