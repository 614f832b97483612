#include <stores/engines/archive_engine.h>
#include <stores/engines/memory_engine.h>
#include <stores/engines/store_engine.h>
#include <stores/entry_store.h>
#include <unistd.h>

#ifdef DATABASE_ENTRY_STORE_SQLITE
#include <stores/engines/sqlite/sqlite_engine.h>
#endif

#ifdef DATABASE_ENTRY_STORE_POSTGRESQL
#include <stores/engines/postgresql/postgresql_engine.h>
#endif

#include <cerrno>
#include <fstream>
#include <system_error>

namespace {

const std::string memory_place = "memory:";

bool is_postgresql(const std::string& place) {
  return place.starts_with("postgresql://") || place.starts_with("postgres://");
}

[[noreturn, maybe_unused]] void not_built(const std::string& place, const std::string& option) {
  throw EntryStoreError({place, "", ""}, "this library was built without such stores (" + option + ")");
}

}  // namespace

std::unique_ptr<EntryStore> open_entry_store(const std::string& place) {
  if (place == memory_place) {
    throw EntryStoreError({place, "", ""}, "a store in memory is made anew, there is none to open");
  }
  if (is_postgresql(place)) {
#ifdef DATABASE_ENTRY_STORE_POSTGRESQL
    return store_over(open_postgresql_engine(place));
#else
    not_built(place, "DATABASE_ENTRY_STORE_POSTGRESQL");
#endif
  }
  if (::access(place.c_str(), R_OK) != 0) {
    const int error = errno;
    throw EntryStoreError({place, "", ""}, std::generic_category().message(error) +
                                               (error == ENOENT ? "; dbentry init makes a store" : ""));
  }
#ifdef DATABASE_ENTRY_STORE_SQLITE
  if (is_sqlite_file(place)) return store_over(open_sqlite_engine(place));
#endif
  return store_over(open_archive_engine(place));
}

std::unique_ptr<EntryStore> init_entry_store(const std::string& place, const InitOptions& options) {
  if (place == memory_place) return store_over(make_memory_engine());
  if (is_postgresql(place)) {
#ifdef DATABASE_ENTRY_STORE_POSTGRESQL
    init_postgresql_store(place, options);
    return open_entry_store(place);
#else
    not_built(place, "DATABASE_ENTRY_STORE_POSTGRESQL");
#endif
  }
#ifdef DATABASE_ENTRY_STORE_SQLITE
  init_sqlite_store(place, options);
  return open_entry_store(place);
#else
  static_cast<void>(options);
  not_built(place, "DATABASE_ENTRY_STORE_SQLITE");
#endif
}

int upgrade_entry_store(const std::string& place) {
#ifdef DATABASE_ENTRY_STORE_POSTGRESQL
  if (is_postgresql(place)) return upgrade_postgresql_store(place);
#endif
#ifdef DATABASE_ENTRY_STORE_SQLITE
  if (is_sqlite_file(place)) return upgrade_sqlite_store(place);
#endif
  throw EntryStoreError({place, "", ""}, "it is no store of this library, and has no schema version");
}
