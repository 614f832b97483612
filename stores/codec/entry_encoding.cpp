#include <stores/codec/entry_encoding.h>

const char* component_label(ComponentKind kind) {
  const char* label = "";
  for_each_component([&](auto component) {
    if (component.kind == kind) label = component.label;
  });
  return label;
}

EntryBytes encode(const CrystalStructureDatabaseEntry& entry, ByteStreams& streams) {
  EntryBytes bytes;
  bytes.identifier = entry.identifier().text();
  SharedIndex index;
  for_each_component([&](auto component) {
    const auto handle = component.get(entry);
    if (handle.is_null()) return;
    try {
      bytes.components[slot(component.kind)] = streams.written([&](Archive& archive) {
        if constexpr (component.archived) {
          handle->write(archive);
        } else {
          write_layout(archive, index, *handle);
        }
      });
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      throw ComponentFault(component.kind, error.what());
    }
    constexpr int kind = static_cast<int>(component.kind);
    if constexpr (component.kind == ComponentKind::crystal_maker) index.add(kind, handle->atoms());
    if constexpr (component.kind == ComponentKind::connectivity_info) {
      index.add(kind, handle->connectivity()->atoms);
      index.add(kind, handle->connectivity()->bonds);
    }
  });
  return bytes;
}

const SharedObjects& EntryDecoder::objects_of(int kind) {
  for_each_component([&](auto component) {
    if (static_cast<int>(component.kind) == kind) static_cast<void>(get(component));
  });
  static const SharedObjects none;
  const auto& objects = objects_[static_cast<std::size_t>(kind) - 1];
  return objects == nullptr ? none : *objects;
}

THandle<CrystalStructureImmediateDatabaseEntry> decode(const EntryBytes& bytes, ByteStreams& streams) {
  EntryDecoder decoder([&](ComponentKind kind) { return bytes.components[slot(kind)]; }, streams);
  ComponentHandles handles;
  for_each_component([&](auto component) { handles[component] = decoder.get(component); });
  return THandle<CrystalStructureImmediateDatabaseEntry>(new CrystalStructureImmediateDatabaseEntry(
      CrystalStructureImmediateDatabaseEntry::from(DatabaseEntryIdentifier(bytes.identifier), handles)));
}
