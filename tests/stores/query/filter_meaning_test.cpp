#include <gtest/gtest.h>
#include <stores/entry_query.h>

#include <string>
#include <vector>

namespace {

// Rutile with no temperature, no formula as it was published, no names and no depositions.
EntryColumns rutile() {
  EntryColumns columns;
  columns.identifier = "RUTILE01";
  columns.elements = {{"O", 2.0}, {"Ti", 1.0}};
  columns.element_count = 2;
  columns.reduced_formula = "O2Ti";
  columns.hill_formula = "O2Ti";
  columns.anonymous_formula = "A2B";
  columns.atom_count = 2;
  columns.surnames = {"Wyckoff", "Abrahams"};
  columns.year = 1960;
  columns.a = columns.b = 4.594;
  columns.c = 2.959;
  columns.volume = 62.45;
  columns.space_group = 136;
  columns.page = "123";
  columns.stored_at = "2007-04-05T14:30:20Z";
  return columns;
}

struct Answer {
  const char* filter;
  bool matches;
  bool negation_matches;
};

void expect_answers(const std::vector<Answer>& answers) {
  for (const auto& [filter, matches, negation_matches] : answers) {
    EXPECT_EQ(EntryQuery::from_filter(filter).matches(rutile()), matches) << filter;
    EXPECT_EQ(EntryQuery::from_filter("NOT (" + std::string(filter) + ")").matches(rutile()),
              negation_matches)
        << filter;
  }
}

}  // namespace

TEST(Filter, ComparesNumbersAndTextsBothWaysRound) {
  expect_answers({
      {"nelements=2", true, false},
      {"2 = nelements", true, false},
      {"nelements != 2", false, true},
      {"3 > nelements", true, false},
      {"2 >= nelements", true, false},
      {"nelements<2.5", true, false},
      {"nelements=2.5", false, true},
      {"_dbentry_a > +.4594E1", false, true},
      {"_dbentry_a >= 45.94e-1", true, false},
      {"chemical_formula_hill = \"O2Ti\"", true, false},
      {"chemical_formula_hill = \"o2ti\"", false, true},
      {"\"O2\" < chemical_formula_hill", true, false},
      {"chemical_formula_hill >= \"P\"", false, true},
      {"5 < 7", true, false},
      {"1.e1 = 10", true, false},
      {"type = \"structures\"", true, false},
  });
}

TEST(Filter, FindsPartsOfTexts) {
  expect_answers({
      {"chemical_formula_hill CONTAINS \"2T\"", true, false},
      {"chemical_formula_hill STARTS WITH \"O2\"", true, false},
      {"chemical_formula_hill STARTS \"O2\"", true, false},
      {"chemical_formula_hill ENDS WITH \"Ti\"", true, false},
      {"chemical_formula_hill ENDS \"O2\"", false, true},
      {"chemical_formula_hill CONTAINS chemical_formula_reduced", true, false},
      {"chemical_formula_hill CONTAINS \"\"", true, false},
  });
}

TEST(Filter, LooksIntoLists) {
  expect_answers({
      {"elements HAS \"Ti\"", true, false},
      {"elements HAS ALL \"Ti\",\"O\"", true, false},
      {"elements HAS ALL \"Ti\",\"Si\"", false, true},
      {"elements HAS ANY \"Si\", \"O\"", true, false},
      {"elements HAS ONLY \"Ti\",\"O\",\"Si\"", true, false},
      {"elements HAS ONLY \"Ti\"", false, true},
      {"elements HAS < \"P\"", true, false},
      {"elements HAS ALL < \"P\", > \"P\"", true, false},
      {"elements HAS ANY STARTS WITH \"S\", ENDS \"i\"", true, false},
      {"elements HAS != \"Ti\"", true, false},
      {"elements HAS ONLY != \"Ti\"", false, true},
      {"elements LENGTH 2", true, false},
      {"elements LENGTH > 2", false, true},
      {"elements LENGTH nelements", true, false},
      {"_dbentry_author LENGTH >= 2", true, false},
      {"elements_ratios HAS > 0.6", true, false},
      {"elements_ratios HAS ONLY > 0.6", false, true},
      {"_dbentry_author HAS \"Wyckoff\"", true, false},
      {"_dbentry_author HAS \"wyckoff\"", false, true},
      {"_dbentry_author_folded HAS \"WYCKOFF\"", true, false},
      {"_dbentry_author HAS CONTAINS \"ck\"", true, false},
  });
}

TEST(Filter, ComparesPropertiesWithProperties) {
  expect_answers({
      {"_dbentry_a = _dbentry_b", true, false},
      {"_dbentry_a < _dbentry_c", false, true},
      {"nelements = _dbentry_natoms", true, false},
      {"_dbentry_count_o > _dbentry_count_ti", true, false},
      {"chemical_formula_hill = chemical_formula_reduced", true, false},
      {"_dbentry_a > _dbentry_temperature", false, false},
      {"_dbentry_temperature = _dbentry_density", false, false},
      {"_dbentry_author HAS _dbentry_page", false, true},
      {"_dbentry_author HAS _dbentry_volume_number", false, false},
  });
}

