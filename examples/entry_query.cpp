// Asks a store which entries have something, in three ways.
#include <stores/entry_store.h>

#include <exception>
#include <iostream>

#include "sample_entry.h"

int main() {
  try {
    const auto store = init_entry_store("memory:");
    for (const int year : {1960, 1979, 1991}) {
      CrystalStructureImmediateDatabaseEntry entry = sample_entry();
      entry.set_identifier(DatabaseEntryIdentifier("SALT" + std::to_string(year)));
      entry.set_publication(THandle<Publication>(new Publication({"A.B.Smith"}, Journal(4), "1", year, "1")));
      store->put(entry, {}, OnDuplicate::refuse);
    }
    // begin query
    const EntryQuery queries[] = {
        EntryQuery::from_text("Cl,author=smith,year=1970..1999"),
        EntryQuery::from_filter("elements HAS ALL \"C\",\"N\" AND _dbentry_year < 1970"),
        EntryQuery::cell({10.123, 11.5, 7.25, 90.0, 101.3, 90.0}, 1.0) && EntryQuery::element("H"),
    };
    for (const EntryQuery& query : queries) {
      std::cout << store->count(query) << ":";
      for (const EntryColumns& found : store->select_columns(query, {.after = {}, .limit = 10})) {
        std::cout << ' ' << found.identifier << " (" << *found.formula << ", " << *found.year << ')';
      }
      std::cout << '\n';
    }
    // end query
    static_cast<void>(EntryQuery::from_text("Ti,yaer=1990"));
  } catch (const EntryQueryError& error) {
    std::cout << error.what() << '\n';
  } catch (const std::exception& error) {
    std::cerr << "entry_query: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
