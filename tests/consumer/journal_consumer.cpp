// journal_consumer CODEN: the name of a journal from the list that the library was built with.
#include <database_entry/records/journal.h>

#include <cstdlib>
#include <iostream>

int main(int count, char** arguments) {
  if (count != 2) return 2;
  std::cout << Journal(std::atoi(arguments[1])).name() << '\n';
}
