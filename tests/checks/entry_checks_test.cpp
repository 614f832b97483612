#include <database_entry/checks/entry_checks.h>
#include <database_entry/entries/crystal_structure_deferred_database_entry.h>
#include <gtest/gtest.h>
#include <utilities/vorn_log.h>

#include <iostream>
#include <limits>

#include "entries/noting_entry.h"

namespace {

using Entry = CrystalStructureImmediateDatabaseEntry;
using Texts = std::vector<std::string>;

// The cell of the sample has a length a of 10 and two symmetry operators.
Texts summary_failures(const std::string& identifier, double a, int operators) {
  TestSuite::reset();
  test_database_entry_summary("run1", sample_entry(), identifier, a, operators);
  return TestSuite::failures();
}

TEST(EntrySummaryCheck, RecordsNothingForAnEntryAsExpected) {
  EXPECT_TRUE(summary_failures("ABCDEF", 10.0, 2).empty());
  EXPECT_TRUE(TestSuite::executions().empty());
}

TEST(EntrySummaryCheck, ShowsBothIdentifiers) {
  EXPECT_EQ(summary_failures("GHIJKL", 10.0, 2),
            Texts{"run1 identifier \nGHIJKL << should be\nABCDEF << was\n"});
}

TEST(EntrySummaryCheck, ComparesIdentifiersByEveryByte) {
  EXPECT_EQ(summary_failures("ABCDEF ", 10.0, 2).size(), 1U);
  EXPECT_EQ(summary_failures("abcdef", 10.0, 2).size(), 1U);
}

TEST(EntrySummaryCheck, ComparesTheLengthWithinItsTolerance) {
  const struct {
    double a;
    bool passes;
    const char* reason;
  } cases[] = {
      {10.00000005, true, "half the tolerance above"},
      {9.99999995, true, "half the tolerance below"},
      {10.0 + 1e-7, true, "the tolerance itself above"},
      {10.0 - 1e-7, true, "the tolerance itself below"},
      {10.0000002, false, "twice the tolerance above"},
      {9.9999998, false, "twice the tolerance below"},
      {std::numeric_limits<double>::quiet_NaN(), true, "NaN differs from nothing"},
      {std::numeric_limits<double>::infinity(), false, "infinity"},
      {-10.0, false, "the sign counts"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(summary_failures("ABCDEF", each.a, 2).empty(), each.passes) << each.reason;
  }
}

TEST(EntrySummaryCheck, ShowsBothLengths) {
  EXPECT_EQ(summary_failures("ABCDEF", 10.5, 2), Texts{"run1 a \n10.5 << should be\n10 << was\n"});
}

TEST(EntrySummaryCheck, ShowsBothNumbersOfOperators) {
  EXPECT_EQ(summary_failures("ABCDEF", 10.0, 4),
            Texts{"run1 number of symmetry operators \n4 << should be\n2 << was\n"});
}

TEST(EntrySummaryCheck, MakesEveryCheckWhateverTheEarlierOnesFound) {
  EXPECT_EQ(summary_failures("GHIJKL", 11.0, 4),
            (Texts{"run1 identifier \nGHIJKL << should be\nABCDEF << was\n",
                   "run1 a \n11 << should be\n10 << was\n",
                   "run1 number of symmetry operators \n4 << should be\n2 << was\n"}));
}

TEST(EntrySummaryCheck, PassesANaNInTheCell) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const Cell cell(nan, 1, 1, 90, 90, 90, handle_to(std::vector<CrystalSymmetryOperator>()));
  const Entry entry(DatabaseEntryIdentifier("ABCDEF"), handle_to(CrystalMaker(handle_to(cell))));
  TestSuite::reset();
  test_database_entry_summary("run1", entry, "ABCDEF", 10.0, 0);
  EXPECT_TRUE(TestSuite::failures().empty());
}

TEST(EntrySummaryCheck, EndsWhenThereIsNoCellAfterTheIdentifier) {
  TestSuite::reset();
  EXPECT_THROW(test_database_entry_summary("run1", empty_entry(), "ABCDEF", 10.0, 2), NullHandleError);
  EXPECT_EQ(TestSuite::failures(), Texts{"run1 identifier \nABCDEF << should be\n << was\n"});
}

TEST(EntrySummaryCheck, EndsWhenThereIsNoListOfOperatorsAfterTheLength) {
  const Cell cell(10, 1, 1, 90, 90, 90, {});
  const Entry entry(DatabaseEntryIdentifier("ABCDEF"), handle_to(CrystalMaker(handle_to(cell))));
  TestSuite::reset();
  EXPECT_THROW(test_database_entry_summary("run1", entry, "ABCDEF", 11.0, 2), NullHandleError);
  EXPECT_EQ(TestSuite::failures(), Texts{"run1 a \n11 << should be\n10 << was\n"});
}

TEST(EntrySummaryCheck, WritesItsNameToTheLogAtLevel1) {
  const struct {
    int level, minimum_level;
    const char* expected;
  } cases[] = {{1, 1, "test_database_entry_summary test = run1\n"},
               {2, 0, "test_database_entry_summary test = run1\n"},
               {0, 0, ""},
               {3, 2, ""}};
  const Entry entry = sample_entry();
  for (const auto& each : cases) {
    std::ostringstream log;
    VORNLog::set_stream(log);
    VORNLog::level_ = each.level;
    VORNLog::minimum_level_ = each.minimum_level;
    test_database_entry_summary("run1", entry, "ABCDEF", 10.0, 2);
    VORNLog::level_ = VORNLog::minimum_level_ = 0;
    VORNLog::set_stream(std::cerr);
    EXPECT_EQ(log.str(), each.expected) << each.level;
  }
}

TEST(EntrySummaryCheck, AsksForTheIdentifierAndTheCellOnceEach) {
  const NotingEntry entry;
  test_database_entry_summary("run1", entry, "GHIJKL", 11.0, 4);
  EXPECT_EQ(entry.notes(), (Texts{"identifier", "cell"}));
}

const Texts four_checks{"entry::crystal_maker()", "entry::experimental_info()", "entry::editors_info()",
                        "entry::crystal_diagram_match()"};

TEST(EntryHandlesCheck, PassesAnImmediateEntryWithFourChecks) {
  TestSuite::reset();
  test_database_entry_handles("entry", sample_entry());
  EXPECT_EQ(TestSuite::executions(), four_checks);
  EXPECT_TRUE(TestSuite::failures().empty());
}

TEST(EntryHandlesCheck, AsksTwiceForEachOfTheFourComponents) {
  const NotingEntry entry;
  test_database_entry_handles("entry", entry);
  EXPECT_EQ(entry.notes(),
            (Texts{"crystal maker", "crystal maker", "experimental info", "experimental info", "editors info",
                   "editors info", "crystal diagram match", "crystal diagram match"}));
}

TEST(EntryHandlesCheck, PassesADeferredEntryThatHasNothing) {
  TestSuite::reset();
  const THandle<CrystalStructureDatabaseEntryDataSource> source(new CrystalStructureDatabaseEntryDataSource);
  test_database_entry_handles("entry", CrystalStructureDeferredDatabaseEntry(source));
  EXPECT_EQ(TestSuite::executions(), four_checks);
  EXPECT_TRUE(TestSuite::failures().empty());
}

// Makes a new object at every call, which nobody else keeps alive. Notes the objects it made in order.
struct ForgetfulEntry : Entry {
  ForgetfulEntry() : Entry(empty_entry()) {}
  THandle<CrystalMaker> crystal_maker() const override { return made(new CrystalMaker); }
  THandle<ExperimentalInfo> experimental_info() const override { return made(new ExperimentalInfo); }
  THandle<EditorsInfo> editors_info() const override { return made(new EditorsInfo); }
  THandle<CrystalDiagramMatch> crystal_diagram_match() const override {
    return made(new CrystalDiagramMatch);
  }

