#include <gtest/gtest.h>
#include <stores/entry_query.h>

#include <string>
#include <vector>

namespace {

using Kind = EntryQueryError::Kind;

struct Refusal {
  const char* query;
  Kind kind;
  int column;
  const char* problem;  // how it begins
};

template <class Read>
void expect_refused(const Refusal& refusal, const Read& read) {
  try {
    read(refusal.query);
    ADD_FAILURE() << refusal.query << " was taken";
  } catch (const EntryQueryError& error) {
    EXPECT_EQ(error.column(), refusal.column) << refusal.query << '\n' << error.what();
    EXPECT_EQ(error.problem().substr(0, std::string(refusal.problem).size()), refusal.problem)
        << refusal.query;
    EXPECT_EQ(error.kind(), refusal.kind) << refusal.query;
    EXPECT_EQ(error.what(), "column " + std::to_string(error.column()) + ": " + error.problem());
  }
}

}  // namespace

TEST(EntryQueryError, OfAFilterNamesTheColumnAndWhatWasExpected) {
  const std::vector<Refusal> refusals = {
      {"", Kind::syntax, 1, "expected a property, a value, NOT or '(', found the end"},
      {"   ", Kind::syntax, 4, "expected a property, a value, NOT or '(', found the end"},
      {"nelements=", Kind::syntax, 11,
       "expected a value: a number, a text in double quotes, a property, TRUE or FALSE, found the end"},
      {"nelements<TRUE", Kind::syntax, 11,
       "expected a value: a number, a text in double quotes or a property, found 'TRUE'"},
      {"nelements 3", Kind::syntax, 11, "expected an operator, AND, OR or the end of the filter, found '3'"},
      {"nelements=3 nelements=4", Kind::syntax, 13,
       "expected AND, OR or the end of the filter, found 'nelements'"},
      {"nelements=3 and nelements=4", Kind::syntax, 13,
       "expected AND, OR or the end of the filter, found 'and' (keywords are in capitals)"},
      {"(nelements=3", Kind::syntax, 13, "expected AND, OR or ')', found the end"},
      {"nelements=3)", Kind::syntax, 12, "expected AND, OR or the end of the filter, found ')'"},
      {"NOT", Kind::syntax, 4, "expected a property, a value or '(', found the end"},
      {"NOT NOT nelements=3", Kind::syntax, 5, "expected a property, a value or '(', found 'NOT'"},
      {"nelements=3 AND", Kind::syntax, 16, "expected a property, a value, NOT or '(', found the end"},
      {"nelements=3 OR )", Kind::syntax, 16, "expected a property, a value, NOT or '(', found ')'"},
      {"3", Kind::syntax, 2, "expected one of = != < <= > >=, found the end"},
      {"TRUE > _dbentry_has_cell", Kind::syntax, 6, "expected = or !=, found '>'"},
      {"id IS NULL", Kind::syntax, 7, "expected KNOWN or UNKNOWN, found 'NULL'"},
      {"id = \"open", Kind::syntax, 11, "expected the closing quote of the text, found the end"},
      {"id = \"a\\n\"", Kind::syntax, 9, "expected \\\" or \\\\, the only two escapes, found 'n'"},
      {"id = \"\xC3\xA9\" x", Kind::syntax, 10, "expected AND, OR or the end of the filter, found 'x'"},
      {"id = 'x'", Kind::syntax, 6,
       "expected a value: a number, a text in double quotes, a property, TRUE or FALSE, found '''"},
      {"elements HAS ALL", Kind::syntax, 17,
       "expected a value, with an operator before it or none, found the end"},
      {"elements HAS ANY \"Ti\",", Kind::syntax, 23,
       "expected a value, with an operator before it or none, found the end"},
      {"a.", Kind::syntax, 3, "expected a name after the period, found the end"},
      {"nelements=1.234D12", Kind::syntax, 16, "expected AND, OR or the end of the filter, found 'D12'"},
      {"nelements=.e1", Kind::syntax, 11, "expected a value"},
      {"nelements=+-123", Kind::syntax, 11, "expected a value"},
      {"nelement=3", Kind::unknown_name, 1, "there is no property 'nelement'; did you mean 'nelements'?"},
      {"1=1 AND year>1990", Kind::unknown_name, 9,
       "there is no property 'year'; did you mean '_dbentry_year'?"},
      {"_dbentry_yaer>1990", Kind::unknown_name, 1,
       "there is no property '_dbentry_yaer'; did you mean '_dbentry_year'?"},
      {"_exmpl_melting_point<300", Kind::unknown_name, 1, "there is no property '_exmpl_melting_point'"},
      {"lattice_vectors IS KNOWN", Kind::unknown_name, 1,
       "the standard's property 'lattice_vectors' is not kept here"},
      {"elements:elements_ratios HAS \"Ti\":>0.3", Kind::not_supported, 1, "correlated lists"},
      {"references.id HAS \"x\"", Kind::not_supported, 1,
       "relationships with other entries ('references.id') are not supported"},
      {"\"a\"=\"b\"", Kind::not_supported, 1, "two constants are compared only if both are numbers"},
      {"\"a\"=5", Kind::wrong_type, 1, "two constants are compared only if both are numbers"},
      {"nelements=\"3\"", Kind::wrong_type, 11, "'nelements' is compared with numbers"},
      {"chemical_formula_hill=42", Kind::wrong_type, 23,
       "'chemical_formula_hill' is compared with texts, in double quotes"},
      {"nelements CONTAINS 3", Kind::wrong_type, 20, "'nelements' is a number: CONTAINS is for texts"},
      {"elements = \"Ti\"", Kind::wrong_type, 1,
       "'elements' is a list: expected HAS, LENGTH or IS KNOWN after it"},
      {"nelements HAS 3", Kind::wrong_type, 1, "'nelements' is no list"},
      {"elements HAS 3", Kind::wrong_type, 14, "'elements' is compared with texts, in double quotes"},
      {"elements LENGTH \"3\"", Kind::wrong_type, 17, "'nelements' is compared with numbers"},
      {"id = elements", Kind::wrong_type, 6, "'elements' is a list, which is no value to compare with"},
      {"id = nelements", Kind::wrong_type, 6, "'id' is compared with texts"},
      {"nelements = TRUE", Kind::wrong_type, 13,
       "TRUE is only compared with properties that are TRUE or FALSE"},
      {"_dbentry_has_cell < 1", Kind::wrong_type, 21, "'_dbentry_has_cell' is TRUE or FALSE"},
      {"_dbentry_has_cell = 1", Kind::wrong_type, 21, "'_dbentry_has_cell' is TRUE or FALSE"},
      {"nelements < 1000000000.E1000000000", Kind::wrong_type, 13,
       "the number is not within the range of a double"},
      {"last_modified > \"yesterday\"", Kind::wrong_type, 17, "expected a time by RFC 3339"},
      {"last_modified > \"2007-02-30T00:00:00Z\"", Kind::wrong_type, 17, "expected a time by RFC 3339"},
      {"last_modified CONTAINS \"2007\"", Kind::wrong_type, 24, "'last_modified' is a time"},
      {"_dbentry_cell = \"4 5 6 90 90\"", Kind::wrong_type, 17, "expected gamma of the cell, found the end"},
      {"_dbentry_cell = \"4.6 426 6.99 60 91 49 ~ 15\"", Kind::too_large, 17,
       "the cell is too long and oblique"},
      {"_dbentry_cell > \"4 5 6 90 90 90\"", Kind::wrong_type, 1,
       "'_dbentry_cell' is only compared with a text, by = or !="},
  };
  for (const Refusal& refusal : refusals) {
    expect_refused(refusal, [](const char* query) { static_cast<void>(EntryQuery::from_filter(query)); });
  }
}

