#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stores/entry_query.h>

#include <string>
#include <vector>

#include "stores/support/query_database.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::string where(const std::string& filter, SqlDialect dialect = SqlDialect::sqlite) {
  return EntryQuery::from_filter(filter).sql(dialect).where;
}

}  // namespace

TEST(SqlCondition, OfEveryEntryIsNeverEmpty) {
  const SqlCondition sql = EntryQuery().sql(SqlDialect::postgresql);
  EXPECT_EQ(sql.where, "1=1");
  EXPECT_TRUE(sql.parameters.empty());
  EXPECT_FALSE(sql.recheck);
}

TEST(SqlCondition, HoldsNothingOfTheQuerysOwnText) {
  const std::string hostile = "x'); DROP TABLE entry; -- \" ?1 $1 %";
  for_each_entry_column([&]<class T>(const EntryColumn<T>& column) {
    if (!EntryColumn<T>::is_text || std::string(column.filter_name) == "last_modified") return;
    for (const auto comparison :
         {EntryQuery::Operator::equal, EntryQuery::Operator::contains, EntryQuery::Operator::less}) {
      const auto query = EntryQuery::compare(column.filter_name, comparison, hostile);
      const SqlCondition sql = (!query || query).sql(SqlDialect::sqlite);
      EXPECT_THAT(sql.where, Not(HasSubstr("DROP")));
      EXPECT_TRUE(
          QueryDatabase().run("SELECT e.number FROM entry e WHERE " + sql.where, sql.parameters).empty());
    }
  });
}

TEST(SqlCondition, NumbersParametersInOrderFromTheFirst) {
  const SqlCondition sql =
      EntryQuery::from_filter("_dbentry_a>1.5 AND _dbentry_b<2.5").sql(SqlDialect::postgresql, 3);
  EXPECT_EQ(sql.where, "(e.a > $3::double precision AND e.b < $4::double precision)");
  EXPECT_EQ(sql.parameters, (std::vector<SqlValue>{1.5, 2.5}));
}

TEST(SqlCondition, ComparesIntegersWithIntegers) {
  EXPECT_EQ(where("_dbentry_year>1960.5"), "e.year > ?1");
  EXPECT_EQ(EntryQuery::from_filter("_dbentry_year>1960.5").sql(SqlDialect::sqlite).parameters,
            std::vector<SqlValue>{std::int64_t{1960}});
  EXPECT_EQ(where("_dbentry_year>=1960.5"), "e.year > ?1");
  EXPECT_EQ(where("_dbentry_year<1960.5"), "e.year <= ?1");
  EXPECT_EQ(where("_dbentry_year=1960.5"), "1=0");
  EXPECT_EQ(where("_dbentry_year!=1960.5"), "e.year IS NOT NULL");
  EXPECT_EQ(where("_dbentry_year<1e300"), "e.year IS NOT NULL");
  EXPECT_EQ(where("_dbentry_year<-1e300"), "1=0");
}

TEST(SqlCondition, LooksUpTheRarestElementFirst) {
  const SqlCondition sql = EntryQuery::from_text("C,O,Ti>=2,year=1990").sql(SqlDialect::sqlite);
  EXPECT_EQ(sql.parameters[0], SqlValue{"Ti"});
  EXPECT_EQ(
      sql.where,
      "(e.number IN (SELECT x.entry FROM entry_element x WHERE x.symbol = ?1 AND x.count >= ?2 AND "
      "EXISTS (SELECT 1 FROM entry_element y WHERE y.entry = x.entry AND y.symbol = ?3) AND "
      "EXISTS (SELECT 1 FROM entry_element y WHERE y.entry = x.entry AND y.symbol = ?4)) AND e.year = ?5)");
}