  template <class T>
  THandle<T> made(T* object) const {
    std::ostringstream address;
    address << static_cast<const void*>(object);
    addresses.push_back(address.str());
    return THandle<T>(object);
  }
  mutable Texts addresses;
};

TEST(EntryHandlesCheck, FailsAnEntryThatMakesNewObjectsAndShowsTheLaterOneFirst) {
  TestSuite::reset();
  const ForgetfulEntry entry;
  test_database_entry_handles("entry", entry);
  ASSERT_EQ(entry.addresses.size(), 8U);
  Texts expected;
  for (std::size_t check = 0; check < 4; ++check) {
    expected.push_back(four_checks[check] + "\n" + entry.addresses[2 * check + 1] + " << should be\n" +
                       entry.addresses[2 * check] + " << was\n");
  }
  EXPECT_EQ(TestSuite::failures(), expected);
  EXPECT_EQ(TestSuite::executions(), four_checks);
}

struct WithoutEditors : Entry {
  WithoutEditors() : Entry(sample_entry()) {}
  THandle<EditorsInfo> editors_info() const override { throw 7; }
};

TEST(EntryHandlesCheck, PassesOnWhatAnAccessorThrows) {
  TestSuite::reset();
  EXPECT_THROW(test_database_entry_handles("entry", WithoutEditors()), int);
  EXPECT_EQ(TestSuite::executions(), Texts(four_checks.begin(), four_checks.begin() + 2));
}

}  // namespace
