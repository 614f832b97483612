// Writes and reads a list of fields in order, in one go. The one header of this room that a record includes.
// Internal: callers want the write and read operations of the records.
//
//   write_fields(archive, z, z_prime, color);
//   read_fields(archive, z, z_prime, color);
//
// Fields may be scalars and arrays of them, enumerations (archived as int, not checked), texts, vectors of
// fields or of handles to them, classes that show their list of fields (fields_of.h), and classes that have
// write and read operations of their own. Each field is stored before the next one is read, so a failure
// leaves the fields before it with their new values and the ones after it untouched.
#pragma once

#include <utilities/archiving/field_runs.h>
#include <utilities/archiving/sequence_encoding.h>

#include <tuple>

// Both take a record's own list, a std::tie of its fields, or the fields one by one. Flattened, because a
// cursor that is handed on to a function of its own has an address and cannot live in registers.
template <class... Fields>
[[gnu::flatten]] void write_fields(Archive& archive, const std::tuple<Fields&...>& fields) {
  archiving::WriteCursor cursor(archive);
  archiving::write_from(cursor, fields);
}

template <class... Fields>
[[gnu::flatten]] void read_fields(Archive& archive, const std::tuple<Fields&...>& fields) {
  archiving::ReadCursor cursor(archive);
  archiving::read_from(cursor, fields);
}

template <class... Fields>
void write_fields(Archive& archive, const Fields&... fields) {
  write_fields(archive, std::tie(fields...));
}

template <class... Fields>
void read_fields(Archive& archive, Fields&... fields) {
  read_fields(archive, std::tie(fields...));
}
