#include <database_entry/entries/components.h>

CrystalStructureDatabaseEntryDataSource::~CrystalStructureDatabaseEntryDataSource() = default;

DatabaseEntryIdentifier CrystalStructureDatabaseEntryDataSource::identifier() const {
  return DatabaseEntryIdentifier();
}

#define DEFINE_ACCESSOR(number, name, label, Type)                      \
  THandle<Type> CrystalStructureDatabaseEntryDataSource::name() const { \
    return {};                                                          \
  }
DATABASE_ENTRY_COMPONENTS(DEFINE_ACCESSOR, DEFINE_ACCESSOR)
