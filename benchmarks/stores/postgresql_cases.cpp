#include <libpq-fe.h>

#include <random>
#include <stdexcept>

#include "stores/postgresql_server.h"
#include "stores/store_cases.h"

void add_postgresql_cases(Suite& suite, const RepeatedEntries& entries, std::size_t count) {
  PostgresqlServer& server = PostgresqlServer::shared();
  if (!server.is_installed()) {
    suite.note("PostgreSQL is not installed (postgresql), so it has no rows.");
    return;
  }
  server.start();
  const std::string address = server.new_database();
  const std::shared_ptr<EntryStore> store = init_entry_store(address);
  entries.put(*store, 0, count);
  const std::shared_ptr<PGconn> connection(PQconnectdb(address.c_str()), PQfinish);
  const auto engine = std::make_shared<std::mt19937_64>();
  const auto random_identifier = [=] {
    return DatabaseEntryIdentifier(entries.identifier((*engine)() % count));
  };

  constexpr std::size_t asked = 100;
  const std::string component = "one component from PostgreSQL, within a snapshot";
  const auto one = [=] {
    const auto snapshot = store->snapshot();
    for (std::size_t index = 0; index < asked; ++index)
      static_cast<void>(store->source(random_identifier())->publication()->year);
  };
  suite.measure_elapsed(component, "PostgreSQL", asked, one);
  suite.measure_elapsed(component, "an empty round trip", asked, [connection] {
    for (std::size_t index = 0; index < asked; ++index) PQclear(PQexec(connection.get(), ""));
  });
  suite.compare_with(component, "PostgreSQL");
  suite.expect(component, {"an empty round trip", Goal::at_most_times, 6});

  const std::string ten = "ten components of an entry from PostgreSQL, within a snapshot";
  suite.measure_elapsed(ten, "ten", asked, [=] {
    const auto snapshot = store->snapshot();
    for (std::size_t index = 0; index < asked; ++index) {
      const auto source = store->source(random_identifier(), Prefetch::all);
      for_each_component([&](auto each) {
        if constexpr (each.archived) static_cast<void>(each.fetch(*source));
      });
    }
  });
  suite.measure_elapsed(ten, "one", asked, one);
  suite.compare_with(ten, "ten");
  suite.expect(ten, {"one", Goal::at_most_times, 1.5});
}
