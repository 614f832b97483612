#include <gtest/gtest.h>
#include <utilities/test_suite.h>

#include <sstream>

namespace {

class TestSuiteTest : public testing::Test {
 protected:
  TestSuiteTest() { TestSuite::reset(); }
};

std::string address_text(const void* address) {
  std::ostringstream os;
  os << address;
  return os.str();
}

TEST_F(TestSuiteTest, RecordsExecutionsInOrder) {
  TestSuite::log_execution("first");
  TestSuite::log_execution("second");
  EXPECT_EQ(TestSuite::executions(), (std::vector<std::string>{"first", "second"}));
}

TEST_F(TestSuiteTest, RecordsOneExecutionAndNoFailureForEqualValues) {
  const THandle<int> handle(new int(1));
  TestSuite::test_equality("same", handle, THandle<int>(handle));
  EXPECT_EQ(TestSuite::executions(), std::vector<std::string>{"same"});
  EXPECT_TRUE(TestSuite::failures().empty());
}

TEST_F(TestSuiteTest, SaysWhatAnIdentifierShouldBeAndWas) {
  TestSuite::log_error("run1 identifier ", DatabaseEntryIdentifier("ABCDEF"),
                       DatabaseEntryIdentifier("GHIJKL"));
  EXPECT_EQ(TestSuite::failures(),
            std::vector<std::string>{"run1 identifier \nABCDEF << should be\nGHIJKL << was\n"});
}

TEST_F(TestSuiteTest, WritesNumbersAsStreamsDo) {
  TestSuite::log_error("a", 10.5, 0.25);
  TestSuite::log_error("n", 4, 8);
  EXPECT_EQ(TestSuite::failures(), (std::vector<std::string>{"a\n10.5 << should be\n0.25 << was\n",
                                                             "n\n4 << should be\n8 << was\n"}));
}

TEST_F(TestSuiteTest, WritesTheAddressOfAHandledObjectNotItsContents) {
  const THandle<int> expected(new int(1));
  const THandle<int> actual(new int(1));
  TestSuite::test_equality("handles", expected, actual);
  EXPECT_EQ(TestSuite::failures(),
            std::vector<std::string>{"handles\n" + address_text(expected.get()) + " << should be\n" +
                                     address_text(actual.get()) + " << was\n"});
}

TEST_F(TestSuiteTest, ForgetsEverythingWhenReset) {
  TestSuite::log_execution("check");
  TestSuiteHelpers::log_error("message");
  TestSuite::reset();
  EXPECT_TRUE(TestSuite::executions().empty());
  EXPECT_TRUE(TestSuite::failures().empty());
}

TEST_F(TestSuiteTest, NamesTheHandledTypeWhenAValueIsWrittenByHand) {
  const THandle<int> handle(new int(1));
  std::ostringstream os;
  TestSuiteHelpers::output_value<int>(os, handle);
  EXPECT_EQ(os.str(), address_text(handle.get()));
}

TEST_F(TestSuiteTest, LeavesTheFormatOfTheStreamAfterAHandle) {
  std::ostringstream os;
  const std::ios_base::fmtflags before = os.flags();
  TestSuiteHelpers::output_value(os, THandle<int>(new int(1)));
  EXPECT_EQ(os.flags(), before);
}

TEST_F(TestSuiteTest, TakesTheTypeOfAnIdentifierSpelledOut) {
  const DatabaseEntryIdentifier expected("ABCDEF");
  const DatabaseEntryIdentifier actual("GHIJKL");
  std::ostringstream os;
  TestSuiteHelpers::output_value<DatabaseEntryIdentifier>(os, expected);
  EXPECT_EQ(os.str(), "ABCDEF");
  TestSuiteHelpers::log_error<DatabaseEntryIdentifier, DatabaseEntryIdentifier>("id", expected, actual);
  TestSuite::log_error<DatabaseEntryIdentifier>("again", expected, actual);
  EXPECT_EQ(TestSuite::failures(), (std::vector<std::string>{"id\nABCDEF << should be\nGHIJKL << was\n",
                                                             "again\nABCDEF << should be\nGHIJKL << was\n"}));
}

}  // namespace
