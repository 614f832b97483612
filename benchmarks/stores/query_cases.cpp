#include <algorithm>
#include <stdexcept>

#include "stores/store_cases.h"

namespace {

std::size_t found_by_scan(const std::vector<EntryColumns>& rows, const EntryQuery& query) {
  return static_cast<std::size_t>(std::count_if(
      rows.begin(), rows.end(), [&](const EntryColumns& columns) { return query.matches(columns); }));
}

void expect_same(std::size_t one, std::size_t other) {
  if (one != other || one == 0) throw std::runtime_error("a query finds other entries than the scan");
}

}  // namespace

void add_query_cases(Suite& suite, const FilledStore& small, const FilledStore& large) {
  const EntryQuery query = EntryQuery::from_text("Ti,O,year=1950..1990,cell=3.97 3.97 3.97 90 90 90");
  const auto rows = std::make_shared<std::vector<EntryColumns>>(large.store->select_columns({}));
  const std::string all = "elements, cell and years, of " + large.size() + " entries";
  expect_same(large.store->select(query).size(), found_by_scan(*rows, query));
  suite.measure(all, "SQLite", 1, 0, [=] { static_cast<void>(large.store->select(query)); });
  suite.measure(all, "scan of rows in memory", 1, 0, [=] {
    if (found_by_scan(*rows, query) == 0) throw std::runtime_error("the scan finds nothing");
  });
  suite.compare_with(all, "SQLite");
  suite.expect(all, {"scan of rows in memory", Goal::at_least_times_faster, 5});

  const EntryQuery both = EntryQuery::from_text("Ti,O");
  expect_same(large.store->select(both).size(), found_by_scan(*rows, both));
  expect_same(large.store->count(both), found_by_scan(*rows, both));
  const std::vector<std::pair<std::string, std::function<void(EntryStore&)>>> questions = {
      {"all identifiers of Ti,O", [=](EntryStore& store) { static_cast<void>(store.select(both)); }},
      {"the first 100 of Ti,O",
       [=](EntryStore& store) { static_cast<void>(store.select(both, {.after = {}, .limit = 100})); }},
      {"the count of Ti,O", [=](EntryStore& store) { static_cast<void>(store.count(both)); }},
  };
  for (const auto& [name, ask] : questions) {
    for (const FilledStore* const filled : {&large, &small}) {
      suite.measure(name, filled->size() + " entries", 1, 0,
                    [store = filled->store, ask = ask] { ask(*store); });
    }
    suite.compare_with(name, large.size() + " entries");
    suite.expect(name, {small.size() + " entries", Goal::at_most_times, 10});
  }
}
