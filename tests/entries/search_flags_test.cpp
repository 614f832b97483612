// With which flags the library searches. They change nothing in our own expressions, so this program has a
// stand-in for those, which finds nothing and tells the flags.
#include <database_entry/database_entry.h>
#include <gmock/gmock.h>

#include <vector>

using testing::ElementsAre;

namespace {

using Flags = std::vector<unsigned int>;

Flags seen;

template <class Call>
Flags flags_of(Call&& call) {
  seen.clear();
  call();
  return seen;
}

}  // namespace

class Regex::Matcher {};

// Called when the library is loaded, too.
Regex::Regex(const std::string& /*pattern*/, unsigned int /*options*/) {}
Regex::~Regex() = default;

bool Regex::search_from_position(const std::string& /*text*/, unsigned int /*position*/,
                                 RegexResults& /*results*/, unsigned int flags) const {
  seen.push_back(flags);
  return false;
}

bool Regex::search(const std::string& text, RegexResults& results, unsigned int flags) const {
  return search_from_position(text, 0, results, flags);
}

bool Regex::search(const std::string& /*pattern*/, const std::string& /*text*/, RegexResults& /*results*/,
                   unsigned int flags) {
  seen.push_back(flags);
  return false;
}

namespace {

TEST(SearchFlags, AreNoneForTheIdentifiersOfACrossReference) {
  const DatabaseCrossReference reference(DatabaseCrossReference::racemate, "[ABCDEF]");
  std::vector<DatabaseEntryIdentifier> identifiers;
  EXPECT_THAT(flags_of([&] { reference.identifiers(identifiers); }), ElementsAre(0, 0));
}

TEST(SearchFlags, Are4096ForTheNumbersOfADeposition) {
  DepositionInfo info;
  info.set_text(DepositionInfo::vorn, "VORN 7");
  std::vector<std::string> numbers;
  EXPECT_THAT(flags_of([&] { info.deposition_numbers(DepositionInfo::vorn, numbers); }), ElementsAre(4096));
}

TEST(SearchFlags, Are4096ForTheFormOfADepositionCode) {
  EXPECT_THAT(
      flags_of([] { (void)DepositionInfo::validate_deposition_code(DepositionInfo::vorn, "VORN 7"); }),
      ElementsAre(4096));
}

TEST(SearchFlags, AreNoneForBothFormsOfAFileName) {
  ChemicalConnectivityDatabaseEntry entry;
  EXPECT_THAT(flags_of([&] { entry.set_identifier(DatabaseEntryIdentifier("7 a.qdx")); }), ElementsAre(0, 0));
}

}  // namespace