TEST(EntryQueryError, OfTheShortFormNamesTheColumnAndWhatWasExpected) {
  const std::vector<Refusal> refusals = {
      {",", Kind::syntax, 1, "expected an element or the name of a property, found ','"},
      {"Ti,", Kind::syntax, 4, "expected an element or the name of a property, found the end"},
      {"Ti,,O", Kind::syntax, 4, "expected an element or the name of a property, found ','"},
      {"!", Kind::syntax, 2, "expected an element or the name of a property after '!', found the end"},
      {"!!Ti", Kind::syntax, 2, "expected an element or the name of a property after '!', found '!'"},
      {"Ti O", Kind::syntax, 4, "expected an operator (= != < <= > >= ~ !~), a comma or the end, found 'O'"},
      {"year=", Kind::syntax, 6, "expected a value, found the end"},
      {"year=,Ti", Kind::syntax, 6, "expected a value, found ','"},
      {"year=196x", Kind::syntax, 9,
       "expected a range (1960..1990), a tolerance (4.5~0.02), a comma or the end, found 'x'"},
      {"year=x", Kind::syntax, 6, "expected a number, found 'x'"},
      {"year=..", Kind::syntax, 8, "expected a number after the two points, found the end"},
      {"a=4.5~", Kind::syntax, 7, "expected the tolerance: a number, with % or without, found the end"},
      {"name=\"open", Kind::syntax, 11, "expected the closing quote of the text, found the end"},
      {"name=\"a\" b", Kind::syntax, 10, "expected a comma or the end, found 'b'"},
      {"Ti,yaer=1990", Kind::unknown_name, 4, "there is no property 'yaer'; did you mean 'year'?"},
      {"Year=1990", Kind::unknown_name, 1, "there is no property 'Year'; did you mean 'year'?"},
      {"ti", Kind::unknown_name, 1, "there is no property 'ti'; did you mean 'Ti'?"},
      {"Ti2", Kind::unknown_name, 1, "there is no property 'Ti2'; did you mean 'Ti'?"},
      {"_dbentry_year=1990", Kind::unknown_name, 1,
       "there is no property '_dbentry_year' in the short form; did you mean 'year'?"},
      {"year~1990", Kind::wrong_type, 5, "'year' is a number: '~' is for texts"},
      {"year=\"1990\"", Kind::wrong_type, 6, "'year' is compared with numbers"},
      {"year<1960..1990", Kind::wrong_type, 5, "a range and a tolerance follow '=' or '!=', not '<'"},
      {"year=1990..1960", Kind::wrong_type, 6, "the range ends before it begins"},
      {"a=4.5~-1", Kind::wrong_type, 3, "a tolerance is not negative"},
      {"a=1e999", Kind::wrong_type, 3, "the number is not within the range of a double"},
      {"a=1e308~1000%", Kind::wrong_type, 3, "the tolerance leads beyond the range of a double"},
      {"cell~5", Kind::wrong_type, 5, "a cell is compared by '=' alone"},
      {"cell=4 5 6", Kind::wrong_type, 6, "expected alpha of the cell, found the end"},
      {"cell=4 5 6 90 90 90 ~ 1 x", Kind::wrong_type, 6, "expected the end of the cell, found 'x'"},
  };
  for (const Refusal& refusal : refusals) {
    expect_refused(refusal, [](const char* query) { static_cast<void>(EntryQuery::from_text(query)); });
  }
}

