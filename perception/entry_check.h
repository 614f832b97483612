// What an editor asks before an entry is accepted.
//
//   for (const Finding& finding : check_entry(entry))
//     std::cout << finding.number << ' ' << finding.where << ": " << finding.sentence << '\n';
//
// A finding has a number that never changes, says where in the entry it is and what was seen. What is not
// known is never a finding, except by number 11 and 12, and only where atoms are there. Nothing is changed,
// and nothing that an entry holds makes it throw.
//
//   11 cell: not known, or closes nothing         12 operators: not known
//   13 operators: no group                        14 operators: do not fit the lengths and angles
//   21 atoms: a position is not finite            22 atoms: an element is not known
//   23 atoms: an occupancy is not from 0 to 1     24 atoms: two are too close
//   31 formula: cannot be read                    32 formula: other elements than the atoms
//   33 formula: other ratios than the atoms       41 density: not that of formula, Z and cell
//   42 Z: not as many atoms as the cell holds     43 Z: not as many molecules as the cell holds
//   51 bonds: a length is not that of the atoms   52 bonds: a published one is not perceived
//   61 dates: modified before it was accessed     62 year: long before diffraction, or to come
//   63 journal: number, title and CODEN differ    71 references: an identifier is missing
//   81 duplicates: lattice, composition and space group of another entry
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>
#include <lattice/lattice_search.h>
#include <perception/export.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

struct Finding {
  int number = 0;
  std::string where;     // "cell", "atoms: O1, O2"
  std::string sentence;  // without a full stop
};

struct CheckOptions {
  // Whether an entry with that identifier is there; without it references are not checked.
  std::function<bool(const DatabaseEntryIdentifier&)> is_there;
  // The year now; 0 where it is not to be asked whether a publication is in the future.
  int year = 0;
};

// In the order of the numbers.
[[nodiscard]] PERCEPTION_EXPORT std::vector<Finding> check_entry(const CrystalStructureDatabaseEntry& entry,
                                                                 const CheckOptions& options = {});

// Entries one after the other: each is compared with those before it.
//
//   DuplicateSearch search;
//   for (...) for (const Finding& finding : search.add(entry)) ...
//
// Duplicates have the same composition and agree in their reduced cells within one percent, and in their
// space groups where both are known. The time of one step is in proportion to the entries of that
// composition.
class PERCEPTION_EXPORT DuplicateSearch {
 public:
  // Numbers 81, one for each earlier entry that is the same. An entry without cell or atoms is the same as
  // none.
  [[nodiscard]] std::vector<Finding> add(const CrystalStructureDatabaseEntry& entry);

 private:
  struct Known {
    std::string identifier;
    ReducedCell cell;
    int space_group = 0;
    std::vector<double> counts;  // of each element but hydrogen in a primitive cell
  };
  std::map<std::string, std::vector<Known>> by_composition_;  // by the elements' symbols
};
