#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <utilities/vorn_log.h>

#include <sstream>
#include <tuple>
#include <typeinfo>

namespace {

// Errors name a component only while the entry is at work, also when one of them ends that work.
class ComponentName {
 public:
  explicit ComponentName(Archive& archive) : archive_(archive), before_(archive.component()) {}
  ComponentName(const ComponentName&) = delete;
  ComponentName& operator=(const ComponentName&) = delete;
  ~ComponentName() { archive_.name_component(before_); }

  void set(const char* name) const { archive_.name_component(name); }

 private:
  Archive& archive_;
  const char* before_;
};

// Calls `visit` with the ten rows that are archived, all at once, in archive order.
template <class Visit>
void with_archived_components(const Visit& visit) {
  constexpr auto only_archived = [](auto component) {
    if constexpr (component.archived) {
      return std::tuple{component};
    } else {
      return std::tuple{};
    }
  };
  std::apply([&](auto... component) { std::apply(visit, std::tuple_cat(only_archived(component)...)); },
             entry_components);
}

// The eleven items of an entry.
template <class... Component>
void write_items(Archive& archive, const DatabaseEntryIdentifier& identifier,
                 const THandle<Component>&... components) {
  identifier.write(archive);
  const ComponentName name(archive);
  const auto write_one = [&](const char* label, const auto& component) {
    name.set(label);
    archive << component;
  };
  with_archived_components([&](auto... row) { (write_one(row.label, components), ...); });
}

// Asks for the bytes of the object, to be there when they are needed. Entries by the thousand are not in the
// caches, and their components would be waited for one after the other.
template <class Component>
void fetch_ahead(const THandle<Component>& component) {
  constexpr std::size_t cache_line = 64;
  if (component.is_null()) return;
  const char* const bytes = reinterpret_cast<const char*>(component.get());
  for (std::size_t offset = 0; offset < sizeof(Component); offset += cache_line) {
    __builtin_prefetch(bytes + offset);
  }
}

bool is_derived(const THandle<Cell>& cell) {
  if (cell.is_null()) return false;
  const Cell& object = *cell;
  return typeid(object) != typeid(Cell);
}

bool is_derived(const THandle<CrystalMaker>& crystal_maker) {
  if (crystal_maker.is_null()) return false;
  const CrystalMaker& object = *crystal_maker;
  return typeid(object) != typeid(CrystalMaker) || is_derived(object.cell());
}

}  // namespace

#define PARAMETER(number, name, label, Type) , THandle<Type> name
#define ARGUMENT(number, name, label, Type) name,
CrystalStructureImmediateDatabaseEntry::CrystalStructureImmediateDatabaseEntry(
    const DatabaseEntryIdentifier& identifier DATABASE_ENTRY_COMPONENTS(PARAMETER, PARAMETER))
    : identifier_(identifier), components_{DATABASE_ENTRY_COMPONENTS(ARGUMENT, ARGUMENT)} {}

CrystalStructureImmediateDatabaseEntry::CrystalStructureImmediateDatabaseEntry(
    const DatabaseEntryIdentifier& identifier, THandle<CrystalMaker> crystal_maker)
    : identifier_(identifier), components_(NullHandles(component_count)) {
  components_[component_row<ComponentKind::crystal_maker>] = crystal_maker;
  components_[component_row<ComponentKind::cell>] = THandle<Cell>::make(*crystal_maker->cell());
}

CrystalStructureImmediateDatabaseEntry CrystalStructureImmediateDatabaseEntry::from(
    const DatabaseEntryIdentifier& identifier, const ComponentHandles& components) {
  return std::apply(
      [&](auto... component) {
        return CrystalStructureImmediateDatabaseEntry(identifier, components[component]...);
      },
      entry_components);
}

CrystalStructureImmediateDatabaseEntry::~CrystalStructureImmediateDatabaseEntry() {
  if (!VORNLog::active(3)) return;
  try {
    // Formatted as the log stream would, locale and all, but before it meets it: a failure half way through
    // the address would leave that stream with another format.
    std::ostream& log = VORNLog::start_debug_line(3);
    std::ostringstream line;
    line.copyfmt(log);
    line << "Entered CrystalStructureImmediateDatabaseEntry::~CrystalStructureImmediateDatabaseEntry() - "
         << static_cast<const void*>(this);
    log << line.str();
    VORNLog::end_debug_line();
  } catch (...) {
    // The entry goes all the same: a log that fails must not end the program.
  }
}

DatabaseEntryIdentifier CrystalStructureImmediateDatabaseEntry::identifier() const {
  return identifier_;
}

void CrystalStructureImmediateDatabaseEntry::set_identifier(const DatabaseEntryIdentifier& identifier) {
  identifier_ = identifier;
}

#define DEFINE_ACCESSOR(number, name, label, Type)                     \
  THandle<Type> CrystalStructureImmediateDatabaseEntry::name() const { \
    return components_[component_row<ComponentKind::name>];            \
  }
#define DEFINE_ACCESSOR_AND_SETTER(number, name, label, Type)                        \
  DEFINE_ACCESSOR(number, name, label, Type)                                         \
  void CrystalStructureImmediateDatabaseEntry::set_##name(THandle<Type> component) { \
    components_[component_row<ComponentKind::name>] = component;                     \
  }
DATABASE_ENTRY_COMPONENTS(DEFINE_ACCESSOR, DEFINE_ACCESSOR_AND_SETTER)

void CrystalStructureImmediateDatabaseEntry::write(Archive& archive) const {
  with_archived_components([&](auto... row) {
    (fetch_ahead(components_[row]), ...);
    // Where no derived class says otherwise, the accessors give the members, and nobody else's code runs that
    // might change the entry meanwhile. Then the handles are not copied: each copy would fetch a count from
    // memory.
    if (typeid(*this) == typeid(CrystalStructureImmediateDatabaseEntry) &&
        !is_derived(components_[component_row<ComponentKind::crystal_maker>]) &&
        !is_derived(components_[component_row<ComponentKind::cell>])) {
      return write_items(archive, identifier_, components_[row]...);
    }
    const DatabaseEntryIdentifier identifier_now = identifier();
    // All before the first byte; in braces, so that the accessors are called in this order.
    const std::tuple handles{row.get(*this)...};
    std::apply([&](const auto&... component) { write_items(archive, identifier_now, component...); },
               handles);
  });
}

void CrystalStructureImmediateDatabaseEntry::read(Archive& archive) {
  identifier_.read(archive);
  const ComponentName name(archive);
  const auto read_one = [&](auto component) {
    name.set(component.label);
    archive >> components_[component];
  };
  with_archived_components([&](auto... component) { (read_one(component), ...); });
}
