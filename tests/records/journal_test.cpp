#include <database_entry/records/journal.h>
#include <gtest/gtest.h>

#include <climits>
#include <type_traits>

#include "support/bytes.h"

namespace {

static_assert(!std::is_default_constructible_v<Journal>);
static_assert(!std::is_convertible_v<int, Journal>);
// What a journal that is about to go would hand out is a copy.
static_assert(std::is_same_v<decltype(std::declval<Journal>().name()), std::string>);

struct Known {
  int coden;
  const char* international_coden;
  const char* name;
  int state;
  const char* reason;
};

TEST(Journal, TakesCodenAndNameFromItsLine) {
  const Known journals[] = {
      {1, "ACCRA9", "Acta Crystallogr.", Journal::discontinued, "the first line, with a year"},
      {4, "JACSAT", "J.Am.Chem.Soc.", Journal::current, "an ordinary one"},
      {11, "GCITA9", "Gazz.Chim.Ital.", Journal::discontinued, "unread columns run together"},
      {35, "JOCEAH", "J.Org.Chem.", Journal::current, "an ordinary one"},
      {36, "JORCAI", "J.Organomet.Chem.", Journal::current, "a negative value fills its column"},
      {62, "000062", "Cancer Biotherapy and Radiopharmaceuticals", Journal::current, "without a CODEN"},
      {861, "Unknown", "Unknown", Journal::unknown, "a placeholder line"},
      {1418, "CESCAC", "Chem.Eng.Sci.", Journal::current, "the last line"},
      {1419, "Unknown", "Unknown", Journal::unknown, "just after the list"},
      {INT_MAX, "Unknown", "Unknown", Journal::unknown, "far after the list"}};
  for (const Known& known : journals) {
    const Journal journal(known.coden);
    EXPECT_EQ(journal.coden(), known.coden) << known.reason;
    EXPECT_EQ(journal.international_coden(), known.international_coden) << known.reason;
    EXPECT_EQ(journal.name(), known.name) << known.reason;
    EXPECT_EQ(journal.state(), known.state) << known.reason;
    EXPECT_EQ(Journal::state(known.coden), known.state) << known.reason;
  }
}

TEST(Journal, HasStatesZeroToTwo) {
  EXPECT_EQ(Journal::current, 0);
  EXPECT_EQ(Journal::discontinued, 1);
  EXPECT_EQ(Journal::unknown, 2);
}

TEST(Journal, IsNotMadeFromANumberBelowOne) {
  for (const int coden : {0, -1, -5, INT_MIN}) {
    EXPECT_EQ(message_of<std::runtime_error>([&] { Journal journal(coden); }),
              "Journal::Journal: Invalid VORN coden.");
  }
}

TEST(Journal, HasNoStateForANumberBelowOne) {
  for (const int coden : {0, -1, INT_MIN}) {
    EXPECT_EQ(message_of<std::runtime_error>([&] { static_cast<void>(Journal::state(coden)); }),
              "Journal::discontinued: Invalid VORN coden.");
  }
}

TEST(Journal, ComesFromAListOf1418Lines) {
  EXPECT_EQ(Journal::max_vorn_coden(), 1418);
}

TEST(Journal, PrintsItsNameAlone) {
  EXPECT_EQ(printed(Journal(35)), "J.Org.Chem.");
  EXPECT_EQ(printed(Journal(1419)), "Unknown");
}

TEST(Journal, HandsOutCopiesOfItsTextsWhenItIsAboutToGo) {
  const std::string name = Journal(4).name();
  const std::string international_coden = Journal(4).international_coden();
  EXPECT_EQ(name, "J.Am.Chem.Soc.");
  EXPECT_EQ(international_coden, "JACSAT");
}

TEST(Journal, IsStoredAsNameNumberAndCoden) {
  EXPECT_EQ(written([](Archive& archive) { Journal(62).write(archive); }),
            bytes(text("Cancer Biotherapy and Radiopharmaceuticals"), int32(62), text("000062")));
}

TEST(Journal, IsReadWithoutALookAtTheList) {
  Journal journal(1);
  read_from(bytes(text("Some Title"), int32(4), text("")), [&](Archive& archive) { journal.read(archive); });
  EXPECT_EQ(journal.name(), "Some Title");
  EXPECT_EQ(journal.coden(), 4);
  EXPECT_EQ(journal.international_coden(), "");
  EXPECT_EQ(journal.state(), Journal::current);
}

TEST(Journal, IsMadeOfATitleThatTheListDoesNotHave) {
  const Journal journal = Journal::from("Struct.Lett.", 1500, "STRLE9");
  EXPECT_EQ(journal.name(), "Struct.Lett.");
  EXPECT_EQ(journal.coden(), 1500);
  EXPECT_EQ(journal.international_coden(), "STRLE9");
  EXPECT_EQ(journal.state(), Journal::unknown);
  EXPECT_EQ(written([&](Archive& archive) { journal.write(archive); }),
            bytes(text("Struct.Lett."), int32(1500), text("STRLE9")));
}

TEST(Journal, IsMadeOfWhatItIsGivenUnchecked) {
  const Journal journal = Journal::from("", 0, "Unknown");
  EXPECT_EQ(journal.coden(), 0);
  EXPECT_EQ(journal.name(), "");
  EXPECT_EQ(message_of<std::runtime_error>([&] { static_cast<void>(journal.state()); }),
            "Journal::discontinued: Invalid VORN coden.");
}

TEST(Journal, ThatWasReadWithANumberBelowOneHasNoState) {
  Journal journal(1);
  read_from(bytes(text(""), int32(INT_MIN), text("")), [&](Archive& archive) { journal.read(archive); });
  EXPECT_EQ(message_of<std::runtime_error>([&] { static_cast<void>(journal.state()); }),
            "Journal::discontinued: Invalid VORN coden.");
}

TEST(Journal, KeepsTheFieldsAfterTheEndOfTheStream) {
  Journal journal(4);
  EXPECT_THROW(read_from(text("New"), [&](Archive& archive) { journal.read(archive); }), ArchiveError);
  EXPECT_EQ(journal.name(), "New");
  EXPECT_EQ(journal.coden(), 4);
  EXPECT_EQ(journal.international_coden(), "JACSAT");
}

}  // namespace
