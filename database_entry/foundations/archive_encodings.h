// Texts, lists of texts and component handles on an archive, beside the archive's own scalars.
//
//   archive << name;           // std::string
//   archive << synonyms;       // std::vector<std::string>
//   archive << publication;    // THandle<Publication>
//
// A text is its length, then its bytes; a list is its count, then its elements; a handle is the contents of
// its object and nothing else. docs/archive_format.md shows the bytes.
//
// Fails: ArchiveError where the stream ends inside a scalar, or a count or length is negative; whatever was
// read before that stays. A text whose bytes are missing becomes the bytes that came.
#pragma once

#include <database_entry/export.h>
#include <utilities/archive.h>
#include <utilities/t_handle.h>

#include <string>
#include <vector>

// A text reads back up to its first NUL; the bytes after it are consumed and dropped.
DATABASE_ENTRY_EXPORT Archive& operator<<(Archive& archive, const std::string& text);
DATABASE_ENTRY_EXPORT Archive& operator>>(Archive& archive, std::string& text);

// Reading keeps and overwrites existing elements, and removes the surplus. The list grows to the count of the
// archive at once, but beyond 1,024 elements only by as many as have come already: when reading fails, it has
// the elements that came, what was there before, and empty ones up to that size.
DATABASE_ENTRY_EXPORT Archive& operator<<(Archive& archive, const std::vector<std::string>& texts);
DATABASE_ENTRY_EXPORT Archive& operator>>(Archive& archive, std::vector<std::string>& texts);

// Set to true beside each of the ten component types that an archive takes through a handle. A handle to
// anything else does not compile into one.
template <class Component>
inline constexpr bool is_archived_component = false;

// Writes the contents of the object. Throws NullHandleError, before anything is written, when there is none.
template <class Component>
requires is_archived_component<Component> Archive& operator<<(Archive& archive,
                                                              const THandle<Component>& component) {
  component->write(archive);
  return archive;
}

// Puts a new object in the handle, then fills it: other holders keep the old object as it was. When filling
// fails, the handle keeps the new object, filled as far as reading came.
template <class Component>
requires is_archived_component<Component> Archive& operator>>(Archive& archive,
                                                              THandle<Component>& component) {
  component = THandle<Component>::make();
  component->read(archive);
  return archive;
}
