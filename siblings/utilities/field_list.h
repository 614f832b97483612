// Writes and reads a list of fields in order, in one go.
// Internal: callers want the write and read operations of the records.
//
//   write_fields(archive, z, z_prime, color);
//   read_fields(archive, z, z_prime, color);
//
// Fields may be scalars and arrays of them, enumerations (archived as int, not checked), texts, lists
// (sequence_encoding.h), classes that show their list of fields (fields_of.h), and classes that have write
// and read operations of their own. Each field is stored before the next one is read, so a failure leaves the
// fields before it with their new values and the ones after it untouched.
//
// Scalars that stand side by side, and the length or count that heads the text or list behind them, make up
// one run: they are fetched together, and told apart only when they do not all come.
#pragma once

#include <utilities/fields_of.h>
#include <utilities/stream_cursor.h>

#include <tuple>
#include <utility>

// A list, which stands on the stream as a count and then its elements. Specialised with: count_name, as
// errors call it; count(field); write(cursor, field) and read(cursor, field, count) for the elements.
template <class T>
struct CountedField;

namespace field_list {

template <class T>
concept Counted = requires {
  CountedField<T>::count_name;
};

template <class T>
concept Listed = requires(T& object) {
  FieldsOf::list(object);
};

template <class Fields, std::size_t Index>
using Field = std::remove_cvref_t<std::tuple_element_t<Index, Fields>>;

// The index behind the scalars that stand side by side from `First` on.
template <class Fields, std::size_t First>
consteval std::size_t end_of_scalars() {
  if constexpr (First < std::tuple_size_v<Fields>) {
    if constexpr (stream_cursor::ScalarOrArray<Field<Fields, First>>)
      return end_of_scalars<Fields, First + 1>();
  }
  return First;
}

// Calls `action` with the fields First, First + 1, ... as many as there are indices.
template <std::size_t First, class Fields, std::size_t... Indices, class Action>
void with_fields(const Fields& fields, std::index_sequence<Indices...>, const Action& action) {
  action(std::get<First + Indices>(fields)...);
}

template <std::size_t First = 0, class... Types>
void write_from(WriteCursor& cursor, const std::tuple<Types...>& fields) {
  using Fields = std::tuple<Types...>;
  if constexpr (First < sizeof...(Types)) {
    constexpr std::size_t behind = end_of_scalars<Fields, First>();
    constexpr auto run = std::make_index_sequence<behind - First>();
    if constexpr (behind < sizeof...(Types)) {
      const auto& next = std::get<behind>(fields);
      if constexpr (std::same_as<Field<Fields, behind>, std::string>) {
        with_fields<First>(fields, run, [&](const auto&... scalars) { cursor.write_text(next, scalars...); });
      } else if constexpr (Counted<Field<Fields, behind>>) {
        using Contents = CountedField<Field<Fields, behind>>;
        const unsigned int count = cursor.checked_count(Contents::count(next), Contents::count_name);
        with_fields<First>(fields, run, [&](const auto&... scalars) { cursor.write_run(scalars..., count); });
        Contents::write(cursor, next);
      } else {
        if constexpr (behind > First) {
          with_fields<First>(fields, run, [&](const auto&... scalars) { cursor.write_run(scalars...); });
        }
        if constexpr (Listed<Field<Fields, behind>>) {
          write_from(cursor, FieldsOf::list(next));
        } else {
          cursor.detached([&next](Archive& archive) { next.write(archive); });
        }
      }
      write_from<behind + 1>(cursor, fields);
    } else {
      with_fields<First>(fields, run, [&](const auto&... scalars) { cursor.write_run(scalars...); });
    }
  }
}

template <std::size_t First = 0, class... Types>
void read_from(ReadCursor& cursor, const std::tuple<Types...>& fields) {
  using Fields = std::tuple<Types...>;
  if constexpr (First < sizeof...(Types)) {
    constexpr std::size_t behind = end_of_scalars<Fields, First>();
    constexpr auto run = std::make_index_sequence<behind - First>();
    if constexpr (behind < sizeof...(Types)) {
      auto& next = std::get<behind>(fields);
      if constexpr (std::same_as<Field<Fields, behind>, std::string>) {
        with_fields<First>(fields, run, [&](auto&... scalars) { cursor.read_text(next, scalars...); });
      } else if constexpr (Counted<Field<Fields, behind>>) {
        using Contents = CountedField<Field<Fields, behind>>;
        int count = 0;
        with_fields<First>(fields, run, [&](auto&... scalars) { cursor.read_run(scalars..., count); });
        Contents::read(cursor, next, cursor.checked_count(count, Contents::count_name));
      } else {
        if constexpr (behind > First) {
          with_fields<First>(fields, run, [&](auto&... scalars) { cursor.read_run(scalars...); });
        }
        if constexpr (Listed<Field<Fields, behind>>) {
          read_from(cursor, FieldsOf::list(next));
          FieldsOf::check(next);
        } else {
          cursor.detached([&next](Archive& archive) { next.read(archive); });
        }
      }
      read_from<behind + 1>(cursor, fields);
    } else {
      with_fields<First>(fields, run, [&](auto&... scalars) { cursor.read_run(scalars...); });
    }
  }
}

}  // namespace field_list

// Both take a record's own list, a std::tie of its fields, or the fields one by one. Flattened, because a
// cursor that is handed on to a function of its own has an address and cannot live in registers.
template <class... Fields>
[[gnu::flatten]] void write_fields(Archive& archive, const std::tuple<Fields&...>& fields) {
  WriteCursor cursor(archive);
  field_list::write_from(cursor, fields);
}

template <class... Fields>
[[gnu::flatten]] void read_fields(Archive& archive, const std::tuple<Fields&...>& fields) {
  ReadCursor cursor(archive);
  field_list::read_from(cursor, fields);
}

template <class... Fields>
void write_fields(Archive& archive, const Fields&... fields) {
  write_fields(archive, std::tie(fields...));
}

template <class... Fields>
void read_fields(Archive& archive, Fields&... fields) {
  read_fields(archive, std::tie(fields...));
}
