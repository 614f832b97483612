// Cuts a list of fields into runs of scalars, texts, lists and objects, and moves a cursor over them.
// Internal: field_list.h is the one to include.
//
// Scalars side by side, and the length or count of the text or list after them, make up one run: they are
// fetched together, and told apart only when they do not all come.
#pragma once

#include <utilities/archiving/read_cursor.h>
#include <utilities/archiving/write_cursor.h>
#include <utilities/fields.h>

#include <tuple>
#include <utility>

namespace archiving {

// A list is archived as a count and then its elements. Specialised with: count_name, as
// errors call it; count(field); write(cursor, field) and read(cursor, field, count) for the elements.
template <class T>
struct CountedField;

template <class T>
concept Counted = requires {
  CountedField<T>::count_name;
};

template <class Fields, std::size_t Index>
using FieldAt = std::remove_cvref_t<std::tuple_element_t<Index, Fields>>;

// The index after the scalars that are side by side from `First` on.
template <class Fields, std::size_t First>
consteval std::size_t end_of_scalars() {
  if constexpr (First < std::tuple_size_v<Fields>) {
    if constexpr (ScalarOrArray<FieldAt<Fields, First>>) return end_of_scalars<Fields, First + 1>();
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
    constexpr std::size_t after = end_of_scalars<Fields, First>();
    constexpr auto run = std::make_index_sequence<after - First>();
    if constexpr (after < sizeof...(Types)) {
      const auto& next = std::get<after>(fields);
      if constexpr (std::same_as<FieldAt<Fields, after>, std::string>) {
        with_fields<First>(fields, run, [&](const auto&... scalars) { cursor.write_text(next, scalars...); });
      } else if constexpr (Counted<FieldAt<Fields, after>>) {
        using Contents = CountedField<FieldAt<Fields, after>>;
        const unsigned int count = cursor.checked_count(Contents::count(next), Contents::count_name);
        with_fields<First>(fields, run, [&](const auto&... scalars) { cursor.write_run(scalars..., count); });
        Contents::write(cursor, next);
      } else {
        if constexpr (after > First) {
          with_fields<First>(fields, run, [&](const auto&... scalars) { cursor.write_run(scalars...); });
        }
        if constexpr (ArchivedByFields<FieldAt<Fields, after>>) {
          write_from(cursor, FieldAccess::tie_archived(next));
        } else {
          cursor.detached([&next](Archive& archive) { next.write(archive); });
        }
      }
      write_from<after + 1>(cursor, fields);
    } else {
      with_fields<First>(fields, run, [&](const auto&... scalars) { cursor.write_run(scalars...); });
    }
  }
}

template <std::size_t First = 0, class... Types>
void read_from(ReadCursor& cursor, const std::tuple<Types...>& fields) {
  using Fields = std::tuple<Types...>;
  if constexpr (First < sizeof...(Types)) {
    constexpr std::size_t after = end_of_scalars<Fields, First>();
    constexpr auto run = std::make_index_sequence<after - First>();
    if constexpr (after < sizeof...(Types)) {
      auto& next = std::get<after>(fields);
      if constexpr (std::same_as<FieldAt<Fields, after>, std::string>) {
        with_fields<First>(fields, run, [&](auto&... scalars) { cursor.read_text(next, scalars...); });
      } else if constexpr (Counted<FieldAt<Fields, after>>) {
        using Contents = CountedField<FieldAt<Fields, after>>;
        int count = 0;
        with_fields<First>(fields, run, [&](auto&... scalars) { cursor.read_run(scalars..., count); });
        Contents::read(cursor, next, cursor.checked_count(count, Contents::count_name));
      } else {
        if constexpr (after > First) {
          with_fields<First>(fields, run, [&](auto&... scalars) { cursor.read_run(scalars...); });
        }
        if constexpr (ArchivedByFields<FieldAt<Fields, after>>) {
          read_from(cursor, FieldAccess::tie_archived(next));
          FieldAccess::check(next);
        } else {
          cursor.detached([&next](Archive& archive) { next.read(archive); });
        }
      }
      read_from<after + 1>(cursor, fields);
    } else {
      with_fields<First>(fields, run, [&](auto&... scalars) { cursor.read_run(scalars...); });
    }
  }
}

}  // namespace archiving
