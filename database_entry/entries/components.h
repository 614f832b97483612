// The sixteen components of an entry as a table: what is done with each of them is written once.
//
//   for_each_component([&](auto component) {
//     if (component.get(entry).is_null()) std::cout << component.label << " is missing\n";
//   });
//
// A row has these members; `kind` and the three flags are known when the caller is compiled.
//
//   Type                          the component's class, Publication
//   kind                          ComponentKind::publication
//   name, label                   "cross_reference_info" as the accessor has it, "cross reference info" as
//                                 summaries and errors have it
//   archived, printed             whether the archive and the summary of an entry hold it
//   has_setter                    whether an entry takes another one
//   get(entry), fetch(source)     the handle, from the virtual accessor of an entry or of a data source
//   set(entry, handle)            through the virtual setter; there only where has_setter is true
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>
#include <database_entry/entries/crystal_structure_database_entry_data_source.h>

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <type_traits>
#include <utility>

// The one list. Its order is that of the members of an entry, of its archive and of its summary; the number
// is the kind, under which components are stored: it never changes, and a number that went is never given
// again. Only a SETTABLE component has a setter. What is archived and what is printed is said beside each
// class.
// clang-format off
#define DATABASE_ENTRY_COMPONENTS(FIXED, SETTABLE)                                                 \
  FIXED(    1, crystal_maker,              "crystal maker",              CrystalMaker)             \
  FIXED(    2, cell,                       "cell",                       Cell)                     \
  SETTABLE( 3, publication,                "publication",                Publication)              \
  SETTABLE( 4, experimental_info,          "experimental info",          ExperimentalInfo)         \
  SETTABLE( 5, editors_info,               "editors info",               EditorsInfo)              \
  SETTABLE( 6, chemical_info,              "chemical info",              ChemicalInfo)             \
  SETTABLE( 7, crystal_info,               "crystal info",               CrystalInfo)              \
  FIXED(   11, chemical_diagram,           "chemical diagram",           ChemicalDiagram)          \
  FIXED(    8, connectivity_info,          "connectivity info",          ConnectivityInfo)         \
  FIXED(   12, crystal_diagram_match,      "crystal diagram match",      CrystalDiagramMatch)      \
  FIXED(   13, connectivity_diagram_match, "connectivity diagram match", ConnectivityDiagramMatch) \
  FIXED(   14, crystal_connectivity_match, "crystal connectivity match", CrystalConnectivityMatch) \
  SETTABLE( 9, cross_reference_info,       "cross reference info",       CrossReferenceInfo)       \
  SETTABLE(10, deposition_info,            "deposition info",            DepositionInfo)           \
  SETTABLE(15, disorder_selector,          "disorder selector",          DisorderSelectors)        \
  SETTABLE(16, published_geometry,         "published geometry",         PublishedGeometry)
// clang-format on

enum class ComponentKind : std::int32_t {
#define DATABASE_ENTRY_KIND(number, name, label, Type) name = (number),
  DATABASE_ENTRY_COMPONENTS(DATABASE_ENTRY_KIND, DATABASE_ENTRY_KIND)
#undef DATABASE_ENTRY_KIND
};

// One row of the table, made from pointers to the operations.
template <ComponentKind component_kind, class Component, auto accessor, auto source_accessor,
          auto setter = nullptr>
struct ComponentRow {
  using Type = Component;
  static constexpr ComponentKind kind = component_kind;
  static constexpr bool archived = is_archived_component<Component>;
  static constexpr bool printed = is_printed_component<Component>;
  static constexpr bool has_setter = !std::is_null_pointer_v<decltype(setter)>;

  const char* name;
  const char* label;

  [[nodiscard]] static THandle<Type> get(const CrystalStructureDatabaseEntry& entry) {
    return (entry.*accessor)();
  }
  [[nodiscard]] static THandle<Type> fetch(const CrystalStructureDatabaseEntryDataSource& source) {
    return (source.*source_accessor)();
  }
  static void set(CrystalStructureDatabaseEntry& entry, const THandle<Type>& component) requires has_setter {
    (entry.*setter)(component);
  }
};

// The rows in the order of the list, as a std::tuple.
inline constexpr std::tuple entry_components{
#define DATABASE_ENTRY_FIXED(number, name, label, Type)                         \
  ComponentRow<ComponentKind::name, Type, &CrystalStructureDatabaseEntry::name, \
               &CrystalStructureDatabaseEntryDataSource::name>{#name, label},
#define DATABASE_ENTRY_SETTABLE(number, name, label, Type)                                                  \
  ComponentRow<ComponentKind::name, Type, &CrystalStructureDatabaseEntry::name,                             \
               &CrystalStructureDatabaseEntryDataSource::name, &CrystalStructureDatabaseEntry::set_##name>{ \
      #name, label},
    DATABASE_ENTRY_COMPONENTS(DATABASE_ENTRY_FIXED, DATABASE_ENTRY_SETTABLE)
#undef DATABASE_ENTRY_FIXED
#undef DATABASE_ENTRY_SETTABLE
};

inline constexpr std::size_t component_count = std::tuple_size_v<decltype(entry_components)>;

// The position of a kind in the list.
template <class... Row>
consteval std::size_t component_position(ComponentKind kind, const std::tuple<Row...>&) {
  constexpr ComponentKind kinds[] = {Row::kind...};
  std::size_t position = 0;
  while (kinds[position] != kind) ++position;
  return position;
}

// The row of one kind: component_row<ComponentKind::cell>.get(entry).
template <ComponentKind kind>
inline constexpr auto component_row = std::get<component_position(kind, entry_components)>(entry_components);

// Calls `visit` with each row, in the order of the kinds, 1 to 16. Take it by value (`auto component`), so
// that `if constexpr (component.printed)` is possible.
template <class Visit>
constexpr void for_each_component(Visit&& visit) {
  [&]<std::size_t... position>(std::index_sequence<position...>) {
    (visit(component_row<static_cast<ComponentKind>(position + 1)>), ...);
  }
  (std::make_index_sequence<component_count>());
}

// The same in the order of the list: as an entry is printed and archived.
template <class Visit>
constexpr void for_each_component_in_entry_order(Visit&& visit) {
  std::apply([&](auto... component) { (visit(component), ...); }, entry_components);
}

// A Value<Component> for each component, found by its row; null handles, for instance:
//
//   ComponentHandles handles;
//   handles[component_row<ComponentKind::cell>] = THandle<Cell>(new Cell);
//
// They are made in the order of the list and go in the reverse order.
template <template <class> class Value, class Rows = std::remove_const_t<decltype(entry_components)>>
class PerComponent;

template <template <class> class Value, class Row>
struct ComponentSlot {
  Value<typename Row::Type> value;
};

template <template <class> class Value, class... Rows>
class PerComponent<Value, std::tuple<Rows...>> : ComponentSlot<Value, Rows>... {
 public:
  PerComponent() = default;
  explicit PerComponent(const Value<typename Rows::Type>&... values)
      : ComponentSlot<Value, Rows>{values}... {}
  // Null handles that are made together.
  explicit PerComponent(NullHandles nulls) requires std::same_as<Value<Cell>, THandle<Cell>>
      : ComponentSlot<Value, Rows>{nulls.make<typename Rows::Type>()}... {}

  template <class Row>
  [[nodiscard]] Value<typename Row::Type>& operator[](const Row&) {
    return ComponentSlot<Value, Row>::value;
  }
  template <class Row>
  [[nodiscard]] const Value<typename Row::Type>& operator[](const Row&) const {
    return ComponentSlot<Value, Row>::value;
  }
};

using ComponentHandles = PerComponent<THandle>;
