// What a program loads and unloads: a client of the library with one entry point.
#include <database_entry/database_entry.h>

// The number of identifiers and deposition numbers found in two texts.
extern "C" __attribute__((visibility("default"))) int use_the_library() {
  std::vector<DatabaseEntryIdentifier> related;
  DatabaseCrossReference(DatabaseCrossReference::isomer, "of [ABCDEF01] and [X1234567]").identifiers(related);
  DepositionInfo info;
  info.set_text(DepositionInfo::jds, "12/34");
  std::vector<std::string> numbers;
  info.deposition_numbers(DepositionInfo::jds, numbers);
  return static_cast<int>(related.size() + numbers.size());
}
