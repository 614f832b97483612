#include <gtest/gtest.h>
#include <stores/entry_query.h>

#include <string>
#include <vector>

namespace {

struct Pair {
  const char* text;
  const char* filter;
};

EntryColumns rutile() {
  EntryColumns columns;
  columns.identifier = "RUTILE01";
  columns.elements = {{"O", 2.0}, {"Ti", 1.0}};
  columns.element_count = 2;
  columns.formula = "O2 Ti";
  columns.names = {"Rutile", "titanium(IV) oxide"};
  columns.surnames = {"Wyckoff", "M\xC3\xBCller"};
  columns.journals = {"J.Am.Chem.Soc.", "JACSAT"};
  columns.year = 1960;
  columns.a = 4.48;
  return columns;
}

}  // namespace

TEST(ShortForm, MeansWhatTheFilterMeans) {
  const std::vector<Pair> pairs = {
      {"Ti", "elements HAS \"Ti\""},
      {"!Si", "NOT elements HAS \"Si\""},
      {"Ti,O", "elements HAS ALL \"Ti\",\"O\""},
      {"Ti>=2", "_dbentry_count_ti>=2"},
      {"!Ti>=2", "NOT _dbentry_count_ti>=2"},
      {"nelements=2", "nelements=2"},
      {"year=1960..1990", "_dbentry_year>=1960 AND _dbentry_year<=1990"},
      {"year!=1960..1990", "NOT (_dbentry_year>=1960 AND _dbentry_year<=1990)"},
      {"year=1960..", "_dbentry_year>=1960"},
      {"year=..1990", "_dbentry_year<=1990"},
      {"C=10..12", "_dbentry_count_c>=10 AND _dbentry_count_c<=12"},
      {"a=4.5~0.02", "_dbentry_a>=4.48 AND _dbentry_a<=4.52"},
      {"a=4.5~1%", "_dbentry_a>=4.455 AND _dbentry_a<=4.545"},
      {"a=.5..1.", "_dbentry_a>=0.5 AND _dbentry_a<=1"},
      {"volume<100", "_dbentry_volume<100"},
      {"sg=136", "space_group_it_number=136"},
      {"author=Wyckoff", "_dbentry_author_folded HAS \"wyckoff\""},
      {"author!=wyckoff", "NOT _dbentry_author_folded HAS \"WYCKOFF\""},
      {"name~rutile", "_dbentry_name_folded HAS CONTAINS \"rutile\""},
      {"name!~rutile", "NOT _dbentry_name_folded HAS CONTAINS \"rutile\""},
      {"journal=JACSAT", "_dbentry_journal_folded HAS \"jacsat\""},
      {"formula=\"O2 Ti\"", "_dbentry_formula_folded=\"o2 ti\""},
      {"formula!=\"O2 Ti\"", "_dbentry_formula_folded!=\"o2 ti\""},
      {"reduced=O2Ti", "chemical_formula_reduced_folded=\"o2ti\""},
      {"source~.cif , id=AB C ", "_dbentry_source_folded CONTAINS \".cif\" AND id_folded=\"ab c\""},
      {"name=\"a,\\\"b\\\\\"", "_dbentry_name_folded HAS \"a,\\\"b\\\\\""},
      {"year", "_dbentry_year IS KNOWN"},
      {"!name", "_dbentry_name IS UNKNOWN"},
      {" Ti , ! O ", "elements HAS \"Ti\" AND NOT elements HAS \"O\""},
      {"", "1=1"},
      {"cell=4.6 4.6 2.96 90 90 90~1.5%", "_dbentry_cell=\"4.6,4.6,2.96,90,90,90 ~ 1.5\""},
      {"cell=F 5.64 5.64 5.64 90 90 90", "_dbentry_cell=\"F 5.64 5.64 5.64 90 90 90~1\""},
      {"refers_to=X,deposition~123",
       "_dbentry_refers_to_folded HAS \"x\" AND _dbentry_deposition_folded HAS CONTAINS \"123\""},
  };
  for (const auto& [text, filter] : pairs) {
    EXPECT_TRUE(EntryQuery::from_text(text) == EntryQuery::from_filter(filter))
        << text << " is " << EntryQuery::from_text(text).filter().value_or("?");
  }
}

TEST(ShortForm, FindsLettersOfEitherCase) {
  for (const char* text :
       {"name=RUTILE", "name~OXIDE", "author=wyckoff", "author=m\xC3\xBCLLER", "author=M\xC3\x9CLLER",
        "journal=jacsat", "journal=j.am.chem.soc.", "formula=\"o2 TI\"", "id=rutile01", "id~LE0"}) {
    EXPECT_TRUE(EntryQuery::from_text(text).matches(rutile())) << text;
  }
}

TEST(ShortForm, TakesLimitsThatAreTouched) {
  // 4.5 - 0.02 would be a little more than 4.48 if it were taken from doubles.
  for (const char* text :
       {"a=4.5~0.02", "a=4.46~0.02", "a=4.48..4.48", "year=1960..1960", "year=1..1960", "Ti=1..2", "O=2"}) {
    EXPECT_TRUE(EntryQuery::from_text(text).matches(rutile())) << text;
  }
  for (const char* text : {"a=4.51~0.02", "year=1961..", "Ti=2..", "C=1..", "O!=2", "!O", "Ti,C"}) {
    EXPECT_FALSE(EntryQuery::from_text(text).matches(rutile())) << text;
  }
}

TEST(ShortForm, CountsAnElementThatIsNotThereAsNone) {
  EXPECT_TRUE(EntryQuery::from_text("C=0,C<1,C!=1,!C").matches(rutile()));
  EXPECT_FALSE(EntryQuery::from_text("C=0").matches(EntryColumns()));
  EXPECT_FALSE(EntryQuery::from_text("!C").matches(EntryColumns()));
}

TEST(ShortForm, IsWrittenAsItIsUnderstood) {
  const std::vector<std::vector<std::string>> pairs = {
      {"Ti>=1 , O, !Si", "Ti>=1,O,!Si"},      {"year=1960 .. 1990", "year=1960..1990"},
      {"a=4.5~0.02", "a=4.48..4.52"},         {"author=WYCKOFF", "author=wyckoff"},
      {"formula=O2 Ti", "formula=\"o2 ti\""}, {"name!~x", "!name~x"},
  };
  for (const auto& pair : pairs) {
    EXPECT_EQ(EntryQuery::from_text(pair[0]).text(), pair[1]);
  }
}

TEST(ShortForm, HasNoWordsForTheRestOfTheFilterLanguage) {
  for (const char* filter :
       {"nelements=1 OR nelements=2", "_dbentry_a=_dbentry_b", "id=\"X\"", "_dbentry_name HAS \"x\"",
        "elements HAS ANY \"Ti\",\"O\"", "elements HAS ONLY \"Ti\"", "elements_ratios HAS >0.5",
        "_dbentry_formula_folded STARTS WITH \"x\"", "_dbentry_block=\"x\"", "1=0"}) {
    EXPECT_EQ(EntryQuery::from_filter(filter).text(), std::nullopt) << filter;
  }
}
