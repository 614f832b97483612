// Finds the journal that a CIF file names in the journal table.
// Internal: callers want exchange/cif_reader.h.
//
//   JournalFinder::instance().find("JACSAT", "Journal of the American Chemical Society")   // Journal(4)
//
// A CODEN decides alone. Without one the title decides: it is the journal's own, or its words are what the
// abbreviated words of just one journal stand for ("J.Am.Chem.Soc."). Case, "of", "the" and the like and a
// range of years in brackets after the title do not count.
//
// A journal that the table does not hold keeps the title and the CODEN that the file gave, under the first
// number after the table; a file that names no journal gives the unknown journal of that number.
#pragma once

#include <database_entry/records/journal.h>

#include <map>
#include <string>
#include <vector>

class JournalFinder {
 public:
  // Built once: the table is constant.
  [[nodiscard]] static const JournalFinder& instance();

  // Either text may be empty.
  [[nodiscard]] Journal find(const std::string& coden, const std::string& title) const;

 private:
  JournalFinder();

  struct Titled {
    std::vector<std::string> words;  // an abbreviated one ends in a full stop
    int coden = 0;
  };

  std::map<std::string, int> by_international_coden_;
  std::vector<Titled> titles_;
};
