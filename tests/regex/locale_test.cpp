// Expressions in a program whose global locale has letters, digits and white space of its own.
#include <gtest/gtest.h>
#include <regex/regex.h>

#include <array>
#include <locale>

#include "support/all_bytes.h"

namespace {

// Every byte from 0x80 on is a letter, a digit and white space.
class EverythingIsALetter : public std::ctype<char> {
 public:
  EverythingIsALetter() : std::ctype<char>(table().data()) {}

 private:
  static const std::array<mask, table_size>& table() {
    static const std::array<mask, table_size> masks = [] {
      std::array<mask, table_size> all{};
      std::copy(classic_table(), classic_table() + table_size, all.begin());
      for (std::size_t byte = 0x80; byte < all.size(); ++byte) all[byte] = alpha | digit | space | upper;
      return all;
    }();
    return masks;
  }
};

class RegexInAnotherLocale : public testing::Test {
 protected:
  ~RegexInAnotherLocale() override { std::locale::global(before_); }

 private:
  std::locale before_ = std::locale::global(std::locale(std::locale(), new EverythingIsALetter));
};

std::string taken_by(const std::string& pattern, unsigned int options = 0) {
  const Regex expression(pattern, options);
  return accepted([&](char byte) {
    RegexResults results;
    return expression.search(std::string(1, byte), results, 0);
  });
}

TEST_F(RegexInAnotherLocale, TakesTheLettersDigitsAndWhiteSpaceOfAscii) {
  EXPECT_EQ(taken_by("\\w"), by_value(ascii::letters + ascii::digits + "_"));
  EXPECT_EQ(taken_by("\\d"), by_value(ascii::digits));
  EXPECT_EQ(taken_by("\\s"), by_value(ascii::white_space));
  EXPECT_EQ(taken_by("[A-Z]"), by_value(ascii::capitals));
}

TEST_F(RegexInAnotherLocale, IgnoresNothingButAsciiBlanksInExtendedSyntax) {
  for (const char byte : all_bytes().substr(0x80)) {
    RegexResults results;
    EXPECT_FALSE(Regex(std::string("a") + byte + "b", 8).search("ab", results, 0)) << int{byte};
  }
}

}  // namespace
