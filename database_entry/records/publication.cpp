#include <database_entry/foundations/sequence_text.h>
#include <database_entry/records/publication.h>
#include <utilities/archiving/field_list.h>

Publication::Publication(const std::vector<std::string>& the_authors, const Journal& the_journal,
                         const std::string& the_volume, int the_year, const std::string& the_page)
    : journal(the_journal), authors(the_authors), volume(the_volume), year(the_year), page(the_page) {}

std::string Publication::authors_comma_delimited() const {
  return to_string(authors.begin(), authors.end(), ", ", false);
}

void Publication::write(Archive& archive) const {
  write_all_fields(archive, *this);
}

void Publication::read(Archive& archive) {
  read_all_fields(archive, *this);
}

// Page before year; the archive has them the other way round.
void Publication::print(std::ostream& os) const {
  for (const std::string& author : authors) os << author << ", ";
  journal.print(os);
  os << ", " << volume << ", " << page << ", " << year << std::endl;
}

// An order of its own: what differs most often comes first, and the journal is known by its CODEN.
bool Publication::operator==(const Publication& other) const {
  return volume == other.volume && page == other.page && year == other.year && authors == other.authors &&
         journal.international_coden() == other.journal.international_coden();
}
