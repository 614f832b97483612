// Writes and reads a list of fields in order, in one go.
// Internal: callers want the write and read operations of the records.
//
//   write_fields(archive, z, z_prime, color);
//   read_fields(archive, z, z_prime, color);
//
// Fields may be scalars, enumerations (archived as int, not checked), texts, and classes that have write and
// read operations of their own; foundations/sequence_encoding.h adds lists. Each field is stored before the
// next one is read, so a failure leaves the fields before it with their new values and the ones after it
// untouched.
#pragma once

#include <utilities/stream_cursor.h>

#include <tuple>

template <class T>
concept ArchivedClass = requires(const T& written, T& read, Archive& archive) {
  written.write(archive);
  read.read(archive);
};

template <class T>
requires(stream_cursor::Scalar<T> || stream_cursor::Enumeration<T> ||
         std::same_as<T, std::string>) void write_field(WriteCursor& cursor, const T& value) {
  cursor.write(value);
}

template <class T>
requires(stream_cursor::Scalar<T> || stream_cursor::Enumeration<T> ||
         std::same_as<T, std::string>) void read_field(ReadCursor& cursor, T& value) {
  cursor.read(value);
}

template <ArchivedClass T>
void write_field(WriteCursor& cursor, const T& value) {
  cursor.detached([&value](Archive& archive) { value.write(archive); });
}

template <ArchivedClass T>
void read_field(ReadCursor& cursor, T& value) {
  cursor.detached([&value](Archive& archive) { value.read(archive); });
}

template <class... Fields>
void write_fields(Archive& archive, const Fields&... fields) {
  WriteCursor cursor(archive);
  (write_field(cursor, fields), ...);
}

template <class... Fields>
void read_fields(Archive& archive, Fields&... fields) {
  ReadCursor cursor(archive);
  (read_field(cursor, fields), ...);
}

// The same for a record's own list, a std::tie of its fields.
template <class... Fields>
void write_fields(Archive& archive, const std::tuple<Fields&...>& fields) {
  std::apply([&archive](const auto&... each) { write_fields(archive, each...); }, fields);
}

template <class... Fields>
void read_fields(Archive& archive, const std::tuple<Fields&...>& fields) {
  std::apply([&archive](auto&... each) { read_fields(archive, each...); }, fields);
}
