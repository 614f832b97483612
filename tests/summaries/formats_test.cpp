// Summaries on streams that their callers have set up in many ways: numbers are written as the stream writes
// them, a line end flushes where it is promised, and the stream stays as it was set up.
#include <database_entry/records/publication.h>
#include <gtest/gtest.h>

#include "printables.h"
#include "support/streams.h"

namespace {

// Calls `check` with each printable thing, the stream that it printed itself to, and one that was set up
// alike and took the pieces one by one.
template <class Check>
void print_in_every_format(const Check& check) {
  for (const Printable& printable : printables()) {
    for (const Format& format : formats()) {
      SCOPED_TRACE(std::string(printable.name) + ", " + format.name);
      NotedStream printed(format);
      printable.print(printed);
      NotedStream expected(format);
      write_pieces(expected, printable.pieces);
      check(printed, expected);
    }
  }
}

TEST(Summaries, WriteNumbersInTheFormatOfTheStream) {
  print_in_every_format([](const NotedStream& printed, const NotedStream& expected) {
    EXPECT_EQ(printed.text(), expected.text());
  });
}

TEST(Summaries, FlushAtTheLineEndsThatPromiseItAndNowhereElse) {
  print_in_every_format([](const NotedStream& printed, const NotedStream& expected) {
    EXPECT_EQ(printed.flushes(), expected.flushes());
  });
}

TEST(Summaries, LeaveTheFormatOfTheStreamAlone) {
  for (const Printable& printable : printables()) {
    for (const Format& format : formats()) {
      NotedStream os(format);
      const auto before = setup_of(os);
      printable.print(os);
      EXPECT_EQ(setup_of(os), before) << printable.name << ", " << format.name;
    }
  }
}

TEST(Summaries, GiveTheWidthToTheirFirstPieceAsAnyOutputDoes) {
  for (const Printable& printable : printables()) {
    NotedStream os;
    os.width(40);
    printable.print(os);
    EXPECT_EQ(os.width(), 0) << printable.name;
  }
}

// One text by hand: what the comparisons above take for granted.
TEST(Summaries, GroupDigitsWhereTheStreamDoes) {
  std::ostringstream os;
  os.imbue(grouping_locale());
  Publication({}, Journal(4), "1000", 1979, "2345").print(os);
  EXPECT_EQ(os.str(), "J.Am.Chem.Soc., 1000, 2345, 1.979\n");
}

}  // namespace
