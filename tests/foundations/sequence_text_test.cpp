#include <database_entry/foundations/sequence_text.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

using Texts = std::vector<std::string>;

std::string printed_texts(const Texts& texts) {
  std::ostringstream os;
  print_sequence(os, texts);
  return os.str();
}

std::string joined(const Texts& texts, bool trailing) {
  return to_string(texts.begin(), texts.end(), ", ", trailing);
}

TEST(PrintedSequence, IsIndexElementAndTabForEach) {
  EXPECT_EQ(printed_texts({"a", "", "c\td"}), "0: a\t1: \t2: c\td\t");
}

TEST(PrintedSequence, OfNothingIsNothing) {
  EXPECT_EQ(printed_texts({}), "");
}

TEST(PrintedSequence, LetsElementsBeWrittenByTheCaller) {
  std::ostringstream os;
  print_sequence(os, std::vector<int>{7, 8},
                 [](std::ostream& stream, int value) { stream << '<' << value << '>'; });
  EXPECT_EQ(os.str(), "0: <7>\t1: <8>\t");
}

struct Printable {
  int value;
  void print(std::ostream& os) const { os << '<' << value << '>'; }
};

TEST(PrintedSequence, LetsElementsPrintThemselves) {
  std::ostringstream os;
  print_sequence(os, std::vector<Printable>{{7}, {8}});
  EXPECT_EQ(os.str(), "0: <7>\t1: <8>\t");
}

TEST(PrintedSequence, CountsInTheFormatOfTheStream) {
  std::ostringstream os;
  os << std::hex << std::showbase;
  print_sequence(os, Texts(11, "x"));
  EXPECT_EQ(os.str().substr(os.str().size() - 7), "0xa: x\t");
}

TEST(JoinedText, HasSeparatorsBetweenElementsOnly) {
  EXPECT_EQ(joined({"a", "b", "c"}, false), "a, b, c");
  EXPECT_EQ(joined({"a"}, false), "a");
}

TEST(JoinedText, HasOneMoreSeparatorWhenTrailing) {
  EXPECT_EQ(joined({"a", "b"}, true), "a, b, ");
}

TEST(JoinedText, HasEveryByteOfItsSeparator) {
  const std::string separator("\0,", 2);
  const Texts texts{"a", "b"};
  EXPECT_EQ(to_string(texts.begin(), texts.end(), separator, false), "a" + separator + "b");
}

TEST(JoinedText, OfNothingIsEmptyEitherWay) {
  EXPECT_EQ(joined({}, false), "");
  EXPECT_EQ(joined({}, true), "");
}

}  // namespace
