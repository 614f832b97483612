// The summary of a record that is its fields: "Z: 4, Z': 0.5, color: red".
// Internal: callers want the print operations of the records.
#pragma once

#include <database_entry/foundations/sequence_text.h>
#include <utilities/fields.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

// What precedes each value: "Z: ", then ", Z': " and so on. Put together when the library is compiled,
// because a text in one piece is written in half the time of three.
template <class Record>
class LabelTexts {
 public:
  consteval LabelTexts() {
    std::size_t index = 0;
    for (const std::string_view label : labels()) {
      add(index == 0 ? "" : ", ");
      add(label);
      add(": ");
      ends_[index++] = size_;
    }
  }

  static constexpr std::size_t count = std::tuple_size_v<decltype(Record::fields())>;

  [[nodiscard]] constexpr std::string_view operator[](std::size_t index) const {
    const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
    return {characters_.data() + begin, ends_[index] - begin};
  }

 private:
  // uncovered: only the compiler runs it
  static consteval std::array<std::string_view, count> labels() {
    return std::apply([](const auto&... field) { return std::array{std::string_view(field.label)...}; },
                      Record::fields());
  }
  static consteval std::size_t size_of_all() {
    std::size_t size = 0;
    for (const std::string_view label : labels()) size += label.size() + 4;
    return size;
  }

  // uncovered: only the compiler runs it
  constexpr void add(std::string_view text) {
    std::copy(text.begin(), text.end(), characters_.begin() + static_cast<std::ptrdiff_t>(size_));
    size_ += text.size();
  }

  std::array<char, size_of_all()> characters_ = {};
  std::array<std::size_t, count> ends_ = {};
  std::size_t size_ = 0;
};

template <class Record>
inline constexpr LabelTexts<Record> label_texts;

// Numbers and texts as the stream formats them, enumerations as integers, records by their own print.
template <class Value>
void print_value(std::ostream& os, const Value& value) {
  if constexpr (std::is_enum_v<Value>) {
    os << static_cast<std::int32_t>(value);
  } else if constexpr (requires { value.print(os); }) {
    value.print(os);
  } else {
    os << value;
  }
}

template <class Element>
void print_value(std::ostream& os, const std::vector<Element>& values) {
  print_sequence(os, values);
}

// Each field as its label, ": " and its value; ", " between them and nothing after the last.
template <class Record>
void print_fields(std::ostream& os, const Record& record) {
  [&]<std::size_t... index>(std::index_sequence<index...>) {
    const auto fields = Record::fields();
    ((os << label_texts<Record>[index], print_value(os, std::get<index>(fields).of(record))), ...);
  }
  (std::make_index_sequence<LabelTexts<Record>::count>());
}
