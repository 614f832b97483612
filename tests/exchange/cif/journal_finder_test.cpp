#include "exchange/cif/journal_finder.h"

#include <gtest/gtest.h>

namespace {

struct JournalCase {
  const char* coden;
  const char* title;
  int number;
  const char* international_coden;
  const char* name;
  const char* reason;
};

class FoundJournal : public testing::TestWithParam<JournalCase> {};

TEST_P(FoundJournal, IsOfTheListOrKeepsWhatTheFileSays) {
  const Journal journal = JournalFinder::instance().find(GetParam().coden, GetParam().title);
  EXPECT_EQ(journal.coden(), GetParam().number) << GetParam().reason;
  EXPECT_EQ(journal.international_coden(), GetParam().international_coden) << GetParam().reason;
  EXPECT_EQ(journal.name(), GetParam().name) << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, FoundJournal,
    testing::Values(
        JournalCase{"", "", 1419, "Unknown", "Unknown", "no journal named: never journal 1"},
        JournalCase{"JACSAT", "", 4, "JACSAT", "J.Am.Chem.Soc.", "by CODEN"},
        JournalCase{"JACSAT", "Something else", 4, "JACSAT", "J.Am.Chem.Soc.", "the CODEN decides alone"},
        JournalCase{"XXXXXX", "Journal of the American Chemical Society", 1419, "XXXXXX",
                    "Journal of the American Chemical Society", "also when the list does not have it"},
        JournalCase{"XXXXXX", "", 1419, "XXXXXX", "Unknown", "a CODEN alone"},
        JournalCase{"", "J.Am.Chem.Soc.", 4, "JACSAT", "J.Am.Chem.Soc.", "by the title of the list"},
        JournalCase{"", "j. am. chem. soc.", 4, "JACSAT", "J.Am.Chem.Soc.", "case and blanks do not count"},
        JournalCase{"", "Journal of the American Chemical Society", 4, "JACSAT", "J.Am.Chem.Soc.",
                    "what the abbreviations stand for"},
        JournalCase{"", "Acta Crystallographica (1,1948-23,1967)", 1, "ACCRA9", "Acta Crystallogr.",
                    "years after the title"},
        JournalCase{"", "Acta Crystallographica Section B", 1419, "Unknown",
                    "Acta Crystallographica Section B", "another journal, though it begins alike"},
        JournalCase{"", "Crystal Structures", 1419, "Unknown", "Crystal Structures", "a book"}));

}  // namespace
