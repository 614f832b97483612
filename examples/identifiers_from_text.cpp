// Finds entry identifiers and deposition numbers in free text.
#include <database_entry/database_entry.h>

#include <iostream>
#include <string>
#include <vector>

int main() {
  // begin find
  CrossReferenceInfo references;
  references.insert(
      DatabaseCrossReference(DatabaseCrossReference::racemate, "Racemate of [ABCDEF01], [GHIJKL]"));
  references.insert(DatabaseCrossReference(DatabaseCrossReference::coordinates_see, "see also [C1234567]"));
  std::vector<DatabaseEntryIdentifier> related;
  references.cross_related_identifiers(related);
  for (const DatabaseEntryIdentifier& identifier : related) std::cout << identifier.text() << '\n';

  DepositionInfo depositions;
  depositions.set_text(DepositionInfo::vorn, "VORN 123456 and VORN 789");
  depositions.set_text(DepositionInfo::russian, "R77");
  for (const auto type : {DepositionInfo::vorn, DepositionInfo::russian, DepositionInfo::fiz}) {
    std::vector<std::string> numbers;
    depositions.deposition_numbers(type, numbers);
    std::cout << DepositionInfo::deposition_type_text()->text(type) << ':';
    for (const std::string& number : numbers) std::cout << ' ' << number;
    std::cout << '\n';
  }
  // end find
}
