#include <algorithm>

#include "exchange/cif/components.h"
#include "exchange/cif/journal_finder.h"
#include "exchange/cif/letters.h"
#include "exchange/cif/numbers.h"

namespace {

// The row of the loop of citations that tells of the structure itself: the one named "primary", else the
// first.
class PrimaryCitation {
 public:
  explicit PrimaryCitation(const CifValues& values) : values_(values) {
    const CifColumn ids = values.column(tag("_citation_id"));
    for (std::size_t row = 0; row < ids.count; ++row) {
      const std::string id = values.plain(ids[row], ids.line);
      if (row == 0 || lower_case(id) == "primary") {
        row_ = row;
        id_ = id;
      }
      if (lower_case(id) == "primary") break;
    }
  }

  [[nodiscard]] std::optional<CifText> first(CifTagRange tags) const {
    for (std::size_t tag = tags.begin; tag < tags.end; ++tag) {
      const CifColumn column = values_.column(CifTag(tag));
      if (row_ >= column.count) continue;
      std::string text = values_.readable(column[row_], column.line);
      if (!text.empty()) return CifText{std::move(text), column.line};
    }
    return std::nullopt;
  }

  [[nodiscard]] std::vector<std::string> authors() const {
    const CifColumn names = values_.column(tag("_citation_author_name"));
    const CifColumn ids = values_.column_beside(names, tag("_citation_author_citation_id"));
    std::vector<std::string> authors;
    for (std::size_t row = 0; row < names.count; ++row) {
      const bool is_of_this_one = !ids || id_.empty() || values_.plain(ids[row], ids.line) == id_;
      const std::string name = values_.readable(names[row], names.line);
      if (is_of_this_one && !name.empty()) authors.push_back(name);
    }
    return authors;
  }

 private:
  const CifValues& values_;
  std::size_t row_ = 0;
  std::string id_;
};

// What the journal's own tags say, else the citation.
class Reference {
 public:
  explicit Reference(const CifSource& source) : source_(source), citation_(source.values()) {}

  [[nodiscard]] std::optional<CifText> value(CifTagRange journal, CifTagRange citation) const {
    const auto own = source_.values().first(journal);
    return own ? own : citation_.first(citation);
  }

  [[nodiscard]] std::string text(const char* name, CifTagRange journal, CifTagRange citation) const {
    const auto found = value(journal, citation);
    if (!found) source_.set_absent(name);
    return found ? found->text : "";
  }

  [[nodiscard]] std::vector<std::string> authors() const {
    std::vector<std::string> authors;
    for (const CifText& author : source_.values().all(field("publication.authors")))
      authors.push_back(author.text);
    return authors.empty() ? citation_.authors() : authors;
  }

 private:
  const CifSource& source_;
  PrimaryCitation citation_;
};

}  // namespace

Publication publication_of(const CifSource& source) {
  const Reference reference(source);
  Publication publication;
  publication.authors = reference.authors();
  if (publication.authors.empty()) source.set_absent("authors");
  const auto coden = reference.value(field("journal_coden"), field("citation_coden"));
  const auto title = reference.value(field("journal_name"), field("citation_journal"));
  if (!coden && !title) source.set_absent("journal");
  publication.journal = JournalFinder::instance().find(coden ? coden->text : "", title ? title->text : "");
  publication.volume = reference.text("volume", field("publication.volume"), field("citation_volume"));
  if (const auto year = reference.value(field("publication.year"), field("citation_year"))) {
    const auto number = cif_integer(year->text);
    if (!number) source.warn(year->line, "year is not a number: '{}'", year->text);
    publication.year = number.value_or(publication.year);
  } else {
    source.set_absent("year");
  }
  publication.page = reference.text("page", field("publication.page"), field("citation_page"));
  return publication;
}