TEST(Filter, TakesWhatIsNotKnownForNeitherTrueNorFalse) {
  expect_answers({
      {"_dbentry_temperature = 0", false, false},
      {"_dbentry_temperature != 0", false, false},
      {"_dbentry_name HAS \"x\"", false, false},
      {"_dbentry_name HAS ONLY \"x\"", false, false},
      {"_dbentry_name LENGTH 0", false, false},
      {"_dbentry_block CONTAINS \"x\"", false, false},
      {"_dbentry_temperature IS KNOWN", false, true},
      {"_dbentry_temperature IS UNKNOWN", true, false},
      {"_dbentry_temperature", false, true},
      {"_dbentry_year", true, false},
      {"elements", true, false},
      {"_dbentry_name", false, true},
      // One side of OR is enough, one side of AND is too.
      {"_dbentry_temperature < 5 OR nelements = 2", true, false},
      {"_dbentry_temperature < 5 OR nelements = 3", false, false},
      {"_dbentry_temperature < 5 AND nelements = 2", false, false},
      {"_dbentry_temperature < 5 AND nelements = 3", false, true},
      {"_dbentry_cell = \"4.6 4.6 3 90 90 90\"", false, false},
  });
}

TEST(Filter, KnowsBooleans) {
  expect_answers({
      {"_dbentry_has_atoms", true, false},
      {"_dbentry_has_atoms = TRUE", true, false},
      {"_dbentry_has_atoms != FALSE", true, false},
      {"FALSE = _dbentry_has_atoms", false, true},
      {"_dbentry_has_cell", true, false},
      {"_dbentry_has_cell = _dbentry_has_atoms", true, false},
      {"NOT _dbentry_has_cell AND _dbentry_has_atoms", false, true},
      {"_dbentry_has_cell IS KNOWN", true, false},
      {"TRUE = TRUE", true, false},
      {"TRUE != TRUE", false, true},
  });
  EXPECT_TRUE(
      EntryQuery::from_filter("NOT _dbentry_has_cell AND NOT _dbentry_has_atoms").matches(EntryColumns()));
}

TEST(Filter, ComparesTimesWhateverTheirZone) {
  expect_answers({
      {"last_modified = \"2007-04-05T14:30:20Z\"", true, false},
      {"last_modified = \"2007-04-05t16:30:20.00+02:00\"", true, false},
      {"last_modified = \"2007-04-05T14:30:20.5Z\"", false, true},
      {"last_modified != \"2007-04-05T14:30:20.5Z\"", true, false},
      {"last_modified < \"2007-04-05T14:30:20.5Z\"", true, false},
      {"last_modified >= \"2007-04-05T14:30:20.5Z\"", false, true},
      {"last_modified > \"2007-04-05T23:59:59+12:00\"", true, false},
      {"\"2008-01-01T00:00:00Z\" > last_modified", true, false},
  });
}

TEST(Filter, BindsNotBeforeAndBeforeOr) {
  const std::vector<std::vector<std::string>> pairs = {
      {"NOT nelements > 1 OR nelements = 4 AND id = \"x\"",
       "(NOT (nelements > 1)) OR ((nelements = 4) AND (id = \"x\"))"},
      {"nelements >= 0 AND NOT nelements < 1 OR nelements = 0",
       "((nelements >= 0) AND (NOT (nelements < 1))) OR (nelements = 0)"},
      {"NOTnelements=1ANDid STARTSWITH\"x\"", "(NOT nelements = 1) AND (id STARTS \"x\")"},
      {"\t( (nelements\n=\r1) ) ", "nelements=1"},
      {"id CONTAINS \"a\\\"b\\\\\"", "(id CONTAINS \"a\\\"b\\\\\")"},
      {"_dbentry_year", "_dbentry_year IS KNOWN"},
      {"id IS UNKNOWN", "NOT id IS KNOWN"},
      {"elements LENGTH 3", "nelements = 3"},
      {"elements HAS ANY \"Ti\"", "elements HAS =\"Ti\""},
  };
  for (const auto& pair : pairs)
    EXPECT_TRUE(EntryQuery::from_filter(pair[0]) == EntryQuery::from_filter(pair[1])) << pair[0];
}

TEST(Filter, IsWrittenWithTheFewestParentheses) {
  for (const char* filter : {
           "nelements = 2",
           "NOT nelements = 2",
           "NOT (nelements = 2 AND id = \"a\\\"b\\\\\")",
           "(nelements = 2 OR id = \"x\") AND NOT (id = \"y\" OR id = \"z\")",
           "nelements = 2 AND id = \"x\" OR id CONTAINS \"y\"",
           "elements HAS ANY \"Ti\", < \"B\" AND elements HAS ONLY \"Ti\", \"O\" AND NOT elements HAS ONLY "
           "\"O\"",
           "_dbentry_name LENGTH >= 2 AND _dbentry_name IS UNKNOWN AND id IS KNOWN",
           "_dbentry_cell = \"F 5.64 5.64 5.64 90 90 90 ~ 1%\"",
           "_dbentry_count_ti >= 1.5 OR _dbentry_a < _dbentry_b",
           "1=1",
       }) {
    EXPECT_EQ(EntryQuery::from_filter(filter).filter(), filter);
  }
}

TEST(Filter, HasNoWordsForControlCharacters) {
  using Operator = EntryQuery::Operator;
  EXPECT_EQ(EntryQuery::compare("name", Operator::contains, std::string("\0", 1)).filter(), std::nullopt);
  EXPECT_EQ(EntryQuery::compare("name", Operator::contains, "\t").filter(),
            "_dbentry_name_folded HAS CONTAINS \"\t\"");
}
