// Writes and reads a list of fields in order, in one go. The one header of this room that a record includes.
// Internal: callers want the write and read operations of the records.
//
//   write_fields(archive, z, z_prime, color);
//   read_fields(archive, z, z_prime, color);
//
// Fields may be scalars and arrays of them, enumerations (archived as int, not checked), texts, vectors of
// fields or of handles to them, records that are archived by their fields (fields.h), and classes that have
// write and read operations of their own. Each field is stored before the next one is read, so a failure
// leaves the fields before it with their new values and the ones after it untouched.
#pragma once

#include <utilities/archiving/field_runs.h>
#include <utilities/archiving/sequence_encoding.h>

#include <tuple>

// Both take the fields as a std::tie or one by one. Flattened, because a
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

// All fields of a record, in the order of its list, whatever its own operations do.
template <class Record>
void write_all_fields(Archive& archive, const Record& record) {
  write_fields(archive, FieldAccess::tie_archived(record));
}

template <class Record>
void read_all_fields(Archive& archive, Record& record) {
  read_fields(archive, FieldAccess::tie_archived(record));
}

// Reads all fields of a record except its enumerations, which it gives as a std::tuple: for a record that
// checks them before it takes them. Two enumerations of a record are never of the same type.
template <class Record>
[[nodiscard]] auto read_all_fields_but_enumerations(Archive& archive, Record& record) {
  auto enumerations = FieldAccess::enumerations<Record>();
  read_fields(archive, FieldAccess::tie_archived(record, enumerations));
  return enumerations;
}
