// All cross-references of an entry: an ordered set without duplicates.
//
//   CrossReferenceInfo info;
//   info.insert(DatabaseCrossReference(DatabaseCrossReference::isomer, "Isomer of [ABCDEF]"));
//   for (const DatabaseCrossReference& reference : info) reference.print(std::cout);
//
//   std::vector<DatabaseEntryIdentifier> related;
//   info.cross_related_identifiers(related);
//
// Listed by type, within one type by text, byte by byte.
// Bytes: the count, then each cross-reference in that order.
#pragma once

#include <database_entry/export.h>
#include <database_entry/foundations/archive_encodings.h>
#include <database_entry/foundations/component_text.h>
#include <database_entry/references/database_cross_reference.h>
#include <utilities/fields.h>

#include <iosfwd>
#include <set>
#include <tuple>
#include <vector>

class DATABASE_ENTRY_EXPORT CrossReferenceInfo {
 public:
  // By type as a signed integer, then by text as std::string compares.
  struct CrossReferenceOrdering {
    bool operator()(const DatabaseCrossReference& a, const DatabaseCrossReference& b) const {
      return std::forward_as_tuple(a.type(), a.text()) < std::forward_as_tuple(b.type(), b.text());
    }
  };
  using CrossReferences = std::set<DatabaseCrossReference, CrossReferenceOrdering>;
  using const_iterator = CrossReferences::const_iterator;

  // Adds a copy unless one of the same type and text is there. When it throws, nothing has changed.
  void insert(const DatabaseCrossReference& reference);
  // Gives the number removed, 0 or 1.
  unsigned int erase(const DatabaseCrossReference& reference);
  void clear();

  [[nodiscard]] const_iterator begin() const { return references_.begin(); }
  [[nodiscard]] const_iterator end() const { return references_.end(); }
  [[nodiscard]] unsigned int size() const { return static_cast<unsigned int>(references_.size()); }
  [[nodiscard]] bool empty() const { return references_.empty(); }

  // Appends what each cross-reference's identifiers() gives, in set order.
  void cross_related_identifiers(std::vector<DatabaseEntryIdentifier>& out) const;

  void write(Archive& archive) const;
  // Empties the set first. When an element cannot be read (see DatabaseCrossReference::read) or the count is
  // negative (ArchiveError), the set holds the elements read before.
  void read(Archive& archive);
  // "Cross References: ", then each followed by a blank; no line end.
  void print(std::ostream& os) const;

  friend bool operator==(const CrossReferenceInfo&, const CrossReferenceInfo&) = default;

  // The set in its order.
  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"references", &CrossReferenceInfo::references_}};
  }

 private:
  CrossReferences references_;
};

// The set on an archive. Reading drops an element that is equivalent to one already read.
DATABASE_ENTRY_EXPORT Archive& write(Archive& archive, const CrossReferenceInfo::CrossReferences& references);
DATABASE_ENTRY_EXPORT Archive& read(Archive& archive, CrossReferenceInfo::CrossReferences& references);

template <>
inline constexpr bool is_archived_component<CrossReferenceInfo> = true;
template <>
inline constexpr bool is_printed_component<CrossReferenceInfo> = true;
