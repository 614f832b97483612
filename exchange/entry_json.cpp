#include <database_entry/entries/components.h>
#include <exchange/entry_json.h>

#include <algorithm>
#include <string_view>

#include "exchange/json/value_reader.h"
#include "exchange/json/value_writer.h"

using Json = nlohmann::ordered_json;

JsonEntryError::~JsonEntryError() = default;

Json entry_json(const CrystalStructureDatabaseEntry& entry) {
  ValueWriter writer;
  const DatabaseEntryIdentifier identifier = entry.identifier();
  Json json = {{"identifier", ValueWriter::of(identifier.text())}};
  for_each_component([&](auto component) { json[component.name] = writer.of(component.get(entry)); });
  return json;
}

namespace {

// What a component is that nothing is said of.
template <class Component>
THandle<Component> unsaid() {
  THandle<Component> component;
  if constexpr (is_archived_component<Component>) component = THandle<Component>(new Component);
  if constexpr (std::is_same_v<Component, Publication>)
    component->journal = Journal(Journal::max_vorn_coden() + 1);
  return component;
}

}  // namespace

JsonEntry entry_from_json(const Json& json) {
  JsonEntry result;
  ValueReader reader(result.absent, result.unknown);
  reader.expect(json.is_object(), "an object is expected");
  std::string identifier;
  reader.member(json, "identifier", identifier);
  reader.set_entry(identifier);
  std::vector<std::string_view> names = {"identifier"};
  ComponentHandles handles;
  for_each_component([&](auto component) {
    using Component = typename decltype(component)::Type;
    names.emplace_back(component.name);
    handles[component] = unsaid<Component>();
    reader.member(json, component.name, handles[component]);
  });
  for (const auto& [name, value] : json.items()) {
    if (std::find(names.begin(), names.end(), name) == names.end()) result.unknown.push_back(name);
  }
  // The crystal's cell and the cell are one where they are alike.
  const THandle<CrystalMaker>& crystal = handles[component_row<ComponentKind::crystal_maker>];
  THandle<Cell>& cell = handles[component_row<ComponentKind::cell>];
  if (!crystal.is_null() && !cell.is_null() && *crystal->cell() == *cell) cell = crystal->cell();
  result.entry = THandle<CrystalStructureImmediateDatabaseEntry>(new CrystalStructureImmediateDatabaseEntry(
      CrystalStructureImmediateDatabaseEntry::from(DatabaseEntryIdentifier(identifier), handles)));
  return result;
}
