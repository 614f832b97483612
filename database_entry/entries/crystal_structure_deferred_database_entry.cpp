#include <database_entry/entries/crystal_structure_deferred_database_entry.h>

template <class Component>
THandle<typename Component::Type> CrystalStructureDeferredDatabaseEntry::obtain_data(
    const Component& component) const {
  const Source& source = *source_;
  DeferredData<typename Component::Type>& known = components_[component];
  if (!known.obtained) {
    known.data = component.fetch(source);
    known.obtained = true;
  }
  return known.data;
}

template <class Component>
void CrystalStructureDeferredDatabaseEntry::set_data(const Component& component,
                                                     const THandle<typename Component::Type>& data) {
  components_[component].data = data;
  components_[component].obtained = true;
}

CrystalStructureDeferredDatabaseEntry::CrystalStructureDeferredDatabaseEntry(
    THandle<CrystalStructureDatabaseEntryDataSource> source)
    : source_(source), identifier_(source_->identifier()) {}

DatabaseEntryIdentifier CrystalStructureDeferredDatabaseEntry::identifier() const {
  return identifier_;
}

void CrystalStructureDeferredDatabaseEntry::set_identifier(const DatabaseEntryIdentifier& identifier) {
  identifier_ = identifier;
}

#define DEFINE_ACCESSOR(number, name, label, Type)                    \
  THandle<Type> CrystalStructureDeferredDatabaseEntry::name() const { \
    return obtain_data(component_row<ComponentKind::name>);           \
  }
#define DEFINE_ACCESSOR_AND_SETTER(number, name, label, Type)                       \
  DEFINE_ACCESSOR(number, name, label, Type)                                        \
  void CrystalStructureDeferredDatabaseEntry::set_##name(THandle<Type> component) { \
    set_data(component_row<ComponentKind::name>, component);                        \
  }
DATABASE_ENTRY_COMPONENTS(DEFINE_ACCESSOR, DEFINE_ACCESSOR_AND_SETTER)
