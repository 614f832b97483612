#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <utilities/vorn_log.h>

#include <sstream>
#include <tuple>

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

}  // namespace

#define PARAMETER(number, name, label, Type) , THandle<Type> name
#define ARGUMENT(number, name, label, Type) name,
CrystalStructureImmediateDatabaseEntry::CrystalStructureImmediateDatabaseEntry(
    const DatabaseEntryIdentifier& identifier DATABASE_ENTRY_COMPONENTS(PARAMETER, PARAMETER))
    : identifier_(identifier), components_{DATABASE_ENTRY_COMPONENTS(ARGUMENT, ARGUMENT)} {}

CrystalStructureImmediateDatabaseEntry::CrystalStructureImmediateDatabaseEntry(
    const DatabaseEntryIdentifier& identifier, THandle<CrystalMaker> crystal_maker)
    : identifier_(identifier) {
  components_[component_row<ComponentKind::crystal_maker>] = crystal_maker;
  components_[component_row<ComponentKind::cell>] = THandle<Cell>(new Cell(*crystal_maker->cell()));
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
  const DatabaseEntryIdentifier identifier_now = identifier();
  with_archived_components([&](auto... component) {
    // All before the first byte; in braces, so that the accessors are called in this order.
    const std::tuple handles{component.get(*this)...};
    identifier_now.write(archive);
    const ComponentName name(archive);
    const auto write_one = [&](const char* label, const auto& handle) {
      name.set(label);
      archive << handle;
    };
    (write_one(component.label, std::get<THandle<typename decltype(component)::Type>>(handles)), ...);
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
