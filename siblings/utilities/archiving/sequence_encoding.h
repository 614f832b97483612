// Lists among the fields of a record: the count, then each element.
// Internal: field_list.h is the one to include.
#pragma once

#include <utilities/archiving/field_runs.h>
#include <utilities/t_handle.h>

#include <algorithm>
#include <span>
#include <vector>

namespace archiving {

// A count is a stranger's claim. Up to this many elements it is believed at once, as a plain resize; beyond,
// the list grows only as fast as elements really come, so that memory stays in proportion to the bytes read.
inline constexpr std::size_t believed_count = 1024;

// Brings `list` to `count` elements and calls read_element on each in order. Existing elements are kept for
// read_element to overwrite, the surplus is removed.
template <class Element, class ReadElement>
void read_elements(std::vector<Element>& list, std::size_t count, const ReadElement& read_element) {
  list.resize(std::min(count, std::max(list.size(), believed_count)));
  for (std::size_t done = 0; done < count; done = list.size()) {
    list.resize(std::min(count, list.size() + done));
    for (Element& element : std::span(list).subspan(done)) read_element(element);
  }
}

template <class Element>
struct CountedField<std::vector<Element>> {
  static constexpr const char* count_name = "count";
  static std::size_t count(const std::vector<Element>& list) { return list.size(); }
  static void write(WriteCursor& cursor, const std::vector<Element>& list) {
    for (const Element& element : list) write_from(cursor, std::tie(element));
  }
  static void read(ReadCursor& cursor, std::vector<Element>& list, std::size_t count) {
    read_elements(list, count, [&cursor](Element& element) { read_from(cursor, std::tie(element)); });
  }
};

// Reading makes every object anew: others may hold those that were in the list.
template <class Object>
struct CountedField<std::vector<THandle<Object>>> {
  static constexpr const char* count_name = "count";
  static std::size_t count(const std::vector<THandle<Object>>& list) { return list.size(); }
  static void write(WriteCursor& cursor, const std::vector<THandle<Object>>& list) {
    for (const THandle<Object>& object : list) write_from(cursor, std::tie(*object));
  }
  static void read(ReadCursor& cursor, std::vector<THandle<Object>>& list, std::size_t count) {
    list.clear();
    list.reserve(std::min(count, believed_count));
    for (std::size_t index = 0; index < count; ++index) {
      const auto object = THandle<Object>::make();
      read_from(cursor, std::tie(*object));
      list.push_back(object);
    }
  }
};

}  // namespace archiving
