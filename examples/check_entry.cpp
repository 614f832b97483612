// Checks an entry against what is expected of it: every difference is recorded, none is thrown.
#include <iostream>

#include "sample_entry.h"

int main() {
  // begin check
  const CrystalStructureImmediateDatabaseEntry entry = sample_entry();
  test_database_entry_summary("as expected", entry, "ABCDEF01", 10.123, 4);
  test_database_entry_handles("as expected", entry);
  std::cout << "differences: " << TestSuite::failures().size() << '\n';

  test_database_entry_summary("a wrong length", entry, "ABCDEF01", 10.2, 4);
  for (const std::string& name : TestSuite::executions()) std::cout << "checked: " << name << '\n';
  for (const std::string& message : TestSuite::failures()) std::cout << "differs: " << message << '\n';
  // end check
}