TEST(EntryQueryError, OfObjectsHasNoColumn) {
  try {
    static_cast<void>(EntryQuery::compare("yaer", EntryQuery::Operator::equal, 1990));
    FAIL();
  } catch (const EntryQueryError& error) {
    EXPECT_EQ(error.column(), 0);
    EXPECT_STREQ(error.what(), "there is no property 'yaer'; did you mean 'year'?");
  }
  EXPECT_THROW(static_cast<void>(EntryQuery::compare("year", EntryQuery::Operator::equal, "x")),
               EntryQueryError);
  EXPECT_THROW(static_cast<void>(EntryQuery::element("Xx", EntryQuery::Operator::at_least, 1)),
               EntryQueryError);
  EXPECT_THROW(static_cast<void>(EntryQuery::cell({4, 5, 6, 90, 90, 400}, 1)), EntryQueryError);
  EXPECT_THROW(static_cast<void>(EntryQuery::cell({4, 5, 6, 90, 90, 90}, 31)), EntryQueryError);
}

TEST(EntryQueryError, RefusesWhatIsTooDeepOrTooLarge) {
  const auto nested = [](std::size_t depth) {
    return std::string(depth, '(') + "1=1" + std::string(depth, ')');
  };
  EXPECT_NO_THROW(static_cast<void>(EntryQuery::from_filter(nested(100))));
  expect_refused({nested(101).c_str(), Kind::too_large, 101, "parentheses may be 100 deep, not more"},
                 [](const char* query) { static_cast<void>(EntryQuery::from_filter(query)); });
  expect_refused({nested(1'000'000).c_str(), Kind::too_large, 101, "parentheses may be 100 deep, not more"},
                 [](const char* query) { static_cast<void>(EntryQuery::from_filter(query)); });
  std::string filter = "nelements=1";
  std::string text = "Ti";
  for (int more = 1; more < 2000; ++more) {
    filter += " OR nelements=1";
    text += ",Ti";
  }
  EXPECT_NO_THROW(static_cast<void>(EntryQuery::from_filter(filter)));
  EXPECT_NO_THROW(static_cast<void>(EntryQuery::from_text(text)));
  EXPECT_THROW(static_cast<void>(EntryQuery::from_filter(filter + " OR nelements=1")), EntryQueryError);
  EXPECT_THROW(static_cast<void>(EntryQuery::from_text(text + ",Ti")), EntryQueryError);
}
