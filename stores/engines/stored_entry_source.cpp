#include <stores/engines/nearest_text.h>
#include <stores/engines/stored_entry_source.h>

#include <utility>

ComponentReader::~ComponentReader() = default;

namespace {

class StoredEntrySource : public CrystalStructureDatabaseEntryDataSource {
 public:
  StoredEntrySource(std::shared_ptr<ComponentReader> reader, EntryHead head)
      : reader_(std::move(reader)),
        head_(std::move(head)),
        decoder_([this](ComponentKind kind) { return bytes(kind); }, reader_->streams()) {}
  StoredEntrySource(std::shared_ptr<ComponentReader> reader, ComponentReader::Whole whole)
      : StoredEntrySource(std::move(reader), std::move(whole.head)) {
    prefetched_ = std::move(whole.bytes);
  }
  // The decoder asks this very object.
  StoredEntrySource(const StoredEntrySource&) = delete;
  StoredEntrySource& operator=(const StoredEntrySource&) = delete;

  [[nodiscard]] DatabaseEntryIdentifier identifier() const override {
    return DatabaseEntryIdentifier(head_.identifier);
  }

#define STORED_COMPONENT(number, name, label, Type)   \
  [[nodiscard]] THandle<Type> name() const override { \
    return get(component_row<ComponentKind::name>);   \
  }
  DATABASE_ENTRY_COMPONENTS(STORED_COMPONENT, STORED_COMPONENT)
#undef STORED_COMPONENT

 private:
  template <class Row>
  THandle<typename Row::Type> get(const Row& row) const {
    try {
      return decoder_.get(row);
    } catch (const ComponentFault& fault) {
      throw DamagedStore({reader_->place(), head_.identifier, component_label(fault.kind())}, fault.what());
    }
  }

  // The bytes of a component, checked.
  std::optional<std::string> bytes(ComponentKind kind) const {
    return naming(head_.identifier, component_label(kind), [&] { return checked_bytes(kind); });
  }

  std::optional<std::string> checked_bytes(ComponentKind kind) const {
    if (!head_.has(kind)) {
      has_answered_ = true;
      return std::nullopt;
    }
    auto& kept = prefetched_.components[slot(kind)];
    auto found = kept ? std::exchange(kept, std::nullopt) : reader_->component(head_, kind);
    if (found && component_hash(kind, *found) == head_.hashes[slot(kind)]) {
      has_answered_ = true;
      return found;
    }
    // Either the entry was replaced since its head was read, or what is stored is damaged.
    const auto present = reader_->find(head_.identifier);
    if (present && present->is_like(head_)) {
      throw DamagedStore({reader_->place(), "", ""},
                         found ? "its bytes are not those that were stored (their hash differs)"
                               : "its bytes are missing or cannot be unpacked");
    }
    if (!present || has_answered_) {
      throw EntryStoreError({reader_->place(), "", ""},
                            present ? "the entry was replaced while it was read; ask for the entry anew"
                                    : "the entry was removed while it was read");
    }
    head_ = *present;
    prefetched_ = {};
    return checked_bytes(kind);
  }

  std::shared_ptr<ComponentReader> reader_;
  mutable EntryHead head_;
  mutable EntryBytes prefetched_;
  mutable EntryDecoder decoder_;
  mutable bool has_answered_ = false;
};

}  // namespace

void throw_not_found(ComponentReader& reader, const std::string& identifier) {
  constexpr int neighbour_count = 16;
  throw EntryNotFound(reader.place(), identifier,
                      nearest_text(identifier, reader.neighbours(identifier, neighbour_count)));
}

THandle<CrystalStructureDatabaseEntryDataSource> make_source(const std::shared_ptr<ComponentReader>& reader,
                                                             const std::string& identifier,
                                                             Prefetch prefetch) {
  return naming(identifier, "", [&] {
    if (prefetch == Prefetch::all) {
      auto whole = reader->find_whole(identifier);
      if (!whole) throw_not_found(*reader, identifier);
      return THandle<CrystalStructureDatabaseEntryDataSource>(
          new StoredEntrySource(reader, std::move(*whole)));
    }
    auto head = reader->find(identifier);
    if (!head) throw_not_found(*reader, identifier);
    return THandle<CrystalStructureDatabaseEntryDataSource>(new StoredEntrySource(reader, std::move(*head)));
  });
}

THandle<CrystalStructureImmediateDatabaseEntry> make_entry(ComponentReader& reader,
                                                           const std::string& identifier) {
  return naming(identifier, "", [&] {
    auto whole = reader.find_whole(identifier);
    if (!whole) throw_not_found(reader, identifier);
    for_each_component([&](auto component) {
      if (!whole->head.has(component.kind)) return;
      const auto& bytes = whole->bytes.components[slot(component.kind)];
      if (bytes && component_hash(component.kind, *bytes) == whole->head.hashes[slot(component.kind)]) return;
      throw DamagedStore({reader.place(), identifier, component.label},
                         bytes ? "its bytes are not those that were stored (their hash differs)"
                               : "its bytes are missing or cannot be unpacked");
    });
    try {
      return decode(whole->bytes, reader.streams());
    } catch (const ComponentFault& fault) {
      throw DamagedStore({reader.place(), identifier, component_label(fault.kind())}, fault.what());
    }
  });
}