TEST(SqlCondition, AsksForACellFirstAndAllElseOfWhatHasOneLikeIt) {
  const EntryQuery query = EntryQuery::from_text("Ti,O,year=1990,cell=4 5 6 90 90 90");
  const std::string where = query.sql(SqlDialect::sqlite).where;
  EXPECT_THAT(where, testing::HasSubstr("EXISTS (SELECT 1 FROM entry_element y WHERE y.entry = e.number"));
  EXPECT_THAT(where, testing::HasSubstr("+e.year = "));
  EXPECT_THAT(where, testing::HasSubstr("e.reduced_a BETWEEN"));
  EXPECT_THAT(query.sql(SqlDialect::postgresql).where, testing::Not(testing::HasSubstr("+e.year")));
}

TEST(SqlCondition, NamesTheElementsWhereNothingElseIsAsked) {
  const auto elements = [](const std::string& text) {
    return EntryQuery::from_text(text).sql(SqlDialect::sqlite).elements;
  };
  EXPECT_EQ(elements("Ti,O"), (std::vector<std::string>{"Ti", "O"}));
  EXPECT_EQ(elements("Ti"), (std::vector<std::string>{"Ti"}));
  EXPECT_EQ(elements("Ti>0,O"), (std::vector<std::string>{"Ti", "O"}));
  EXPECT_EQ(EntryQuery::from_filter("elements HAS ALL \"Ti\",\"O\"").sql(SqlDialect::sqlite).elements,
            (std::vector<std::string>{"Ti", "O"}));
  for (const char* const text : {"Ti>=2,O", "!Ti", "Ti,!O", "Ti,year=1990", "year=1990", "nelements=2"})
    EXPECT_TRUE(elements(text).empty()) << text;
}

TEST(SqlCondition, LooksUpAWholeTextByItsHash) {
  EXPECT_EQ(EntryQuery::from_text("author=Wyckoff").sql(SqlDialect::sqlite).parameters,
            (std::vector<SqlValue>{text_hash("wyckoff"), "wyckoff"}));
}

TEST(SqlCondition, LeavesToTheScanOnlyWhatItCannotSay) {
  for (const char* filter :
       {"elements HAS ONLY \"Ti\",\"O\"", "NOT _dbentry_author_folded HAS ENDS WITH \"f\"",
        "_dbentry_a=_dbentry_b", "_dbentry_author LENGTH >= 2",
        "_dbentry_count_c<=3 OR NOT (nelements=1 AND id CONTAINS \"x\")"}) {
    EXPECT_FALSE(EntryQuery::from_filter(filter).sql(SqlDialect::postgresql).recheck) << filter;
  }
  for (const char* filter :
       {"_dbentry_author LENGTH nelements", "_dbentry_author HAS id", "_dbentry_count_c<_dbentry_count_h",
        "id_folded=_dbentry_source_folded", "NOT _dbentry_cell=\"4 5 6 90 90 90\""}) {
    EXPECT_TRUE(EntryQuery::from_filter(filter).sql(SqlDialect::postgresql).recheck) << filter;
  }
}

TEST(SqlCondition, OfTheDeepestAndTheLargestQueryIsTakenBySqlite) {
  std::string deep = "_dbentry_a=1";
  for (int depth = 0; depth < 100; ++depth)
    deep = "_dbentry_b=2 AND _dbentry_c=3 OR _dbentry_a=4 AND (" + deep + ")";
  std::string large = "_dbentry_name HAS \"x\"";
  std::string elements = "elements HAS ANY \"Ti\"";
  std::string all = "Ti";
  for (int more = 1; more < 2000; ++more) {
    large += more % 2 == 0 ? " AND _dbentry_name HAS \"x\"" : " OR _dbentry_name HAS CONTAINS \"x\"";
    elements += ",\"O\"";
    all += ",Ti";
  }
  QueryDatabase database;
  for (const auto& query : {EntryQuery::from_filter(deep), EntryQuery::from_filter(large),
                            EntryQuery::from_filter(elements), EntryQuery::from_text(all)}) {
    const SqlCondition sql = query.sql(SqlDialect::sqlite);
    EXPECT_TRUE(database.run("SELECT count(*) FROM entry e WHERE " + sql.where, sql.parameters) ==
                std::vector<std::int64_t>{0});
  }
}
