// Which expressions the library builds and when, and with which flags it searches. The flags change nothing
// in our own expressions, so this program has a stand-in for those, which finds nothing and tells what it is
// given.
#include <database_entry/database_entry.h>
#include <gmock/gmock.h>

#include <vector>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::Pair;

namespace {

using Flags = std::vector<unsigned int>;

Flags seen;

template <class Call>
Flags flags_of(Call&& call) {
  seen.clear();
  call();
  return seen;
}

using Expressions = std::vector<std::pair<std::string, unsigned int>>;

// The pattern and the options of every expression, in the order in which they were built. In a function: the
// library is loaded before this program's own objects are made.
Expressions& built() {
  static Expressions all;
  return all;
}

}  // namespace

class Regex::Matcher {};

// Called when the library is loaded, too.
Regex::Regex(const std::string& pattern, unsigned int options) {
  built().emplace_back(pattern, options);
}
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

// Those of one file of the library, which are known by their options.
Expressions built_with(unsigned int options) {
  Expressions some;
  for (const auto& expression : built()) {
    if (expression.second == options) some.push_back(expression);
  }
  return some;
}

// Comes first: nothing has been searched yet.
TEST(BuiltExpressions, AreThereBeforeMainToTheLastBlank) {
  EXPECT_THAT(
      built_with(8),
      ElementsAre(Pair("\\[          # initial literal [\n"
                       "([A-Za-z]{6} # 6 alphabetic characters and opening of capturing brackets\n"
                       "(\\d\\d)?)   # optional two decimal digits and closing of capturing brackets\n"
                       "\\]          # terminal literal ]\n",
                       8),
                  Pair("\\[          # initial literal [\n"
                       "([A-Za-z]    # alphabetic character and opening of capturing brackets\n"
                       "[0-9]{7})    # seven decimal digits and closing of capturing brackets\n"
                       "\\]          # terminal literal ]\n",
                       8)));
}

TEST(BuiltExpressions, OfTheDepositionsAreThereBeforeMainByKind) {
  const char* const by_kind[] = {"VORN\\s(\\d+)",
                                 "MRV\\s(\\d+)",
                                 "z?",
                                 "IUC\\d+",
                                 "IUC(r|R)\\s(\\w+)",
                                 "\\d+/\\d+",
                                 "R\\d+",
                                 "\\d+[A-Z]{0,1}",
                                 "\\d+",
                                 "\\d+",
                                 "\\d+",
                                 "^\\s*([A-Z]{6}[0-9]{0,2})\\s*$"};
  Expressions expected;
  for (const char* const pattern : by_kind) expected.emplace_back(pattern, 0);
  EXPECT_THAT(built_with(0), ElementsAreArray(expected));
}

TEST(BuiltExpressions, AreBuiltOnceForAllSearches) {
  const Expressions before = built();
  const DatabaseCrossReference reference(DatabaseCrossReference::racemate, "[ABCDEF]");
  std::vector<DatabaseEntryIdentifier> identifiers;
  reference.identifiers(identifiers);
  for (int type = 0; type < 12; ++type) {
    static_cast<void>(
        DepositionInfo::validate_deposition_code(static_cast<DepositionInfo::DepositionType>(type), "1"));
  }
  EXPECT_EQ(built(), before);
}

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
