// Identifiers and depositions used by a static object of another file, before main and after it.
#include <database_entry/references/database_cross_reference.h>
#include <database_entry/references/deposition_info.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

std::vector<std::string> found_in_texts() {
  std::vector<DatabaseEntryIdentifier> identifiers;
  DatabaseCrossReference(DatabaseCrossReference::racemate, "[Z1234567] [ABCDEF]").identifiers(identifiers);
  DepositionInfo depositions;
  depositions.set_text(DepositionInfo::vorn, "VORN 12");
  std::vector<std::string> found;
  depositions.deposition_numbers(DepositionInfo::vorn, found);
  for (const DatabaseEntryIdentifier& identifier : identifiers) found.push_back(identifier.text());
  return found;
}

const std::vector<std::string>& expected() {
  static const std::vector<std::string> texts{"12", "ABCDEF", "Z1234567"};
  return texts;
}

struct UsesThemAllItsLife {
  UsesThemAllItsLife() : at_start(found_in_texts()) {}
  UsesThemAllItsLife(const UsesThemAllItsLife&) = delete;
  UsesThemAllItsLife& operator=(const UsesThemAllItsLife&) = delete;
  // Too late for the test framework: a wrong answer changes the exit code of the program.
  ~UsesThemAllItsLife() {
    if (found_in_texts() != at_start) std::_Exit(3);
  }
  std::vector<std::string> at_start;
};

// The earliest a program can ask for: in a static link before the library's own static objects.
[[gnu::init_priority(101)]] UsesThemAllItsLife user;

TEST(TextsSearchedBeforeMain, GiveWhatTheyGiveLater) {
  EXPECT_EQ(user.at_start, expected());
  EXPECT_EQ(found_in_texts(), expected());
}

}  // namespace
