#include <database_entry/records/publication.h>
#include <gtest/gtest.h>

#include "support/sample_records.h"

namespace {

TEST(Publication, TakesTheConstructorsArguments) {
  const Publication publication = Sample<Publication>::filled();
  EXPECT_EQ(publication.authors, (std::vector<std::string>{"A.B.Smith", "B.de la Second-Author", ""}));
  EXPECT_EQ(publication.journal.coden(), 4);
  EXPECT_EQ(publication.volume, "101");
  EXPECT_EQ(publication.year, 1979);
  EXPECT_EQ(publication.page, "2345");
}

TEST(Publication, ByDefaultNamesTheFirstJournalOfTheList) {
  const Publication none;
  EXPECT_EQ(none.journal.coden(), 1);
  EXPECT_TRUE(none.authors.empty());
  EXPECT_EQ(printed(none), "Acta Crystallogr., , , 0\n");
}

TEST(Publication, PrintsASeparatorAfterEveryAuthorAndPageBeforeYear) {
  EXPECT_EQ(printed(Sample<Publication>::filled()),
            "A.B.Smith, B.de la Second-Author, , J.Am.Chem.Soc., 101, 2345, 1979\n");
}

TEST(Publication, ByDefaultIsStoredWithItsJournal) {
  EXPECT_EQ(bytes_of(Publication()), bytes(text("Acta Crystallogr."), int32(1), text("ACCRA9"), int32(0),
                                           text(""), int32(0), text("")));
}

TEST(Publication, JoinsItsAuthorsWithCommas) {
  Publication publication;
  EXPECT_EQ(publication.authors_comma_delimited(), "");
  publication.authors = {"A.B.Smith"};
  EXPECT_EQ(publication.authors_comma_delimited(), "A.B.Smith");
  publication.authors = {"A.B.Smith", "", "C.Jones"};
  EXPECT_EQ(publication.authors_comma_delimited(), "A.B.Smith, , C.Jones");
}

TEST(Publication, ReadsBackEqualWithTheSameJournal) {
  Publication back;
  read_from(bytes_of(Sample<Publication>::filled()), [&](Archive& archive) { back.read(archive); });
  EXPECT_TRUE(back == Sample<Publication>::filled());
  EXPECT_EQ(back.journal.coden(), 4);
  EXPECT_EQ(back.journal.name(), "J.Am.Chem.Soc.");
}

TEST(Publication, ReadsAJournalThatTheListDoesNotKnow) {
  Publication publication;
  read_from(bytes(text("No Such Title"), int32(-3), text("NOSUCH"), int32(0), text(""), int32(0), text("")),
            [&](Archive& archive) { publication.read(archive); });
  EXPECT_EQ(publication.journal.name(), "No Such Title");
  EXPECT_EQ(publication.journal.coden(), -3);
  EXPECT_EQ(publication.journal.international_coden(), "NOSUCH");
}

TEST(Publication, ReadsAShorterListOfAuthorsOverALongerOne) {
  Publication publication = Sample<Publication>::filled();
  read_from(bytes_of(Publication({"One"}, Journal(4), "", 0, "")),
            [&](Archive& archive) { publication.read(archive); });
  EXPECT_EQ(publication.authors, std::vector<std::string>{"One"});
}

TEST(Publication, KeepsTheFieldsAfterTheEndOfTheStream) {
  Publication publication = Sample<Publication>::filled();
  failed_read<ArchiveError>(publication,
                            bytes(text("New"), int32(5), text("NEWNEW"), int32(1), text("D.Doe"), text("7")));
  EXPECT_EQ(publication.journal.name(), "New");
  EXPECT_EQ(publication.authors, std::vector<std::string>{"D.Doe"});
  EXPECT_EQ(publication.volume, "7");
  EXPECT_EQ(publication.year, 1979);
  EXPECT_EQ(publication.page, "2345");
}

TEST(Publication, ComparesItsJournalByInternationalCodenAlone) {
  const Publication placeholder({"A"}, Journal(861), "1", 2000, "1");
  const Publication after_the_list({"A"}, Journal(1419), "1", 2000, "1");
  const Publication another({"A"}, Journal(4), "1", 2000, "1");
  EXPECT_TRUE(placeholder == after_the_list);
  EXPECT_FALSE(placeholder == another);
}

TEST(Publication, DiffersInEachField) {
  using Change = void (*)(Publication&);
  const std::vector<std::pair<const char*, Change>> changes = {
      {"volume", [](Publication& publication) { publication.volume += ' '; }},
      {"page", [](Publication& publication) { publication.page += 'A'; }},
      {"year", [](Publication& publication) { ++publication.year; }},
      {"order of authors",
       [](Publication& publication) { std::swap(publication.authors[0], publication.authors[1]); }},
      {"number of authors", [](Publication& publication) { publication.authors.pop_back(); }},
      {"journal", [](Publication& publication) { publication.journal = Journal(1); }}};
  EXPECT_TRUE(Sample<Publication>::filled() == Sample<Publication>::filled());
  for (const auto& [reason, change] : changes) {
    Publication other = Sample<Publication>::filled();
    change(other);
    EXPECT_FALSE(Sample<Publication>::filled() == other) << reason;
  }
}

}  // namespace
