// Entries as CIF 1.1, a data block each.
//
//   CifWriter writer(file);
//   for (const auto& entry : entries) writer.write(entry);
//
// Every field that has a tag is written under it (exchange/cif_tags.h), texts with the markup of CIF, so that
// all is ASCII except labels of atoms that are not. What a reader of these tags would not give back as it was
// is written once more under a tag of our own prefix, "_dbentry_editors_info_batch": as a number or a plain
// text, or as the JSON of the field (exchange/entry_json.h). CifReader takes these instead, so that writing
// and reading gives equal components.
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>
#include <exchange/export.h>

#include <iosfwd>
#include <set>
#include <string>

class EXCHANGE_EXPORT CifWriter {
 public:
  // The stream must stay as long as the writer.
  explicit CifWriter(std::ostream& os) : os_(os) {}

  // The name of the block is the identifier, as far as a name may hold it; where that name was given before,
  // it gets a suffix.
  void write(const CrystalStructureDatabaseEntry& entry);

 private:
  std::ostream& os_;
  std::set<std::string> names_;  // in lower case
};

// The block alone, without the line that a file begins with.
[[nodiscard]] EXCHANGE_EXPORT std::string entry_cif(const CrystalStructureDatabaseEntry& entry,
                                                    const std::string& block_name);
