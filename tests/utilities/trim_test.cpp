#include <gtest/gtest.h>
#include <utilities/trim.h>

#include "support/all_bytes.h"

namespace {

struct TrimCase {
  const char* text;
  const char* characters;
  const char* trimmed;
  const char* reason;
};

TEST(Trim, CutsTheCharactersOfTheSetAtBothEndsOnly) {
  const TrimCase cases[] = {
      {"", " \t", "", "nothing to cut"},
      {" \t ", " \t", "", "nothing but the set"},
      {" a b\t", " \t", "a b", "the inside stays"},
      {"\na ", " \t", "\na", "a line feed is not in the set"},
      {"abc", "", "abc", "an empty set cuts nothing"},
      {"xxaxx", "x", "a", "any set"},
  };
  for (const TrimCase& c : cases) EXPECT_EQ(trim(c.text, c.characters), c.trimmed) << c.reason;
}

TEST(Trim, TreatsANulAsAnyOtherCharacter) {
  EXPECT_EQ(trim(std::string(" \0 ", 3), " "), std::string("\0", 1));
}

TEST(Trim, CutsTheCharactersOfTheSetAndNoOtherByte) {
  const auto is_cut = [](char byte) {
    return trim(std::string(1, byte) + "x" + std::string(1, byte), " \t") == "x";
  };
  EXPECT_EQ(accepted(is_cut), by_value(" \t"));
}

TEST(Trim, TakesASetOfAnyByte) {
  const auto is_cut = [](char byte) {
    const std::string set(1, byte);
    const std::string other(1, static_cast<char>(byte ^ 1));
    return trim(set + set + other + set, set) == other;
  };
  EXPECT_EQ(accepted(is_cut), all_bytes());
}

}  // namespace
